tarrow_add_library(tarrow_parse)
target_sources(tarrow_parse PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/Lexicon.h
    ${CMAKE_CURRENT_LIST_DIR}/Lexicon.cpp
    ${CMAKE_CURRENT_LIST_DIR}/WallTime.h
    ${CMAKE_CURRENT_LIST_DIR}/WallTime.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NaturalDateMatch.h
    ${CMAKE_CURRENT_LIST_DIR}/NaturalDatePatterns.h
    ${CMAKE_CURRENT_LIST_DIR}/NaturalDatePatterns.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NaturalDateParser.h
    ${CMAKE_CURRENT_LIST_DIR}/NaturalDateParser.cpp)
target_link_libraries(tarrow_parse PUBLIC Qt6::Core)
