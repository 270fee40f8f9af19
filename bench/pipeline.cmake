# One value change from UpdateParamState to a pool process side, against lock, scale and write;
# the counting allocator shows that the change allocates nothing.
mirel_add_bench(pipeline_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/pipeline_benchmark.cpp
          ${PROJECT_SOURCE_DIR}/tests/support/WCCountingAllocator.cpp
  LIBS mirel_bench_support mirel_algorithm)
