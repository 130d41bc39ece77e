find_package(GTest REQUIRED)

# What every test is compiled with. Optimising a test buys nothing and takes half of its compile time; what it tests is
# optimised as ever. Looking through the precompiled headers is for a compiler cache.
set(PROJECT_TEST_OPTIONS $<$<CONFIG:RelWithDebInfo,Release>:-O1> $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)

# One test program per folder:
#   project_test(NAME runtime_test SOURCES ClassTest.cpp ... LIBRARIES platform)
# Each program is one CTest entry.
function(project_test)
  cmake_parse_arguments(TEST "" "NAME;TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT;LABELS" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 400)
  endif()
  add_executable(${TEST_NAME} ${TEST_SOURCES})
  target_link_libraries(${TEST_NAME} PRIVATE project_options ${TEST_LIBRARIES} GTest::gmock_main)
  target_precompile_headers(${TEST_NAME} REUSE_FROM test_headers)
  target_compile_options(${TEST_NAME} PRIVATE ${PROJECT_TEST_OPTIONS})
  set_target_properties(${TEST_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
  add_test(NAME ${TEST_NAME} COMMAND ${TEST_NAME} WORKING_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
  set_tests_properties(${TEST_NAME} PROPERTIES TIMEOUT ${TEST_TIMEOUT} LABELS "${TEST_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${TEST_ENVIRONMENT}")
endfunction()
