# Hash writes through the Redis connection, against redis-benchmark on the same server.
mirel_add_bench(redis_benchmark
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/redis_benchmark.cpp
    ${CMAKE_CURRENT_LIST_DIR}/../tests/support/WCRedisServerFixture.cpp
  LIBS
    mirel_bench_support
    mirel_redis
    Threads::Threads
)
