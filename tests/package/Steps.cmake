# Steps of tests that build and run in a folder of their own, which the variable folder names.

get_filename_component(tools "${CMAKE_COMMAND}" DIRECTORY)
file(READ "${SOURCE_DIR}/tests/data/good_run.txt" goodRun)

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

# expect_run(<status> <output> <errors>): of the latest run_program().
function(expect_run expectedStatus expectedOutput expectedErrors)
    if(NOT status STREQUAL expectedStatus OR NOT output STREQUAL expectedOutput OR NOT errors STREQUAL expectedErrors)
        message(FATAL_ERROR "exit status ${status}, not ${expectedStatus}\nprinted:\n${output}\nexpected:\n"
                            "${expectedOutput}\nerrors:\n${errors}\nexpected:\n${expectedErrors}"
        )
    endif()
endfunction()

# expect_output(<expected text> <program> [<variable>=<value>...]): the program, with these variables, prints the text and
# nothing on the error stream, and ends with 0.
function(expect_output expected program)
    run_program(${ARGN} ${EMULATOR} "${program}${EXECUTABLE_SUFFIX}")
    expect_run(0 "${expected}" "")
endfunction()
