# tst_designerInstall: cmake --install into PREFIX, then the installed Designer plugin must sit in
# PREFIX/PLUGIN_DIR and its dynamic loader must find libkvkalivo in PREFIX/LIBDIR by itself.
# Arguments: BUILD_DIR, PREFIX, PLUGIN_DIR, PLUGIN_NAME, LIBDIR.
file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "cmake --install failed:\n${output}")
endif()

set(plugin "${PREFIX}/${PLUGIN_DIR}/${PLUGIN_NAME}")
if(NOT EXISTS "${plugin}")
  message(FATAL_ERROR "the Designer plugin is not installed at ${plugin}")
endif()
message(STATUS "installed plugin: ${plugin}")

# ldd resolves the plugin's dependencies as the dynamic loader would, from RUNPATH alone: the
# build tree's library is on no search path, so only a working $ORIGIN RUNPATH finds it.
execute_process(COMMAND ldd "${plugin}" RESULT_VARIABLE result OUTPUT_VARIABLE dependencies
  ERROR_VARIABLE dependencies)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "ldd failed on ${plugin}:\n${dependencies}")
endif()
if(dependencies MATCHES "not found")
  message(FATAL_ERROR "the installed plugin misses a library:\n${dependencies}")
endif()
string(REGEX MATCH "libkvkalivo\\.so\\.[0-9]+ => ([^ ]+)" found "${dependencies}")
if(NOT found)
  message(FATAL_ERROR "the installed plugin does not find libkvkalivo:\n${dependencies}")
endif()
file(REAL_PATH "${CMAKE_MATCH_1}" resolved)
file(REAL_PATH "${PREFIX}/${LIBDIR}" expected_dir)
get_filename_component(resolved_dir "${resolved}" DIRECTORY)
if(NOT resolved_dir STREQUAL expected_dir)
  message(FATAL_ERROR "the installed plugin loads ${resolved}, not the library in ${expected_dir}")
endif()
message(STATUS "it loads ${resolved}")
