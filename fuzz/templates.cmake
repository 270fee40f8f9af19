# The template expander and the attribute filter on arbitrary documents.
mirel_add_fuzz(templates_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/templates_fuzz.cpp LIBS mirel_xml)
