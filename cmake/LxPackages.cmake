# Debian packages (preset package), one a component; elsewhere one archive. A library of the next major version goes beside this one, hence the number.
set(CPACK_PACKAGE_NAME lxbridge)
set(CPACK_PACKAGE_VENDOR "${LXBRIDGE_AUTHORS}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${PROJECT_HOMEPAGE_URL}")
set(CPACK_PACKAGE_CONTACT "${LXBRIDGE_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of who packs.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
find_program(LXBRIDGE_DPKG_DEB dpkg-deb)
find_program(LXBRIDGE_SHLIBDEPS dpkg-shlibdeps)
find_program(LXBRIDGE_FILE file)
find_program(LXBRIDGE_GZIP gzip)
mark_as_advanced(LXBRIDGE_DPKG_DEB LXBRIDGE_SHLIBDEPS LXBRIDGE_FILE LXBRIDGE_GZIP)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
elseif(LXBRIDGE_DPKG_DEB)
  set(CPACK_GENERATOR DEB)
else()
  set(CPACK_GENERATOR TGZ)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE lxbridge)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(lx_version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
if(LXBRIDGE_GZIP)
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # SOURCE_DATE_EPOCH, where it is set.
  file(WRITE "${PROJECT_BINARY_DIR}/changelog.Debian" "lxbridge (${lx_version}) unstable; urgency=medium

  * Version ${PROJECT_VERSION}.

 -- ${LXBRIDGE_MAINTAINER}  ${date}
")
  execute_process(COMMAND "${LXBRIDGE_GZIP}" -9nf "${PROJECT_BINARY_DIR}/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)
endif()

# lx_debian_package(COMPONENT NAME SECTION DEPENDS SUMMARY TEXT)
set(CPACK_COMPONENTS_ALL)
macro(lx_debian_package component name section depends summary text)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${name}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION "${section}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}")
  # What only a package has.
  foreach(file "${PROJECT_BINARY_DIR}/changelog.Debian.gz" "${PROJECT_SOURCE_DIR}/LICENSE")
    if(EXISTS "${file}")
      cmake_path(GET file FILENAME as)
      if(as STREQUAL "LICENSE")
        set(as copyright)
      endif()
      install(FILES "${file}" RENAME "${as}" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component}
        EXCLUDE_FROM_ALL)
    endif()
  endforeach()
endmacro()

set(lx_library_package "liblxbridge${PROJECT_VERSION_MAJOR}")
set(lx_this_library "${lx_library_package} (= ${lx_version})")
if(LXBRIDGE_SHLIBDEPS AND LXBRIDGE_FILE)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  set(lx_outside "")
else()
  set(lx_outside "libbrotli1 (>= 1.0.9), libc6 (>= 2.36), libexpat1 (>= 2.5.0), libgcc-s1 (>= 3.0), libstdc++6 (>= 12), zlib1g (>= 1:1.2.13)")
endif()
lx_debian_package(library ${lx_library_package} libs "${lx_outside}"
  "metadata of image files as XMP objects (library)"
  "LxBridge reads what the camera and editors wrote into JPEG, TIFF and PSD files
(EXIF, GPS, IPTC, maker notes, the XMP packet) and hands it to a program as one
XMP object.")
# Programs that others build against the libraries need at least this version.
set(lx_shlibs "")
foreach(library ${lx_libraries})
  string(APPEND lx_shlibs "lib${library} ${PROJECT_VERSION_MAJOR} ${lx_library_package} (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE "${PROJECT_BINARY_DIR}/shlibs" "${lx_shlibs}")
file(WRITE "${PROJECT_BINARY_DIR}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/shlibs;${PROJECT_BINARY_DIR}/triggers")
lx_debian_package(development liblxbridge-dev libdevel "${lx_this_library}"
  "metadata of image files as XMP objects (development files)"
  "LxBridge reads what the camera and editors wrote into JPEG, TIFF and PSD files
and hands it to a program as one XMP object.
.
This package has the headers, and LxBridge for CMake and pkg-config.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
list(APPEND lx_outside "${lx_this_library}")
list(JOIN lx_outside ", " lx_outside)
if(TARGET lxbridge)
  set(needs "${lx_outside}")
  if(LXBRIDGE_COMMAND_IN_ONE_FILE AND CPACK_DEBIAN_PACKAGE_SHLIBDEPS)
    set(needs "")
  elseif(LXBRIDGE_COMMAND_IN_ONE_FILE)
    set(needs "libc6 (>= 2.36)")
  endif()
  lx_debian_package(command lxbridge graphics "${needs}"
    "print the metadata of image files as XMP, JSON or tables"
    "The command lxbridge prints what the camera and editors wrote into JPEG, TIFF
and PSD files (EXIF, GPS, IPTC, the XMP packet): as an XMP packet, a line of
JSON or a row of a table a file; also of whole folders, by many processes.")
endif()
if(TARGET lxbridge_python)
  # The extension fits one version.
  string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" version "${LX_PYTHON_VERSION}")
  math(EXPR next "${CMAKE_MATCH_2} + 1")
  set(next "${CMAKE_MATCH_1}.${next}")
  lx_debian_package(python python3-lxbridge python
    "${lx_outside}, python3 (>= ${LX_PYTHON_VERSION}), python3 (<< ${next})"
    "metadata of image files as XMP objects (Python)"
    "The module lxbridge reads what the camera and editors wrote into JPEG, TIFF and
PSD files and gives it to Python as one XMP object.")
endif()

include(CPack)
