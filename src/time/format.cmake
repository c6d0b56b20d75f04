tarrow_add_library(tarrow_format)
target_sources(tarrow_format PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/Clock.h
    ${CMAKE_CURRENT_LIST_DIR}/Remaining.h
    ${CMAKE_CURRENT_LIST_DIR}/Remaining.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CalendarDifference.h
    ${CMAKE_CURRENT_LIST_DIR}/CalendarDifference.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownFormatter.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownFormatter.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ItemTimeText.h
    ${CMAKE_CURRENT_LIST_DIR}/ItemTimeText.cpp)
target_link_libraries(tarrow_format PUBLIC Qt6::Core tarrow_l10n tarrow_model)
