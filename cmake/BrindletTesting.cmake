find_package(GTest REQUIRED)
include(GoogleTest)

# brindlet_add_test(name sources...): one GoogleTest binary linked against the
# core library and the test helpers, with every case registered in CTest.
function(brindlet_add_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE brindlet_test_support GTest::gtest GTest::gmock
                                        GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
                       PROPERTIES ENVIRONMENT "BRINDLET_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
endfunction()
