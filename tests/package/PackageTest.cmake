# Installs the built library into a scratch prefix, builds the host project in host/ against
# that installed package with find_package(kvKalivo), and runs it.
# Variables: BUILD_DIR (kvKalivo's build tree), WORK_DIR (scratch), HOST_DIR (host sources).
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run_step name)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  message("${output}")
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "package test: ${name} failed (${result})")
  endif()
endfunction()

run_step("install" ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
run_step("configure host" ${CMAKE_COMMAND} -S "${HOST_DIR}" -B "${WORK_DIR}/host-build"
  -G Ninja -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run_step("build host" ${CMAKE_COMMAND} --build "${WORK_DIR}/host-build")
run_step("run host" ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
  "${WORK_DIR}/host-build/package-host")
