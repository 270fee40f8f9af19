# The expat tree builder and the writer against pugixml and bare expat.
mirel_add_bench(xml_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/xml_benchmark.cpp
  LIBS mirel_bench_support mirel_xml
)
