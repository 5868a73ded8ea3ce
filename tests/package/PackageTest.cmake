# Installs, packs, unpacks, builds against and runs, in a folder of the test's own.
#
#     cmake -D SETTINGS=<file> -D CONFIG=<build type> -D FAULTY_LIBRARY=<file> -D TEST=<name> -P PackageTest.cmake
cmake_minimum_required(VERSION 3.25)

include("${SETTINGS}")
set(folder "${WORK_DIR}/${TEST}")
file(REMOVE_RECURSE "${folder}")
file(MAKE_DIRECTORY "${folder}")

include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

function(expect_file path)
    if(NOT EXISTS "${path}")
        message(FATAL_ERROR "There is no ${path}")
    endif()
endfunction()

# expect_no_other_libraries(<binary>...): a binary depends on no library but the telemetry library, what is packed beside it,
# and the system's C library with what that depends on. Visual Studio has dumpbin in place of objdump.
function(expect_no_other_libraries)
    set(command "${OBJDUMP}" -p)
    if(NOT OBJDUMP)
        set(command dumpbin -nologo -dependents)
    endif()
    foreach(binary IN LISTS ARGN)
        execute_process(COMMAND ${command} "${binary}" OUTPUT_VARIABLE headers ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
        get_filename_component(place "${binary}" DIRECTORY)
        string(REGEX MATCHALL "(NEEDED +|DLL Name: |\n    )[^ \n]+\\.(so|dll|DLL)[^ \n]*" libraries "${headers}")
        if(NOT libraries)
            message(FATAL_ERROR "${binary} depends on no library at all")
        endif()
        foreach(library IN LISTS libraries)
            string(REGEX REPLACE "^.* " "" library "${library}")
            if(SYSTEM STREQUAL "Windows" AND EXISTS "${place}/${library}")
                continue() # packed along
            endif()
            string(TOLOWER "${library}" library)
            if(NOT library MATCHES "^((lib)?tavisdkwrapper.*|libc\\.so\\.6|libgcc_s\\.so\\.1|libm\\.so\\.6|ld-linux.*)$"
               AND NOT library MATCHES "^(kernel32\\.dll|msvcrt\\.dll|api-ms-win-crt-.*|shell32\\.dll|shlwapi\\.dll)$"
            )
                message(FATAL_ERROR "${binary} depends on ${library}")
            endif()
        endforeach()
    endforeach()
endfunction()

set(minimalRun "Reporting for CVSTUDIO&2027.0.F&CVSTUDIO_2027_0_EN&27.0.214\n")
set(exampleRun "${minimalRun}Reported; --print shows what is sent\n")

# install_to(<prefix> [<option>...])
function(install_to prefix)
    run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${prefix}" ${ARGN})
endfunction()

# build_host(<example> <prefix> <build folder>): builds a host application with the package in the prefix, so that it finds
# its shared libraries when it runs.
function(build_host example prefix build)
    # A relative path, for a comma in the absolute one would split the linker's option.
    file(RELATIVE_PATH libraries "${build}" "${prefix}/lib")
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/examples/${example}" -B "${build}" ${CONFIGURE_OPTIONS}
        "-DCorvaneTavi_DIR=${prefix}/lib/cmake/CorvaneTavi" -DCMAKE_BUILD_WITH_INSTALL_RPATH=ON
        "-DCMAKE_INSTALL_RPATH=\$ORIGIN/${libraries}"
    )
    run("${CMAKE_COMMAND}" --build "${build}" --config "${CONFIG}")
    if(SYSTEM STREQUAL "Windows")
        file(GLOB libraries "${prefix}/bin/*.dll")
        file(COPY ${libraries} DESTINATION "${build}")
    endif()
endfunction()

function(TheInstalledProgramRunsFromAMovedFolder)
    install_to("${folder}/prefix")
    file(RENAME "${folder}/prefix" "${folder}/moved elsewhere")
    expect_output("${goodRun}" "${folder}/moved elsewhere/bin/cvtavi_test")
    expect_output("${goodCheck}" "${folder}/moved elsewhere/bin/tavi_check")
    expect_file("${folder}/moved elsewhere/bin/UPI/upiconfig.xml")
    foreach(file IN ITEMS CHANGELOG.md events.csv events.html events.json events.md events.schema.json payloads.schema.json)
        expect_file("${folder}/moved elsewhere/share/doc/CorvaneTavi/${file}")
    endforeach()
endfunction()

function(AHostApplicationBuildsWithThePackageAloneAndRuns)
    install_to("${folder}/prefix")
    build_host(minimal "${folder}/prefix" "${folder}/host")
    expect_output("${minimalRun}" "${folder}/host/minimal_host")

    file(REMOVE "${folder}/host/UPI/upiconfig.xml")
    expect_output("Reporting for undefined&undefined&undefined&undefined\n" "${folder}/host/minimal_host")
endfunction()

function(AHostsOwnTestRecordsWhatTheHostReports)
    install_to("${folder}/prefix")
    build_host(host_test "${folder}/prefix" "${folder}/host")
    run(${EMULATOR} "${folder}/host/host_test${EXECUTABLE_SUFFIX}")
endfunction()

function(EachComponentIsEnoughForItsUse)
    install_to("${folder}/runtime" --component Runtime)
    expect_output("${goodRun}" "${folder}/runtime/bin/cvtavi_test")
    expect_output("${goodCheck}" "${folder}/runtime/bin/tavi_check")
    if(EXISTS "${folder}/runtime/include" OR EXISTS "${folder}/runtime/lib/cmake")
        message(FATAL_ERROR "What a host is built with is installed for running")
    endif()

    install_to("${folder}/development" --component Development)
    if(EXISTS "${folder}/development/bin")
        message(FATAL_ERROR "What runs is installed for building")
    endif()

    install_to("${folder}/both" --component Runtime)
    install_to("${folder}/both" --component Development)
    build_host(minimal "${folder}/both" "${folder}/host")
    expect_output("${minimalRun}" "${folder}/host/minimal_host")

    # Every file belongs to a component.
    install_to("${folder}/all")
    file(GLOB_RECURSE both RELATIVE "${folder}/both" "${folder}/both/*")
    file(GLOB_RECURSE all RELATIVE "${folder}/all" "${folder}/all/*")
    if(NOT both STREQUAL all)
        message(FATAL_ERROR "The components are\n${both}\nand all is\n${all}")
    endif()
endfunction()

# By g++ and pkg-config alone, from a folder that the installed tree was moved to.
function(AHostApplicationLinksByPkgConfigAlone)
    install_to("${folder}/prefix")
    file(RENAME "${folder}/prefix" "${folder}/moved")
    set(ENV{PKG_CONFIG_PATH} "${folder}/moved/lib/pkgconfig")
    execute_process(
        COMMAND pkg-config --cflags --libs corvane-tavi
        OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY
    )
    separate_arguments(options UNIX_COMMAND "${options}")
    set(example "${SOURCE_DIR}/examples/host")
    run("${COMPILER}" -std=c++20 ${COMPILER_OPTIONS} "${example}/main.cpp" -o "${folder}/example_host" ${options})
    file(COPY "${example}/UPI" DESTINATION "${folder}")
    expect_output("${exampleRun}" "${folder}/example_host" "LD_LIBRARY_PATH=${folder}/moved/lib")

    execute_process(
        COMMAND pkg-config --modversion corvane-tavi OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE
    )
    if(NOT found STREQUAL VERSION)
        message(FATAL_ERROR "pkg-config takes it for ${found}, not ${VERSION}")
    endif()
endfunction()

# expect_host(<configuration> <folder of the program> <option>...): the host builds and runs, and has no tests and installed
# files but its own.
function(expect_host configuration programs)
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/package/host" -B "${folder}/build" ${CONFIGURE_OPTIONS}
        "-DCMAKE_BUILD_TYPE=${configuration}" "-DCORVANE_SOURCE=${SOURCE_DIR}" -DCMAKE_BUILD_RPATH_USE_ORIGIN=ON ${ARGN}
    )
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${configuration}")
    expect_output("${exampleRun}" "${folder}/build/${programs}/host")

    file(READ "${folder}/build/${programs}/options.txt" options)
    if(options)
        message(FATAL_ERROR "The host is compiled with ${options}")
    endif()

    run_program("${tools}/ctest" --test-dir "${folder}/build" -C "${configuration}" -N)
    if(NOT output MATCHES "Test #1: Host.Runs\n\nTotal Tests: 1\n")
        message(FATAL_ERROR "The host's tests are\n${output}${errors}")
    endif()

    set(prefix "${folder}/installed")
    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${configuration}" --prefix "${prefix}")
    file(GLOB_RECURSE files RELATIVE "${prefix}" "${prefix}/*")
    if(NOT files STREQUAL "bin/host${EXECUTABLE_SUFFIX}")
        message(FATAL_ERROR "What is installed is ${files}")
    endif()
endfunction()

# BUILD_SHARED_LIBS is about the host's libraries: the wrapper stays a static one.
function(AHostBuildsTheProjectAsASubfolder)
    expect_host("${CONFIG}" programs -DBUILD_SHARED_LIBS=ON)

    # What a static library passes on to the linker is in no property.
    if(EXISTS "${folder}/build/build.ninja")
        file(READ "${folder}/build/build.ninja" rules)
        string(REGEX MATCH "build programs/host${EXECUTABLE_SUFFIX}:[^#]*" rule "${rules}")
        if(NOT rule OR rule MATCHES "-z,relro,-z,now")
            message(FATAL_ERROR "The host is linked by\n${rule}")
        endif()
    endif()

    # With CORVANE_INSTALL the libraries are installed as well, and no program.
    run("${CMAKE_COMMAND}" -DCORVANE_INSTALL=ON "${folder}/build")
    set(prefix "${folder}/installed along")
    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${CONFIG}" --prefix "${prefix}")
    build_host(minimal "${prefix}" "${folder}/other")
    expect_output("${minimalRun}" "${folder}/other/minimal_host")
    foreach(path IN ITEMS "bin/cvtavi_test${EXECUTABLE_SUFFIX}" "bin/tavi_check${EXECUTABLE_SUFFIX}" bin/UPI share)
        if(EXISTS "${prefix}/${path}")
            message(FATAL_ERROR "${path} is installed along with the host")
        endif()
    endforeach()
endfunction()

# In another configuration, and by a generator of several configurations where there is one.
function(AHostFetchesTheProject)
    set(programs programs)
    if(Ninja IN_LIST CONFIGURE_OPTIONS)
        list(TRANSFORM CONFIGURE_OPTIONS REPLACE "^Ninja$" "Ninja Multi-Config")
        set(programs programs/Debug)
    endif()
    expect_host(Debug "${programs}" -DHOST_FETCHES=ON)
endfunction()

function(ASharedWrapperIsRefused)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS} -DBUILD_SHARED_LIBS=ON
        RESULT_VARIABLE status
        OUTPUT_QUIET
        ERROR_VARIABLE errors
    )
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    if(status EQUAL 0 OR NOT errors MATCHES " BUILD_SHARED_LIBS cannot be ON: the wrapper is a static library, ")
        message(FATAL_ERROR "Configuring ended with ${status} and said:\n${errors}")
    endif()
endfunction()

function(TheExampleHostReportsASessionAndPrintsItsPayloads)
    install_to("${folder}/prefix")
    build_host(host "${folder}/prefix" "${folder}/host")
    set(host ${EMULATOR} "${folder}/host/example_host${EXECUTABLE_SUFFIX}")

    run_program(${host})
    expect_run(0 "${exampleRun}" "")

    # Written to a file, for the payloads are UTF-8 and Windows's console is not.
    set(payloads "${folder}/payloads")
    set(output "")
    execute_process(
        COMMAND ${host} --print RESULT_VARIABLE status OUTPUT_FILE "${payloads}" ERROR_VARIABLE errors
    )
    expect_run(0 "" "")
    foreach(captured IN ITEMS "${payloads}" -)
        execute_process(
            COMMAND ${EMULATOR} "${folder}/prefix/bin/tavi_check${EXECUTABLE_SUFFIX}" --captured "${captured}"
            INPUT_FILE "${payloads}"
            RESULT_VARIABLE status
            OUTPUT_VARIABLE output
            ERROR_VARIABLE errors
        )
        if(NOT status EQUAL 0 OR NOT output MATCHES "\n10 good, 0 bad\r?\n$" OR errors)
            message(FATAL_ERROR "tavi_check --captured ${captured} ended with ${status} and said:\n${output}${errors}")
        endif()
    endforeach()
endfunction()

# place_faulty_library(<folder>): overwrites the library that is there, which file(COPY) would not do if both have the same
# time.
function(place_faulty_library place)
    get_filename_component(name "${FAULTY_LIBRARY}" NAME)
    file(COPY_FILE "${FAULTY_LIBRARY}" "${place}/${name}")
endfunction()

function(TheExampleHostSaysWhatIsWrong)
    install_to("${folder}/prefix")
    build_host(host "${folder}/prefix" "${folder}/host")
    set(host ${EMULATOR} "${folder}/host/example_host${EXECUTABLE_SUFFIX}")

    run_program(${host} --help)
    expect_run(0 "${output}" "")
    if(NOT output MATCHES "^Usage: example_host \\[--print\\]\n.*\n  --print .*\n  --help ")
        message(FATAL_ERROR "--help prints\n${output}")
    endif()
    run_program(${host} --print --prnt)
    expect_run(2 "" "example_host: unknown option \"--prnt\"; --help shows those there are\n")
    if(SYSTEM STREQUAL "Linux")
        foreach(option IN ITEMS --help --print)
            run_program(sh -c "exec \"$0\" ${option} >/dev/full" ${host})
            expect_run(1 "" "example_host: standard output cannot be written\n")
        endforeach()
    endif()

    if(SYSTEM STREQUAL "Windows")
        place_faulty_library("${folder}/host")
    else()
        place_faulty_library("${folder}/prefix/lib")
    endif()
    file(WRITE "${folder}/notOptedIn" "{\"IsOptedIn\": {\"1\": {\"status\": 4}}}")
    run_program("TAVI_FAULT_SCRIPT=${folder}/notOptedIn" ${host} --print)
    expect_run(1 "" "example_host: nothing is recorded: the user has not opted in to usage-data collection\n")
    foreach(function IN ITEMS SetTestingFlags SetTestingCallback)
        file(WRITE "${folder}/refused" "{\"${function}\": {\"1\": {\"status\": 7}}}")
        run_program("TAVI_FAULT_SCRIPT=${folder}/refused" ${host} --print)
        expect_run(1 "" "example_host: nothing is recorded: ${function} returned 7\n")
    endforeach()
endfunction()

function(APackageOfAnotherMajorVersionIsNotTaken)
    install_to("${folder}/prefix")
    find_package(CorvaneTavi 2 QUIET CONFIG PATHS "${folder}/prefix" NO_DEFAULT_PATH)
    if(CorvaneTavi_FOUND OR NOT CorvaneTavi_CONSIDERED_VERSIONS STREQUAL VERSION)
        message(FATAL_ERROR "The package is taken for version 2, or is \"${CorvaneTavi_CONSIDERED_VERSIONS}\", not ${VERSION}")
    endif()
endfunction()

# make_mini_xml(<prefix> <major version> [LIBRARY]): the files by which Mini-XML is found, and no more: its header and, with
# LIBRARY, its library under all of its names.
function(make_mini_xml prefix version)
    file(WRITE "${prefix}/include/mxml.h" "#  define MXML_MAJOR_VERSION\t${version}\n")
    if("LIBRARY" IN_LIST ARGN)
        foreach(name IN ITEMS libmxml.a libmxml4.a mxml.lib mxml4.lib)
            file(WRITE "${prefix}/lib/${name}" "")
        endforeach()
    endif()
endfunction()

# expect_refusal(<text> <source folder> <option>...): configuring fails, with the text in its message.
function(expect_refusal text source)
    file(REMOVE_RECURSE "${folder}/build")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${folder}/build" ${CONFIGURE_OPTIONS} ${ARGN}
        RESULT_VARIABLE status
        OUTPUT_QUIET
        ERROR_VARIABLE errors
    )
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    string(FIND "${errors}" "${text}" place)
    if(status EQUAL 0 OR place EQUAL -1)
        message(FATAL_ERROR "Configuring with ${ARGN} ended with ${status} and said:\n${errors}\nnot:\n${text}")
    endif()
endfunction()

function(APackageThatWasBuiltWithAnotherMiniXmlIsNotTaken)
    install_to("${folder}/prefix")
    math(EXPR other "7 - ${MXML_VERSION}")
    make_mini_xml("${folder}/other" ${other} LIBRARY)
    expect_refusal(
        "built with Mini-XML ${MXML_VERSION}, and what is found is Mini-XML ${other}, in ${folder}/other/include."
        "${SOURCE_DIR}/examples/minimal" "-DCorvaneTavi_DIR=${folder}/prefix/lib/cmake/CorvaneTavi"
        "-DMxml_INCLUDE_DIR=${folder}/other/include"
    )
endfunction()

# The system's own library must not be taken for a header of another version.
function(MiniXmlsHeaderAndLibraryAreTakenFromOnePlace)
    make_mini_xml("${folder}/alone" 4)
    expect_refusal(
        "${folder}/alone/include/mxml.h, has no library in its place, ${folder}/alone: " "${SOURCE_DIR}"
        "-DMxml_INCLUDE_DIR=${folder}/alone/include"
    )
    make_mini_xml("${folder}/elsewhere" 4 LIBRARY)
    expect_refusal(
        "Mxml_LIBRARY is ${folder}/elsewhere/lib/libmxml4.a." "${SOURCE_DIR}"
        "-DMxml_INCLUDE_DIR=${folder}/alone/include" "-DMxml_LIBRARY=${folder}/elsewhere/lib/libmxml4.a"
    )
endfunction()

function(TheArchiveRunsAfterUnpackingWithNothingElseInstalled)
    run("${tools}/cpack" --config "${BUILD_DIR}/CPackConfig.cmake" -C "${CONFIG}" -B "${folder}/packed")
    if(SYSTEM STREQUAL "Windows")
        file(GLOB archives "${folder}/packed/*.zip")
    else()
        file(GLOB archives "${folder}/packed/*.tar.gz")
    endif()
    list(LENGTH archives count)
    if(NOT count EQUAL 1 OR NOT archives MATCHES "/corvane-tavi-${VERSION}-")
        message(FATAL_ERROR "${count} archives: ${archives}")
    endif()
    file(ARCHIVE_EXTRACT INPUT "${archives}" DESTINATION "${folder}/some where")
    file(GLOB unpacked "${folder}/some where/*")
    expect_output("${goodRun}" "${unpacked}/bin/cvtavi_test" --unset=LD_LIBRARY_PATH)
    expect_output("${goodCheck}" "${unpacked}/bin/tavi_check" --unset=LD_LIBRARY_PATH)
    file(GLOB binaries "${unpacked}/bin/cvtavi_test*" "${unpacked}/bin/tavi_check*" "${unpacked}/bin/*TaviSDK*.dll"
         "${unpacked}/bin/*mxml*.dll" "${unpacked}/lib/*.so"
    )
    expect_no_other_libraries(${binaries})
endfunction()

function(AnotherLibraryTakesTheStandInsPlace)
    # Inside the build folder, so that the linker gets no absolute path, see build_host().
    install_to("${folder}/build/library")
    file(GLOB others "${folder}/build/library/bin/UPI" "${folder}/build/library/bin/*${EXECUTABLE_SUFFIX}"
         "${folder}/build/library/include/recorder" "${folder}/build/library/include/telemetry"
         "${folder}/build/library/lib/*CorvaneTavi*" "${folder}/build/library/lib/cmake" "${folder}/build/library/lib/pkgconfig"
    )
    file(REMOVE_RECURSE ${others})
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS}
        "-DTAVI_SDK_DIR=${folder}/build/library" -DBUILD_TESTING=OFF
    )
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}" --target TaviSDKWrapper
        RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET
    )
    if(status EQUAL 0)
        message(FATAL_ERROR "The stand-in is built all the same")
    endif()
    expect_output("${goodRun}" "${folder}/build/bin/cvtavi_test")
    expect_output("${goodCheck}" "${folder}/build/bin/tavi_check")

    # The library is installed with the program, and its former folder is not needed any more.
    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${CONFIG}" --prefix "${folder}/prefix")
    file(RENAME "${folder}/build/library" "${folder}/library elsewhere")
    expect_output("${goodRun}" "${folder}/prefix/bin/cvtavi_test")
    expect_output("${goodCheck}" "${folder}/prefix/bin/tavi_check")
    build_host(minimal "${folder}/prefix" "${folder}/host")
    expect_output("${minimalRun}" "${folder}/host/minimal_host")
endfunction()

# expect_left_out(<what> <option>...): configuring without the other packages says so.
function(expect_left_out what)
    foreach(package IN ITEMS CLI11 nlohmann_json GTest)
        list(APPEND ARGN -DCMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
    endforeach()
    run_program("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS} ${ARGN})
    if(NOT status EQUAL 0 OR NOT output MATCHES "\n-- Left out: ${what}, for lack of CLI11, nlohmann_json, GTest\n")
        message(FATAL_ERROR "Configuring ended with ${status} and said:\n${output}${errors}")
    endif()
endfunction()

function(TheTestProgramTakesMiniXmlAlone)
    expect_left_out("tavi_check and the tests")
    # What is built is the same with the stand-in, which is not built here once more.
    install_to("${folder}/build/library")
    expect_left_out("tavi_check and the contract tests" "-DTAVI_SDK_DIR=${folder}/build/library")
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}")
    run_program("${tools}/ctest" --test-dir "${folder}/build" -C "${CONFIG}")
    if(NOT status EQUAL 0 OR NOT output MATCHES "Program\\.PassesWithTheGivenLibrary .*100% tests passed, 0 tests failed out of 1\n")
        message(FATAL_ERROR "The tests are\n${output}${errors}")
    endif()
endfunction()

# expect_product_line(<folder of the program> <product line>): that the program there reports, as the faulty library logs it.
function(expect_product_line place line)
    set(log "${folder}/calls.log")
    file(REMOVE "${log}")
    place_faulty_library("${place}")
    expect_output("${goodRun}" "${place}/cvtavi_test" "TAVI_FAULT_LOG=${log}")
    file(STRINGS "${log}" calls REGEX "Initialize")
    if(NOT calls MATCHES "\"product_line_name\":\"${line}\"")
        message(FATAL_ERROR "The product is\n${calls}")
    endif()
endfunction()

# The path is truncated at the buffer's end: the product file is taken from a parent folder.
function(AProgramInAPathLongerThanItsBufferLooksInTheFolderOfWhatIsLeft)
    install_to("${folder}/prefix")
    set(place "${folder}")
    foreach(letter IN ITEMS a b c)
        string(REPEAT "${letter}" 70 name)
        string(APPEND place "/${name}")
        file(COPY "${folder}/prefix/bin/UPI" DESTINATION "${place}")
    endforeach()
    string(REPEAT d 70 name)
    string(APPEND place "/${name}")
    file(COPY "${folder}/prefix/bin/cvtavi_test.exe" DESTINATION "${place}")
    expect_product_line("${place}" CVSTUDIO)
    # Counter-check: a program that finds no product file reports "undefined".
    file(REMOVE_RECURSE "${folder}/prefix/bin/UPI")
    expect_product_line("${folder}/prefix/bin" undefined)
endfunction()

# expect_lack(<file>): without that file, the library's folder is refused with a message that names the file.
function(expect_lack file)
    expect_file("${folder}/library/${file}")
    file(RENAME "${folder}/library/${file}" "${folder}/away")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS}
                "-DTAVI_SDK_DIR=${folder}/library"
        RESULT_VARIABLE status
        OUTPUT_QUIET
        ERROR_VARIABLE errors
    )
    file(RENAME "${folder}/away" "${folder}/library/${file}")
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    string(FIND "${errors}" "\"${folder}/library\", lacks " place)
    get_filename_component(name "${file}" NAME)
    string(FIND "${errors}" "${name}" named)
    if(status EQUAL 0 OR place EQUAL -1 OR named EQUAL -1)
        message(FATAL_ERROR "Without ${file} configuring ended with ${status} and said:\n${errors}")
    endif()
endfunction()

function(WhatTheFolderOfALibraryLacksIsSaid)
    install_to("${folder}/library")
    set(files include/TaviDesktopSDK/TaviDesktopSDK.h)
    if(SYSTEM STREQUAL "Windows")
        list(APPEND files bin/TaviSDKWrapper.dll "${IMPORT_LIBRARY}")
    else()
        list(APPEND files lib/libTaviSDKWrapper.so)
    endif()
    foreach(file IN LISTS files)
        expect_lack("${file}")
    endforeach()
endfunction()

cmake_language(CALL "${TEST}")
file(REMOVE_RECURSE "${folder}")
