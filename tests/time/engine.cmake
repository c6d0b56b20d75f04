tarrow_add_test(tst_countdownengine
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_countdownengine.cpp
            ${CMAKE_CURRENT_LIST_DIR}/FakeTickScheduler.h
            ${PROJECT_SOURCE_DIR}/tests/menubar/ListCalendarSource.h
    LIBS tarrow_engine)
