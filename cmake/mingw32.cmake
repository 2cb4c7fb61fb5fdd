# Toolchain file: 32-bit Windows with Debian's MinGW-w64 cross compiler. The libraries are what hosts load by ordinal, so they
# must run on a Windows that has nothing of the compiler's: its runtime is linked in, with the thread model of the C++
# standard library ("posix").
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# Numbers as on every other system: the old floating-point unit keeps more digits between two steps, and a text that rounds
# to 30.03 here would be 30.04 there.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")

foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()

# expat, as scripts/setup-windows builds it. Nothing of this machine's own libraries fits.
set(LXBRIDGE_WIN32_ROOT "${CMAKE_CURRENT_LIST_DIR}/../build/win32-root" CACHE PATH "Libraries built for 32-bit Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LXBRIDGE_WIN32_ROOT)
list(APPEND CMAKE_FIND_ROOT_PATH "${LXBRIDGE_WIN32_ROOT}" /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
