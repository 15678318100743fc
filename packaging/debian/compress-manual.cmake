# Debian's manual pages are compressed. Run by CPack on the files that go into the package; without their name and time,
# so that the same pages give the same files.
file(GLOB pages "${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_INSTALL_PREFIX}/share/man/man1/*.1")
foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9nf ${page} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
