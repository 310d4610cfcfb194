# What Debian does to the files of each of its packages before they are packed.
set(usr ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr)
# Manuals and change logs are compressed, without the time of day in them.
execute_process(COMMAND gzip -9n ${usr}/share/man/man1/tavelle.1 ${usr}/share/doc/tavelle/changelog
                COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE binaries ${usr}/bin/* ${usr}/lib/*)
execute_process(COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note ${binaries}
                COMMAND_ERROR_IS_FATAL ANY)
