# Checks that a program or shared library for Linux is hardened, and so are the objects of ours in it.
#
#     cmake -D READELF=<readelf> -D NM=<nm> -D FILE=<binary> -D OBJECTS=<list> -D FORTIFIED=<bool> -D PROCESSOR=<name>
#           -P CheckHardening.cmake
cmake_minimum_required(VERSION 3.25)

function(output_of variable)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${output}" PARENT_SCOPE)
endfunction()

set(faults "")

# expect(<what> <text> <pattern>)
function(expect what text pattern)
    if(NOT text MATCHES "${pattern}")
        string(APPEND faults "    not found: ${what}\n")
        set(faults "${faults}" PARENT_SCOPE)
    endif()
endfunction()

# A line for each segment: its type, five numbers, its flags and its alignment.
output_of(binary "${READELF}" -W -h -l -d "${FILE}")
expect("position-independent code" "${binary}" "Type: +DYN ")
expect("data that is read-only after relocation" "${binary}" "\n +GNU_RELRO ")
expect("binding at the start" "${binary}" "\\(FLAGS\\)[^\n]* BIND_NOW")
expect("a stack that is not executable" "${binary}" "\n +GNU_STACK +0x[0-9a-fx ]+ RW +0x")
if(binary MATCHES "\n +[A-Z_]+ +0x[0-9a-fx ]+ R?WE +0x")
    string(APPEND faults "    a segment is writable and executable\n")
endif()
expect("constants that are not executable" "${binary}" "\n +LOAD +0x[0-9a-fx ]+ R +0x")

output_of(needed "${NM}" -u ${OBJECTS})
expect("a stack protector" "${needed}" " __stack_chk_fail\n")
if(FORTIFIED)
    expect("fortified functions" "${needed}" " __[a-z]+_chk\n")
endif()
if(PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    foreach(object IN LISTS OBJECTS)
        output_of(notes "${READELF}" -W -n "${object}")
        expect("control-flow protection in ${object}" "${notes}" "IBT, SHSTK")
    endforeach()
endif()

if(faults)
    message(FATAL_ERROR "${FILE} is not hardened:\n${faults}")
endif()
