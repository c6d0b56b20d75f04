# The status item on real panels: chip images, the StatusNotifierItem on a private session bus,
# and the controller's redraws.
tarrow_add_test(tst_chiprenderer
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_chiprenderer.cpp
    LIBS tarrow_menubar_platform)
tarrow_add_test(tst_statusnotifieritem
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_statusnotifieritem.cpp
            ${CMAKE_CURRENT_LIST_DIR}/FakeStatusNotifierWatcher.h
            ${CMAKE_CURRENT_LIST_DIR}/PrivateSessionBus.h
    LIBS tarrow_menubar_platform)
tarrow_add_test(tst_statusitemcontroller
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_statusitemcontroller.cpp
    LIBS tarrow_menubar_platform tarrow_engine)
tarrow_add_test(tst_renderchipcommand
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_renderchipcommand.cpp
    LIBS tarrow_render_chip)
