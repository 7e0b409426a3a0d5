# One test program per row of layers.txt.
#
#   halvern_test(<row> SOURCES <file>... [WITH <row>...] [LIBRARIES <target>...]
#                [WRAP <function>...] [ONE_PROCESS])
#   halvern_host_test(<name> SOURCES <file>...)
#
# halvern_test makes test_<row> of that row's objects and those below it. WITH adds rows that the
# tests need and the code may not use. ctest runs each test in a process of its own, since the
# manager is one per process; ONE_PROCESS runs the program as one test, for rows that never make it.
# WRAP leads calls of a C function to `__wrap_` and its name, so that a test can make them fail.
# halvern_host_test sees include/ and libhalvern.so alone, as a host does.

find_package(GTest REQUIRED)
include(GoogleTest)

# The one place that knows folders by their absolute path: a definition on the command line would
# keep clones from sharing compiled tests.
configure_file(${PROJECT_SOURCE_DIR}/tests/support/paths.cpp.in
               ${PROJECT_BINARY_DIR}/generated/paths.cpp @ONLY)
# Compiled once for all test programs, with the header that they share precompiled.
add_library(halvern_test_support OBJECT
  ${PROJECT_BINARY_DIR}/generated/paths.cpp
  ${PROJECT_SOURCE_DIR}/tests/support/main.cpp)
target_include_directories(halvern_test_support PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(halvern_test_support PRIVATE halvern_test_flags GTest::gmock)
target_precompile_headers(halvern_test_support PRIVATE ${PROJECT_SOURCE_DIR}/tests/pch.h)

# A test hangs when it takes longer than this, in seconds; sanitized ones are many times slower.
if(HALVERN_SANITIZE)
  set(HALVERN_TEST_TIMEOUT 900)
else()
  set(HALVERN_TEST_TIMEOUT 300)
endif()

function(halvern_test_program target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_PROCESS" "" "SOURCES;LIBRARIES")
  add_executable(${target} ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests
    BUILD_RPATH ${PROJECT_BINARY_DIR}/lib)
  target_precompile_headers(${target} REUSE_FROM halvern_test_support)
  target_link_libraries(${target} PRIVATE
    halvern_test_flags halvern_test_support GTest::gmock ${arg_LIBRARIES})
  add_dependencies(${target} halvernunits)
  if(arg_ONE_PROCESS)
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES TIMEOUT ${HALVERN_TEST_TIMEOUT})
  else()
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${HALVERN_TEST_TIMEOUT})
  endif()
endfunction()

function(halvern_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ONE_PROCESS" "" "SOURCES;WITH;LIBRARIES;WRAP")
  set(one_process)
  if(arg_ONE_PROCESS)
    set(one_process ONE_PROCESS)
  endif()
  set(target test_${name})
  halvern_test_program(${target} ${one_process}
    SOURCES ${arg_SOURCES} LIBRARIES ${arg_LIBRARIES})
  target_include_directories(${target} PRIVATE
    ${HALVERN_INCLUDE_FOLDERS} ${PROJECT_SOURCE_DIR}/tests)
  halvern_link_strata(${target} ${name} ${arg_WITH})
  foreach(function IN LISTS arg_WRAP)
    target_link_options(${target} PRIVATE LINKER:--wrap=${function})
  endforeach()
endfunction()

function(halvern_host_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
  halvern_test_program(test_${name} SOURCES ${arg_SOURCES} LIBRARIES halvern)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()
