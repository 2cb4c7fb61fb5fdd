# Settings shared by all targets (language level, warnings, sanitizers), and functions that add a folder's library and
# its test program.

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
if(LXBRIDGE_TSAN)
  target_compile_options(lx_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(lx_options INTERFACE -fsanitize=thread)
endif()
if(LXBRIDGE_COVERAGE)
  # With absolute names of sources in the counters' files, so that they are found from any folder.
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

# The shared libraries are optimised across files in release builds: reading a file takes microseconds, of which calls between
# small functions are a large part. The objects also contain ordinary code, for programs that link the static libraries.
option(LXBRIDGE_LTO "Optimise the shared libraries across files in release builds" ON)
if(LXBRIDGE_LTO AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32 AND NOT LXBRIDGE_SANITIZE AND NOT LXBRIDGE_TSAN)
  set(LX_LTO_COMPILE "$<$<CONFIG:Release>:-flto=auto;-ffat-lto-objects>")
  set(LX_LTO_LINK "$<$<CONFIG:Release>:-flto=auto;-O2>")
  # Otherwise the linker would optimise every test program like this.
  target_link_options(lx_options INTERFACE
    $<$<AND:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>,$<NOT:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>>>:-fno-lto>)
endif()

# LxBridge and the two outside libraries for programs of the tree: the shared libraries, or for a target with the property
# LX_IN_ONE_FILE the static ones.
add_library(lx_library INTERFACE)
target_include_directories(lx_library INTERFACE "${PROJECT_SOURCE_DIR}/api/include")
target_link_libraries(lx_library INTERFACE $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_api,LxBridge>)
add_library(lx_outside INTERFACE)
target_link_libraries(lx_outside INTERFACE
  $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_velto_parts,VeltoXMP>
  $<IF:$<BOOL:$<TARGET_PROPERTY:LX_IN_ONE_FILE>>,lx_tal_parts,TAL>)

# lx_static_library(NAME SOURCES ... DEPENDS ...): a folder's static library. Includes are relative to the root of the
# tree.
function(lx_static_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE $<BUILD_INTERFACE:lx_options>)
  target_compile_options(${name} PRIVATE ${LX_LTO_COMPILE})
endfunction()

# Loading another shared library with LxBridge costs a host about a tenth of the time for the C++ runtime.
option(LXBRIDGE_STATIC_DEPENDENCIES "Link expat, zlib and Brotli's decoder into the libraries where their archives are there" ON)

# lx_takes_in(TARGET): links the libraries that only this shared library uses statically into it. Their names are not exported.
function(lx_takes_in target)
  if(UNIX AND LXBRIDGE_STATIC_DEPENDENCIES AND NOT LXBRIDGE_SANITIZE AND NOT LXBRIDGE_TSAN AND NOT LXBRIDGE_FUZZ)
    set_target_properties(${target} PROPERTIES LX_TAKES_IN ON)
  endif()
endfunction()

# lx_exports(TARGET NAME): the exports of a shared library, listed by NAME.def (names and ordinals) on Windows and by NAME.map
# elsewhere.
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

# lx_kit_library: the same for the kit, which is compiled without exceptions.
function(lx_kit_library name)
  lx_static_library(${name} ${ARGN})
  target_compile_options(${name} PRIVATE -fno-exceptions)
endfunction()

# lx_test(NAME SOURCES ... DEPENDS ...): a GoogleTest program, with a ctest entry for each of its tests.
# Dates depend on the machine's time zone, so tests run in a fixed one other than UTC.
set(LXBRIDGE_TEST_TIMEOUT 120 CACHE STRING "Seconds that a test may take")
function(lx_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} $<BUILD_INTERFACE:lx_options> GTest::gtest_main)
  # Tests are compiled more often than they run, so they are hardly optimised themselves.
  target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1> $<$<BOOL:${LXBRIDGE_SANITIZE}>:-O0>)
  if(NOT name STREQUAL "lx_test_headers")
    target_precompile_headers(${name} REUSE_FROM lx_test_headers)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 warns of joined std::strings in the library's headers too, once they are precompiled.
    target_compile_options(${name} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT ${LXBRIDGE_TEST_TIMEOUT} ENVIRONMENT "TZ=Asia/Kolkata"
    DISCOVERY_TIMEOUT 60)
endfunction()
