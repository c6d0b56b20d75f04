tarrow_add_library(tarrow_l10n)
target_sources(tarrow_l10n PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/LanguageTable.h
    ${CMAKE_CURRENT_LIST_DIR}/LanguageTable.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LocaleManager.h
    ${CMAKE_CURRENT_LIST_DIR}/LocaleManager.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SupportedLanguages.h
    ${CMAKE_CURRENT_LIST_DIR}/SupportedLanguages.cpp)
# One table per interface language, compiled into the library under :/l10n/<code>.json.
qt_add_resources(tarrow_l10n l10n_tables
    PREFIX /l10n
    BASE ${CMAKE_CURRENT_LIST_DIR}/tables
    FILES
        ${CMAKE_CURRENT_LIST_DIR}/tables/en.json
        ${CMAKE_CURRENT_LIST_DIR}/tables/tr.json
        ${CMAKE_CURRENT_LIST_DIR}/tables/de.json
        ${CMAKE_CURRENT_LIST_DIR}/tables/es.json
        ${CMAKE_CURRENT_LIST_DIR}/tables/fr.json)
target_link_libraries(tarrow_l10n PUBLIC Qt6::Core tarrow_model)
