# What every target of the tree shares: the language level, the warnings, the sanitizers, and the two ways to make a
# room's library and a room's test program.

add_library(lx_options INTERFACE)
target_compile_features(lx_options INTERFACE cxx_std_20)
target_compile_options(lx_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Wcast-qual -Wformat=2)
if(LXBRIDGE_WERROR)
  target_compile_options(lx_options INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 takes joined std::strings for overlapping memory (its bug 105651).
  target_compile_options(lx_options INTERFACE -Wno-restrict)
endif()
if(LXBRIDGE_SANITIZE)
  target_compile_options(lx_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(lx_options INTERFACE -fsanitize=address,undefined)
endif()
if(LXBRIDGE_COVERAGE)
  # Names of sources are whole in the counters' files, so that they are found from any folder.
  target_compile_options(lx_options INTERFACE --coverage -fprofile-abs-path)
  target_link_options(lx_options INTERFACE --coverage $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:LINKER:--wrap=_exit>)
  target_sources(lx_options INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${PROJECT_SOURCE_DIR}/tests/support/coverage_exit.cpp>)
endif()
if(LXBRIDGE_FUZZ)
  target_compile_options(lx_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(lx_options INTERFACE -fsanitize=address,undefined)
endif()

# The shared libraries' code is optimised across files in release builds: a file's metadata is worth some microseconds, and
# a good part of them are calls between small functions. The objects hold ordinary code too, for programs that link the rooms.
option(LXBRIDGE_LTO "Optimise the shared libraries across files in release builds" ON)
if(LXBRIDGE_LTO AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32 AND NOT LXBRIDGE_SANITIZE)
  set(LX_LTO_COMPILE "$<$<CONFIG:Release>:-flto=auto;-ffat-lto-objects>")
  set(LX_LTO_LINK "$<$<CONFIG:Release>:-flto=auto;-O2>")
  # Without this the linker would optimise every test program so.
  target_link_options(lx_options INTERFACE
    $<$<AND:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>,$<NOT:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>>>:-fno-lto>)
endif()

# What a program of the tree takes the library and the two outside libraries from: the shared libraries, or, where it has the
# property LX_IN_ONE_FILE, their parts.
add_library(lx_library INTERFACE)
target_include_directories(lx_library INTERFACE "${PROJECT_SOURCE_DIR}/api/include")
target_link_libraries(lx_library INTERFACE $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_api,LxBridge>)
add_library(lx_outside INTERFACE)
target_link_libraries(lx_outside INTERFACE
  $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_velto_parts,VeltoXMP>
  $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_tal_parts,TAL>)

# lx_room(NAME SOURCES ... DEPENDS ...): a room's static library. Includes are written from the root of the tree.
function(lx_room name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE $<BUILD_INTERFACE:lx_options>)
  target_compile_options(${name} PRIVATE ${LX_LTO_COMPILE})
endfunction()

# lx_exports(TARGET NAME): a shared library exports what NAME.def lists (names and ordinals) on Windows, NAME.map elsewhere.
function(lx_exports target name)
  target_compile_options(${target} PRIVATE ${LX_LTO_COMPILE})
  target_link_options(${target} PRIVATE ${LX_LTO_LINK})
  if(WIN32)
    target_sources(${target} PRIVATE ${name}.def)
    set_target_properties(${target} PROPERTIES PREFIX "")
  else()
    set(script "${CMAKE_CURRENT_SOURCE_DIR}/${name}.map")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
  endif()
endfunction()

# lx_kit_room: the same for the kit, which never raises.
function(lx_kit_room name)
  lx_room(${name} ${ARGN})
  target_compile_options(${name} PRIVATE -fno-exceptions)
endfunction()

# lx_test(NAME SOURCES ... DEPENDS ...): one test program of GoogleTest, one ctest entry for each of its tests.
# Dates depend on the machine's zone, so tests run in a fixed one that is not UTC.
set(LXBRIDGE_TEST_TIMEOUT 120 CACHE STRING "Seconds that a test may take")
function(lx_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} $<BUILD_INTERFACE:lx_options> GTest::gtest_main)
  # What is tested is optimised; the tests themselves are compiled often and run once.
  target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT ${LXBRIDGE_TEST_TIMEOUT} ENVIRONMENT "TZ=Asia/Kolkata"
    DISCOVERY_TIMEOUT 60)
endfunction()
