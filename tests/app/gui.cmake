# Tests of the tray application: links, single instance, login launch, popup placement and models,
# and one end-to-end run against a real panel under Xvfb.
tarrow_add_test(tst_AppURLRouter SOURCES tst_AppURLRouter.cpp LIBS tarrow_app_gui)
tarrow_add_test(tst_LoginLaunch SOURCES tst_LoginLaunch.cpp LIBS tarrow_app_gui)
tarrow_add_test(tst_XdgAutostart SOURCES tst_XdgAutostart.cpp LIBS tarrow_app_gui)
tarrow_add_test(tst_PopupPlacement SOURCES tst_PopupPlacement.cpp LIBS tarrow_ui)
tarrow_add_test(tst_PopoverController SOURCES tst_PopoverController.cpp LIBS tarrow_ui)
tarrow_add_test(tst_QuickEntryController SOURCES tst_QuickEntryController.cpp LIBS tarrow_ui)

# These start the real `tarrow` executable.
foreach(test tst_SingleInstance tst_TrayApplication)
    tarrow_add_test(${test} SOURCES ${test}.cpp LIBS tarrow_app_gui)
    target_compile_definitions(${test} PRIVATE TARROW_EXECUTABLE="$<TARGET_FILE:tarrow>")
    add_dependencies(${test} tarrow)
endforeach()

# End to end: Xvfb, a session bus, xfce4-panel as the tray host, the desktop entry and xdg-open.
add_executable(tarrow_screen_grab e2e/ScreenGrab.cpp)
target_link_libraries(tarrow_screen_grab PRIVATE Qt6::Gui tarrow_warnings)
add_test(NAME e2e_tray
         COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/e2e/run-e2e.sh $<TARGET_FILE:tarrow>
                 $<TARGET_FILE:tarrow_screen_grab> ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/e2e)
set_tests_properties(e2e_tray PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 180 RUN_SERIAL TRUE)
