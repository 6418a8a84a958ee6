# What every target of the tree shares: language level, warnings, sanitizers, tools that speed up the build.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

option(TARVEX_WERROR "Treat warnings as errors" OFF)
option(TARVEX_ASSERTIONS "Check subscripts and the like in the standard library" OFF)
option(TARVEX_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(TARVEX_PCH "Use precompiled headers; without them a build proves that includes are complete" ON)

# A first build takes less than half of the time. The price: names in unnamed namespaces are told apart in a whole folder.
option(TARVEX_UNITY "Compile several sources of a folder at once" OFF)
if(TARVEX_UNITY)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
endif()
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM AND NOT TARVEX_FUZZ)
  add_link_options(-fuse-ld=mold)
endif()

add_library(tarvex_options INTERFACE)
target_compile_options(tarvex_options INTERFACE
  -pthread  # libraries ask for it too; the shared precompiled headers want it everywhere or nowhere
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
  # Numbers must come out alike on every machine: no fused multiply-add.
  -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlapping copies in operator+ of std::string itself (its bug 105651).
  target_compile_options(tarvex_options INTERFACE -Wsuggest-override -Wno-restrict -fpch-preprocess)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Tables that are computed at compile time take more steps than clang allows by itself.
  target_compile_options(tarvex_options INTERFACE -Wno-shadow -fconstexpr-steps=100000000)
endif()
if(TARVEX_WERROR)
  target_compile_options(tarvex_options INTERFACE -Werror)
endif()
if(TARVEX_ASSERTIONS)
  target_compile_definitions(tarvex_options INTERFACE _GLIBCXX_ASSERTIONS)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The same bug: with the assertions in, it reports moves of long std::strings. Other builds keep these warnings.
    target_compile_options(tarvex_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow
      -Wno-stringop-overread)
  endif()
endif()
if(TARVEX_SANITIZE)
  target_compile_options(tarvex_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(tarvex_options INTERFACE -fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With the checks in, GCC 12 takes the other members of a std::variant for used. Other builds keep the warning.
    target_compile_options(tarvex_options INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
if(TARVEX_FUZZ)
  # The libraries are watched too: coverage is what guides the fuzzer.
  target_compile_options(tarvex_options INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(tarvex_options INTERFACE -fsanitize=address,undefined)
endif()
target_link_options(tarvex_options INTERFACE -pthread)
target_include_directories(tarvex_options INTERFACE ${CMAKE_SOURCE_DIR}/src)

# tarvex_library(NAME USES lower...): the static library of one folder of src. Sources are the folder's files.
function(tarvex_library name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_library(tarvex_${name} STATIC ${sources})
  set_target_properties(tarvex_${name} PROPERTIES LINKER_LANGUAGE CXX)
  list(TRANSFORM ARG_USES PREPEND tarvex_)
  target_link_libraries(tarvex_${name} PUBLIC tarvex_options ${ARG_USES})
  tarvex_precompile(tarvex_${name})
endfunction()

# The precompiled headers are made once, by the lowest library, and used by all others: they share every option that
# counts. Qt asks for options of its own, so its folders have theirs. Tests that are compiled at once don't need any.
function(tarvex_precompile target)
  if(NOT TARVEX_PCH)
    return()
  elseif(target STREQUAL "tarvex_toolkit")
    target_precompile_headers(${target} PRIVATE
      <QtWidgets/QWidget> <QtCore/QString> <algorithm> <functional> <memory> <optional> <string> <vector>)
  elseif(target MATCHES "panels")
    target_precompile_headers(${target} REUSE_FROM tarvex_toolkit)
  elseif(target STREQUAL "tarvex_base")
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <charconv> <cmath> <cstdint> <functional> <memory> <optional> <string> <string_view> <vector>)
  else()
    target_precompile_headers(${target} REUSE_FROM tarvex_base)
  endif()
endfunction()

# tarvex_test(NAME USES libraries...): one test program a folder of tests, run by ctest test by test.
function(tarvex_test name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_tests ${sources})
  target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${name}_tests PRIVATE TARVEX_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")
  list(TRANSFORM ARG_USES PREPEND tarvex_)
  target_link_libraries(${name}_tests PRIVATE ${ARG_USES} tarvex_test_support GTest::gtest GTest::gmock)
  if(TARVEX_PCH AND NOT TARVEX_UNITY)
    target_precompile_headers(${name}_tests REUSE_FROM tarvex_test_support)
  endif()
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# The same for panels, with the application object, on Qt's offscreen platform.
function(tarvex_qt_test name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_executable(${name}_tests ${sources})
  list(TRANSFORM ARG_USES PREPEND tarvex_)
  target_link_libraries(${name}_tests PRIVATE ${ARG_USES} tarvex_qt_support)
  if(TARVEX_PCH AND NOT TARVEX_UNITY)
    # Of its own: Qt's library for tests defines its directory for each program.
    target_precompile_headers(${name}_tests PRIVATE
      <gtest/gtest.h> <QtWidgets/QWidget> <QtTest/QTest> <functional> <memory> <string> <vector>)
  endif()
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300 ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QTEST_FUNCTION_TIMEOUT=8000")
endfunction()
