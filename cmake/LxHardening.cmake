# The distribution's hardening flags: stack protector, checked C library calls, read-only relocations, immediate
# binding. The optimisation level stays that of the build type.
find_program(LXBRIDGE_BUILDFLAGS dpkg-buildflags)
mark_as_advanced(LXBRIDGE_BUILDFLAGS)
if(NOT LXBRIDGE_BUILDFLAGS)
  message(FATAL_ERROR "LXBRIDGE_HARDENING needs dpkg-buildflags, of Debian's package dpkg-dev")
endif()
foreach(kind CPPFLAGS CXXFLAGS LDFLAGS)
  execute_process(COMMAND "${CMAKE_COMMAND}" -E env DEB_BUILD_MAINT_OPTIONS=hardening=+all
      "${LXBRIDGE_BUILDFLAGS}" --get ${kind}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  list(FILTER flags EXCLUDE REGEX "^-(g|O.)$")
  if(kind STREQUAL "LDFLAGS")
    add_link_options(${flags})
  else()
    add_compile_options(${flags})
  endif()
endforeach()
# Newer versions of dpkg-buildflags include this one.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
  add_compile_options(-fcf-protection)
endif()
