# What the menu-bar chip shows: styles, cut titles, time texts and fill.
tarrow_add_test(tst_menubarchippresentation
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_menubarchippresentation.cpp
    LIBS tarrow_chip)
