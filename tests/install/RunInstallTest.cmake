# Run by CTest as a script (see CMakeLists.txt). Every step that fails stops the test with its
# output; the work folder goes away either way, as it holds a whole installed prefix.
set(prefix ${WORK_DIR}/prefix)
set(project ${WORK_DIR}/project)
set(build ${WORK_DIR}/build)
set(home ${WORK_DIR}/home)

function(fail message)
  file(REMOVE_RECURSE ${WORK_DIR})
  message(FATAL_ERROR "${message}")
endfunction()

# run(<what> <output variable> <command>...): the command must succeed.
function(run what out)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  if(NOT code EQUAL 0)
    fail("${what} failed (${code}):\n${output}")
  endif()
  set(${out} "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${project} ${home}/config ${home}/data ${home}/cache)

run("installing the build tree" out ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# The example's folder is copied, not referenced, so that the source tree's headers, which its
# include paths would otherwise reach, cannot stand in for the installed ones.
file(COPY ${SOURCE_DIR}/examples/GainFilter DESTINATION ${project}/examples)
file(COPY ${PROJECT_TEMPLATE} DESTINATION ${project})
run("configuring the out-of-tree plug-in" out ${CMAKE_COMMAND} -S ${project} -B ${build} -G Ninja
  -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
  -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_LAUNCHER} -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
  "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_MODULE_LINKER_FLAGS=${MODULE_LINKER_FLAGS}"
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON)
file(STRINGS ${build}/CMakeCache.txt found REGEX "^MirelLib_DIR:")
if(NOT found STREQUAL "MirelLib_DIR:PATH=${prefix}/${LIBDIR}/cmake/MirelLib")
  fail("the package was found elsewhere than in the prefix: ${found}")
endif()
run("building the out-of-tree plug-in" out ${CMAKE_COMMAND} --build ${build})

set(bundle ${build}/GainFilter.bundle/Contents)
foreach(file Linux64/GainFilter.so Resources/GenericLinux64/1000.so
             Resources/AVXLinuxIntel64/1000.so Resources/ParamXML/1000.xml)
  if(NOT EXISTS ${bundle}/${file})
    fail("the bundle lacks ${file}")
  endif()
endforeach()

# The LV2 bundle of the same call: the wrapper linked into the plug-in's own LV2 binary, and the
# description written from the plug-in; an LV2 host finds the plug-in in it by its URI.
set(lv2 ${build}/lv2/GainFilter.lv2)
foreach(file mirel_lv2.so manifest.ttl GainFilter.ttl presets.ttl
             GainFilter.bundle/Contents/Linux64/GainFilter.so)
  if(NOT EXISTS ${lv2}/${file})
    fail("the LV2 bundle lacks ${file}")
  endif()
endforeach()
if(LV2INFO)
  run("describing the LV2 plug-in" out ${CMAKE_COMMAND} -E env LV2_PATH=${build}/lv2
    HOME=${home} XDG_CONFIG_HOME=${home}/config XDG_DATA_HOME=${home}/data
    XDG_CACHE_HOME=${home}/cache ${LV2INFO} urn:mirel:GainFilter)
  if(NOT out MATCHES "Name: *Cutoff" OR NOT out MATCHES "Warm")
    fail("lv2info does not show the plug-in's ports and presets:\n${out}")
  endif()
endif()
run("installing the plug-in" out ${CMAKE_COMMAND} --install ${build} --prefix ${WORK_DIR}/plugins)
if(NOT EXISTS ${WORK_DIR}/plugins/${LIBDIR}/lv2/GainFilter.lv2/mirel_lv2.so)
  fail("the plug-in's LV2 bundle was not installed:\n${out}")
endif()

# The installed host, finding the installed run-time by its own run path, loads the module and
# walks its life cycle; it answers 1 as soon as a step fails.
run("loading the plug-in with the installed host" out ${CMAKE_COMMAND} -E env
  XDG_CONFIG_HOME=${home}/config XDG_DATA_HOME=${home}/data XDG_CACHE_HOME=${home}/cache
  ${prefix}/bin/mirel-host demo ${bundle}/Linux64/GainFilter.so)
if(NOT out MATCHES "start \\(steps 5-10\\) *-> 0 ")
  fail("the plug-in did not start:\n${out}")
endif()

run("asking pkg-config" out ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig
  ${PKG_CONFIG} --cflags --libs mirellib)
string(REGEX MATCH "-I([^ ]*/MirelLib)" _ "${out}")
set(includedir ${CMAKE_MATCH_1})
string(REGEX MATCH "-L([^ ]*)" _ "${out}")
set(libdir ${CMAKE_MATCH_1})
if(NOT EXISTS "${includedir}/Code/Algorithm/cALGORITHM.h" OR NOT EXISTS "${libdir}/libMirelLib.so"
   OR NOT out MATCHES "-lMirelLib")
  fail("pkg-config points away from the prefix:\n${out}")
endif()

file(REMOVE_RECURSE ${WORK_DIR})
