target_sources(tarrow_cli PRIVATE ${CMAKE_CURRENT_LIST_DIR}/ParseCommand.cpp)
target_link_libraries(tarrow_cli PUBLIC tarrow_parse)
