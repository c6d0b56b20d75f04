# bench_store: loading and saving an events file of 10,000 realistic events.
add_executable(bench_store ${CMAKE_CURRENT_LIST_DIR}/bench_store.cpp)
target_link_libraries(bench_store PRIVATE tarrow_model tarrow_warnings)
