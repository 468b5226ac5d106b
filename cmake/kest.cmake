# Shared build rules: language level, warnings as errors, sanitizers, and the list-like functions
# every folder uses: kest_library(), kest_plugin() and kest_test().

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(KEST_CCACHE ccache)
if(KEST_CCACHE)
  # One cache serves every clone and build directory, precompiled headers included.
  set(kest_launcher "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros "${KEST_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER ${kest_launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${kest_launcher})
endif()

find_package(Threads REQUIRED)

add_library(kest_options INTERFACE)
target_include_directories(kest_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(kest_options INTERFACE
  -Wall -Wextra -Wpedantic -Wformat=2
  $<$<NOT:$<BOOL:${KEST_UNITY}>>:-Wshadow>  # in a group, a constant of one source would shadow names of the next
  -Werror -Werror=format-security
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
target_link_libraries(kest_options INTERFACE Threads::Threads)
if(KEST_SANITIZE)
  target_compile_options(kest_options INTERFACE
    -fsanitize=${KEST_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kest_options INTERFACE -fsanitize=${KEST_SANITIZE})
  # The checks that are put in confuse the compiler's own analysis, the standard library's code included.
  target_compile_options(kest_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overread -Wno-stringop-overflow>)
endif()

# With KEST_UNITY the sources of a library are compiled in groups, which makes a first build cheap; without it
# each alone, which makes the next builds cheap. In a group, names of unnamed namespaces must differ. <windows.h>
# defines macros that others use as names, so what includes it stays alone.
function(kest_compile_together target)
  if(NOT KEST_UNITY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "_windows\\.cc$")
  set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# The standard headers that most sources of the libraries include, compiled once. Sources include what they use all
# the same: the grouped builds and clang-tidy compile them without it.
if(NOT KEST_UNITY)
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/kest_library_pch.cc" CONTENT "")
  add_library(kest_library_pch OBJECT "${PROJECT_BINARY_DIR}/kest_library_pch.cc")
  target_link_libraries(kest_library_pch PRIVATE kest_options)
  target_precompile_headers(kest_library_pch PRIVATE
    <algorithm> <functional> <future> <map> <memory> <optional> <string> <unordered_map> <unordered_set> <vector>)
endif()

# kest_library(name DEPENDS a b SOURCES x.cc y.cc LIBRARIES ext): the static library kest_<name>.
function(kest_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;SOURCES;LIBRARIES" ${ARGN})
  add_library(kest_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(kest_${name} PUBLIC kest_options)
  foreach(depend IN LISTS ARG_DEPENDS)
    target_link_libraries(kest_${name} PUBLIC kest_${depend})
  endforeach()
  target_link_libraries(kest_${name} PRIVATE ${ARG_LIBRARIES})
  kest_compile_together(kest_${name})
  if(TARGET kest_library_pch AND NOT KEST_OWN_PRECOMPILED_HEADERS)
    target_precompile_headers(kest_${name} REUSE_FROM kest_library_pch)
  endif()
endfunction()

# kest_plugin(name EXPORT load_x DEPENDS a b SOURCES load_x.cc): the library that a host loads, <name>.so or
# .dll, with one exported symbol.
function(kest_plugin name)
  cmake_parse_arguments(ARG "" "EXPORT" "DEPENDS;SOURCES" ${ARGN})
  add_library(${name} MODULE ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES PREFIX "")
  foreach(depend IN LISTS ARG_DEPENDS)
    target_link_libraries(${name} PRIVATE kest_${depend})
  endforeach()
  set(exports "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  if(WIN32)
    file(CONFIGURE OUTPUT "${exports}.def" CONTENT "LIBRARY ${name}\nEXPORTS\n  ${ARG_EXPORT}\n")
    target_sources(${name} PRIVATE "${exports}.def")
  else()
    file(CONFIGURE OUTPUT "${exports}.map" CONTENT "{\n  global: ${ARG_EXPORT};\n  local: *;\n};\n")
    target_link_options(${name} PRIVATE "LINKER:--version-script=${exports}.map")
    if(NOT KEST_SANITIZE)  # a sanitizer's own symbols come from the program that loads the library
      target_link_options(${name} PRIVATE "LINKER:-z,defs")
    endif()
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${exports}.map")
  endif()
endfunction()

# kest_embed_text(source TEXT file HEADER x.h NAME kX): puts the file, named from the root or one that the build makes,
# into the program as the std::string_view kX that the header declares. `source` becomes the name of the C++ file to
# compile.
function(kest_embed_text source)
  cmake_parse_arguments(ARG "" "TEXT;HEADER;NAME" "" ${ARGN})
  cmake_path(ABSOLUTE_PATH ARG_TEXT BASE_DIRECTORY "${PROJECT_SOURCE_DIR}")
  cmake_path(GET ARG_TEXT FILENAME file)
  string(REPLACE "." "_" stem "${file}")
  set(output "${CMAKE_CURRENT_BINARY_DIR}/${stem}_text.cc")
  set(maker "${PROJECT_SOURCE_DIR}/cmake/embed_text.cmake")
  add_custom_command(
    OUTPUT "${output}"
    COMMAND "${CMAKE_COMMAND}" "-DINPUT=${ARG_TEXT}" "-DOUTPUT=${output}"
            "-DHEADER=${ARG_HEADER}" -DNAMESPACE=Kest::Host -DNAME=${ARG_NAME} -P "${maker}"
    DEPENDS "${ARG_TEXT}" "${maker}"
    VERBATIM)
  set(${source} "${output}" PARENT_SCOPE)
endfunction()

# kest_test(name DEPENDS a b SOURCES x_test.cc LIBRARIES ext): one test program per folder; ctest sees it
# as <name>. Discovery is left to GoogleTest at run time, so linking stays the only cost of a build. What it prints is
# short, so that a failure is not lost in what passes.
function(kest_test name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES})
  foreach(depend IN LISTS ARG_DEPENDS)
    target_link_libraries(${name}_test PRIVATE kest_${depend})
  endforeach()
  target_link_libraries(${name}_test PRIVATE kest_test_main ${ARG_LIBRARIES} GTest::gmock GTest::gtest)
  if(TARGET kest_test_pch)
    target_precompile_headers(${name}_test REUSE_FROM kest_test_pch)
  endif()
  add_test(NAME ${name} COMMAND ${name}_test --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
