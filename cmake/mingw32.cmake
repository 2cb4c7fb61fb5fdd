# Toolchain file: 32-bit Windows with Debian's MinGW-w64 cross compiler, with the thread model of the C++ standard
# library ("posix").
#
# The compiler's runtime is shared: exceptions cross from one library into another, and into a host, only if all of them
# use the same unwinder, libgcc_s_dw2-1.dll. A library with its own unwinder does not even find its own handlers when
# that DLL is in the process, since the start-up code then registers its frames with the DLL.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# Windows 7 is the oldest version: newer declarations are hidden, and older loaders refuse the files. Floating point as
# on other systems: the x87 unit keeps more digits between steps, so a text that rounds to 30.03 elsewhere would become
# 30.04.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-D_WIN32_WINNT=0x0601 -msse2 -mfpmath=sse")
endforeach()
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-shared-libgcc -Wl,--major-os-version=6,--minor-os-version=1,--major-subsystem-version=6,--minor-subsystem-version=1")
endforeach()

# expat, as built by scripts/setup-windows. This machine's own libraries cannot be used.
set(LXBRIDGE_WIN32_ROOT "${CMAKE_CURRENT_LIST_DIR}/../build/win32-root" CACHE PATH "Libraries built for 32-bit Windows")
set(ZLIB_USE_STATIC_LIBS ON)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LXBRIDGE_WIN32_ROOT)
list(APPEND CMAKE_FIND_ROOT_PATH "${LXBRIDGE_WIN32_ROOT}" /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
