# Fails unless LIBRARY defines exactly one dynamic symbol, load_tav_loot, and does nothing that a thread
# or a loader may wait for: a thread_local with a destructor keeps the library in the process or hangs a
# thread that ends after it; threads, waits and further libraries are the host's.
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

execute_process(COMMAND "${NM}" -D --undefined-only "${LIBRARY}"
  OUTPUT_VARIABLE needed RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "(__cxa_thread_atexit|pthread_create|pthread_join|pthread_cond_|_ZNSt6thread|dlopen)[^\n]*"
  forbidden "${needed}")
if(forbidden)
  message(FATAL_ERROR "Not to be used by the library: ${forbidden}")
endif()
