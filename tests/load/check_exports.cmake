# Fails unless LIBRARY defines exactly one dynamic symbol, load_tav_loot.
# cmake -DNM=... -DLIBRARY=... -P check_exports.cmake
execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE listing RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".* " "" name "${line}")
  list(APPEND names "${name}")
endforeach()
if(NOT names STREQUAL "load_tav_loot")
  message(FATAL_ERROR "Expected load_tav_loot alone, found: ${names}")
endif()
