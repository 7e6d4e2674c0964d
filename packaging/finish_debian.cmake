# Run by cpack on what was installed for the package: adds Debian's changelog, compresses it and the
# manual pages, and makes everything as old as the release, so that its package is always the same.
set(changelog ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/morvane/changelog.Debian)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${changelog} @ONLY)
file(GLOB pages ${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/man*/*)
execute_process(COMMAND gzip -9n ${changelog} ${pages} COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference
                          --date=@$ENV{SOURCE_DATE_EPOCH} {} + COMMAND_ERROR_IS_FATAL ANY)
endif()
