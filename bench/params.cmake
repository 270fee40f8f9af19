# Scale functions of every kind, state to real world and back, against inline formulas.
mirel_add_bench(params_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/params_benchmark.cpp
  LIBS mirel_bench_support mirel_algorithm)
