# The stream engine and its exporters over arbitrary bytes.
mirel_add_fuzz(graphic_stream_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/graphic_stream_fuzz.cpp
  LIBS mirel_graphic_stream)

# The cairo painter over arbitrary bytes, on a small surface.
mirel_add_fuzz(graphic_stream_paint_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/graphic_stream_paint_fuzz.cpp
  LIBS mirel_graphic_stream)
