# run() of the LV2 wrapper against the example's process function called directly.
if(TARGET mirel_test_lv2_host)
  mirel_add_bench(lv2_benchmark
    SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/lv2_benchmark.cpp
    LIBS mirel_bench_support mirel_test_lv2_host mirel_recording_shell MirelLib)
  target_compile_definitions(lv2_benchmark PRIVATE
    MIREL_LV2_BUNDLE="${PROJECT_BINARY_DIR}/examples/lv2/GainFilter.lv2")
endif()
