# What holds for our own code and for nobody else's: warnings, hardening, and what sanitizers, coverage and fuzzing take.

if(PROJECT_IS_TOP_LEVEL)
    option(CORVANE_SANITIZE "Build with address, undefined-behaviour and leak sanitizers, and by clang the fuzz targets" OFF)
    option(CORVANE_LONG_TESTS "Test packages, hosts and another library as well; on Linux also under valgrind, and the page" OFF)
    option(CORVANE_COVERAGE "Count the lines and branches that are run; takes clang" OFF)
endif()

add_library(CorvaneOwnCode INTERFACE)
target_compile_options(
    CorvaneOwnCode
    INTERFACE
        $<$<COMPILE_LANG_AND_ID:CXX,GNU,Clang>:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wshadow>
        $<$<COMPILE_LANG_AND_ID:CXX,MSVC>:/W4;/utf-8;/permissive->
)
if(WIN32)
    target_compile_definitions(CorvaneOwnCode INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()

# Release builds are hardened: on Linux as Debian's packages are, with Visual C++ by its control-flow guard. With MinGW they
# are not: its stack protector and its _FORTIFY_SOURCE take a library (libssp), which every host would have to link. That a
# program can be loaded anywhere and that data cannot be executed is what its linker does without being told.
set(release "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
set(hardenedLinking "")
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CORVANE_SANITIZE)
    # Undefined first: a compiler or a packager may have defined another level.
    set(hardening -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
        list(APPEND hardening -fstack-clash-protection -fcf-protection)
    endif()
    target_compile_options(CorvaneOwnCode INTERFACE "$<${release}:${hardening}>")
    set(hardenedLinking "$<${release}:LINKER:-z,relro,-z,now>")
    if(PROJECT_IS_TOP_LEVEL)
        include(CheckPIESupported)
        check_pie_supported(LANGUAGES CXX)
    endif()
elseif(MSVC)
    target_compile_options(CorvaneOwnCode INTERFACE "$<${release}:/guard:cf>")
    set(hardenedLinking "$<${release}:/guard:cf>")
endif()

if(CORVANE_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(CorvaneOwnCode INTERFACE ${sanitizers})
    target_link_options(CorvaneOwnCode INTERFACE ${sanitizers})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_compile_options(CorvaneOwnCode INTERFACE -fsanitize=fuzzer-no-link)
    endif()
endif()
if(CORVANE_COVERAGE)
    target_compile_options(CorvaneOwnCode INTERFACE -fprofile-instr-generate -fcoverage-mapping)
    target_link_options(CorvaneOwnCode INTERFACE -fprofile-instr-generate)
endif()

# corvane_static_runtime(<target>...): the C++ run time goes into the program or library, which then needs none where it
# runs and shares none with others. The sanitizers need the shared one.
function(corvane_static_runtime)
    if(CORVANE_SANITIZE OR MSVC)
        return()
    endif()
    # What unwinds the stack stays shared on Linux, where it comes with the C library: an exception that leaves the library
    # cannot be caught by a program with an unwinder of its own.
    set(options -static-libstdc++)
    if(WIN32)
        set(options -static)
    endif()
    foreach(target IN LISTS ARGN)
        target_link_options(${target} PRIVATE ${options})
    endforeach()
endfunction()

# corvane_copy_runtime_libraries(<target>...): on Windows, the shared libraries of a program stand beside it.
function(corvane_copy_runtime_libraries)
    if(NOT WIN32)
        return()
    endif()
    foreach(target IN LISTS ARGN)
        add_custom_command(
            TARGET ${target} POST_BUILD
            COMMAND "${CMAKE_COMMAND}" -E copy_if_different $<TARGET_RUNTIME_DLLS:${target}> $<TARGET_FILE_DIR:${target}>
            COMMAND_EXPAND_LISTS VERBATIM
        )
    endforeach()
endfunction()

# corvane_file_properties(<target> <description>): on Windows, what the properties of the program or shared library show,
# the project's version among it.
function(corvane_file_properties target description)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set(type VFT_APP)
        set(file "${target}${CMAKE_EXECUTABLE_SUFFIX}")
    else()
        set(type VFT_DLL)
        set(file "${target}${CMAKE_SHARED_LIBRARY_SUFFIX}")
    endif()
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/FileProperties.rc.in" "${resource}" @ONLY)
    if(MINGW)
        # Names without a path: windres passes its arguments to a shell without quoting them.
        set(object "${CMAKE_CURRENT_BINARY_DIR}/${target}.res.obj")
        add_custom_command(
            OUTPUT "${object}"
            COMMAND "${CMAKE_RC_COMPILER}" -O coff ${target}.rc ${target}.res.obj
            WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
            DEPENDS "${resource}"
            VERBATIM
        )
        set_source_files_properties("${object}" PROPERTIES EXTERNAL_OBJECT TRUE)
        set(resource "${object}")
    endif()
    target_sources(${target} PRIVATE "${resource}")
endfunction()

# corvane_own_code(<target>...): builds the targets by our rules. Not part of what a package's user gets.
function(corvane_own_code)
    foreach(target IN LISTS ARGN)
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:CorvaneOwnCode>)
        # Of the target itself: what CorvaneOwnCode asks of the linker would go on to the programs of a host.
        target_link_options(${target} PRIVATE "${hardenedLinking}")
    endforeach()
endfunction()

# corvane_program(<target> <description>): a program that is installed. It finds the telemetry library from its own folder,
# needs no run time where it runs, and on Windows shows the description in its properties.
function(corvane_program target description)
    file(RELATIVE_PATH libraries "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "\$ORIGIN/${libraries}")
    corvane_static_runtime(${target})
    corvane_copy_runtime_libraries(${target})
    if(NOT TAVI_SDK_DIR)
        # The path that CMake would give it in the build tree also has the loader search the working folder.
        set_target_properties(${target} PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
    endif()
    corvane_own_code(${target})
    corvane_file_properties(${target} "${description}")
endfunction()
