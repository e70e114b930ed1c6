# The Debian package (scripts/package makes it): what it contains besides the installed program, and what it depends on.

set(QUILLBOX_MAINTAINER "The Quillbox makers <makers@quillbox.example>" CACHE STRING
    "Who answers for the package: a name and an address")
set(QUILLBOX_DEB_REVISION 1 CACHE STRING "The number of this package of the same version")

# Each release of Debian needs its own package, because its libraries have other names. The package for a newer release
# has a higher version.
cmake_host_system_information(RESULT distribution QUERY DISTRIB_INFO)
set(QUILLBOX_DEB_RELEASE "${QUILLBOX_DEB_REVISION}~deb${distribution_VERSION_ID}")
set(QUILLBOX_DEB_VERSION "${PROJECT_VERSION}-${QUILLBOX_DEB_RELEASE}")

set(doc "${CMAKE_BINARY_DIR}/Packaging/doc")
configure_file(Packaging/copyright.in "${doc}/copyright" @ONLY)
configure_file(Packaging/changelog.in "${doc}/changelog.Debian" @ONLY)
execute_process(COMMAND gzip --best --no-name --force --keep "${doc}/changelog.Debian"
                        "${CMAKE_BINARY_DIR}/Packaging/quillbox.1"
                        "${CMAKE_BINARY_DIR}/Packaging/quillbox-defaults.1"
                COMMAND_ERROR_IS_FATAL ANY)
install(FILES "${doc}/copyright" "${doc}/changelog.Debian.gz" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/quillbox")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillbox)
set(CPACK_PACKAGE_VENDOR "The Quillbox makers")
set(CPACK_PACKAGE_CONTACT "${QUILLBOX_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "browse and open your files from a menu in the status bar")
set(CPACK_PACKAGE_DESCRIPTION "Quillbox puts one menu into the status bar of the desktop. Its entries are
files and directories that you pick, your applications and the panels of the
system settings. A directory opens into a submenu, level by level, and
choosing a file opens it in its usual application.
.
A directory is read when its submenu opens and not before, and while the menu
is closed the program does nothing.")
set(CPACK_PACKAGE_HOMEPAGE_URL "${QUILLBOX_DOWNLOAD_ADDRESS}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${QUILLBOX_DEB_RELEASE}")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries are found in the program itself. The plugin that draws SVG pictures is loaded at run time; up to
# Debian 12 it is in the package of the library.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-svg-plugins | libqt6svg6 (<< 6.7)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, shared-mime-info, hicolor-icon-theme, adwaita-icon-theme | breeze-icon-theme, qt6-wayland, fonts-dejavu-core, fonts-symbola")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "gnome-shell-extension-appindicator")
include(CPack)
