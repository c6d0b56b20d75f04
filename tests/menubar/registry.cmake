tarrow_add_test(tst_pinresolver SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_pinresolver.cpp LIBS tarrow_menubar)
tarrow_add_test(tst_countdownregistry
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_countdownregistry.cpp
            ${CMAKE_CURRENT_LIST_DIR}/ListCalendarSource.h
    LIBS tarrow_menubar)
