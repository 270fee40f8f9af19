# Named requests arrive as JSON from a shell: every request function runs over arbitrary JSON.
mirel_add_fuzz(mirel_api3_request_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/mirel_api3_request_fuzz.cpp
  LIBS mirel_algorithm)
