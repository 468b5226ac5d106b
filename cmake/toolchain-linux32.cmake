# Builds for 32-bit Linux on a 64-bit machine with Debian's g++-multilib. script/libraries linux32 has
# put the 32-bit libraries of other projects into build/libraries/linux32.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)

# SSE: the x87 unit would round twice.
set(KEST_TARGET_FLAGS "-m32 -msse2 -mfpmath=sse")
set(CMAKE_C_FLAGS_INIT "${KEST_TARGET_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${KEST_TARGET_FLAGS}")

get_filename_component(KEST_TARGET_LIBRARIES "${CMAKE_CURRENT_LIST_DIR}/../build/libraries/linux32" ABSOLUTE)
set(CMAKE_PREFIX_PATH "${KEST_TARGET_LIBRARIES}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-L${KEST_TARGET_LIBRARIES}/lib")
