# Steps of tests that build and run in a folder of their own, which the variable folder names.
cmake_minimum_required(VERSION 3.25)

get_filename_component(tools "${CMAKE_COMMAND}" DIRECTORY)
file(READ "${SOURCE_DIR}/tests/data/good_run.txt" goodRun)
# What tavi_check prints when every test passes.
string(REGEX REPLACE "\nTesting ([^\n]+)\nPASSED\n" "\\1 ... PASSED\n" goodCheck "${goodRun}")
string(REGEX MATCHALL "PASSED" testsOfGoodCheck "${goodCheck}")
list(LENGTH testsOfGoodCheck testsOfGoodCheck)
string(REPLACE "All tests passed" "${testsOfGoodCheck} passed, 0 failed" goodCheck "${goodCheck}")

# run(<command>...): must succeed; its output is shown when it does not.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output ENCODING UTF-8)
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
        ENCODING UTF-8
    )
    string(REPLACE "\r\n" "\n" output "${output}")
    string(REPLACE "\r\n" "\n" errors "${errors}")
endmacro()

# expect_run(<status> <output> <errors>): of the latest run_program().
function(expect_run expectedStatus expectedOutput expectedErrors)
    if(NOT status STREQUAL expectedStatus)
        message(FATAL_ERROR "The exit status is ${status}, not ${expectedStatus}:\n${errors}${output}")
    endif()
    if(NOT errors STREQUAL expectedErrors)
        message(FATAL_ERROR "On the error stream is\n${errors}\nand not\n${expectedErrors}")
    endif()
    if(NOT output STREQUAL expectedOutput)
        message(FATAL_ERROR "The output is\n${output}\nand not\n${expectedOutput}")
    endif()
endfunction()

# expect_output(<expected text> <program> [<variable>=<value>...]): the program, with these variables, prints the text and
# nothing on the error stream, and ends with 0.
function(expect_output expected program)
    run_program(${ARGN} ${EMULATOR} "${program}${EXECUTABLE_SUFFIX}")
    expect_run(0 "${expected}" "")
endfunction()

# configure_fails(<text> <source folder> <option>...): configuring fails, with the text in its message.
function(configure_fails text source)
    file(REMOVE_RECURSE "${folder}/build")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${folder}/build" ${CONFIGURE_OPTIONS} ${ARGN}
        RESULT_VARIABLE status
        OUTPUT_QUIET
        ERROR_VARIABLE errors
        ENCODING UTF-8
    )
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    string(FIND "${errors}" "${text}" place)
    if(status EQUAL 0 OR place EQUAL -1)
        message(FATAL_ERROR "Configuring with ${ARGN} ended with ${status} and said:\n${errors}\nnot:\n${text}")
    endif()
endfunction()

# install_to(<prefix> [<option>...]): what this build has made.
function(install_to prefix)
    run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${prefix}" ${ARGN})
endfunction()

# build_host(<source folder> <prefix> <build folder> [<option>...]): builds with the package in the prefix, so that programs in
# the build folder, or in a folder of it, find the shared libraries when they run.
function(build_host source prefix build)
    # A relative path, for a comma in the absolute one would split the linker's option.
    file(RELATIVE_PATH libraries "${build}" "${prefix}/lib")
    run(
        "${CMAKE_COMMAND}" -S "${source}" -B "${build}" ${CONFIGURE_OPTIONS}
        "-DCorvaneTavi_DIR=${prefix}/lib/cmake/CorvaneTavi" -DCMAKE_BUILD_WITH_INSTALL_RPATH=ON
        "-DCMAKE_INSTALL_RPATH=\$ORIGIN/${libraries}:\$ORIGIN/../${libraries}" ${ARGN}
    )
    run("${CMAKE_COMMAND}" --build "${build}" --config "${CONFIG}")
    file(GLOB programs "${build}/*_host.exe" "${build}/*/host_test.exe" "${build}/*/*_host.exe")
    file(GLOB libraries "${prefix}/bin/*.dll")
    foreach(program IN LISTS programs)
        get_filename_component(place "${program}" DIRECTORY)
        file(COPY ${libraries} DESTINATION "${place}")
    endforeach()
endfunction()
