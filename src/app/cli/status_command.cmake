# tarrow status: one engine pass over the data folder.
target_sources(tarrow_cli PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/StatusCommand.h
    ${CMAKE_CURRENT_LIST_DIR}/StatusCommand.cpp)
target_link_libraries(tarrow_cli PUBLIC tarrow_engine tarrow_chip)
