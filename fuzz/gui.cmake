# Controls read images from bundles, outside data: PNG and WebP bytes through the resource manager.
mirel_add_fuzz(image_decode_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/image_decode_fuzz.cpp LIBS mirel_code)
