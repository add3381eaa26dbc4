# How every target of this project is made: warnings, sanitizers, and one target for one folder.
include_guard(GLOBAL)

add_library(tovi_options INTERFACE)
target_include_directories(tovi_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(tovi_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # g++ 12 sees overflows in inlined string code that are not there, more of them with sanitizers.
  target_compile_options(tovi_options INTERFACE
    -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()
if(TOVI_SANITIZE)
  target_compile_options(tovi_options INTERFACE
    -fsanitize=${TOVI_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tovi_options INTERFACE -fsanitize=${TOVI_SANITIZE})
  if(TOVI_SANITIZE_NOT)
    target_compile_options(tovi_options INTERFACE -fno-sanitize=${TOVI_SANITIZE_NOT})
  endif()
endif()

if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Thirty programs with sanitizers take minutes to link otherwise.
  find_program(TOVI_LLD ld.lld)
  if(TOVI_LLD)
    target_link_options(tovi_options INTERFACE -fuse-ld=lld)
  endif()
endif()

# tovi_folder(<name> <sources>...): one folder of the library, collected into the target tovi.
function(tovi_folder name)
  if(NOT ARGN)
    return()
  endif()
  add_library(tovi_${name} OBJECT ${ARGN})
  target_link_libraries(tovi_${name} PRIVATE tovi_options)
  # The shared library shows what is marked TOVI_API (tovi/Export.h) and nothing else.
  set_target_properties(tovi_${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # A library with unique symbols is never unloaded, and this one is for modules that are.
    target_compile_options(tovi_${name} PRIVATE -fno-gnu-unique)
  endif()
  set_property(GLOBAL APPEND PROPERTY TOVI_FOLDERS tovi_${name})
endfunction()

# tovi_needs(<library>): a library of the system, named as after -l, that all who link the library link too.
function(tovi_needs library)
  set_property(GLOBAL APPEND PROPERTY TOVI_NEEDED ${library})
endfunction()

# tovi_precompiled(<target> <set> <headers>...): parses the headers once for all targets of a set, which have to be
# of one kind, executables or libraries. They only save time: every source includes what it uses.
option(TOVI_PRECOMPILE "Precompile the large headers of tests and command" OFF)
function(tovi_precompiled target set)
  # With g++ a source that uses little of the command's set takes longer than it saves elsewhere.
  if(NOT TOVI_PRECOMPILE OR (set STREQUAL command AND CMAKE_CXX_COMPILER_ID STREQUAL GNU))
    return()
  endif()
  get_property(first GLOBAL PROPERTY TOVI_PRECOMPILED_${set})
  if(first)
    target_precompile_headers(${target} REUSE_FROM ${first})
  else()
    target_precompile_headers(${target} PRIVATE ${ARGN})
    set_property(GLOBAL PROPERTY TOVI_PRECOMPILED_${set} ${target})
  endif()
endfunction()

# tovi_test(<name> <sources>...): the tests of one folder in one executable.
function(tovi_test name)
  add_executable(tovi_test_${name} ${ARGN})
  target_link_libraries(tovi_test_${name} PRIVATE tovi tovi_options GTest::gmock_main)
  target_compile_definitions(tovi_test_${name} PRIVATE
    TOVI_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data" TOVI_TEST_CARDS="${PROJECT_SOURCE_DIR}/tests/cards")
  tovi_precompiled(tovi_test_${name} tests
    <gmock/gmock.h> <gtest/gtest.h> <map> <string> <vector> "${PROJECT_SOURCE_DIR}/tovi/container/PKCS15Container.h"
    "${PROJECT_SOURCE_DIR}/tovi/pkcs15/PKCS15.h")
  if(TOVI_SANITIZE)
    # To start a sanitized process for each test takes longer than the tests do.
    add_test(NAME ${name} COMMAND tovi_test_${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  else()
    gtest_discover_tests(tovi_test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
  endif()
endfunction()
