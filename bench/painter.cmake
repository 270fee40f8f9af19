# Painting a frame of knobs through the cairo painter against the same drawing by hand-written
# cairo calls.
mirel_add_bench(painter_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/painter_benchmark.cpp
  LIBS mirel_bench_support mirel_graphic_stream)
