# A host's save and restore of a whole plug-in state (a chunk of 500 parameters in two setups)
# against pugixml parsing and writing the same text.
mirel_add_bench(presets_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/presets_benchmark.cpp
  LIBS mirel_bench_support mirel_algorithm)
