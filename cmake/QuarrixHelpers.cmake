# Small helpers shared by the CMake files of the tree.

# quarrix_add_test(<name> <source>...): one GoogleTest executable, registered with CTest.
# Tests run with the source tree's root as working directory so that they can find tests/data and ../shared.
function(quarrix_add_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE Quarrix::quarrix GTest::gtest_main GTest::gmock)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE QUARRIX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(${name}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 600)
endfunction()

# quarrix_add_bench(<name> <source>...): one Google Benchmark executable (not run by CTest).
function(quarrix_add_bench name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE Quarrix::quarrix benchmark::benchmark)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/bench)
endfunction()

# quarrix_add_fuzzer(<name> <source> CORPUS <dir>): a libFuzzer target under QUARRIX_FUZZ; otherwise a plain
# program that feeds every file of the committed corpus to the same entry point, run by CTest.
function(quarrix_add_fuzzer name source)
  cmake_parse_arguments(F "" "CORPUS" "" ${ARGN})
  if(QUARRIX_FUZZ)
    add_executable(${name} ${source})
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  else()
    add_executable(${name} ${source} ${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp)
    if(QUARRIX_BUILD_TESTS)
      add_test(NAME ${name}.replay COMMAND ${name} ${F_CORPUS})
    endif()
  endif()
  target_link_libraries(${name} PRIVATE Quarrix::quarrix)
endfunction()
