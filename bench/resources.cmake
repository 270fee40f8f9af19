# The resource manager's hit path against a bare std::map lookup, and the first load of an XML
# resource against reading the file and parsing it directly.
mirel_add_bench(resources_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/resources_benchmark.cpp
  LIBS mirel_bench_support mirel_resources
)
