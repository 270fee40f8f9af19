# The two XML parse entry points: the expat tree builder and the pugi reader, each with a round
# trip (parse, write, parse) on what it accepts.
mirel_add_fuzz(xml_expat_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/xml_expat_fuzz.cpp LIBS mirel_xml)
mirel_add_fuzz(xml_pugi_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/xml_pugi_fuzz.cpp LIBS mirel_xml)
