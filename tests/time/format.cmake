tarrow_add_test(tst_remaining SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_remaining.cpp LIBS tarrow_format)
tarrow_add_test(tst_countdownformatter
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_countdownformatter.cpp LIBS tarrow_format)
tarrow_add_test(tst_itemtimetext
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_itemtimetext.cpp LIBS tarrow_format)
