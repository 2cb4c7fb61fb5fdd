# Debian packages, one for each component (preset package); with any prefix other than /usr, an archive. A library of
# the next major version can be installed in parallel, hence the number in its package's name.
set(CPACK_PACKAGE_NAME lxbridge)
set(CPACK_PACKAGE_VENDOR "${LXBRIDGE_AUTHORS}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${PROJECT_HOMEPAGE_URL}")
set(CPACK_PACKAGE_CONTACT "${LXBRIDGE_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
# Independent of the umask.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
elseif(lx_debian)
  set(CPACK_GENERATOR DEB)
else()
  set(CPACK_GENERATOR TGZ)
endif()
if(NOT lx_debian)
  include(CPack)
  return()
endif()

foreach(program dpkg-deb dpkg-shlibdeps file gzip)
  string(MAKE_C_IDENTIFIER "LXBRIDGE_${program}" variable)
  find_program(${variable} ${program} REQUIRED)
  mark_as_advanced(${variable})
endforeach()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE lxbridge)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(lx_version "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # Of SOURCE_DATE_EPOCH, if set.
set(lx_papers "${PROJECT_BINARY_DIR}/papers")
file(WRITE "${lx_papers}/changelog.Debian" "lxbridge (${lx_version}) unstable; urgency=medium

  * Version ${PROJECT_VERSION}.

 -- ${LXBRIDGE_MAINTAINER}  ${date}
")
configure_file("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${lx_papers}/changelog" COPYONLY)
execute_process(COMMAND "${LXBRIDGE_gzip}" -9nf "${lx_papers}/changelog.Debian" "${lx_papers}/changelog"
  COMMAND_ERROR_IS_FATAL ANY)
file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
string(REGEX REPLACE "^MIT License\n\nCopyright[^\n]*\n" "" license "${license}")
string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
string(REGEX REPLACE "\n([^\n])" "\n \\1" license "${license}")
string(STRIP "${license}" license)
configure_file("${PROJECT_SOURCE_DIR}/cmake/copyright.in" "${lx_papers}/copyright" @ONLY)

# lx_debian_package(COMPONENT NAME SECTION DEPENDS SUMMARY TEXT)
set(CPACK_COMPONENTS_ALL)
macro(lx_debian_package component name section depends summary text)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME "${name}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION "${section}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}")
  install(FILES "${lx_papers}/changelog.Debian.gz" "${lx_papers}/changelog.gz" "${lx_papers}/copyright"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(lx_library_package "liblxbridge${PROJECT_VERSION_MAJOR}")
set(lx_this_library "${lx_library_package} (= ${lx_version})")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
lx_debian_package(library ${lx_library_package} libs ""
  "metadata of image files as XMP objects (library)"
  "LxBridge reads the metadata that cameras and editors write into image files
(EXIF, GPS, IPTC, maker notes, XMP packets) and gives it to a program as one
XMP object. It reads JPEG, TIFF, PSD, PNG, WebP, HEIF, AVIF, JPEG XL, JPEG 2000
and GIF files, and XMP side-cars.")
# The minimum version for programs that are built against the libraries.
set(lx_shlibs "")
foreach(library ${lx_libraries})
  string(APPEND lx_shlibs "lib${library} ${PROJECT_VERSION_MAJOR} ${lx_library_package} (>= ${PROJECT_VERSION})\n")
endforeach()
file(WRITE "${PROJECT_BINARY_DIR}/shlibs" "${lx_shlibs}")
file(WRITE "${PROJECT_BINARY_DIR}/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/shlibs;${PROJECT_BINARY_DIR}/triggers")
set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/ldconfig_by_trigger.cmake")
lx_debian_package(development liblxbridge-dev libdevel "${lx_this_library}"
  "metadata of image files as XMP objects (development files)"
  "LxBridge reads the metadata of image files and gives it to a program as one
XMP object.
.
This package contains the headers and the files for CMake and pkg-config.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
if(TARGET lxbridge)
  set(needs "${lx_this_library}")
  if(LXBRIDGE_COMMAND_IN_ONE_FILE)
    set(needs "")
  endif()
  lx_debian_package(command lxbridge graphics "${needs}"
    "print the metadata of image files as XMP, JSON or tables"
    "The command lxbridge prints the metadata that cameras and editors write into
image files (EXIF, GPS, IPTC, XMP packets): for each file an XMP packet, a line
of JSON or a row of a table, for single files or whole folders, with several
processes.")
endif()
if(TARGET lxbridge_python)
  # The extension works with one version only.
  string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" version "${LX_PYTHON_VERSION}")
  math(EXPR next "${CMAKE_MATCH_2} + 1")
  set(next "${CMAKE_MATCH_1}.${next}")
  lx_debian_package(python python3-lxbridge python
    "${lx_this_library}, python3 (>= ${LX_PYTHON_VERSION}), python3 (<< ${next})"
    "metadata of image files as XMP objects (Python)"
    "The module lxbridge reads the metadata of image files and gives it to Python as
one XMP object, which can be changed and saved as a side-car.")
  # Compiled files are created when the package is installed, and removed with it.
  set(scripts "${PROJECT_BINARY_DIR}/python-scripts")
  file(WRITE "${scripts}/postinst" "#!/bin/sh
set -e
if [ \"$1\" = configure ] && command -v py3compile >/dev/null 2>&1; then
  py3compile -p python3-lxbridge
fi
")
  file(WRITE "${scripts}/prerm" "#!/bin/sh
set -e
if command -v py3clean >/dev/null 2>&1; then
  py3clean -p python3-lxbridge
else
  rm -rf /usr/lib/python3/dist-packages/lxbridge/__pycache__
fi
")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA "${scripts}/postinst;${scripts}/prerm")
endif()

include(CPack)
