# qw_add_test(tst_Name folder/tst_Name.cpp [more sources] [LIBRARIES lib...] [LABELS label...])
# One QtTest program for one class; offscreen, with a HOME of its own that is emptied by the test's fixture.
function(qw_add_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "LIBRARIES;LABELS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE qw_fakes ${arg_LIBRARIES})
    if(QW_PRECOMPILE)
        target_precompile_headers(${name} REUSE_FROM qw_fakes)
    endif()
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin
        BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/../../lib")
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${name}> -P ${CMAKE_SOURCE_DIR}/cmake/QWRunTest.cmake)
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
endfunction()

# qw_add_test_program(NAME SOURCE [more sources] [LIBRARIES lib...]): a process that a test starts.
function(qw_add_test_program name)
    cmake_parse_arguments(arg "" "" "LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE QWPlatform ${arg_LIBRARIES} qw_warnings)
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin
        BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/../../lib")
endfunction()
