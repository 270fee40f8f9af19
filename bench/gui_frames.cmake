# A GUI of 500 controls: writing and painting a full frame against a frame with one dirty control.
mirel_add_bench(gui_frames_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/gui_frames_benchmark.cpp
  LIBS mirel_bench_support mirel_bench_gui PkgConfig::CAIRO)
target_include_directories(gui_frames_benchmark PRIVATE ${PROJECT_SOURCE_DIR})
