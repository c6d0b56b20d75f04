# Writes the AppStream metainfo file (cmake -P): the inputs of Localize.cmake (TEMPLATE, OUTPUT,
# TABLES) and TARROW_APP_ID, TARROW_VERSION, TARROW_RELEASE_DATE, plus the optional web links
# TARROW_HOMEPAGE_URL, TARROW_BUGTRACKER_URL and TARROW_SCREENSHOTS_URL (the web folder that holds
# the pictures of docs/screenshots).
cmake_minimum_required(VERSION 3.25)

set(TARROW_APPSTREAM_WEB "")
if(TARROW_HOMEPAGE_URL)
    string(APPEND TARROW_APPSTREAM_WEB "  <url type=\"homepage\">${TARROW_HOMEPAGE_URL}</url>\n")
endif()
if(TARROW_BUGTRACKER_URL)
    string(APPEND TARROW_APPSTREAM_WEB
           "  <url type=\"bugtracker\">${TARROW_BUGTRACKER_URL}</url>\n")
endif()
if(TARROW_SCREENSHOTS_URL)
    string(APPEND TARROW_APPSTREAM_WEB "  <screenshots>\n")
    set(type " type=\"default\"")
    foreach(shot "en-panel.png:The next countdown in the panel, and the popup"
                 "en-light-editor.png:The editor finds the date in the title"
                 "en-dark-list.png:The list in a dark theme"
                 "en-light-settings.png:The settings")
        string(REGEX MATCH "^([^:]+):(.*)$" ignored "${shot}")
        string(APPEND TARROW_APPSTREAM_WEB
               "    <screenshot${type}>\n"
               "      <caption>${CMAKE_MATCH_2}</caption>\n"
               "      <image>${TARROW_SCREENSHOTS_URL}/${CMAKE_MATCH_1}</image>\n"
               "    </screenshot>\n")
        set(type "")
    endforeach()
    string(APPEND TARROW_APPSTREAM_WEB "  </screenshots>\n")
endif()

set(FORMAT xml)
include(${CMAKE_CURRENT_LIST_DIR}/Localize.cmake)
