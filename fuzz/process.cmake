# The process-code description of a bundle is outside text: any bytes read as "ProcessXML" and
# every processor asked for a build.
mirel_add_fuzz(process_xml_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/process_xml_fuzz.cpp
  LIBS mirel_algorithm)
