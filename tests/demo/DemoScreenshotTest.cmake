# Runs the demo host the way the first README command does on a machine without a display:
# it must create its SQLite database with the appointment table and write a screenshot.
# Variables: DEMO (the executable), WORK_DIR (scratch).
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(database "${WORK_DIR}/neu/termine.sqlite")
set(screenshot "${WORK_DIR}/demo.png")

execute_process(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
    HOME=${WORK_DIR} XDG_CONFIG_HOME=${WORK_DIR}/config
    "${DEMO}" --database "${database}" --screenshot "${screenshot}" --size 640x480
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "demo exited with ${result}")
endif()
if(NOT EXISTS "${database}")
  message(FATAL_ERROR "demo did not create ${database}")
endif()
execute_process(COMMAND sqlite3 "${database}" ".schema Termine" OUTPUT_VARIABLE schema RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT schema MATCHES "DateBegin" OR NOT schema MATCHES "ImageID")
  message(FATAL_ERROR "the demo's database has no appointment table: '${schema}'")
endif()
file(READ "${screenshot}" header LIMIT 8 HEX)
if(NOT header STREQUAL "89504e470d0a1a0a")
  message(FATAL_ERROR "${screenshot} is not a PNG file")
endif()
message("demo: created ${database} and wrote ${screenshot}")
