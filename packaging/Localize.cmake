# Fills a desktop entry or AppStream template (cmake -P, or include() after setting the inputs):
#   TEMPLATE, OUTPUT   the template and the file to write
#   FORMAT             "desktop" or "xml"
#   TABLES             the folder of the interface language tables (en.json, tr.json, ...)
# plus any @VARIABLE@ the template uses (TARROW_APP_ID, TARROW_VERSION, ...).
#
# A value written as @l10n:KEY@ is the text of KEY in the tables: in a desktop entry the line
# `Comment=@l10n:app.comment@` becomes `Comment=...` followed by `Comment[tr]=...` and the other
# languages; in XML `<summary>@l10n:app.summary@</summary>` is repeated with xml:lang.
cmake_minimum_required(VERSION 3.25)

set(_languages en tr de es fr)
foreach(_language IN LISTS _languages)
    file(READ "${TABLES}/${_language}.json" _table_${_language})
endforeach()

function(_l10n_text key language out)
    string(JSON _text ERROR_VARIABLE _error GET "${_table_${language}}" "${key}")
    if(_error)
        message(FATAL_ERROR "${TEMPLATE}: the ${language} table has no \"${key}\"")
    endif()
    if(FORMAT STREQUAL "xml")
        string(REPLACE "&" "&amp;" _text "${_text}")
        string(REPLACE "<" "&lt;" _text "${_text}")
        string(REPLACE ">" "&gt;" _text "${_text}")
    endif()
    set(${out} "${_text}" PARENT_SCOPE)
endfunction()

file(READ "${TEMPLATE}" _content)
if(FORMAT STREQUAL "desktop")
    set(_pattern "([A-Za-z]+)=@l10n:([a-z0-9._]+)@")
elseif(FORMAT STREQUAL "xml")
    set(_pattern "( *)<([a-z]+)>@l10n:([a-z0-9._]+)@</[a-z]+>")
else()
    message(FATAL_ERROR "Localize.cmake: FORMAT is desktop or xml, not \"${FORMAT}\"")
endif()
string(REGEX MATCHALL "${_pattern}" _uses "${_content}")
foreach(_use IN LISTS _uses)
    string(REGEX MATCH "${_pattern}" _ignored "${_use}")
    # Built as one string, not a list: the texts may hold semicolons (Keywords).
    set(_replacement "")
    foreach(_language IN LISTS _languages)
        if(NOT _language STREQUAL "en")
            string(APPEND _replacement "\n")
        endif()
        if(FORMAT STREQUAL "desktop")
            _l10n_text("${CMAKE_MATCH_2}" ${_language} _text)
            set(_tag "")
            if(NOT _language STREQUAL "en")
                set(_tag "[${_language}]")
            endif()
            string(APPEND _replacement "${CMAKE_MATCH_1}${_tag}=${_text}")
        else()
            _l10n_text("${CMAKE_MATCH_3}" ${_language} _text)
            set(_attribute "")
            if(NOT _language STREQUAL "en")
                set(_attribute " xml:lang=\"${_language}\"")
            endif()
            string(APPEND _replacement
                   "${CMAKE_MATCH_1}<${CMAKE_MATCH_2}${_attribute}>${_text}</${CMAKE_MATCH_2}>")
        endif()
    endforeach()
    string(REPLACE "${_use}" "${_replacement}" _content "${_content}")
endforeach()

string(CONFIGURE "${_content}" _content @ONLY)
file(WRITE "${OUTPUT}.new" "${_content}")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
