# Helpers that keep the per-layer CMake files short and alike.

set(MIREL_WARNINGS -Wall -Wextra -Wpedantic -Wno-unused-parameter)
set_property(GLOBAL PROPERTY MIREL_LAYERS "")

# mirel_add_layer(<layer> SOURCES ... [DEPS ...])
# A static, position-independent library `mirel_<layer>`; DEPS are other layers or packages.
function(mirel_add_layer layer)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  set(target mirel_${layer})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE ${MIREL_WARNINGS})
  target_link_libraries(${target} PUBLIC ${ARG_DEPS})
  set_property(GLOBAL APPEND PROPERTY MIREL_LAYERS ${target})
endfunction()

# mirel_add_runtime(<name>): the shared library that plug-in modules, shells and tools link.
function(mirel_add_runtime name)
  get_property(layers GLOBAL PROPERTY MIREL_LAYERS)
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/mirel_runtime_anchor.cpp "// anchors the shared run-time\n")
  add_library(${name} SHARED ${CMAKE_CURRENT_BINARY_DIR}/mirel_runtime_anchor.cpp)
  # Every object of every layer goes in, whether or not another layer calls it. The layers are
  # linked privately only for their packages: no archive member is pulled twice because the
  # objects already define every symbol, and users of the shared library never see the archives.
  foreach(layer IN LISTS layers)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${layer}>)
  endforeach()
  target_link_libraries(${name} PRIVATE ${layers})
  # The installed package carries its own include folder (MirelInstall.cmake), not the tree's.
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  # What the public headers include: a plug-in that includes them compiles and links against these
  # too. Cairo goes by another name once installed (see MirelLibConfig.cmake.in).
  target_link_libraries(${name} INTERFACE pugixml::pugixml nlohmann_json::nlohmann_json
    Boost::filesystem $<BUILD_INTERFACE:PkgConfig::CAIRO>
    $<INSTALL_INTERFACE:PkgConfig::MIREL_CAIRO>)
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION})
  # The plug-in function links the package's name, in the tree as out of it.
  add_library(${name}::${name} ALIAS ${name})
endfunction()

# mirel_add_test(<name> [OWN_MAIN] SOURCES ... LIBS ...): one GoogleTest executable registered
# with CTest; OWN_MAIN for suites that bring their own main(). Every one runs in a temporary home
# (the global environment of tests/support/WCTestHomeEnvironment.cpp), with or without OWN_MAIN.
function(mirel_add_test name)
  cmake_parse_arguments(ARG "OWN_MAIN" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_compile_options(${name} PRIVATE ${MIREL_WARNINGS})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} mirel_testhome_environment mirel_testsupport
                        GTest::gtest GTest::gmock)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT "MIREL_TESTING=1")
endfunction()

# mirel_add_bench(<name> SOURCES ... LIBS ...): one Google Benchmark executable.
function(mirel_add_bench name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_compile_options(${name} PRIVATE ${MIREL_WARNINGS})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} benchmark::benchmark)
endfunction()
