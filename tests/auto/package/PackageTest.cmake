# Installs the built library into a scratch prefix and checks the installed files (each header
# compiles on its own); then builds
# the example host (examples/appointment-book) against that prefix alone, with
# find_package(kvKalivo), and runs it offscreen: it must create its SQLite table, write a
# screenshot, hand the control's failures to the host through the Error signal, and refuse a
# database it cannot open.
# Variables: BUILD_DIR (kvKalivo's build tree), SOURCE_DIR (kvKalivo's source tree),
# EXAMPLE_DIR (the example's sources), LIBDIR (CMAKE_INSTALL_LIBDIR), WORK_DIR (scratch).
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
set(example_build "${WORK_DIR}/example-build")
set(example "${example_build}/appointment-book")
set(run_dir "${WORK_DIR}/run")
file(MAKE_DIRECTORY "${run_dir}/runtime")
file(CHMOD "${run_dir}/runtime" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)

function(fail text)
  message(FATAL_ERROR "package test: ${text}")
endfunction()

find_program(SQLITE3 sqlite3)
if(NOT SQLITE3)
  fail("sqlite3 is missing (scripts/install-deps.sh installs it)")
endif()

# Runs a command that must succeed; its output goes to the log and to step_output.
# A host is built with the compiler and flags of this build (clang and the sanitizers with the
# preset asan), so that it links with the library as built.
set(host_build_settings -DCMAKE_CXX_COMPILER=${HOST_CXX_COMPILER} "-DCMAKE_CXX_FLAGS=${HOST_CXX_FLAGS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${HOST_LINKER_FLAGS}")

function(run_step name)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message("${output}")
  if(NOT result EQUAL 0)
    fail("${name} failed (${result})")
  endif()
  set(step_output "${output}" PARENT_SCOPE)
endfunction()

# --- the installed files --------------------------------------------------------------------------
function(expect_installed path)
  if(NOT EXISTS "${prefix}/${path}")
    fail("${path} is not installed in ${prefix}")
  endif()
endfunction()

function(check_installed_files)
  foreach(library libkvkalivo.so libkvkalivo.so.1)
    expect_installed("${LIBDIR}/${library}")
  endforeach()
  foreach(header kvKalivo.h kvkalivo_export.h kvError.h kvConnection.h kvAppointmentTable.h)
    expect_installed("include/kvKalivo/${header}")
  endforeach()
  file(GLOB entries LIST_DIRECTORIES true "${prefix}/include/kvKalivo/*")
  foreach(entry IN LISTS entries)
    if(IS_DIRECTORY "${entry}")
      fail("the headers are not flat in include/kvKalivo: ${entry}")
    endif()
  endforeach()
  foreach(file kvKalivoConfig.cmake kvKalivoConfigVersion.cmake kvKalivoTargets.cmake)
    expect_installed("${LIBDIR}/cmake/kvKalivo/${file}")
  endforeach()
endfunction()

# Every installed header compiles on its own in a host that links kvKalivo::kvKalivo: it
# includes what it needs, and nothing that is not installed.
function(check_headers_compile_alone)
  set(project_dir "${WORK_DIR}/header-check")
  file(GLOB headers RELATIVE "${prefix}/include/kvKalivo" "${prefix}/include/kvKalivo/*.h")
  set(sources "")
  foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER "${header}" name)
    file(WRITE "${project_dir}/${name}.cpp" "#include <kvKalivo/${header}>\n")
    list(APPEND sources "${name}.cpp")
  endforeach()
  list(JOIN sources " " source_list)
  file(WRITE "${project_dir}/CMakeLists.txt" "cmake_minimum_required(VERSION 3.25)
project(header_check LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 20)
find_package(kvKalivo REQUIRED)
add_library(header_check OBJECT ${source_list})
target_link_libraries(header_check PRIVATE kvKalivo::kvKalivo)
")
  run_step("configure the header check" ${CMAKE_COMMAND} -S "${project_dir}" -B "${project_dir}/build" ${host_build_settings}
    -G Ninja -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
  run_step("compile each installed header alone" ${CMAKE_COMMAND} --build "${project_dir}/build")
  list(LENGTH headers count)
  message("${count} installed headers compile on their own")
endfunction()

# --- the example, built against the prefix alone --------------------------------------------------
function(build_example)
  run_step("configure the example" ${CMAKE_COMMAND} -S "${EXAMPLE_DIR}" -B "${example_build}" -G Ninja ${host_build_settings}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
  run_step("build the example" ${CMAKE_COMMAND} --build "${example_build}")
  if(step_output MATCHES "warning:")
    fail("the example does not build cleanly with -Wall -Wextra")
  endif()
endfunction()

function(check_example_uses_prefix)
  file(STRINGS "${example_build}/CMakeCache.txt" package_dir REGEX "^kvKalivo_DIR:")
  string(REGEX REPLACE "^[^=]*=" "" package_dir "${package_dir}")
  cmake_path(IS_PREFIX prefix "${package_dir}" NORMALIZE from_prefix)
  if(NOT from_prefix)
    fail("find_package(kvKalivo) found ${package_dir}, not the installed package in ${prefix}")
  endif()
  file(READ "${example_build}/compile_commands.json" commands)
  string(FIND "${commands}" "${prefix}/include/kvKalivo" position)
  if(position EQUAL -1)
    fail("the example is not compiled with the installed headers of ${prefix}/include/kvKalivo")
  endif()
  foreach(tree "${SOURCE_DIR}/src" "${SOURCE_DIR}/include" "${BUILD_DIR}/src" "${BUILD_DIR}/include")
    string(FIND "${commands}" "${tree}" position)
    if(NOT position EQUAL -1)
      fail("the example's compile commands reach into kvKalivo's tree ${tree}")
    endif()
  endforeach()
endfunction()

# The dynamic loader resolves libkvkalivo of the example to the prefix's copy, not the build tree's.
function(check_example_loads_prefix)
  execute_process(COMMAND ldd "${example}" RESULT_VARIABLE result OUTPUT_VARIABLE dependencies
    ERROR_VARIABLE dependencies)
  if(NOT result EQUAL 0 OR NOT dependencies MATCHES "libkvkalivo\\.so\\.[0-9]+ => ([^ ]+)")
    fail("ldd does not find libkvkalivo for ${example}:\n${dependencies}")
  endif()
  file(REAL_PATH "${CMAKE_MATCH_1}" library)
  file(REAL_PATH "${prefix}" real_prefix)
  cmake_path(IS_PREFIX real_prefix "${library}" from_prefix)
  if(NOT from_prefix)
    fail("the example loads ${library}, not the installed library in ${prefix}")
  endif()
  message("the example loads ${library}")
endfunction()

# --- running the example --------------------------------------------------------------------------
# Runs the example offscreen with a scratch home; sets run_result, run_output, run_errors.
function(run_example)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
      HOME=${run_dir} XDG_DATA_HOME=${run_dir}/data XDG_CONFIG_HOME=${run_dir}/config
      XDG_RUNTIME_DIR=${run_dir}/runtime
      "${example}" ${ARGN}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  message("appointment-book ${ARGN}: exit ${result}\n${output}${errors}")
  set(run_result "${result}" PARENT_SCOPE)
  set(run_output "${output}" PARENT_SCOPE)
  set(run_errors "${errors}" PARENT_SCOPE)
endfunction()

# Runs the example with --screenshot; it must succeed without any error of the control.
function(take_screenshot png)
  run_example(${ARGN} --screenshot "${png}")
  if(NOT run_result EQUAL 0)
    fail("the example exited with ${run_result}")
  endif()
  if(run_errors MATCHES "kvKalivo-Fehler")
    fail("the control reported an error in the example: ${run_errors}")
  endif()
  check_screenshot("${png}")
endfunction()

# A PNG of the window's size (AppointmentBook.ui: 1024x720) with more than a blank window in it.
function(check_screenshot png)
  if(NOT EXISTS "${png}")
    fail("the example wrote no screenshot ${png}")
  endif()
  file(READ "${png}" header LIMIT 24 HEX)
  string(SUBSTRING "${header}" 0 16 signature)
  string(SUBSTRING "${header}" 32 16 size)
  if(NOT signature STREQUAL "89504e470d0a1a0a")
    fail("${png} is not a PNG file")
  endif()
  if(NOT size STREQUAL "00000400000002d0")
    fail("${png} is not 1024x720 pixels (IHDR ${size})")
  endif()
  file(SIZE "${png}" bytes)
  if(bytes LESS 15000)
    fail("${png} has only ${bytes} bytes: the window looks empty")
  endif()
  message("screenshot: ${png}, ${bytes} bytes")
endfunction()

function(sqlite variable database sql)
  execute_process(COMMAND "${SQLITE3}" "${database}" "${sql}" RESULT_VARIABLE result
    OUTPUT_VARIABLE value ERROR_VARIABLE errors OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    fail("sqlite3 ${database} '${sql}' failed: ${errors}")
  endif()
  set(${variable} "${value}" PARENT_SCOPE)
endfunction()

# The table Termine with the control's columns and the one welcome appointment.
function(check_appointment_table database)
  if(NOT EXISTS "${database}")
    fail("the example did not create ${database}")
  endif()
  sqlite(schema "${database}" ".schema Termine")
  foreach(column DateID DateBegin DateEnd Name Remark Document ImageID)
    if(NOT schema MATCHES "${column}")
      fail("the table Termine in ${database} has no column ${column}: '${schema}'")
    endif()
  endforeach()
  sqlite(rows "${database}" "SELECT count(*) FROM Termine")
  if(NOT rows EQUAL 1)
    fail("the table Termine in ${database} has ${rows} rows, expected the one welcome appointment")
  endif()
endfunction()

function(check_example_runs)
  set(database "${run_dir}/termine neu.sqlite")
  take_screenshot("${run_dir}/first.png" "${database}")
  check_appointment_table("${database}")
  take_screenshot("${run_dir}/again.png" "${database}") # an existing table is kept as it is
  check_appointment_table("${database}")

  take_screenshot("${run_dir}/default.png") # no argument: the file in the application's data folder
  check_appointment_table("${run_dir}/data/kvKalivo/appointment-book/termine.sqlite")

  # A table without the control's columns: the control fails, and the host hears of it.
  set(broken "${run_dir}/broken.sqlite")
  sqlite(ignored "${broken}" "CREATE TABLE Termine (Thema TEXT)")
  run_example("${broken}" --screenshot "${run_dir}/broken.png")
  if(NOT run_result EQUAL 0 OR NOT run_errors MATCHES "appointment-book: kvKalivo-Fehler [0-9]+")
    fail("the example did not report the control's failure on ${broken} through the Error signal")
  endif()

  set(unreachable "${run_dir}/no such folder/termine.sqlite")
  run_example("${unreachable}" --screenshot "${run_dir}/unreachable.png")
  if(run_result EQUAL 0 OR NOT run_errors MATCHES "cannot open the database"
     OR EXISTS "${run_dir}/unreachable.png")
    fail("the example did not refuse ${unreachable} with a message and a non-zero exit")
  endif()
endfunction()

run_step("install" ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
check_installed_files()
check_headers_compile_alone()
build_example()
check_example_uses_prefix()
check_example_loads_prefix()
check_example_runs()
message("package test: installed into ${prefix}; the example ran, see ${run_dir}/first.png")
