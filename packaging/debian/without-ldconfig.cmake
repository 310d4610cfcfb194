# CPack takes modules in a folder of lib for libraries, and adds scripts that run ldconfig for them. Nobody but the
# program loads them, so the scripts are left out.
foreach(package ${CPACK_PACKAGE_FILES})
  set(unpacked ${package}.unpacked)
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${unpacked} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${unpacked}/DEBIAN/postinst ${unpacked}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --root-owner-group --build ${unpacked} ${package} OUTPUT_QUIET
                  COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${unpacked})
endforeach()
