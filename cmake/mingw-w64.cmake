# Cross-compiling for Windows x86-64 with Debian's MinGW-w64 (POSIX threads, static runtime).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_AR x86_64-w64-mingw32-gcc-ar-posix)
set(CMAKE_OBJCOPY x86_64-w64-mingw32-objcopy)
set(CMAKE_STRIP x86_64-w64-mingw32-strip)
set(CMAKE_SIZE x86_64-w64-mingw32-size)
set(CMAKE_RANLIB x86_64-w64-mingw32-gcc-ranlib-posix)

# Windows 10 is the oldest system that is meant.
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0A00")
# Whole: CMake would add its own -O3 behind an initial value, and the program grows by that for nothing.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG" CACHE STRING "Flags of a Release build")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

set(CMAKE_FIND_ROOT_PATH "${CMAKE_CURRENT_LIST_DIR}/../build/deps/mingw-w64")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine")
