# The Debian package. It registers no driver and brings no configuration.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tablewright)
set(CPACK_PACKAGE_VENDOR Tablewright)
# Nobody's address: whoever hands the package on puts in theirs.
set(TW_PACKAGE_CONTACT
    "Tablewright maintainers <maintainers@tablewright.invalid>"
    CACHE STRING "Maintainer of the package")
set(CPACK_PACKAGE_CONTACT "${TW_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "browse, query and compare Microsoft SQL Server databases")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tablewright shows the databases and tables of Microsoft SQL Servers as a
tree, lists what a table is made of and its first rows, runs queries that
are put together by picking names, and compares two databases, also on two
servers. It only reads and never changes a database. A companion program
without windows, tablewright-compare, compares in scripts.
.
A sample server is included, so that all of it can be tried without one.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the programs load only when they run. Without a driver nothing can be done at all; one from a package beside a
# driver of the user's own does no harm, since it is only taken when nothing else is there.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, tdsodbc | msodbcsql18 | msodbcsql17")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qt6-wayland")

string(TIMESTAMP TW_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(debianfiles.cmake debianfiles.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/debianfiles.cmake)
include(CPack)
