# Run by cpack on what was installed for the package: adds Debian's changelog, and compresses it and
# the manual pages.
set(changelog ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/morvane/changelog.Debian)
file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/changelog ${changelog})
file(GLOB pages ${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/man*/*)
execute_process(COMMAND gzip -9n ${changelog} ${pages} COMMAND_ERROR_IS_FATAL ANY)
