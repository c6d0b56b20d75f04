tarrow_add_test(tst_parsecommand SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_parsecommand.cpp
                LIBS tarrow_cli)
