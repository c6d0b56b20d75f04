# tarrow_chip: what the menu-bar chip presents (QtCore only).
tarrow_add_library(tarrow_chip)
target_sources(tarrow_chip PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/MenubarChipPresentation.h
    ${CMAKE_CURRENT_LIST_DIR}/MenubarChipPresentation.cpp)
target_link_libraries(tarrow_chip PUBLIC
    Qt6::Core tarrow_model tarrow_format tarrow_l10n tarrow_menubar tarrow_engine)
