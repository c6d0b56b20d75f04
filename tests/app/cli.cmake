tarrow_add_test(tst_cli SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_cli.cpp LIBS tarrow_cli)
