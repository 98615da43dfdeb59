# Small helpers shared by the CMake files of the tree.

# Each folder of src/ compiles against a view of the public headers that holds only its own folder and the
# folders added before it: ${QUARRIX_LAYER_VIEWS}/<folder>/quarrix/<below> are links into include/quarrix.
set(QUARRIX_LAYER_VIEWS ${PROJECT_BINARY_DIR}/layers)
set_property(GLOBAL PROPERTY QUARRIX_LAYERS "")

# quarrix_add_layer(<folder> <source>...): the folder's sources as an object library inside libquarrix.
# Layers stack in the order they are added; their folder under src/ is the current source folder.
function(quarrix_add_layer folder)
  get_property(below GLOBAL PROPERTY QUARRIX_LAYERS)
  set(view ${QUARRIX_LAYER_VIEWS}/${folder})
  file(MAKE_DIRECTORY ${view}/quarrix)
  foreach(layer ${below} ${folder})
    if(NOT EXISTS ${view}/quarrix/${layer})
      file(CREATE_LINK ${PROJECT_SOURCE_DIR}/include/quarrix/${layer} ${view}/quarrix/${layer} SYMBOLIC)
    endif()
  endforeach()
  set_property(GLOBAL APPEND PROPERTY QUARRIX_LAYERS ${folder})

  add_library(quarrix_${folder} OBJECT ${ARGN})
  set_target_properties(quarrix_${folder} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_compile_features(quarrix_${folder} PUBLIC cxx_std_20)
  target_include_directories(quarrix_${folder} PRIVATE ${view} ${CMAKE_CURRENT_SOURCE_DIR})
  if(QUARRIX_FUZZ)
    # libFuzzer steers by the coverage of the code under test, which lives in the library.
    target_compile_options(quarrix_${folder} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  target_sources(quarrix PRIVATE $<TARGET_OBJECTS:quarrix_${folder}>)
endfunction()

# quarrix_add_test(<name> [LAYER <folder>] <source>...): one GoogleTest executable, registered with CTest.
# With LAYER, the test sees only the public headers of that folder and the folders below it.
# Tests run with the source tree's root as working directory so that they can find tests/data and ../shared.
function(quarrix_add_test name)
  cmake_parse_arguments(T "" "LAYER" "" ${ARGN})
  add_executable(${name} ${T_UNPARSED_ARGUMENTS})
  if(T_LAYER)
    set_target_properties(${name} PROPERTIES QUARRIX_LAYER ${T_LAYER})
  endif()
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
