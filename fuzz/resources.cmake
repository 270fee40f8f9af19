# The resource manager reads one kind of outside text: the "resource_config.yaml" of a bundle (and
# its text-file fallback).
mirel_add_fuzz(resource_config_fuzz SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/resource_config_fuzz.cpp LIBS mirel_resources)
