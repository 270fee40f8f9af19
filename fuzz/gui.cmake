# Controls read images from bundles, outside data: PNG and WebP bytes through the resource manager.
mirel_add_fuzz(image_decode_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/image_decode_fuzz.cpp LIBS mirel_code)
# The GUI XML of a bundle: documents of any shape read into a usable GUI.
mirel_add_fuzz(gui_document_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/gui_document_fuzz.cpp LIBS mirel_code)
# A user's input of any shape, played into a live GUI of a started plug-in.
mirel_add_fuzz(gui_input_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/gui_input_fuzz.cpp LIBS mirel_code)
target_include_directories(gui_input_fuzz PRIVATE ${PROJECT_SOURCE_DIR})
