# Readers of outside text in core: versions, four-character codes, Base64, fixed-string numbers.
mirel_add_fuzz(core_values_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/core_values_fuzz.cpp
  LIBS mirel_core
)
