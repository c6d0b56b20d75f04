# Warning flags shared by every target of the project. (-Wnull-dereference is left out: at -O3 GCC
# 12 reports false positives inside QHash.)
add_library(tarrow_warnings INTERFACE)
target_compile_options(tarrow_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
    -Woverloaded-virtual -Wimplicit-fallthrough)
if(TARROW_WARNINGS_AS_ERRORS)
    target_compile_options(tarrow_warnings INTERFACE -Werror)
endif()

# One folder, one static library:
#   tarrow_add_library(NAME CLASSES Name... [FILES file...] [LINKS target...])
# CLASSES are file pairs named after their class (Name.h and/or Name.cpp, at least one must exist);
# FILES lists anything else. Includes are written with the layer path from src/ or src/core/
# ("countdown/CountdownEngine.h", "platform/tray/ChipRenderer.h").
function(tarrow_add_library name)
    cmake_parse_arguments(ARG "" "" "CLASSES;FILES;LINKS" ${ARGN})
    set(sources ${ARG_FILES})
    foreach(class IN LISTS ARG_CLASSES)
        set(found FALSE)
        foreach(ext h cpp)
            if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${class}.${ext})
                list(APPEND sources ${class}.${ext})
                set(found TRUE)
            endif()
        endforeach()
        if(NOT found)
            message(FATAL_ERROR "${name}: neither ${class}.h nor ${class}.cpp in ${CMAKE_CURRENT_SOURCE_DIR}")
        endif()
    endforeach()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/src/core)
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE tarrow_warnings)
endfunction()
