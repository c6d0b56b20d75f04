tarrow_add_test(tst_languagetable
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_languagetable.cpp LIBS tarrow_l10n)
target_compile_definitions(tst_languagetable
    PRIVATE TARROW_L10N_KEYS="${CMAKE_CURRENT_LIST_DIR}/l10n-keys.txt")
tarrow_add_test(tst_localemanager
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/tst_localemanager.cpp LIBS tarrow_l10n)
