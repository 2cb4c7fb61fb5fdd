# Additional files of a Windows build: version resources, the command's manifest, and the compiler's runtime next to
# them.
enable_language(RC)

# lx_windows_resources(TARGET DESCRIPTION [MANIFEST]): the version resource of a library or program, and a manifest.
function(lx_windows_resources target description)
  set(LX_DESCRIPTION "${description}")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(LX_FILE_NAME "${target}.exe")
    set(LX_FILE_TYPE VFT_APP)
  else()
    set(LX_FILE_NAME "${target}.dll")
    set(LX_FILE_TYPE VFT_DLL)
  endif()
  set(LX_MANIFEST "")
  if(ARGC GREATER 2)
    set(LX_MANIFEST "CREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"${ARGV2}\"")
  endif()
  set(resources "${PROJECT_BINARY_DIR}/resources/${target}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${resources}" @ONLY)
  # An object library, since the target's own options are for a C++ compiler.
  add_library(lx_resources_${target} OBJECT "${resources}")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:lx_resources_${target}>)
endfunction()

lx_windows_resources(LxBridge "Reads the metadata of image files as XMP objects")
lx_windows_resources(LxHost "Reads, changes and writes the XMP objects of LxBridge")
lx_windows_resources(VeltoXMP "XMP objects")
lx_windows_resources(TAL "Interfaces by name")
if(TARGET lxbridge)
  lx_windows_resources(lxbridge "Prints the metadata of image files" "${PROJECT_SOURCE_DIR}/cmake/lxbridge.manifest")
endif()

# The runtime for exceptions that cross libraries; all libraries of a process must share it.
if(MINGW)
  foreach(name libgcc_s_dw2-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${name} OUTPUT_VARIABLE file
      OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    configure_file("${file}" "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}" COPYONLY)
    if(LXBRIDGE_INSTALL)
      install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library)
    endif()
  endforeach()
endif()
