# tarrow_engine: the countdown engine, its tick and the calendar reach pass.
tarrow_add_library(tarrow_engine)
target_sources(tarrow_engine PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/CalendarReachPass.h
    ${CMAKE_CURRENT_LIST_DIR}/CalendarReachPass.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownEngine.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownEngine.cpp
    ${CMAKE_CURRENT_LIST_DIR}/CountdownProgress.h
    ${CMAKE_CURRENT_LIST_DIR}/CountdownProgress.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ReachState.h
    ${CMAKE_CURRENT_LIST_DIR}/RefreshBucket.h
    ${CMAKE_CURRENT_LIST_DIR}/RefreshBucket.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SinglePassEngine.h
    ${CMAKE_CURRENT_LIST_DIR}/SinglePassEngine.cpp
    ${CMAKE_CURRENT_LIST_DIR}/TickScheduler.h
    ${CMAKE_CURRENT_LIST_DIR}/TimerTickScheduler.h
    ${CMAKE_CURRENT_LIST_DIR}/TimerTickScheduler.cpp
)
target_link_libraries(tarrow_engine PUBLIC Qt6::Core tarrow_menubar tarrow_format tarrow_model)
