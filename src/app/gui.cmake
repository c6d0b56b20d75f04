# tarrow_app_gui: the tray application — composition root, single instance, links, login launch.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Widgets DBus Network)

add_subdirectory(${PROJECT_SOURCE_DIR}/src/ui ${PROJECT_BINARY_DIR}/src/ui)

tarrow_add_library(tarrow_app_gui)
target_sources(tarrow_app_gui PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/TrayApplication.h
    ${CMAKE_CURRENT_LIST_DIR}/TrayApplication.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AppDelegate.h
    ${CMAKE_CURRENT_LIST_DIR}/AppDelegate.cpp
    ${CMAKE_CURRENT_LIST_DIR}/AppURLRouter.h
    ${CMAKE_CURRENT_LIST_DIR}/AppURLRouter.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SingleInstance.h
    ${CMAKE_CURRENT_LIST_DIR}/SingleInstance.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LoginLaunch.h
    ${CMAKE_CURRENT_LIST_DIR}/LoginLaunch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/platform/XdgAutostart.h
    ${CMAKE_CURRENT_LIST_DIR}/platform/XdgAutostart.cpp)
target_link_libraries(tarrow_app_gui PUBLIC
    Qt6::Core Qt6::Gui Qt6::Widgets Qt6::DBus Qt6::Network
    tarrow_ui tarrow_cli tarrow_model tarrow_menubar tarrow_engine tarrow_l10n tarrow_parse
    tarrow_menubar_platform)

# The desktop entry that registers the tarrow: link scheme.
include(GNUInstallDirs)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarrow.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
