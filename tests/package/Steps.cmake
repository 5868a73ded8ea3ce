# Steps of tests that build and run in a folder of their own, which the variable folder names.

get_filename_component(tools "${CMAKE_COMMAND}" DIRECTORY)
file(READ "${SOURCE_DIR}/tests/data/good_run.txt" goodRun)
# What tavi_check prints when every test passes.
string(REGEX REPLACE "\nTesting ([^\n]+)\nPASSED\n" "\\1 ... PASSED\n" goodCheck "${goodRun}")
string(REGEX MATCHALL "PASSED" testsOfGoodCheck "${goodCheck}")
list(LENGTH testsOfGoodCheck testsOfGoodCheck)
string(REPLACE "All tests passed" "${testsOfGoodCheck} passed, 0 failed" goodCheck "${goodCheck}")

# run(<command>...): must succeed; its output is shown when it does not.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGV}\n${output}\nended with ${status}")
    endif()
endfunction()

# run_program([<variable>=<value>...] <program> [<argument>...]): with these variables, in another folder; sets status,
# output and errors.
macro(run_program)
    file(MAKE_DIRECTORY "${folder}/elsewhere")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E env ${ARGN}
        WORKING_DIRECTORY "${folder}/elsewhere"
        RESULT_VARIABLE status
        OUTPUT_VARIABLE output
        ERROR_VARIABLE errors
    )
    string(REPLACE "\r\n" "\n" output "${output}")
    string(REPLACE "\r\n" "\n" errors "${errors}")
endmacro()

# take_line(<variable of the line> <variable of the text>): moves the text's first line out of it.
macro(take_line line text)
    string(FIND "${${text}}" "\n" ${line}End)
    if(${line}End EQUAL -1)
        string(LENGTH "${${text}}" ${line}End)
    endif()
    string(SUBSTRING "${${text}}" 0 ${${line}End} ${line})
    math(EXPR ${line}End "${${line}End} + 1")
    string(LENGTH "${${text}}" length)
    if(${line}End GREATER length)
        set(${text} "")
    else()
        string(SUBSTRING "${${text}}" ${${line}End} -1 ${text})
    endif()
endmacro()

# add_difference(<variable> <what> <expected text> <text>): the first line in which they differ, below the line above it. CMake
# leaves lines as they are that begin with a blank.
function(add_difference variable what expected found)
    if(found STREQUAL expected)
        return()
    endif()
    set(number 0)
    set(expectedLine "")
    set(foundLine "")
    while(foundLine STREQUAL expectedLine)
        if(NOT foundLine STREQUAL "")
            set(above "   ${foundLine}\n")
        endif()
        math(EXPR number "${number} + 1")
        if("${expected}${found}" STREQUAL "")
            set(expectedLine "") # one of them lacks the last line end
            set(foundLine "")
            break()
        endif()
        take_line(expectedLine expected)
        take_line(foundLine found)
    endwhile()
    string(APPEND ${variable} " line ${number} of ${what}, \"-\" is expected and \"+\" is there:\n"
                              "${above} - ${expectedLine}\n + ${foundLine}\n"
    )
    set(${variable} "${${variable}}" PARENT_SCOPE)
endfunction()

# expect_run(<status> <output> <errors>): of the latest run_program().
function(expect_run expectedStatus expectedOutput expectedErrors)
    set(differences "")
    if(NOT status STREQUAL expectedStatus)
        set(differences " exit status ${status}, not ${expectedStatus}\n")
    endif()
    add_difference(differences "the output" "${expectedOutput}" "${output}")
    add_difference(differences "the errors" "${expectedErrors}" "${errors}")
    if(differences)
        message(FATAL_ERROR "${differences}")
    endif()
endfunction()

# expect_output(<expected text> <program> [<variable>=<value>...]): the program, with these variables, prints the text and
# nothing on the error stream, and ends with 0.
function(expect_output expected program)
    run_program(${ARGN} ${EMULATOR} "${program}${EXECUTABLE_SUFFIX}")
    expect_run(0 "${expected}" "")
endfunction()
