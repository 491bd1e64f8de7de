# Compares the functions that the library exports with the list beside this file, so that the binary interface
# changes only on purpose. With -D UPDATE=ON it writes the list instead.
execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${LIBRARY}
  OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
# Semicolons would split the list; no name of ours holds one. Weak symbols (W) are inline functions and templates,
# of which each compiler emits others.
string(REPLACE "\n" ";" lines "${table}")
set(names "")
foreach(line IN LISTS lines)
  if(line MATCHES "^[0-9a-f]+ T (.*)$")
    list(APPEND names "${CMAKE_MATCH_1}")
  endif()
endforeach()
list(SORT names)
list(REMOVE_DUPLICATES names)
list(JOIN names "\n" text)
set(text "${text}\n")

if(UPDATE)
  file(WRITE ${EXPECTED} "${text}")
  return()
endif()
file(READ ${EXPECTED} expected)
if(NOT text STREQUAL expected)
  file(WRITE ${ACTUAL} "${text}")
  execute_process(COMMAND diff -u ${EXPECTED} ${ACTUAL})
  message(FATAL_ERROR "the exported functions have changed; if that is meant, build the target update_exported_symbols")
endif()
