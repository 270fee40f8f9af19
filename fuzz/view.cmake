# The view layer reads one kind of outside text: event scripts that tools and tests replay.
mirel_add_fuzz(event_script_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/event_script_fuzz.cpp LIBS mirel_view)
