# LXBRIDGE_SELF_CONTAINED: the C++ runtime and expat become part of the command and its three libraries, which then need
# nothing of a machine but its C library: for copying to machines as they are, and for calls of one file each, since most
# of such a call is the loading and binding of the shared C++ runtime.
#
# For the command only. Each library has a runtime of its own then, and std::uncaught_exceptions() of a host that catches
# an exception of LxInterchangeNew stays wrong from there on; so hosts use the ordinary build.
option(LXBRIDGE_SELF_CONTAINED "Link the C++ runtime and expat into the command and its libraries (GCC, ELF)" OFF)
if(NOT LXBRIDGE_SELF_CONTAINED)
  return()
endif()
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR WIN32 OR LXBRIDGE_SANITIZE)
  message(FATAL_ERROR "LXBRIDGE_SELF_CONTAINED is for GCC on ELF systems, without sanitizers")
endif()
find_library(EXPAT_LIBRARY NAMES libexpat.a REQUIRED)
set(LXBRIDGE_INSTALL OFF)  # What is installed is for hosts. This is bin/lxbridge and lib/*.so.1, copied side by side.

# At the end of every link line, behind the archives that need them. Named one by one, since the compiler's own list always
# has the mathematics library, of which nothing is used, to be loaded.
set(CMAKE_CXX_STANDARD_LIBRARIES "-Wl,-Bstatic -lstdc++ -lgcc_eh -lgcc -Wl,-Bdynamic -lc")

function(lx_self_contain)
  foreach(target TAL VeltoXMP LxBridge lxbridge)
    if(TARGET ${target})
      # Fewer and smaller pieces to map and relocate: that is what the rest of start-up costs.
      target_link_options(${target} PRIVATE -nodefaultlibs
        "LINKER:--gc-sections" "LINKER:-z,noseparate-code" "LINKER:-z,pack-relative-relocs")
    endif()
  endforeach()
endfunction()
cmake_language(DEFER DIRECTORY "${PROJECT_SOURCE_DIR}" CALL lx_self_contain)
