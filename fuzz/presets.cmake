# Preset files and chunks come from users, hosts and the network: the .xps reader with its data,
# the chunk reader and the .yps reader, each with a round trip on what it accepts.
mirel_add_fuzz(preset_readers_fuzz
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/preset_readers_fuzz.cpp
  LIBS mirel_code)
