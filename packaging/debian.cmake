# The Debian packages: `cpack` in the build directory makes them, one of each component.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL program)
if(TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The morvane authors <morvane@localhost.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME morvane)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "terminal-based installation configurator
morvane configures the installation of a software distribution. An operator
starts it in a directory that holds one archive per product, picks products,
settles where each goes, who owns it and which other products it uses, and
gets a makefile that does the work.
.
The package holds the configurator, the command with which release engineers
put distributions together, and a sample distribution.")
# An installation runs make, make-distribution is written in Python, and some samples are compiled.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "make | bmake, python3")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "morvane-tools, gcc | c-compiler")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME morvane-tools)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "commands beside the installation configurator morvane
morvane configures the installation of a software distribution.
.
The package holds commands for those who make distributions and for operators
of many hosts: morvane-lint finds what is wrong in a distribution before an
operator does, morvane-graph draws which product needs which, and
morvane-answers gives the same answers on the next host.")
# They read the messages of the program, and say the version of it that they are made with.
set(CPACK_COMPONENT_TOOLS_DEPENDS program)
# morvane-graph draws with it.
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS graphviz)

# What Debian wants otherwise than other installations.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish_debian.cmake)

include(CPack)
