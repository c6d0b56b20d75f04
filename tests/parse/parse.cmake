tarrow_add_test(tst_lexicon SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_lexicon.cpp LIBS tarrow_parse)
tarrow_add_test(tst_naturaldateparser SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_naturaldateparser.cpp
                LIBS tarrow_parse)
