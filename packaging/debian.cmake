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
The package holds the configurator and the products of a sample distribution;
morvane-tools puts them together.")
# An installation runs make, and some samples are compiled.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "make | bmake")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "morvane-tools, gcc | c-compiler")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME morvane-tools)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "commands beside the installation configurator morvane
morvane configures the installation of a software distribution.
.
The package holds commands for those who make distributions and for operators
of many hosts: morvane-make-distribution puts a distribution together,
morvane-lint finds what is wrong in it before an operator does, morvane-graph
draws which product needs which, morvane-answers gives the same answers on the
next host, as a collection for Ansible does on many, morvane-install shows what
an installation will do and does it, morvane-verify finds what was changed
since, and morvane-remove takes a product away.")
# They read the messages of the program, and say the version of it that they are made with.
set(CPACK_COMPONENT_TOOLS_DEPENDS program)
# morvane-make-distribution is written in Python, morvane-graph draws with Graphviz, morvane-install
# runs make, and morvane-lint compares with what tar lists, which every Debian has.
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "python3, graphviz, make | bmake, tar (>= 1.16)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS ansible-core)
# Earlier morvane-make-distribution was in the other package.
set(CPACK_DEBIAN_TOOLS_PACKAGE_REPLACES "morvane (<= 1.20-1)")

# What Debian wants otherwise than other installations.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish_debian.cmake)

include(CPack)
