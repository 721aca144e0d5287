# Builds for 64-bit Windows on a Debian machine: the MinGW-w64 compiler with C++ threads, everything
# linked into the program so that it runs without any file beside it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine)

# Only what was built for Windows is found: a library of this machine would not link, and its
# include folder would hide the target's own headers.
if(NOT DEFINED SKYHAUL_WINDOWS_PREFIX)
  execute_process(
    COMMAND ${CMAKE_CURRENT_LIST_DIR}/../scripts/build-windows-deps --where
    OUTPUT_VARIABLE SKYHAUL_WINDOWS_PREFIX OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SKYHAUL_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH ${SKYHAUL_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
