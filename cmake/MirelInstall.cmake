# What `cmake --install` puts under the prefix: the shared run-time with its headers, the CMake
# package (find_package(MirelLib) gives MirelLib::MirelLib and mirel_add_plugin), a pkg-config
# file, the command-line host, and the LV2 wrapper with its TTL writer, from which
# mirel_add_plugin makes a plug-in's LV2 bundle.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The layers' folders keep their names under one folder of their own, so the include paths of
# the code ("core/...", "Code/Algorithm/...") stay valid without claiming names like core/ in
# the prefix's include folder.
set(MIREL_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/MirelLib)
set(MIREL_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/MirelLib)

install(TARGETS MirelLib EXPORT MirelLibTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${MIREL_INSTALL_INCLUDEDIR})

# Every header of the layers is public: plug-ins derive from the algorithm and GUI classes, whose
# headers include those of the layers below.
foreach(dir IN LISTS MIREL_LAYER_DIRS)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    ${PROJECT_SOURCE_DIR}/${dir}/*.h ${PROJECT_SOURCE_DIR}/${dir}/*.hpp)
  foreach(header IN LISTS headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${MIREL_INSTALL_INCLUDEDIR}/${folder})
  endforeach()
endforeach()

# The host loads any plug-in module given on its command line; it finds the run-time next to it.
set_target_properties(mirel-host PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS mirel-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

if(TARGET mirel_lv2)
  set_target_properties(mirel-lv2-ttl PROPERTIES
    INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS mirel_lv2 mirel-lv2-ttl EXPORT MirelLibTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT MirelLibTargets NAMESPACE MirelLib:: DESTINATION ${MIREL_INSTALL_CMAKEDIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/MirelLibConfig.cmake.in
  ${PROJECT_BINARY_DIR}/MirelLibConfig.cmake INSTALL_DESTINATION ${MIREL_INSTALL_CMAKEDIR})
# The library's soname carries its whole version, yet code written for one minor release builds
# against the next.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MirelLibConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MirelLibConfig.cmake
  ${PROJECT_BINARY_DIR}/MirelLibConfigVersion.cmake ${CMAKE_CURRENT_LIST_DIR}/MirelPlugin.cmake
  DESTINATION ${MIREL_INSTALL_CMAKEDIR})

# The .pc file finds the prefix from its own place, so a tree installed with --prefix elsewhere
# than configured still answers right.
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(MIREL_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(MIREL_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
else()
  file(RELATIVE_PATH MIREL_PC_UP /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
  string(REGEX REPLACE "/$" "" MIREL_PC_UP ${MIREL_PC_UP})
  set(MIREL_PC_PREFIX "\${pcfiledir}/${MIREL_PC_UP}")
  set(MIREL_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
  set(MIREL_PC_INCLUDEDIR ${MIREL_INSTALL_INCLUDEDIR})
else()
  set(MIREL_PC_INCLUDEDIR "\${prefix}/${MIREL_INSTALL_INCLUDEDIR}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/mirellib.pc.in ${PROJECT_BINARY_DIR}/mirellib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mirellib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
