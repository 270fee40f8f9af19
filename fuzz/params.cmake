# Parameter XML is outside text: any bytes read through the parameter reader, built parameters
# converted and written back.
mirel_add_fuzz(param_xml_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/param_xml_fuzz.cpp
  LIBS mirel_algorithm)
