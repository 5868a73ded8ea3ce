# Installs, packs, unpacks, builds against and runs what this build has made, in a folder of the test's own.
#
#     cmake -D SETTINGS=<file> -D CONFIG=<build type> -D FAULTY_LIBRARY=<file> -D SECOND_LIBRARY=<folder> -D TEST=<name>
#           -P PackageTest.cmake
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
        execute_process(
            COMMAND ${command} "${binary}" OUTPUT_VARIABLE headers ERROR_QUIET ENCODING UTF-8 COMMAND_ERROR_IS_FATAL ANY
        )
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

# expect_good_runs(<folder> [<variable>=<value>...]): of the programs there.
function(expect_good_runs place)
    expect_output("${goodRun}" "${place}/cvtavi_test" ${ARGN})
    expect_output("${goodCheck}" "${place}/tavi_check" ${ARGN})
endfunction()

function(TheInstalledTreeRunsWhereItIsMovedTo)
    install_to("${folder}/prefix")
    file(GLOB_RECURSE all RELATIVE "${folder}/prefix" "${folder}/prefix/*")
    file(RENAME "${folder}/prefix" "${folder}/moved elsewhere")
    expect_good_runs("${folder}/moved elsewhere/bin")
    foreach(file IN ITEMS CHANGELOG.md events.csv events.html events.json events.md events.schema.json payloads.schema.json)
        expect_file("${folder}/moved elsewhere/share/doc/CorvaneTavi/${file}")
    endforeach()

    # The component Runtime is enough to run, Development is the rest, and no file is in none.
    install_to("${folder}/components" --component Runtime)
    expect_good_runs("${folder}/components/bin")
    if(EXISTS "${folder}/components/include" OR EXISTS "${folder}/components/lib/cmake")
        message(FATAL_ERROR "What a host is built with is installed for running")
    endif()
    install_to("${folder}/components" --component Development)
    file(GLOB_RECURSE both RELATIVE "${folder}/components" "${folder}/components/*")
    if(NOT both STREQUAL all)
        message(FATAL_ERROR "The components are\n${both}\nand all is\n${all}")
    endif()
endfunction()

# place_faulty_library(<folder>): overwrites the library that is there, which file(COPY) would not do if both have the same
# time.
function(place_faulty_library place)
    get_filename_component(name "${FAULTY_LIBRARY}" NAME)
    file(COPY_FILE "${FAULTY_LIBRARY}" "${place}/${name}")
endfunction()

# expect_refusal(<function> <status> <text>): the example host says so when the library's function returns that status.
function(expect_refusal function returned text)
    file(WRITE "${folder}/script" "{\"${function}\": {\"1\": {\"status\": ${returned}}}}")
    run_program("TAVI_FAULT_SCRIPT=${folder}/script" ${host} --print)
    expect_run(1 "" "example_host: nothing is recorded: ${text}\n")
endfunction()

function(TheExamplesBuildWithThePackageAloneAndRun)
    install_to("${folder}/prefix")
    build_host(
        "${SOURCE_DIR}/tests/package/hosts" "${folder}/prefix" "${folder}/build" "-DEXAMPLES=${SOURCE_DIR}/examples"
    )

    expect_output("${minimalRun}" "${folder}/build/minimal/minimal_host")
    file(REMOVE "${folder}/build/minimal/UPI/upiconfig.xml")
    expect_output("Reporting for undefined&undefined&undefined&undefined\n" "${folder}/build/minimal/minimal_host")

    run(${EMULATOR} "${folder}/build/host_test/host_test${EXECUTABLE_SUFFIX}")

    set(host ${EMULATOR} "${folder}/build/host/example_host${EXECUTABLE_SUFFIX}")
    run_program(${host})
    expect_run(0 "${exampleRun}" "")
    run_program(${host} --help)
    expect_run(0 "${output}" "")
    if(NOT output MATCHES "^Usage: example_host \\[--print\\]\n.*\n  --print .*\n  --help ")
        message(FATAL_ERROR "--help prints\n${output}")
    endif()
    run_program(${host} --print --prnt)
    expect_run(2 "" "example_host: unknown option \"--prnt\"; --help shows those there are\n")
    if(SYSTEM STREQUAL "Linux")
        run_program(sh -c "exec \"$0\" --print >/dev/full" ${host})
        expect_run(1 "" "example_host: standard output cannot be written\n")
    endif()

    # Its payloads. Written to a file, for they are UTF-8 and Windows's console is not.
    execute_process(
        COMMAND ${host} --print RESULT_VARIABLE status OUTPUT_FILE "${folder}/payloads" ERROR_VARIABLE errors
    )
    set(output "")
    expect_run(0 "" "")
    run_program(${EMULATOR} "${folder}/prefix/bin/tavi_check${EXECUTABLE_SUFFIX}" --captured "${folder}/payloads")
    if(NOT status EQUAL 0 OR NOT output MATCHES "\n10 good, 0 bad\n$" OR errors)
        message(FATAL_ERROR "tavi_check --captured ended with ${status} and said:\n${output}${errors}")
    endif()

    if(SYSTEM STREQUAL "Windows")
        place_faulty_library("${folder}/build/host")
    else()
        place_faulty_library("${folder}/prefix/lib")
    endif()
    expect_refusal(IsOptedIn 4 "the user has not opted in to usage-data collection")
    expect_refusal(SetTestingFlags 7 "SetTestingFlags returned 7")
    expect_refusal(SetTestingCallback 7 "SetTestingCallback returned 7")
endfunction()

# By g++ and pkg-config alone, from a folder that the installed tree was moved to.
function(AHostLinksByPkgConfigAlone)
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

# configure_subfolder_host(<option>...): a host that builds the project along with itself; fails when that changes the host.
macro(configure_subfolder_host)
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/package/subfolder" -B "${folder}/build" ${CONFIGURE_OPTIONS}
        "-DCORVANE_SOURCE=${SOURCE_DIR}" -DCMAKE_BUILD_RPATH_USE_ORIGIN=ON ${NESTED_OPTIONS} ${ARGN}
    )
endmacro()

# BUILD_SHARED_LIBS is about the host's libraries: the wrapper stays a static one.
function(AHostBuildsTheProjectAsASubfolder)
    set(host "${folder}/build/programs/host")
    configure_subfolder_host(-DBUILD_SHARED_LIBS=ON)
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}")
    expect_output("${exampleRun}" "${host}")

    file(READ "${folder}/build/programs/options.txt" options)
    if(options)
        message(FATAL_ERROR "The host is compiled with ${options}")
    endif()
    # What a static library passes on to the linker is in no property.
    if(EXISTS "${folder}/build/build.ninja")
        file(READ "${folder}/build/build.ninja" rules)
        string(REGEX MATCH "build programs[/\\]host${EXECUTABLE_SUFFIX}:[^#]*" rule "${rules}")
        if(NOT rule OR rule MATCHES "-z,relro,-z,now")
            message(FATAL_ERROR "The host is linked by\n${rule}")
        endif()
    endif()
    run_program("${tools}/ctest" --test-dir "${folder}/build" -C "${CONFIG}" -N)
    if(NOT output MATCHES "Test #1: Host.Runs\n\nTotal Tests: 1\n")
        message(FATAL_ERROR "The host's tests are\n${output}${errors}")
    endif()

    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${CONFIG}" --prefix "${folder}/installed")
    file(GLOB_RECURSE files RELATIVE "${folder}/installed" "${folder}/installed/*")
    if(NOT files STREQUAL "bin/host${EXECUTABLE_SUFFIX}")
        message(FATAL_ERROR "What is installed is ${files}")
    endif()

    # With CORVANE_INSTALL the libraries are installed as well, and no program.
    run("${CMAKE_COMMAND}" -DCORVANE_INSTALL=ON "${folder}/build")
    set(prefix "${folder}/installed along")
    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${CONFIG}" --prefix "${prefix}")
    build_host("${SOURCE_DIR}/examples/minimal" "${prefix}" "${folder}/other")
    expect_output("${minimalRun}" "${folder}/other/minimal_host")
    foreach(path IN ITEMS "bin/cvtavi_test${EXECUTABLE_SUFFIX}" "bin/tavi_check${EXECUTABLE_SUFFIX}" bin/UPI share)
        if(EXISTS "${prefix}/${path}")
            message(FATAL_ERROR "${path} is installed along with the host")
        endif()
    endforeach()

    # A host that fetches it, with a generator of several configurations where there is one. That it builds is proved above.
    file(REMOVE_RECURSE "${folder}/build")
    if(Ninja IN_LIST CONFIGURE_OPTIONS)
        list(TRANSFORM CONFIGURE_OPTIONS REPLACE "^Ninja$" "Ninja Multi-Config")
    endif()
    configure_subfolder_host(-DHOST_FETCHES=ON)
endfunction()

function(WhatCannotBeBuiltIsRefusedWithTheReason)
    configure_fails(
        " BUILD_SHARED_LIBS cannot be ON: the wrapper is a static library, " "${SOURCE_DIR}" -DBUILD_SHARED_LIBS=ON
    )

    install_to("${folder}/prefix")
    find_package(CorvaneTavi 2 QUIET CONFIG PATHS "${folder}/prefix" NO_DEFAULT_PATH)
    if(CorvaneTavi_FOUND OR NOT CorvaneTavi_CONSIDERED_VERSIONS STREQUAL VERSION)
        message(FATAL_ERROR "The package is taken for version 2, or is \"${CorvaneTavi_CONSIDERED_VERSIONS}\", not ${VERSION}")
    endif()

    # A Mini-XML of another version than the package was built with, and one whose header and library do not fit. The system's
    # own library must not be taken for a header of another version.
    math(EXPR other "7 - ${MXML_VERSION}")
    make_mini_xml("${folder}/other" ${other} LIBRARY)
    configure_fails(
        "built with Mini-XML ${MXML_VERSION}, and what is found is Mini-XML ${other}, in ${folder}/other/include."
        "${SOURCE_DIR}/examples/minimal" "-DCorvaneTavi_DIR=${folder}/prefix/lib/cmake/CorvaneTavi"
        "-DMxml_INCLUDE_DIR=${folder}/other/include"
    )
    make_mini_xml("${folder}/alone" 4)
    configure_fails(
        "${folder}/alone/include/mxml.h, has no library in its place, ${folder}/alone: " "${SOURCE_DIR}"
        "-DMxml_INCLUDE_DIR=${folder}/alone/include"
    )
    make_mini_xml("${folder}/elsewhere" 4 LIBRARY)
    configure_fails(
        "Mxml_LIBRARY is ${folder}/elsewhere/lib/libmxml4.a." "${SOURCE_DIR}"
        "-DMxml_INCLUDE_DIR=${folder}/alone/include" "-DMxml_LIBRARY=${folder}/elsewhere/lib/libmxml4.a"
    )

    # Each file that a library's folder lacks.
    set(files include/TaviDesktopSDK/TaviDesktopSDK.h)
    if(SYSTEM STREQUAL "Windows")
        list(APPEND files bin/TaviSDKWrapper.dll "${IMPORT_LIBRARY}")
    else()
        list(APPEND files lib/libTaviSDKWrapper.so)
    endif()
    foreach(file IN LISTS files)
        file(RENAME "${folder}/prefix/${file}" "${folder}/away")
        get_filename_component(name "${file}" NAME)
        configure_fails("${name}" "${SOURCE_DIR}" "-DTAVI_SDK_DIR=${folder}/prefix")
        file(RENAME "${folder}/away" "${folder}/prefix/${file}")
    endforeach()
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
    expect_good_runs("${unpacked}/bin" --unset=LD_LIBRARY_PATH)
    file(GLOB binaries "${unpacked}/bin/cvtavi_test*" "${unpacked}/bin/tavi_check*" "${unpacked}/bin/*TaviSDK*.dll"
         "${unpacked}/bin/*mxml*.dll" "${unpacked}/lib/*.so"
    )
    expect_no_other_libraries(${binaries})
endfunction()

function(WithoutFurtherPackagesTheTestProgramIsLeft)
    foreach(package IN ITEMS CLI11 nlohmann_json GTest)
        list(APPEND CONFIGURE_OPTIONS -DCMAKE_DISABLE_FIND_PACKAGE_${package}=ON)
    endforeach()
    install_to("${folder}/library")
    foreach(options IN ITEMS "tavi_check and the tests" "tavi_check and the contract tests:-DTAVI_SDK_DIR=${folder}/library")
        string(REPLACE ":" ";" options "${options}")
        list(POP_FRONT options what)
        run_program("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS} ${options})
        if(NOT status EQUAL 0 OR NOT output MATCHES "\n-- Left out: ${what}, for lack of CLI11, nlohmann_json, GTest\n")
            message(FATAL_ERROR "Configuring ended with ${status} and said:\n${output}${errors}")
        endif()
    endforeach()
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

# The whole project on another library with the same declarations.
function(ProgramsAndWrapperBuildAndPassOnASecondLibrary)
    # Inside the build folder, so that the linker gets no absolute path, see build_host().
    set(library "${folder}/build/library")
    file(COPY "${SECOND_LIBRARY}/" DESTINATION "${library}")
    run(
        "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${folder}/build" ${CONFIGURE_OPTIONS} ${NESTED_OPTIONS}
        "-DTAVI_SDK_DIR=${library}"
    )
    run("${CMAKE_COMMAND}" --build "${folder}/build" --config "${CONFIG}")
    set(program "${folder}/build/bin/cvtavi_test")
    expect_output("${goodRun}" "${program}")
    # This library has no edit timer.
    set(remark "REMARK  document_editing_length_ms did not come: 1 test")
    string(REGEX REPLACE "\n\n([0-9]+ passed)" "\n${remark}\n\n\\1" expected "${goodCheck}")
    expect_output("${expected}" "${folder}/build/bin/tavi_check")
    set(ctest "${tools}/ctest" --test-dir "${folder}/build" -C "${CONFIG}" --no-tests=error --output-on-failure)
    run(${ctest})

    # Where it takes "" for no text, only the assumption that it does not may fail.
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
    if(NOT failed STREQUAL "Contract.Assumed.AnEmptyTextIsText" OR NOT output MATCHES "takes \"\" for no text")
        message(FATAL_ERROR "What fails is \"${failed}\":\n${output}${errors}")
    endif()

    # The library is installed with the programs, which do not need its former folder then.
    run("${CMAKE_COMMAND}" --install "${folder}/build" --config "${CONFIG}" --prefix "${folder}/prefix")
    file(REMOVE_RECURSE "${library}")
    expect_output("${goodRun}" "${folder}/prefix/bin/cvtavi_test")
    build_host("${SOURCE_DIR}/examples/minimal" "${folder}/prefix" "${folder}/host")
    expect_output("${minimalRun}" "${folder}/host/minimal_host")
endfunction()

cmake_language(CALL "${TEST}")
file(REMOVE_RECURSE "${folder}")
