# Builds the project on a library in the stand-in's place, and tests it there.
#
#     cmake -D SETTINGS=<file> -D CONFIG=<build type> -D FOLDER=<where build/library/ is> -D TEST=<name>
#           -P SecondLibraryTest.cmake
cmake_minimum_required(VERSION 3.25)

include("${SETTINGS}")
set(folder "${FOLDER}")
include("${CMAKE_CURRENT_LIST_DIR}/../package/Steps.cmake")
set(program "${folder}/build/bin/cvtavi_test")
set(ctest "${tools}/ctest" --test-dir "${folder}/build" -C "${CONFIG}" --no-tests=error --output-on-failure)

function(ProgramAndWrapperBuildAndPassOnIt)
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS} "-DTAVI_SDK_DIR=${folder}/build/library"
        "-DCORVANE_SANITIZE=${SANITIZE}"
    )
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}")
    expect_output("${goodRun}" "${program}")
    # This library has no edit timer.
    set(remark "REMARK  document_editing_length_ms did not come: 1 test")
    string(REGEX REPLACE "\n\n([0-9]+ passed)" "\n${remark}\n\n\\1" expected "${goodCheck}")
    expect_output("${expected}" "${folder}/build/bin/tavi_check")
    run(${ctest})
endfunction()

function(TheyDoSoWithExplicitConversions)
    ProgramAndWrapperBuildAndPassOnIt()
endfunction()

function(OnlyTheAssumptionThatEmptyTextIsTextMayFail)
    set(noText SECOND_LIBRARY_EMPTY_IS_NO_TEXT=1)
    expect_output("${goodRun}" "${program}" ${noText})
    run_program(${noText} ${EMULATOR} "${folder}/build/bin/tavi_check${EXECUTABLE_SUFFIX}")
    if(NOT status EQUAL 0 OR NOT output MATCHES "\nREMARK  The library takes \"\" for no text: ")
        message(FATAL_ERROR "tavi_check does not remark it:\n${output}${errors}")
    endif()
    run_program(${noText} ${ctest})
    # At the end ctest lists the failed tests, each with its number and result.
    string(REGEX MATCHALL "\n[\t ]*[0-9]+ - [^ ]+ \\([^\n]*\\)" failed "${output}${errors}")
    string(REGEX REPLACE "\n[\t ]*[0-9]+ - ([^ ]+) [^;]*" "\\1" failed "${failed}")
    if(NOT failed STREQUAL "Contract.Assumed.AnEmptyTextIsText")
        message(FATAL_ERROR "What fails is \"${failed}\":\n${output}${errors}")
    endif()
    if(NOT output MATCHES "takes \"\" for no text")
        message(FATAL_ERROR "It does not say why:\n${output}")
    endif()
endfunction()

# expect_statuses(<function> <expected status> <expected output> <status>...): of a run for each status, which the library's
# function returns.
function(expect_statuses function expectedStatus expectedOutput)
    foreach(returned IN LISTS ARGN)
        run_program("SECOND_LIBRARY_${function}=${returned}" ${EMULATOR} "${program}${EXECUTABLE_SUFFIX}")
        message(STATUS "${function} returned ${returned}")
        expect_run("${expectedStatus}" "${expectedOutput}" "")
    endforeach()
endfunction()

function(StatusesOfEveryKindAreTold)
    set(refused "Must be opted-in to KIVA (Veltrane Orvenna) to run tests for Tavi\n")
    expect_statuses(IsOptedIn 1 "${refused}" 4)
    expect_statuses(IsOptedIn 0 "${goodRun}" 0 1 2 3 5 -1 2147483647)

    expect_statuses(Initialize 0 "CorvaneTavi::CorvaneTavi TaviDesktopSDK::Initialize\n${goodRun}" 1 3 -1)
    foreach(status IN ITEMS 1 7 255)
        expect_statuses(SetTestingFlags ${status} "Error occurred setting testing flags\n" ${status})
        expect_statuses(SetTestingCallback ${status} "Error occurred setting testing callback\n" ${status})
    endforeach()

    # A refused event is reported below its verdict, under the name of the method that sent it.
    set(sender "CorvaneTavi::TrackWaypoint")
    string(REPLACE "\nPASSED\n" "\nPASSED\n${sender} TaviDesktopSDK::TrackEvent\n" expected "${goodRun}")
    foreach(title IN ITEMS CommandInvoked FileInput UpdateLicense UserEvent)
        string(REPLACE "Testing ${title}\nPASSED\n${sender} " "Testing ${title}\nPASSED\nCorvaneTavi::Track${title} "
                       expected "${expected}"
        )
    endforeach()
    string(REPLACE "Testing StartTrackFileChange\nPASSED\n${sender} "
                   "Testing StartTrackFileChange\nPASSED\nTaviDocument::TrackEvent " expected "${expected}"
    )
    expect_statuses(TrackEvent 0 "${expected}" 1 4 -1)
endfunction()

cmake_language(CALL "${TEST}")
