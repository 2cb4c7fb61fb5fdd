# CPack gives a package with shared libraries scripts that call ldconfig. Debian uses a trigger instead, which this
# package has, so the scripts are removed.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(package MATCHES "/liblxbridge[0-9]+_[^/]*\\.deb$")
    set(unpacked "${package}.unpacked")
    execute_process(COMMAND dpkg-deb -R "${package}" "${unpacked}" COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${unpacked}/DEBIAN/postinst" "${unpacked}/DEBIAN/postrm")
    execute_process(COMMAND dpkg-deb --root-owner-group -b "${unpacked}" "${package}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE "${unpacked}")
  endif()
endforeach()
