find_package(GTest REQUIRED)
include(GoogleTest)

# oxlade_test(NAME SOURCES... [LIBRARIES ...]): one GoogleTest program, each of
# its cases a test of CTest.
function(oxlade_test name)
  cmake_parse_arguments(arg "" "" "LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE oxlade_options ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 60 ${arg_PROPERTIES})
endfunction()
