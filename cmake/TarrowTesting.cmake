# tarrow_add_test(tst_name SOURCES a.cpp ... LIBS lib ... [ENVIRONMENT VAR=value ...])
# One QtTest executable per class under test. Every test runs with a pinned time zone and
# locale, and a private, throw-away home so no test can touch the user's real data.
function(tarrow_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test tarrow_test_support tarrow_warnings ${ARG_LIBS})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "TZ=Europe/Istanbul;LANG=C.UTF-8;LC_ALL=C.UTF-8;LANGUAGE=;QT_QPA_PLATFORM=offscreen;XDG_DATA_HOME=${CMAKE_CURRENT_BINARY_DIR}/home/data;XDG_CONFIG_HOME=${CMAKE_CURRENT_BINARY_DIR}/home/config;TARROW_FIXTURES=${PROJECT_SOURCE_DIR}/tests/fixtures;${ARG_ENVIRONMENT}"
        TIMEOUT 120)
endfunction()
