# The heap a second instance of the example plug-in with its GUI adds against the first one's,
# and the time to build a GUI with and without its resources already cached. It loads the built
# module as a shell does, so it links the shared run-time and the process holds one copy.
mirel_add_bench(gui_memory_benchmark
  SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/gui_memory_benchmark.cpp
  LIBS mirel_bench_support mirel_recording_shell MirelLib)
target_compile_definitions(gui_memory_benchmark PRIVATE
  MIREL_EXAMPLE_MODULE="$<TARGET_FILE_DIR:GainFilter>/GainFilter.bundle/Contents/Linux64/GainFilter.so")
add_dependencies(gui_memory_benchmark GainFilter)
