# Runs gdb in batch mode on the views program and compares every printed
# value ("$N = ...") with the expected text, line by line.
#
#   -DGDB=<gdb or empty> -DPROGRAM=<exe> -DCOMMANDS=<views.gdb> -DEXPECTED=<file>
#   [-DPREFIX=<dir> -DBUILD_DIR=<dir>]  installs the build into PREFIX first and
#                                       runs the program on the installed libraries,
#                                       so the printers come from the installed
#                                       auto-load script.
#
# Prints "gdb-test-skipped" (the test's skip mark) when gdb is missing or may
# not trace a process here.

if(NOT GDB OR NOT EXISTS "${GDB}")
  message("gdb-test-skipped: gdb is not installed")
  return()
endif()

set(environment)
if(PREFIX)
  file(REMOVE_RECURSE "${PREFIX}")
  execute_process(COMMAND ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${PREFIX}"
    OUTPUT_QUIET RESULT_VARIABLE installed)
  if(NOT installed EQUAL 0)
    message(FATAL_ERROR "cmake --install into ${PREFIX} failed")
  endif()
  file(GLOB libdirs LIST_DIRECTORIES true "${PREFIX}/lib*")
  string(REPLACE ";" ":" libpath "${libdirs}")
  set(environment -iex "set environment LD_LIBRARY_PATH=${libpath}")
endif()

execute_process(
  COMMAND "${GDB}" -batch -nx
    -iex "set auto-load safe-path /"
    -iex "set debuginfod enabled off"
    ${environment}
    -ex "set width 0" -ex "set height 0"
    -x "${COMMANDS}" "${PROGRAM}"
  OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)

if(errors MATCHES "ptrace: Operation not permitted|Could not trace the inferior")
  message("gdb-test-skipped: gdb may not trace a process here\n${errors}")
  return()
endif()
if(errors MATCHES "Python Exception|Traceback")
  message(FATAL_ERROR "a printer failed:\n${errors}\n${output}")
endif()

# The views must come from the installed library's own auto-load script.
if(PREFIX AND NOT output MATCHES "Yes +${PREFIX}/lib[^\n]*/libzorvancow[^\n]*-gdb\\.py")
  message(FATAL_ERROR "gdb did not auto-load the installed script under ${PREFIX}:\n${output}")
endif()

# The printed values ("$N = ..." lines) without their history numbers:
# every other line is emptied, then the empty lines and the numbers go.
string(REGEX REPLACE "\n([^$\n][^\n]*)?" "\n" printed "\n${output}")
string(REGEX REPLACE "\n+(\\$[0-9]+ = )?" "\n" printed "${printed}")
string(SUBSTRING "${printed}" 1 -1 printed)

file(READ "${EXPECTED}" expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "gdb printed:\n${printed}\nexpected:\n${expected}\n"
    "full output:\n${output}\n${errors}")
endif()
message("${printed}")
