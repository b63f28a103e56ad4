# The Debian package, built by CPack from the install rules (scripts/package.sh): its library
# dependencies are read off the binaries by dpkg-shlibdeps; what the programs load or run at run
# time without linking it is named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pomvar)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "Pomvar developers")
set(CPACK_PACKAGE_CONTACT "Pomvar developers <developers@pomvar.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "application launcher in the system tray")
set(CPACK_PACKAGE_DESCRIPTION [[
Pomvar puts an icon in the system tray. A click on it opens a small panel
with three menus of applications: the pinned apps and your own categories
of apps, the apps started last, and every installed app. A keyboard-first
search window, an organizer for pins, categories and settings, and info
windows come with it.]])
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# lsof: the front end's readiness probe. The xcb platform plugin is in libqt6gui6 and the SVG
# plugins in libqt6svg6, which the programs link; the Wayland plugin is recommended for sessions
# without XWayland.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "lsof")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX "${CMAKE_BINARY_DIR}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
