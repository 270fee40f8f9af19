# The idle command queue against boost::lockfree::spsc_queue, one producer and one consumer.
mirel_add_bench(idle_queue_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/idle_queue_benchmark.cpp
  LIBS mirel_bench_support mirel_core Boost::boost Threads::Threads
)
