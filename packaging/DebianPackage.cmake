# The Debian packages, built with CPack from a build folder (`cpack -G DEB` there):
#   tarrow               the application, its desktop entry, metainfo, icons and man page
#   tarrow-calendar-eds  the Evolution Data Server calendar plugin (when it was built), apart so
#                        that Tarrow installs without EDS and its ~190 dependencies
# dpkg-shlibdeps finds the libraries; what it cannot see (QML modules loaded at run time) is
# listed here.
set(TARROW_PACKAGE_MAINTAINER "The Tarrow developers <maintainers@tarrow.invalid>" CACHE STRING
    "The Maintainer field of the Debian packages")

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarrow RENAME copyright
        COMPONENT tarrow)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarrow)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tarrow developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "countdowns to the dates that matter, in the panel")
set(CPACK_PACKAGE_CONTACT "${TARROW_PACKAGE_MAINTAINER}")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL tarrow)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
if(TARROW_HOMEPAGE_URL)
    set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${TARROW_HOMEPAGE_URL}")
endif()

set(CPACK_DEBIAN_TARROW_PACKAGE_NAME tarrow)
set(CPACK_DEBIAN_TARROW_DESCRIPTION
    "countdowns to the dates that matter, in the panel
 Tarrow shows the countdown you pinned, or the next one due, in the desktop's
 panel (a StatusNotifierItem, or a classic tray icon) with its symbol, title and
 time left. A click opens a popup with the list and a quick-entry field that
 reads dates typed in English, Turkish, German, Spanish and French. Calendar
 events appear beside your own countdowns; arrivals post a notification with a
 button that joins the meeting, and can show a celebration.
 .
 The tarrow command reads and changes the countdowns from a terminal, and the
 running application offers them on the session bus.")
set(CPACK_DEBIAN_TARROW_PACKAGE_DEPENDS
    "qml6-module-qtquick, qml6-module-qtquick-window, qml6-module-qtquick-controls, \
qml6-module-qtquick-templates, qml6-module-qtquick-layouts, qml6-module-qtqml, \
qml6-module-qtqml-workerscript, libqt6svg6")
set(CPACK_DEBIAN_TARROW_PACKAGE_RECOMMENDS "qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_TARROW_PACKAGE_SUGGESTS
    "fonts-noto-color-emoji, gnome-shell-extension-appindicator")

if(TARROW_HAVE_EDS)
    list(APPEND CPACK_COMPONENTS_ALL eds)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarrow-calendar-eds RENAME copyright
            COMPONENT eds)
    set(CPACK_DEBIAN_EDS_PACKAGE_NAME tarrow-calendar-eds)
    set(CPACK_DEBIAN_EDS_PACKAGE_SECTION utils)
    set(CPACK_DEBIAN_EDS_DESCRIPTION
        "Evolution Data Server calendars for Tarrow
 Shows the events of every enabled Evolution Data Server calendar (GNOME Online
 Accounts, Evolution, GNOME Calendar) in Tarrow, updated as they change.")
    set(CPACK_DEBIAN_EDS_PACKAGE_DEPENDS "tarrow (= ${PROJECT_VERSION}-1), evolution-data-server")
    set(CPACK_DEBIAN_TARROW_PACKAGE_SUGGESTS
        "tarrow-calendar-eds, ${CPACK_DEBIAN_TARROW_PACKAGE_SUGGESTS}")
endif()

include(CPack)
