# bench_engine: one engine pass and one list rebuild over 10,000 countdowns and 2,000 occurrences.
add_executable(bench_engine ${CMAKE_CURRENT_LIST_DIR}/bench_engine.cpp)
target_link_libraries(bench_engine PRIVATE tarrow_engine tarrow_warnings)
