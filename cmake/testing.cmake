# vx3_test(NAME SOURCES… LIBS… [TIMEOUT seconds] [LABELS …]): one GoogleTest program, registered with CTest.
#
# A label says under which sanitizer `./dev test` runs the program again: `stress` under the thread sanitizer, `faults` under
# the address sanitizer. The target tests-LABEL builds the programs of a label with what they load, and nothing else.
enable_testing()
find_package(GTest)

set(VX3_TEST_LABELS stress faults)
foreach(label ${VX3_TEST_LABELS})
    add_custom_target(tests-${label})
endforeach()

function(vx3_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    if(NOT GTest_FOUND)
        message(STATUS "GoogleTest is not installed: ${name} is left out")
        return()
    endif()
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    add_executable(${name} ${TEST_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${TEST_LIBS} GTest::gtest GTest::gtest_main)
    # Half the time of compiling, and what is tested is as fast as ever.
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)
    if("browser_objects" IN_LIST TEST_LIBS)
        # As the module itself: its classes have no type information to derive from or to check.
        target_compile_options(${name} PRIVATE -fno-rtti)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${TEST_TIMEOUT} LABELS "${TEST_LABELS}")
    foreach(label ${TEST_LABELS})
        if(NOT label IN_LIST VX3_TEST_LABELS)
            message(FATAL_ERROR "${name}: the label ${label} is none of: ${VX3_TEST_LABELS}")
        endif()
        add_dependencies(tests-${label} ${name})
        foreach(loaded browser vx3)
            if(TARGET ${loaded})
                add_dependencies(tests-${label} ${loaded})
            endif()
        endforeach()
    endforeach()
endfunction()
