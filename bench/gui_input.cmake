# A GUI of 500 controls: a drag event on one of them against the parameter change it makes, and
# a click, whose hit test and selection walk all 500.
mirel_add_bench(gui_input_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/gui_input_benchmark.cpp
  LIBS mirel_bench_support mirel_bench_gui)
target_include_directories(gui_input_benchmark PRIVATE ${PROJECT_SOURCE_DIR})
