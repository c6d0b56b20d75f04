# bench_parse: time per natural-language date parse over realistic titles in five languages.
add_executable(bench_parse ${CMAKE_CURRENT_LIST_DIR}/bench_parse.cpp)
target_link_libraries(bench_parse PRIVATE tarrow_parse tarrow_warnings)
