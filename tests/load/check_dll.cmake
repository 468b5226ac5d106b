# Fails unless the DLL LIBRARY is for 32-bit x86, exports load_tav_loot alone and undecorated, and imports
# from nothing but libraries that are part of every Windows.
# cmake -DOBJDUMP=... -DLIBRARY=... -P check_dll.cmake
execute_process(COMMAND "${OBJDUMP}" -p "${LIBRARY}" OUTPUT_VARIABLE listing RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}")
endif()
if(NOT listing MATCHES "file format pei-i386")
  message(FATAL_ERROR "No library for 32-bit x86: ${LIBRARY}")
endif()

string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table\n(([ \t]+\\[ *[0-9]+\\] [^\n]*\n)*)" table "${listing}")
string(REGEX MATCHALL "\\][^\n]*" rows "${CMAKE_MATCH_1}")
if(NOT rows STREQUAL "] load_tav_loot")
  message(FATAL_ERROR "Expected load_tav_loot alone, found: ${rows}")
endif()

string(REGEX MATCHALL "DLL Name: [^\r\n]+" imports "${listing}")
set(foreign "${imports}")
list(FILTER foreign EXCLUDE REGEX "^DLL Name: (KERNEL32|msvcrt|RPCRT4)\\.dll$")
if(imports STREQUAL "" OR foreign)
  message(FATAL_ERROR "Expected system libraries alone, found: ${imports}")
endif()
