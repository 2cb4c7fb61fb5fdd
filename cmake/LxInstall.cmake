# Names of the shared libraries, and the places of installed files. An installed tree can be moved: its files refer to
# each other by relative paths. Components: library (needed to run a program), development, command, python.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(lx_libraries LxBridge)
if(TARGET LxHost)
  list(APPEND lx_libraries LxHost)
  # Its functions take objects of that library.
  target_link_libraries(LxHost INTERFACE LxBridge)
endif()
list(APPEND lx_libraries VeltoXMP TAL)
foreach(library ${lx_libraries})
  # On Windows the names have no version: hosts load the libraries by name.
  set_target_properties(${library} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  # The name in an installed package, so that programs can use either.
  add_library(LxBridge::${library} ALIAS ${library})
endforeach()

if(NOT LXBRIDGE_INSTALL)
  return()
endif()

# Debian has different places for some files.
set(lx_debian OFF)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS "/etc/debian_version")
  set(lx_debian ON)
endif()

install(TARGETS ${lx_libraries} EXPORT LxBridgeTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
# lx_search_path(TARGET PATH): where the loader searches for the libraries of an installed target; in packages, they are
# in the system's own folder. The built tree has the same layout and uses the same path: a path that is changed on
# installation is linked with padding, which the loader would take for the current folder.
function(lx_search_path target path)
  if(NOT lx_debian)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${path}")
    if(ARGC GREATER 2)
      set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
    endif()
  endif()
endfunction()
foreach(library LxBridge LxHost)
  if(TARGET ${library})
    lx_search_path(${library} "$ORIGIN" AS_BUILT)
  endif()
endforeach()

# Headers. Both folders contain one named lxbridge.
foreach(folder api host)
  if(EXISTS "${PROJECT_SOURCE_DIR}/${folder}/include")
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}/include/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
      COMPONENT development)
  endif()
endforeach()

# The CMake package.
set(lx_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/LxBridge")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/LxBridgeConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/LxBridgeConfig.cmake" INSTALL_DESTINATION "${lx_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/LxBridgeConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/LxBridgeConfig.cmake" "${PROJECT_BINARY_DIR}/LxBridgeConfigVersion.cmake"
  DESTINATION "${lx_package_dir}" COMPONENT development)
install(EXPORT LxBridgeTargets NAMESPACE LxBridge:: DESTINATION "${lx_package_dir}" COMPONENT development)

# lx_pkg_config(NAME LIBRARY REQUIRES DESCRIPTION): NAME.pc.
function(lx_pkg_config name library requires description)
  file(RELATIVE_PATH up "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" up "${up}")
  set(prefix "\${pcfiledir}/${up}")
  foreach(folder INCLUDEDIR LIBDIR)
    cmake_path(APPEND prefix "${CMAKE_INSTALL_${folder}}" OUTPUT_VARIABLE ${folder})  # Absolute folders stay.
  endforeach()
  configure_file("${PROJECT_SOURCE_DIR}/cmake/package.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT development)
endfunction()
lx_pkg_config(lxbridge LxBridge "" "Reads the metadata of image files as XMP objects")
if(TARGET LxHost)
  lx_pkg_config(lxhost LxHost lxbridge "Reads, changes and writes the XMP objects of LxBridge")
endif()

if(TARGET lxbridge)
  if(NOT LXBRIDGE_COMMAND_IN_ONE_FILE)
    file(RELATIVE_PATH to_libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    if(to_libraries STREQUAL "../lib")
      lx_search_path(lxbridge "$ORIGIN/../lib" AS_BUILT)
    else()
      lx_search_path(lxbridge "$ORIGIN/${to_libraries}")
    endif()
  endif()
  install(TARGETS lxbridge RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT command)

  # The folder that each shell searches.
  if(lx_debian)
    set(zsh vendor-completions)
  else()
    set(zsh site-functions)
  endif()
  set(completions "${PROJECT_SOURCE_DIR}/tools/completions")
  install(FILES "${completions}/lxbridge.bash" RENAME lxbridge
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT command)
  install(FILES "${completions}/_lxbridge" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/${zsh}" COMPONENT command)
  install(FILES "${completions}/lxbridge.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT command)

  set(page "${PROJECT_SOURCE_DIR}/docs/man/lxbridge.1")
  if(EXISTS "${page}")
    find_program(LXBRIDGE_GZIP gzip)
    mark_as_advanced(LXBRIDGE_GZIP)
    if(LXBRIDGE_GZIP)
      set(packed "${PROJECT_BINARY_DIR}/lxbridge.1.gz")
      add_custom_command(OUTPUT "${packed}" COMMAND "${LXBRIDGE_GZIP}" -9nc "${page}" > "${packed}" DEPENDS "${page}"
        VERBATIM)
      add_custom_target(lx_man_page ALL DEPENDS "${packed}")
      set(page "${packed}")
    endif()
    install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT command)
  endif()
endif()

if(TARGET lxbridge_python)
  execute_process(COMMAND "${LXBRIDGE_PYTHON}" -c "import sys; print('%d.%d' % sys.version_info[:2])"
    OUTPUT_VARIABLE LX_PYTHON_VERSION OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(lx_debian)
    set(modules lib/python3/dist-packages)
  else()
    set(modules "lib/python${LX_PYTHON_VERSION}/site-packages")
  endif()
  set(LXBRIDGE_PYTHON_DIR "${modules}" CACHE STRING "Where the Python module is installed")
  cmake_path(ABSOLUTE_PATH LXBRIDGE_PYTHON_DIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE modules)
  file(RELATIVE_PATH to_libraries "${modules}/lxbridge" "${CMAKE_INSTALL_FULL_LIBDIR}")
  string(REGEX REPLACE "/$" "" to_libraries "$ORIGIN/${to_libraries}")  # In a wheel they are in the same folder.
  lx_search_path(lxbridge_python "${to_libraries}")
  install(TARGETS lxbridge_python LIBRARY DESTINATION "${LXBRIDGE_PYTHON_DIR}/lxbridge" COMPONENT python)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/lxbridge" DESTINATION "${LXBRIDGE_PYTHON_DIR}" COMPONENT python
    FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN py.typed)
endif()

# Documents. Packages name the change log and the licence differently.
set(documents README.md SECURITY.md docs/install.md docs/versions.md)
if(NOT lx_debian)
  list(APPEND documents CHANGELOG.md LICENSE)
endif()
list(TRANSFORM documents PREPEND "${PROJECT_SOURCE_DIR}/")
install(FILES ${documents} DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development
  FILES_MATCHING REGEX "[.](c|h|cpp|py)$")
