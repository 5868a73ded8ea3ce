# The system's Python: its packages are Debian's. Another one may come before it on the PATH.
set(CORVANE_PYTHON /usr/bin/python3)

# corvane_need_python_modules(MODULE...): ends configuring where one is missing.
function(corvane_need_python_modules)
    foreach(module IN LISTS ARGN)
        execute_process(
            COMMAND "${CORVANE_PYTHON}" -c "import ${module}"
            RESULT_VARIABLE status
            OUTPUT_QUIET ERROR_QUIET
        )
        if(NOT status EQUAL 0)
            string(REGEX REPLACE "\\..*" "" package "${module}")
            message(FATAL_ERROR "The tests take Debian's python3-${package}: install it, or configure with \
-DBUILD_TESTING=OFF.")
        endif()
    endforeach()
endfunction()

# corvane_python_test(NAME FILE ARGUMENT...): a test that leaves no compiled modules in the sources.
function(corvane_python_test name file)
    add_test(NAME ${name} COMMAND "${CORVANE_PYTHON}" -B "${CMAKE_CURRENT_SOURCE_DIR}/${file}" ${ARGN})
endfunction()
