# tarrow_add_test(tst_name LIBS lib... [SOURCES extra...] [ENVIRONMENT VAR=value...] [USES_TARROW])
# One QtTest executable per class under test, built from tst_name.cpp. Every test runs with a
# pinned time zone and locale, and a private, throw-away home so no test can touch the user's
# real data. USES_TARROW: the test starts the `tarrow` executable (TARROW_EXECUTABLE).
function(tarrow_add_test name)
    cmake_parse_arguments(ARG "USES_TARROW" "" "SOURCES;LIBS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test tarrow_test_support tarrow_warnings ${ARG_LIBS})
    if(ARG_USES_TARROW)
        target_compile_definitions(${name} PRIVATE TARROW_EXECUTABLE="$<TARGET_FILE:tarrow>")
        add_dependencies(${name} tarrow)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "TZ=Europe/Istanbul;LANG=C.UTF-8;LC_ALL=C.UTF-8;LANGUAGE=;QT_QPA_PLATFORM=offscreen;XDG_DATA_HOME=${CMAKE_CURRENT_BINARY_DIR}/home/data;XDG_CONFIG_HOME=${CMAKE_CURRENT_BINARY_DIR}/home/config;TARROW_FIXTURES=${PROJECT_SOURCE_DIR}/tests/fixtures;${ARG_ENVIRONMENT}"
        TIMEOUT 120)
endfunction()
