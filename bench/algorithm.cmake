# The plug-in frame: selector calls and named requests against the direct calls they wrap.
mirel_add_bench(algorithm_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/algorithm_benchmark.cpp
  LIBS mirel_bench_support mirel_recording_shell mirel_algorithm)
