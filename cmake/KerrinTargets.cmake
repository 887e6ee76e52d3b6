# SPDX-License-Identifier: BSD-3-Clause
# The few functions that every module's CMakeLists.txt is made of.

# kerrin_add_library(name EXPORTS MACRO SOURCES file... [PUBLIC target...] [PRIVATE target...])
#
# A shared library whose public headers lie in its folder include/. MACRO_BUILD is defined while the library itself
# is compiled, so that its export header can tell export from import.
function(kerrin_add_library name)
  cmake_parse_arguments(arg "" "EXPORTS;INCLUDE" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  if(NOT arg_INCLUDE)
    set(arg_INCLUDE "${CMAKE_CURRENT_SOURCE_DIR}/include")
  endif()
  add_library(${name} SHARED ${arg_SOURCES})
  target_include_directories(${name}
    PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE}> $<INSTALL_INTERFACE:include>
    PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
  target_compile_definitions(${name} PRIVATE ${arg_EXPORTS}_BUILD)
  target_compile_features(${name} PUBLIC cxx_std_17)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} $<BUILD_INTERFACE:kerrin_warnings>)
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# kerrin_add_test(name SOURCES file... LINK target... [LABELS label...] [ENVIRONMENT VAR=value...])
#
# A GoogleTest program; each of its tests is a CTest test. Tests find the real meshes in KERRIN_DATA_DIR (environment
# variable first, the configured folder otherwise) and stored pictures in KERRIN_BASELINE_DIR.
function(kerrin_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;LABELS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINK} GTest::gtest_main kerrin_warnings)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(${name} PRIVATE
    KERRIN_DATA_DIR="${KERRIN_DATA_DIR}"
    KERRIN_BASELINE_DIR="${CMAKE_SOURCE_DIR}/tests/render/baselines"
    KERRIN_OUTPUT_DIR="${CMAKE_BINARY_DIR}/test-output")
  set(properties TIMEOUT 600)
  if(arg_LABELS)
    list(APPEND properties LABELS "${arg_LABELS}")
  endif()
  set(environment
    "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
    "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp"
    "UBSAN_OPTIONS=print_stacktrace=1"
    ${arg_ENVIRONMENT})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES ${properties} ENVIRONMENT "${environment}")
endfunction()

# kerrin_add_header_test(module INCLUDE dir LINK target... [EXCLUDE regex])
#
# Compiles every public header of a module alone, as C++17 and with all warnings: a header that needs another one to
# be included before it, or a newer language, fails the build.
function(kerrin_add_header_test module)
  cmake_parse_arguments(arg "" "INCLUDE;EXCLUDE" "LINK" ${ARGN})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${arg_INCLUDE}" "${arg_INCLUDE}/*.h")
  if(arg_EXCLUDE)
    list(FILTER headers EXCLUDE REGEX "${arg_EXCLUDE}")
  endif()
  set(sources "")
  foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER "${header}" stem)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${module}/${stem}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n#include <${header}>\n")
    list(APPEND sources "${source}")
  endforeach()
  if(sources)
    add_library(${module}_headers_alone OBJECT ${sources})
    set_target_properties(${module}_headers_alone PROPERTIES CXX_STANDARD 17 UNITY_BUILD OFF)
    target_link_libraries(${module}_headers_alone PRIVATE ${arg_LINK} kerrin_warnings)
  endif()
endfunction()
