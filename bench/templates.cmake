# Template expansion of a GUI document against pugixml parsing and printing the expanded result.
mirel_add_bench(templates_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/templates_benchmark.cpp
  LIBS mirel_bench_support mirel_xml
)
