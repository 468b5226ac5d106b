# Cross-builds for 32-bit Windows with Debian's g++-mingw-w64-i686-posix. script/libraries windows has
# put the libraries and headers of other projects into build/libraries/windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# SSE: the x87 unit would round twice, and by the rounding mode that the process happens to have.
# Windows 7 and later, which wstring conversions, sockets and locks are taken from.
set(KEST_TARGET_FLAGS "-msse2 -mfpmath=sse -D_WIN32_WINNT=0x0601")
set(CMAKE_C_FLAGS_INIT "${KEST_TARGET_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${KEST_TARGET_FLAGS}")
# The client's folder holds no runtime libraries of this compiler. Without the time of the link, the same
# sources give the same bytes.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")

get_filename_component(KEST_TARGET_LIBRARIES "${CMAKE_CURRENT_LIST_DIR}/../build/libraries/windows" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${KEST_TARGET_LIBRARIES}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_C_STANDARD_INCLUDE_DIRECTORIES "${KEST_TARGET_LIBRARIES}/include")
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${KEST_TARGET_LIBRARIES}/include")

get_filename_component(kest_wine "${CMAKE_CURRENT_LIST_DIR}/../script/wine" ABSOLUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR "${kest_wine}")
