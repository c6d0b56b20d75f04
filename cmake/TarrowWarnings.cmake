# Warning flags shared by every target of the project. (-Wnull-dereference is left out: at -O3 GCC
# 12 reports false positives inside QHash.)
add_library(tarrow_warnings INTERFACE)
target_compile_options(tarrow_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
    -Woverloaded-virtual -Wimplicit-fallthrough)
if(TARROW_WARNINGS_AS_ERRORS)
    target_compile_options(tarrow_warnings INTERFACE -Werror)
endif()

# Adds a library of the project: tarrow_add_library(NAME [STATIC|INTERFACE]).
function(tarrow_add_library name)
    add_library(${name} STATIC)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PRIVATE tarrow_warnings)
endfunction()
