find_package(GTest REQUIRED)
include(GoogleTest)

# The tests are compiled without optimisation: compiling them takes longer than running them.
add_library(oxlade_test_options INTERFACE)
target_compile_options(oxlade_test_options INTERFACE -O0)
target_link_libraries(oxlade_test_options INTERFACE oxlade_options)

# oxlade_test(NAME SOURCES... [QT] [LIBRARIES ...] [PROPERTIES ...]): one GoogleTest program,
# each of its cases a test of CTest. QT: its sources use Qt Widgets.
function(oxlade_test name)
  cmake_parse_arguments(arg "QT" "" "LIBRARIES;PROPERTIES" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE oxlade_test_options ${arg_LIBRARIES}
                        GTest::gmock GTest::gtest_main)
  set(headers <gmock/gmock.h> <gtest/gtest.h> <functional> <memory> <optional> <string> <vector>)
  if(arg_QT)
    list(APPEND headers <QApplication> <QImage> <QPainter> <QTest> <QWidget>)
  endif()
  target_precompile_headers(${name} PRIVATE ${headers})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 ${arg_PROPERTIES})
endfunction()
