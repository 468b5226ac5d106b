# Compiles misuse.cc, which must fail with each message its comments name.
# Run with: cmake -DCOMPILER=... -DFLAGS=... -DROOT=... -P check_misuse.cmake
set(source "${CMAKE_CURRENT_LIST_DIR}/misuse.cc")
execute_process(COMMAND "${COMPILER}" -std=c++20 -fsyntax-only ${FLAGS} "-I${ROOT}" "${source}"
  RESULT_VARIABLE result OUTPUT_VARIABLE ignored ERROR_VARIABLE messages)
if(result EQUAL 0)
  message(FATAL_ERROR "${source} compiles")
endif()
# The compiler repeats the lines with their comments: those prove nothing.
string(REGEX REPLACE "// error: [^\n]*" "" messages "${messages}")
file(STRINGS "${source}" lines REGEX "// error: ")
foreach(line IN LISTS lines)
  string(REGEX REPLACE ".*// error: " "" expected "${line}")
  if(NOT messages MATCHES "${expected}")
    message(SEND_ERROR "no message of the compiler matches: ${expected}")
  endif()
endforeach()
