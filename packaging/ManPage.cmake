# Writes the man page from the command line's own help, so the two never disagree:
#   cmake -DTARROW=path/to/tarrow -DTEMPLATE=tarrow.1.in -DOUTPUT=tarrow.1 \
#         -DTARROW_VERSION=... -DTARROW_RELEASE_DATE=... -DTARROW_APP_ID=... -P ManPage.cmake
# `tarrow help` prints "Usage: ..." and two blocks of "  tarrow ..." lines, the commands and then
# the options (each option followed by two or more spaces and what it does).
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${TARROW}" help OUTPUT_VARIABLE _help RESULT_VARIABLE _result
                ENCODING UTF-8)
if(NOT _result EQUAL 0)
    message(FATAL_ERROR "ManPage.cmake: `${TARROW} help` failed (${_result})")
endif()

# roff: a backslash is written \e, a hyphen in an option \-; a line may not start with a dot.
function(_roff text out)
    string(REPLACE "\\" "\\e" text "${text}")
    string(REPLACE "-" "\\-" text "${text}")
    string(REGEX REPLACE "^([.'])" "\\\\&\\1" text "${text}")
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

# The help is read line by line; semicolons are kept out of CMake's list splitting.
string(REPLACE ";" "\\;" _help "${_help}")
string(REPLACE "\n" ";" _lines "${_help}")
set(_synopsis "")
set(_commands "")
set(_options "")
set(_block "")
foreach(_line IN LISTS _lines)
    if(_line MATCHES "^Usage: tarrow (.*)$")
        _roff("${CMAKE_MATCH_1}" _text)
        set(_synopsis "\\fBtarrow\\fR ${_text}")
    elseif(_line STREQUAL "Commands:")
        set(_block commands)
    elseif(_line STREQUAL "Options:")
        set(_block options)
    elseif(_line MATCHES "^  tarrow (.*)$")
        set(_entry "${CMAKE_MATCH_1}")
        if(_block STREQUAL "commands")
            # "add TITLE [--date ISO8601]": the command in bold, its arguments as written.
            string(REGEX MATCH "^([^ ]+)(.*)$" _ignored "${_entry}")
            _roff("${CMAKE_MATCH_2}" _arguments)
            _roff("${CMAKE_MATCH_1}" _name)
            string(APPEND _commands "\\fBtarrow ${_name}\\fR${_arguments}\n.br\n")
        elseif(_block STREQUAL "options" AND _entry MATCHES "^(.*[^ ])  +([^ ].*)$")
            set(_what "${CMAKE_MATCH_2}")
            _roff("${CMAKE_MATCH_1}" _usage)
            _roff("${_what}" _what)
            string(APPEND _options ".TP\n\\fBtarrow ${_usage}\\fR\n${_what}\n")
        endif()
    endif()
endforeach()
if(_synopsis STREQUAL "" OR _commands STREQUAL "" OR _options STREQUAL "")
    message(FATAL_ERROR "ManPage.cmake: `tarrow help` no longer has the usage, commands and "
                        "options this script reads")
endif()
string(REPLACE "\\;" ";" _commands "${_commands}")
string(REPLACE "\\;" ";" _options "${_options}")
set(TARROW_MAN_SYNOPSIS "${_synopsis}")
set(TARROW_MAN_COMMANDS "${_commands}")
set(TARROW_MAN_OPTIONS "${_options}")
string(REPLACE "." "/" TARROW_APP_PATH "${TARROW_APP_ID}")
configure_file("${TEMPLATE}" "${OUTPUT}" @ONLY)
