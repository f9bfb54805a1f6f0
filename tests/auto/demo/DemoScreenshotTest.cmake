# Runs the demo host the way the first README command does on a machine without a display:
# it must create its SQLite database with the appointment table, fill it with the sample
# calendar, and write a screenshot. A second run must neither duplicate the data nor depend on
# saved settings.
# Variables: DEMO (the executable), WORK_DIR (scratch).
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(database "${WORK_DIR}/neu/termine.sqlite")
set(documents "${WORK_DIR}/neu/Dokumente")
set(screenshot "${WORK_DIR}/demo.png")
set(screenshot2 "${WORK_DIR}/demo-again.png")
set(arguments --database "${database}" --date 2026-11-22 --view month --size 1280x800)

function(run_demo png)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
      HOME=${WORK_DIR} XDG_CONFIG_HOME=${WORK_DIR}/config XDG_DATA_HOME=${WORK_DIR}/data
      "${DEMO}" ${arguments} --screenshot "${png}" ${ARGN}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "demo exited with ${result}: ${output}${errors}")
  endif()
  set(demo_output "${output}" PARENT_SCOPE)
endfunction()

# One number from the sample table.
function(query variable sql)
  execute_process(COMMAND sqlite3 "${database}" "${sql}"
    OUTPUT_VARIABLE value RESULT_VARIABLE result ERROR_VARIABLE errors OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "sqlite3 failed on '${sql}': ${errors}")
  endif()
  set(${variable} "${value}" PARENT_SCOPE)
endfunction()

function(expect_at_least what sql minimum)
  query(count "${sql}")
  if(NOT count GREATER_EQUAL ${minimum})
    message(FATAL_ERROR "the sample calendar has ${count} ${what}, expected at least ${minimum}")
  endif()
  message("demo: ${count} ${what}")
endfunction()

# --- first run: creates and fills the database ---------------------------------------------------
run_demo("${screenshot}")
if(NOT demo_output MATCHES "created [0-9]+ appointments")
  message(FATAL_ERROR "the first run did not report the sample data: '${demo_output}'")
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

# The sample calendar: three months either side of --date, several kinds of appointments.
set(all_day "time(DateBegin) = '00:00:00' AND time(DateEnd) = '00:00:00'")
set(multi_day "date(DateEnd) > date(DateBegin)")
expect_at_least("appointments" "SELECT count(*) FROM Termine" 201)
expect_at_least("appointments from August 2026 to February 2027"
  "SELECT count(*) FROM Termine WHERE DateBegin >= '2026-08-01' AND DateBegin < '2027-03-01'" 201)
expect_at_least("appointments in November 2026 (the screenshot's month)"
  "SELECT count(*) FROM Termine WHERE DateBegin >= '2026-11-01' AND DateBegin < '2026-12-01'" 40)
expect_at_least("all-day appointments" "SELECT count(*) FROM Termine WHERE ${all_day}" 5)
expect_at_least("multi-day appointments" "SELECT count(*) FROM Termine WHERE ${multi_day}" 4)
expect_at_least("all-day appointments over several days"
  "SELECT count(*) FROM Termine WHERE ${all_day} AND ${multi_day}" 1)
expect_at_least("appointments with an icon" "SELECT count(*) FROM Termine WHERE ImageID >= 11" 20)
expect_at_least("appointments with a remark" "SELECT count(*) FROM Termine WHERE Remark <> ''" 20)
expect_at_least("appointments with a multi-line remark"
  "SELECT count(*) FROM Termine WHERE instr(Remark, char(10)) > 0" 5)
expect_at_least("appointments with a document" "SELECT count(*) FROM Termine WHERE Document <> ''" 5)
expect_at_least("working days with at least two appointments"
  "SELECT count(*) FROM (SELECT date(DateBegin) AS d FROM Termine
     WHERE strftime('%w', DateBegin) BETWEEN '1' AND '5' AND NOT (${all_day})
     GROUP BY d HAVING count(*) >= 2)" 60)
query(invalid "SELECT count(*) FROM Termine WHERE DateEnd < DateBegin OR Name = ''")
if(NOT invalid EQUAL 0)
  message(FATAL_ERROR "${invalid} sample appointments end before they begin or have no name")
endif()
# Every linked document is a file the demo wrote.
query(linked "SELECT DISTINCT Document FROM Termine WHERE Document <> ''")
string(REPLACE "\n" ";" linked "${linked}")
foreach(path IN LISTS linked)
  string(FIND "${path}" "${documents}/" position)
  if(NOT EXISTS "${path}" OR NOT position EQUAL 0)
    message(FATAL_ERROR "the linked document ${path} is not in ${documents}")
  endif()
endforeach()

# --- second run: no duplicates, and saved settings are ignored with --screenshot --------------------
query(rows "SELECT count(*) FROM Termine")
file(MAKE_DIRECTORY "${WORK_DIR}/config/kvKalivo")
file(WRITE "${WORK_DIR}/config/kvKalivo/kvkalivo-demo.conf"
  "[kvKalivo]\nView=1\nActualDate=2020-01-01\nWeeksVisible=false\nBackColor=255\n")
run_demo("${screenshot2}")
if(demo_output MATCHES "created")
  message(FATAL_ERROR "the second run filled the table again: '${demo_output}'")
endif()
query(rows_again "SELECT count(*) FROM Termine")
if(NOT rows_again EQUAL rows)
  message(FATAL_ERROR "the second run changed the table from ${rows} to ${rows_again} rows")
endif()
file(SHA256 "${screenshot}" first_hash)
file(SHA256 "${screenshot2}" second_hash)
if(NOT first_hash STREQUAL second_hash)
  message(FATAL_ERROR "--screenshot is not deterministic or read saved settings: "
    "${screenshot} and ${screenshot2} differ")
endif()

# --- wrong options are refused -------------------------------------------------------------------
foreach(bad "--view;jahr" "--date;22.11.2026")
  execute_process(COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
      HOME=${WORK_DIR} XDG_CONFIG_HOME=${WORK_DIR}/config XDG_DATA_HOME=${WORK_DIR}/data
      "${DEMO}" --database "${database}" --screenshot "${WORK_DIR}/bad.png" ${bad}
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
  if(result EQUAL 0 OR EXISTS "${WORK_DIR}/bad.png")
    message(FATAL_ERROR "demo accepted ${bad}")
  endif()
endforeach()

message("demo: created ${database} with ${rows} appointments and wrote ${screenshot}")
