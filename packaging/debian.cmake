# The Debian package: `cpack` in the build directory makes it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME morvane)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "terminal-based installation configurator")
set(CPACK_PACKAGE_DESCRIPTION
    "morvane configures the installation of a software distribution. An operator
starts it in a directory that holds one archive per product, picks products,
settles where each goes, who owns it and which other products it uses, and
gets a makefile that does the work.
.
The package holds the configurator, the command with which release engineers
put distributions together, and a sample distribution.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The morvane authors <morvane@localhost.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# An installation runs make, make-distribution is written in Python, and some samples are compiled.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "make | bmake, python3")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gcc | c-compiler")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Without the commands beside the program, which need more libraries.
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};Unspecified;/")

# What Debian wants otherwise than other installations.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish_debian.cmake)

include(CPack)
