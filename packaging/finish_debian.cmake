# Run by cpack on what was installed for the packages, each in the directory of its component: adds
# Debian's changelog, compresses it and the manual pages, and makes everything as old as the release,
# so that its packages are always the same.
set(documents usr/share/doc)
set(changelog ${CPACK_TEMPORARY_DIRECTORY}/program/${documents}/morvane/changelog.Debian)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${changelog} @ONLY)
file(GLOB pages ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man*/*)
execute_process(COMMAND gzip -9n ${changelog} ${pages} COMMAND_ERROR_IS_FATAL ANY)

# The tools come with the program, of the same version: its documents are theirs.
set(tools ${CPACK_TEMPORARY_DIRECTORY}/tools)
if(EXISTS ${tools})
  file(MAKE_DIRECTORY ${tools}/${documents})
  file(CREATE_LINK morvane ${tools}/${documents}/morvane-tools SYMBOLIC)
endif()

if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference
                          --date=@$ENV{SOURCE_DATE_EPOCH} {} + COMMAND_ERROR_IS_FATAL ANY)
endif()
