# How a program of test cases is made known to CTest.
include_guard(GLOBAL)
include(GoogleTest)

option(KEST_WHOLE_TEST_PROGRAMS "Run test cases in four processes a program, not one each: quicker where starts are slow"
    OFF)

# kest_add_test_cases(<program> [<property> <value>...]): each case is a test of its own, in a process of its own.
function(kest_add_test_cases program)
    gtest_discover_tests(${program} DISCOVERY_TIMEOUT 60 PROPERTIES ${ARGN})
endfunction()

# kest_add_tests(<program> [<property> <value>...]): for programs whose cases can follow each other in one process. With
# KEST_WHOLE_TEST_PROGRAMS the tests are parts of the program, which tell no more than failed and skipped cases; where
# they are not, each case proves that it needs no other.
function(kest_add_tests program)
    if(NOT KEST_WHOLE_TEST_PROGRAMS)
        kest_add_test_cases(${program} ${ARGN})
        return()
    endif()
    set(parts 4)
    foreach(part RANGE 1 ${parts})
        math(EXPR index "${part} - 1")
        set(test ${program}.${part}of${parts})
        add_test(NAME ${test} COMMAND ${program} --gtest_brief=1)
        set_tests_properties(${test} PROPERTIES COST 100 ${ARGN}) # CTest starts what takes long first
        set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT GTEST_TOTAL_SHARDS=${parts} GTEST_SHARD_INDEX=${index})
    endforeach()
endfunction()
