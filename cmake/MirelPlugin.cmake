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
#   [COMPILE_OPTIONS <option>...]     extra options of the module and the audio code
#   [BUNDLE_DEPENDS <file>...]        outputs of steps that write into the bundle after the copy,
#                                     which the LV2 bundle waits for
#   [LV2_DIR <folder>])               where the LV2 bundle goes; <binary dir>/lv2 by default
#
# It lays out, next to the module:
#   <name>.bundle/Contents/Linux64/<name>.so
#   <name>.bundle/Contents/Resources/...                      (a copy of RESOURCES)
#   <name>.bundle/Contents/Resources/<build>/<id>.so          (one per processor build)
# and, where the run-time was built with its LV2 wrapper, the LV2 bundle hosts load:
#   <LV2_DIR>/<name>.lv2/mirel_lv2.so                         (the generic wrapper, linked whole)
#   <LV2_DIR>/<name>.lv2/{manifest,<name>,presets}.ttl        (written by mirel-lv2-ttl)
#   <LV2_DIR>/<name>.lv2/<name>.bundle/                       (a copy of the bundle above)
# Targets: <name> (the module; building it builds everything below), <name>Resources,
# <name>Process<build> for each build, <name>ProcessModules, <name>LV2Binary and <name>LV2.
# A plug-in built against the installed package also installs its LV2 bundle into
# <prefix>/<libdir>/lv2. A step that writes into the bundle's resources after the copy (pictures
# drawn at build time) depends on the file named by the module's MIREL_RESOURCES_STAMP property,
# since each copy replaces the whole folder.

include_guard(GLOBAL)

# Compile options of each processor build; the name is the bundle folder the loader looks in.
set(MIREL_PROCESS_BUILD_GenericLinux64 "")
set(MIREL_PROCESS_BUILD_GenericMultiCoreLinuxIntel64 "")
set(MIREL_PROCESS_BUILD_AVXLinuxIntel64 "-mavx")

function(mirel_add_plugin name)
  cmake_parse_arguments(ARG "" "RESOURCES;PROCESS_RESOURCE_ID;LV2_DIR"
    "SOURCES;PROCESS_SOURCES;PROCESS_BUILDS;INCLUDE_DIRS;COMPILE_OPTIONS;BUNDLE_DEPENDS" ${ARGN})
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

  if(NOT TARGET MirelLib::mirel_lv2 OR NOT TARGET MirelLib::mirel-lv2-ttl)
    return()
  endif()
  if(NOT ARG_LV2_DIR)
    set(ARG_LV2_DIR ${CMAKE_CURRENT_BINARY_DIR}/lv2)
  endif()
  set(lv2 ${ARG_LV2_DIR}/${name}.lv2)

  # The plug-in's LV2 binary: the generic wrapper, whole, so that its entry point is kept. It
  # links the run-time as the module does and so finds it the same way.
  set(lv2_source ${CMAKE_CURRENT_BINARY_DIR}/${name}LV2Binary.cpp)
  file(CONFIGURE OUTPUT ${lv2_source}
    CONTENT "// ${name}'s LV2 binary is the generic LV2 wrapper of the run-time; nothing of its own.\n")
  add_library(${name}LV2Binary MODULE ${lv2_source})
  target_link_libraries(${name}LV2Binary PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,MirelLib::mirel_lv2>")
  set_target_properties(${name}LV2Binary PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET hidden)

  # The LV2 bundle, laid out again whenever the module, its resources, its audio code or a step
  # writing into the bundle changes. The TTL files come from the plug-in itself, started by
  # mirel-lv2-ttl in a home of the build's own, since a started plug-in keeps its settings in the
  # user's folders; in a sanitized build, leaks are the test suites' to find, not the build's.
  set(lv2_stamp ${CMAKE_CURRENT_BINARY_DIR}/${name}LV2.stamp)
  set(lv2_home ${CMAKE_CURRENT_BINARY_DIR}/${name}LV2Home)
  set(lv2_depends ${name} ${name}LV2Binary MirelLib::mirel-lv2-ttl ${resources_stamp}
    ${ARG_BUNDLE_DEPENDS})
  if(ARG_PROCESS_SOURCES)
    list(APPEND lv2_depends ${process_stamp})
  endif()
  add_custom_command(OUTPUT ${lv2_stamp}
    COMMAND ${CMAKE_COMMAND} -E remove_directory ${lv2}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${lv2}
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${bundle} ${lv2}/${name}.bundle
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${name}LV2Binary> ${lv2}/mirel_lv2.so
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0
            XDG_CONFIG_HOME=${lv2_home}/config XDG_DATA_HOME=${lv2_home}/data
            XDG_CACHE_HOME=${lv2_home}/cache
            $<TARGET_FILE:MirelLib::mirel-lv2-ttl>
            ${lv2}/${name}.bundle/Contents/Linux64/${name}.so ${lv2} ${name}
    COMMAND ${CMAKE_COMMAND} -E touch ${lv2_stamp}
    DEPENDS ${lv2_depends}
    COMMENT "Laying out the ${name} LV2 bundle")
  add_custom_target(${name}LV2 ALL DEPENDS ${lv2_stamp})
  set_target_properties(${name} PROPERTIES MIREL_LV2_BUNDLE_DIR ${lv2})

  get_target_property(imported MirelLib::MirelLib IMPORTED)
  if(imported)
    include(GNUInstallDirs)
    install(DIRECTORY ${lv2} DESTINATION ${CMAKE_INSTALL_LIBDIR}/lv2 USE_SOURCE_PERMISSIONS)
  endif()
endfunction()
