# Fixed strings against snprintf and std::string with std::to_chars.
mirel_add_bench(fixed_string_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/fixed_string_benchmark.cpp
  LIBS mirel_bench_support mirel_core
)
