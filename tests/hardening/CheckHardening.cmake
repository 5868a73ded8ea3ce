# Checks that a program or shared library for Linux is hardened, and so are the objects of ours in it.
#
#     cmake -D READELF=<readelf> -D NM=<nm> -D FILE=<binary> -D OBJECTS=<list> -D FORTIFIED=<bool> -D CONTROL_FLOW=<bool>
#           -P CheckHardening.cmake
#
# FORTIFIED: the objects call functions that have a checked form. CONTROL_FLOW: the processor has a protection of its own.
cmake_minimum_required(VERSION 3.25)

# lines_of(<variable> <command>...): the lines that the command prints, without what is special in a list.
function(lines_of variable)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "[][;]" "" output "${output}")
    string(REGEX MATCHALL "[^\n]+" lines "${output}")
    set(${variable} "${lines}" PARENT_SCOPE)
endfunction()

set(found "")
set(faults "")

# Segments come in the order of their numbers; then, by number, the sections in each: "   04     .rodata .eh_frame ".
lines_of(lines "${READELF}" -W -h -l -d "${FILE}")
set(number "0x[0-9a-f]+")
set(segment 0)
foreach(line IN LISTS lines)
    if(line MATCHES "^ +Type: +DYN ")
        list(APPEND found "position-independent code")
    elseif(line MATCHES "^ +([A-Z_]+) +${number} ${number} ${number} ${number} ${number} ([RWE ]+) ${number}")
        set(type "${CMAKE_MATCH_1}")
        set(flags "${CMAKE_MATCH_2}")
        set(flagsOf${segment} "${flags}")
        math(EXPR segment "${segment} + 1")
        if(type STREQUAL "GNU_RELRO")
            list(APPEND found "data that is read-only after relocation")
        elseif(type STREQUAL "GNU_STACK" AND NOT flags MATCHES "E")
            list(APPEND found "a stack that is not executable")
        elseif(flags MATCHES "W.*E")
            list(APPEND faults "a segment that is writable and executable: ${line}")
        endif()
    elseif(line MATCHES "^ +0?([0-9]+) .*\\.rodata")
        if(NOT flagsOf${CMAKE_MATCH_1} MATCHES "E")
            list(APPEND found "constants that are not executable")
        endif()
    elseif(line MATCHES "\\(FLAGS\\) .*BIND_NOW")
        list(APPEND found "binding at the start")
    endif()
endforeach()

foreach(object IN LISTS OBJECTS)
    lines_of(lines "${NM}" -u "${object}")
    foreach(line IN LISTS lines)
        if(line MATCHES " __stack_chk_fail$")
            list(APPEND found "a stack protector")
        elseif(line MATCHES " __[a-z]+_chk$")
            list(APPEND found "fortified functions")
        endif()
    endforeach()
    lines_of(lines "${READELF}" -W -n "${object}")
    if(CONTROL_FLOW AND NOT lines MATCHES "IBT, SHSTK")
        list(APPEND faults "an object without control-flow protection: ${object}")
    endif()
endforeach()

set(needed
    "position-independent code"
    "data that is read-only after relocation"
    "a stack that is not executable"
    "constants that are not executable"
    "binding at the start"
    "a stack protector"
)
if(FORTIFIED)
    list(APPEND needed "fortified functions")
endif()
foreach(protection IN LISTS needed)
    if(NOT protection IN_LIST found)
        list(APPEND faults "not found: ${protection}")
    endif()
endforeach()
foreach(fault IN LISTS faults)
    message(NOTICE "${fault}")
endforeach()
if(faults)
    message(FATAL_ERROR "${FILE} is not hardened")
endif()
