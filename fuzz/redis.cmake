# The Redis server configuration file, as read by the client.
mirel_add_fuzz(read_config_file_fuzz
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/read_config_file_fuzz.cpp
  LIBS mirel_redis
)
