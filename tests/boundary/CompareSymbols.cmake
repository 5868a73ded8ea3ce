# Compares symbols, as nm prints them, with a kept list: one a line, in ascending order.
#
#     cmake -D NM=<nm> -D OPTIONS=<of nm> -D FILE=<binary> -D PATTERN=<pattern> -D LIST=<kept list> -P CompareSymbols.cmake
#
# A line of nm's that matches the pattern names a symbol in the pattern's last group.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${NM}" ${OPTIONS} "${FILE}" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" lines "${output}")
set(found)
foreach(line IN LISTS lines)
    if(line MATCHES "${PATTERN}")
        set(symbol "${CMAKE_MATCH_${CMAKE_MATCH_COUNT}}")
        # What is made of a template is weak on Linux, and is not listed there.
        if(symbol MATCHES "^_Z[0-9]+[A-Za-z]+I")
            continue()
        endif()
        # operator new(std::size_t): one list for systems whose std::size_t is unsigned long or unsigned long long.
        string(REGEX REPLACE "nwEy$" "nwEm" symbol "${symbol}")
        # Complete-object and base-object constructor count as one: clang leaves out the former of an abstract class.
        string(REGEX REPLACE "C1E" "C2E" symbol "${symbol}")
        list(APPEND found "${symbol}")
    endif()
endforeach()
list(REMOVE_DUPLICATES found)
list(SORT found)

file(STRINGS "${LIST}" kept)
set(added ${found})
list(REMOVE_ITEM added ${kept})
set(gone ${kept})
list(REMOVE_ITEM gone ${found})
foreach(symbol IN LISTS added)
    message(NOTICE "not in the list: ${symbol}")
endforeach()
foreach(symbol IN LISTS gone)
    message(NOTICE "in the list only: ${symbol}")
endforeach()
list(LENGTH found count)
if(added OR gone OR count EQUAL 0)
    message(FATAL_ERROR "The symbols of ${FILE} are not those of ${LIST}")
endif()
message(NOTICE "${count} symbols, those of the list")
