# tarrow_menubar: the merged countdown list, its scopes and search, and pin resolution.
tarrow_add_library(tarrow_menubar)
target_sources(tarrow_menubar PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CountdownID.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownID.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownItem.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownItem.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownListScope.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownListScope.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownRegistry.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownRegistry.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownSearch.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownSearch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MenubarSubject.h
    ${CMAKE_CURRENT_LIST_DIR}/MenubarSubject.cpp
    ${CMAKE_CURRENT_LIST_DIR}/PinResolver.h
    ${CMAKE_CURRENT_LIST_DIR}/PinResolver.cpp
)
target_link_libraries(tarrow_menubar PUBLIC Qt6::Core tarrow_model)
