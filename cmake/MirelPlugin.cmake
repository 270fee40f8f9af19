# mirel_add_plugin: builds a plug-in module on the shared run-time and lays out its bundle. The
# same file serves the tree's own example and, installed with the package, plug-ins built out of
# the tree (MirelLibConfig.cmake includes it), so both build a bundle the same way.
#
# mirel_add_plugin(<name>
#   SOURCES <file>...                 the module's sources; it links MirelLib::MirelLib
#   RESOURCES <folder>                copied whole to the bundle's Contents/Resources
#   [PROCESS_SOURCES <file>...]       the native audio code, built once per processor build
#   [PROCESS_BUILDS <build>...]       GenericLinux64 (the default), GenericMultiCoreLinuxIntel64,
#                                     AVXLinuxIntel64
#   [PROCESS_RESOURCE_ID <id>]        the audio code's resource number, 1000 by default
#   [INCLUDE_DIRS <dir>...]           extra include folders of the module and the audio code
#   [COMPILE_OPTIONS <option>...])    extra options of the module and the audio code
#
# It lays out, next to the module:
#   <name>.bundle/Contents/Linux64/<name>.so
#   <name>.bundle/Contents/Resources/...                      (a copy of RESOURCES)
#   <name>.bundle/Contents/Resources/<build>/<id>.so          (one per processor build)
# Targets: <name> (the module; building it builds everything below), <name>Resources,
# <name>Process<build> for each build and <name>ProcessModules. A step that writes into the
# bundle's resources after the copy (pictures drawn at build time) depends on the file named by
# the module's MIREL_RESOURCES_STAMP property, since each copy replaces the whole folder.

include_guard(GLOBAL)

# Compile options of each processor build; the name is the bundle folder the loader looks in.
set(MIREL_PROCESS_BUILD_GenericLinux64 "")
set(MIREL_PROCESS_BUILD_GenericMultiCoreLinuxIntel64 "")
set(MIREL_PROCESS_BUILD_AVXLinuxIntel64 "-mavx")

function(mirel_add_plugin name)
  cmake_parse_arguments(ARG "" "RESOURCES;PROCESS_RESOURCE_ID"
    "SOURCES;PROCESS_SOURCES;PROCESS_BUILDS;INCLUDE_DIRS;COMPILE_OPTIONS" ${ARGN})
  if(NOT ARG_SOURCES)
    message(FATAL_ERROR "mirel_add_plugin(${name}): SOURCES is required")
  endif()
  if(NOT ARG_RESOURCES)
    message(FATAL_ERROR "mirel_add_plugin(${name}): RESOURCES is required")
  endif()
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "mirel_add_plugin(${name}): unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  get_filename_component(resources "${ARG_RESOURCES}" ABSOLUTE)
  if(NOT IS_DIRECTORY "${resources}")
    message(FATAL_ERROR "mirel_add_plugin(${name}): no resources folder ${resources}")
  endif()
  if(NOT ARG_PROCESS_BUILDS)
    set(ARG_PROCESS_BUILDS GenericLinux64)
  endif()
  if(NOT ARG_PROCESS_RESOURCE_ID)
    set(ARG_PROCESS_RESOURCE_ID 1000)
  endif()
  set(bundle ${CMAKE_CURRENT_BINARY_DIR}/${name}.bundle)

  # The module: hosts find its entry points by name, so nothing else is exported.
  add_library(${name} MODULE ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE MirelLib::MirelLib)
  target_include_directories(${name} PRIVATE ${ARG_INCLUDE_DIRS})
  target_compile_options(${name} PRIVATE ${ARG_COMPILE_OPTIONS})
  set_target_properties(${name} PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${bundle}/Contents/Linux64
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${name}> ${bundle}/Contents/Linux64/${name}.so
    COMMENT "Laying out ${name}.bundle")

  # The resources are copied whenever one of them changes, independently of the module.
  file(GLOB_RECURSE resource_files CONFIGURE_DEPENDS ${resources}/*)
  set(resources_stamp ${CMAKE_CURRENT_BINARY_DIR}/${name}Resources.stamp)
  add_custom_command(OUTPUT ${resources_stamp}
    COMMAND ${CMAKE_COMMAND} -E remove_directory ${bundle}/Contents/Resources
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${resources} ${bundle}/Contents/Resources
    COMMAND ${CMAKE_COMMAND} -E touch ${resources_stamp}
    DEPENDS ${resource_files}
    COMMENT "Copying the ${name} bundle's resources")
  add_custom_target(${name}Resources ALL DEPENDS ${resources_stamp})
  add_dependencies(${name} ${name}Resources)
  set_target_properties(${name} PROPERTIES MIREL_BUNDLE_DIR ${bundle}
    MIREL_RESOURCES_STAMP ${resources_stamp})

  # The audio code, one native module per processor build, kept in the bundle as a resource of the
  # build's type. It links nothing of the run-time (a shell finds it through GetNSProcess), but
  # may use the run-time's headers. Copied after the resources, which replace the whole folder.
  if(ARG_PROCESS_SOURCES)
    set(process_stamp ${CMAKE_CURRENT_BINARY_DIR}/${name}Process.stamp)
    set(place_commands "")
    set(process_targets "")
    foreach(build IN LISTS ARG_PROCESS_BUILDS)
      if(NOT DEFINED MIREL_PROCESS_BUILD_${build})
        message(FATAL_ERROR "mirel_add_plugin(${name}): unknown processor build ${build}")
      endif()
      set(target ${name}Process${build})
      add_library(${target} MODULE ${ARG_PROCESS_SOURCES})
      target_include_directories(${target} PRIVATE ${ARG_INCLUDE_DIRS}
        $<TARGET_PROPERTY:MirelLib::MirelLib,INTERFACE_INCLUDE_DIRECTORIES>)
      target_compile_features(${target} PRIVATE cxx_std_20)
      target_compile_options(${target} PRIVATE ${ARG_COMPILE_OPTIONS}
        ${MIREL_PROCESS_BUILD_${build}})
      set_target_properties(${target} PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)
      list(APPEND place_commands
        COMMAND ${CMAKE_COMMAND} -E make_directory ${bundle}/Contents/Resources/${build}
        COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${target}>
                ${bundle}/Contents/Resources/${build}/${ARG_PROCESS_RESOURCE_ID}.so)
      list(APPEND process_targets ${target})
    endforeach()
    add_custom_command(OUTPUT ${process_stamp}
      ${place_commands}
      COMMAND ${CMAKE_COMMAND} -E touch ${process_stamp}
      DEPENDS ${process_targets} ${resources_stamp}
      COMMENT "Placing the ${name} audio code in its bundle")
    add_custom_target(${name}ProcessModules ALL DEPENDS ${process_stamp})
    add_dependencies(${name} ${name}ProcessModules)
  endif()

  # The LV2 bundle (<name>.lv2: the wrapper, the module and the generated TTL files) is laid out
  # here, from the module and the bundle above, once the LV2 wrapper exists.
endfunction()
