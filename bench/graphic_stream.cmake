# Writing a realistic frame against a memcpy of its bytes, and walking it against a bare hop.
mirel_add_bench(graphic_stream_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/graphic_stream_benchmark.cpp
  LIBS mirel_bench_support mirel_graphic_stream)
