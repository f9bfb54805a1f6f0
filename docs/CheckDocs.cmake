# tst_docs: fails when a public item of the installed headers is undocumented.
#
#   cmake -DDOXYGEN=doxygen -DDOXYFILE=Doxyfile-check -DWORK_DIR=dir -DHEADERS=h1;h2;...
#         -P CheckDocs.cmake
#
# Three checks, each listed with file and line (or name) when it fails:
#  1. Doxygen (WARN_IF_UNDOCUMENTED, WARN_IF_DOC_ERROR, WARN_AS_ERROR=FAIL_ON_WARNINGS)
#     reports no warning: every class, struct, property, function, signal, enum, typedef
#     and constant that a host sees is documented, and no comment has a markup error.
#  2. Every enum value is documented; Doxygen itself does not warn about those, so its XML
#     output is searched for values with neither a brief nor a detailed description.
#  3. Every header has a \file comment; without one Doxygen silently leaves out the
#     header's free functions, so check 1 could not see an undocumented one.

cmake_minimum_required(VERSION 3.25)

foreach(variable DOXYGEN DOXYFILE WORK_DIR HEADERS)
  if(NOT DEFINED ${variable} OR "${${variable}}" STREQUAL "")
    message(FATAL_ERROR "CheckDocs.cmake: ${variable} is not set")
  endif()
endforeach()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

execute_process(COMMAND ${DOXYGEN} ${DOXYFILE}
  WORKING_DIRECTORY ${WORK_DIR}
  RESULT_VARIABLE doxygen_result
  OUTPUT_VARIABLE doxygen_output
  ERROR_VARIABLE doxygen_output)

set(problems 0)

# 1. Doxygen's warnings (WARN_LOGFILE); a message may run over several lines.
set(warning_count 0)
if(EXISTS ${WORK_DIR}/warnings.log)
  file(READ ${WORK_DIR}/warnings.log warnings)
  string(REGEX MATCHALL "(^|\n)[^\n]*(warning|error): " warning_starts "${warnings}")
  list(LENGTH warning_starts warning_count)
  if(NOT warnings STREQUAL "")
    message("${warnings}")
  endif()
endif()
message("tst_docs: ${warning_count} Doxygen warning(s)")
math(EXPR problems "${problems} + ${warning_count}")
if(NOT doxygen_result EQUAL 0)
  message("${doxygen_output}")
  message("tst_docs: doxygen exited with ${doxygen_result}")
  if(warning_count EQUAL 0)
    math(EXPR problems "${problems} + 1")
  endif()
endif()

# 2. Enum values without any description, from the XML output.
set(undocumented_values "")
file(GLOB xml_files ${WORK_DIR}/xml/*.xml)
if(NOT xml_files)
  message("tst_docs: Doxygen wrote no XML into ${WORK_DIR}/xml")
  math(EXPR problems "${problems} + 1")
endif()
set(blank "[ \t\r\n]*")
foreach(xml_file IN LISTS xml_files)
  file(READ ${xml_file} xml)
  if(NOT xml MATCHES "<compounddef [^>]*kind=\"(class|struct|namespace|file)\"")
    continue()
  endif()
  string(REGEX MATCH "<compoundname>([^<]*)</compoundname>" _ "${xml}")
  set(scope "${CMAKE_MATCH_1}")
  # The XML lists private members too: cut out the private sections.
  while(TRUE)
    string(FIND "${xml}" "<sectiondef kind=\"private-" section_start)
    if(section_start EQUAL -1)
      break()
    endif()
    string(SUBSTRING "${xml}" ${section_start} -1 rest)
    string(FIND "${rest}" "</sectiondef>" section_length)
    if(section_length EQUAL -1)
      break()
    endif()
    string(SUBSTRING "${xml}" 0 ${section_start} head)
    math(EXPR tail_start "${section_length} + 13")
    string(SUBSTRING "${rest}" ${tail_start} -1 tail)
    set(xml "${head}${tail}")
  endwhile()
  string(REGEX MATCHALL
    "<enumvalue id=\"[^\"]*\"[^>]*>${blank}<name>[^<]*</name>${blank}(<initializer>[^<]*</initializer>${blank})?<briefdescription>${blank}</briefdescription>${blank}<detaileddescription>${blank}</detaileddescription>"
    empty_values "${xml}")
  foreach(value IN LISTS empty_values)
    string(REGEX MATCH "<name>([^<]*)</name>" _ "${value}")
    list(APPEND undocumented_values "${scope}::${CMAKE_MATCH_1}")
  endforeach()
endforeach()
list(REMOVE_DUPLICATES undocumented_values)
list(LENGTH undocumented_values undocumented_value_count)
foreach(value IN LISTS undocumented_values)
  message("undocumented enum value: ${value}")
endforeach()
message("tst_docs: ${undocumented_value_count} undocumented enum value(s)")
math(EXPR problems "${problems} + ${undocumented_value_count}")

# 3. A \file comment in every public header.
set(headers_without_file 0)
foreach(header IN LISTS HEADERS)
  file(READ ${header} text)
  if(NOT text MATCHES "[\\\\@]file[ \t\r\n]")
    message("${header}:1: no \\file comment (Doxygen would skip its free functions)")
    math(EXPR headers_without_file "${headers_without_file} + 1")
  endif()
endforeach()
list(LENGTH HEADERS header_count)
message("tst_docs: ${header_count} public header(s), ${headers_without_file} without \\file")
math(EXPR problems "${problems} + ${headers_without_file}")

if(problems GREATER 0)
  message(FATAL_ERROR "tst_docs: the public API documentation is incomplete (${problems} problem(s))")
endif()
message("tst_docs: every public item is documented")
