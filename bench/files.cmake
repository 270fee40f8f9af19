mirel_add_bench(files_benchmark SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/files_benchmark.cpp
  LIBS mirel_bench_support mirel_files PkgConfig::LIBZIP yaml-cpp)
