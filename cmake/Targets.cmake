# The few kinds of things that this project builds. Every folder of the project
# uses these functions and nothing else, so that a flag has one place.
#
#   hivesweep_library(NAME SOURCES file... [USES target...] [WINDOWS_H])
#   hivesweep_program(NAME SOURCES file... [USES target...] [WINDOW])
#   hivesweep_dll(NAME DESCRIPTION text SOURCES file... [USES target...])
#   hivesweep_test(NAME SOURCES file... [USES target...]
#                  [WINDOWS_ONLY | NATIVE_ONLY | PORTABLE] [WINDOWS_H] [DISPLAY]
#                  [SAMPLE] [TIMEOUT seconds])
#   hivesweep_tool(NAME SOURCES file... [USES target...])
#   hivesweep_bench(NAME SOURCES file... [USES target...] [WINDOWS] [DISPLAY])
#
# Includes are written from the top of the project: #include "platform/Registry.h".
# WINDOWS_H: on Windows, most of the sources include <windows.h>.
# Which files belong to which system is a list in the folder's CMakeLists.txt:
#   if(HIVESWEEP_WINDOWS) ... else() ... endif()

# What sources mostly begin with, compiled once per build and kind. A source still includes
# what it uses. A header of this project is here only if nearly all sources use it and it
# seldom changes: its change compiles everything anew.
set(_HIVESWEEP_COMMON_HEADERS
  <algorithm> <array> <cstddef> <cstdint> <cstdio> <cstring> <functional> <iterator> <map>
  <memory> <optional> <set> <span> <stdexcept> <string> <string_view> <unordered_map>
  <utility> <variant> <vector>
  ${CMAKE_SOURCE_DIR}/platform/Platform.h
  ${CMAKE_SOURCE_DIR}/platform/Text.h)
set(_HIVESWEEP_WINDOWS_HEADERS
  ${CMAKE_SOURCE_DIR}/platform/win32/Win32.h <commctrl.h>)

# _hivesweep_precompile(NAME own | test, WINDOWS_H or not): the flags of the target have to
# be the same as those of all others of its kind.
function(_hivesweep_precompile name kind windows_h)
  if(NOT HIVESWEEP_PCH)
    return()
  endif()
  set(headers ${_HIVESWEEP_COMMON_HEADERS})
  set(common hivesweep_pch_${kind})
  if(kind STREQUAL "test")
    list(PREPEND headers <gtest/gtest.h>)
  endif()
  if(windows_h AND HIVESWEEP_WINDOWS)
    list(APPEND headers ${_HIVESWEEP_WINDOWS_HEADERS})
    string(APPEND common _windows)
  endif()
  if(NOT TARGET ${common})
    set(empty ${CMAKE_BINARY_DIR}/${common}.cpp)
    file(CONFIGURE OUTPUT ${empty} CONTENT "// Only its headers count.\n")
    add_library(${common} OBJECT EXCLUDE_FROM_ALL ${empty})
    target_link_libraries(${common} PRIVATE hivesweep_own_code)
    if(kind STREQUAL "test")
      target_link_libraries(${common} PRIVATE hivesweep_gtest)
      target_compile_options(${common} PRIVATE ${HIVESWEEP_TEST_OPTIONS})
    endif()
    target_precompile_headers(${common} PRIVATE ${headers})
  endif()
  target_precompile_headers(${name} REUSE_FROM ${common})
endfunction()

function(_hivesweep_target name visibility)
  target_link_libraries(${name} PRIVATE hivesweep_own_code)
  if(ARGN)
    target_link_libraries(${name} ${visibility} ${ARGN})
  endif()
  if(HIVESWEEP_TIDY)
    set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "${HIVESWEEP_TIDY}")
    # A new rule is a reason to look at every file again.
    set_property(SOURCE ${_SOURCES} APPEND PROPERTY OBJECT_DEPENDS
                 ${CMAKE_SOURCE_DIR}/.clang-tidy)
  endif()
endfunction()

# Fails at configuring, where the mistake is: a mistyped word would otherwise
# become a source file or vanish.
macro(_hivesweep_arguments kind flags values)
  cmake_parse_arguments(PARSE_ARGV 1 "" "${flags}" "${values}" "SOURCES;USES")
  if(_UNPARSED_ARGUMENTS OR NOT _SOURCES)
    message(FATAL_ERROR "${kind}(${name}): SOURCES missing, or not understood: ${_UNPARSED_ARGUMENTS}")
  endif()
endmacro()

# A folder of the project: a static library, what it uses is used by its users.
function(hivesweep_library name)
  _hivesweep_arguments(hivesweep_library "WINDOWS_H" "")
  add_library(${name} STATIC ${_SOURCES})
  _hivesweep_target(${name} PUBLIC ${_USES})
  _hivesweep_precompile(${name} own ${_WINDOWS_H})
endfunction()

# A program that is shipped. On Windows it carries a version resource and a
# manifest, is stripped, and the 32-bit one may import only what Windows 2000 has.
# HIVESWEEP_VERSION is there for its --version. WINDOW: it has windows and no console.
function(hivesweep_program name)
  _hivesweep_arguments(hivesweep_program "WINDOW" "")
  add_executable(${name} ${_SOURCES})
  set(HIVESWEEP_MANIFEST program)
  if(_WINDOW)
    set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
    set(HIVESWEEP_MANIFEST window)
  endif()
  _hivesweep_target(${name} PRIVATE ${_USES})
  target_compile_definitions(${name} PRIVATE "HIVESWEEP_VERSION=\"${PROJECT_VERSION}\"")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  add_dependencies(test-programs ${name})
  if(HIVESWEEP_WINDOWS)
    set(path ${CMAKE_SOURCE_DIR}/cmake/${HIVESWEEP_MANIFEST}.manifest)
    _hivesweep_shipped(${name} exe 1 "1 24 \"${path}\"" "${PROJECT_DESCRIPTION}")
    set_property(SOURCE ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc PROPERTY OBJECT_DEPENDS ${path})
  endif()
endfunction()

# A library of Windows that is shipped beside the programs, under its bare name, with a
# version resource. What the sources export has C linkage and the C calling convention: so
# the exports have no decoration.
function(hivesweep_dll name)
  _hivesweep_arguments(hivesweep_dll "" "DESCRIPTION")
  add_library(${name} SHARED ${_SOURCES})
  _hivesweep_target(${name} PRIVATE ${_USES})
  set_target_properties(${name} PROPERTIES
                        PREFIX "" RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  add_dependencies(test-programs ${name})
  _hivesweep_shipped(${name} dll 2 "" "${_DESCRIPTION}")
endfunction()

# What every shipped file of Windows has. FILETYPE is the number of its kind in the version
# resource, MANIFEST the line of the resource script for one.
function(_hivesweep_shipped HIVESWEEP_NAME HIVESWEEP_SUFFIX HIVESWEEP_FILETYPE HIVESWEEP_MANIFEST
         HIVESWEEP_DESCRIPTION)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${HIVESWEEP_NAME}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/program.rc.in ${resource} @ONLY)
  target_sources(${HIVESWEEP_NAME} PRIVATE ${resource})
  target_link_options(${HIVESWEEP_NAME} PRIVATE -s)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    add_test(NAME imports-${HIVESWEEP_NAME}
             COMMAND ${CMAKE_SOURCE_DIR}/rig/check_imports.sh
                     ${CMAKE_SOURCE_DIR}/rig/imports-w2k.txt $<TARGET_FILE:${HIVESWEEP_NAME}>)
  endif()
endfunction()

# The target "test-programs" builds all that ctest runs or needs. Which sources make which program
# is told in tests.txt, a program a line, for "./dev test PRESET FILTER".
add_custom_target(test-programs)
file(WRITE ${CMAKE_BINARY_DIR}/tests.txt "")

# One GoogleTest program and one ctest entry: starting a program under Wine costs
# more than a hundred test cases, so they stay together. The cases' results go to
# results/NAME.json, from where the summary of "./dev test" takes its numbers.
# DISPLAY: its windows are to be drawn, on a display of its own. SAMPLE: under Wine, its
# registry and its disk have the sample's leftovers. PORTABLE: what it tests knows nothing of
# the system, so it runs natively and as a 32-bit Windows program, but not as a 64-bit one.
function(hivesweep_test name)
  _hivesweep_arguments(hivesweep_test "WINDOWS_ONLY;NATIVE_ONLY;PORTABLE;WINDOWS_H;DISPLAY;SAMPLE" "TIMEOUT")
  if((_WINDOWS_ONLY AND NOT HIVESWEEP_WINDOWS) OR (_NATIVE_ONLY AND HIVESWEEP_WINDOWS))
    return()
  endif()
  if(_PORTABLE AND HIVESWEEP_WINDOWS AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    return()
  endif()
  if(NOT _TIMEOUT)
    set(_TIMEOUT 300) # half a minute at most, but for a busy machine
  endif()
  add_executable(${name} ${_SOURCES})
  _hivesweep_target(${name} PRIVATE ${_USES} hivesweep_gtest)
  target_compile_options(${name} PRIVATE ${HIVESWEEP_TEST_OPTIONS})
  _hivesweep_precompile(${name} test ${_WINDOWS_H})
  add_dependencies(test-programs ${name})
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM _SOURCES PREPEND ${folder}/)
  list(JOIN _SOURCES " " sources)
  file(APPEND ${CMAKE_BINARY_DIR}/tests.txt "${name} ${sources}\n")
  set(results ${CMAKE_BINARY_DIR}/results/${name}.json)
  if(HIVESWEEP_WINDOWS)
    string(PREPEND results "Z:") # Wine's name for the root of this machine's files
    target_link_options(${name} PRIVATE -s)
  endif()
  add_test(NAME ${name} COMMAND ${name} --gtest_output=json:${results})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${_TIMEOUT})
  if(_DISPLAY)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT HSW_DISPLAY=yes)
  endif()
  if(_SAMPLE)
    set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT HSW_SAMPLE=yes)
  endif()
  if(HIVESWEEP_SANITIZE)
    set_tests_properties(${name} PROPERTIES ENVIRONMENT
      "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1;UBSAN_OPTIONS=print_stacktrace=1")
  endif()
endfunction()

# A program for those who build the others; made when somebody asks for it.
function(hivesweep_tool name)
  _hivesweep_arguments(hivesweep_tool "" "")
  add_executable(${name} EXCLUDE_FROM_ALL ${_SOURCES})
  _hivesweep_target(${name} PRIVATE ${_USES})
endfunction()

# A program that measures: on this machine, or (WINDOWS) under Wine, and there (DISPLAY) on
# a display of its own. The target "bench" runs them one after the other, when all are built.
add_custom_target(bench-programs)
add_custom_target(bench)
function(hivesweep_bench name)
  _hivesweep_arguments(hivesweep_bench "WINDOWS;DISPLAY" "")
  if((_WINDOWS AND NOT HIVESWEEP_WINDOWS) OR (HIVESWEEP_WINDOWS AND NOT _WINDOWS))
    return()
  endif()
  add_executable(${name} ${_SOURCES})
  if(HIVESWEEP_WINDOWS AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON) # "./dev bench" has no use for it
  endif()
  _hivesweep_target(${name} PRIVATE ${_USES})
  _hivesweep_precompile(${name} own OFF)
  set(command ${name})
  if(_DISPLAY)
    set(command ${CMAKE_COMMAND} -E env HSW_DISPLAY=yes
                ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${name}>)
  endif()
  add_custom_target(run-${name} COMMAND ${command} USES_TERMINAL COMMENT "${name}")
  add_dependencies(bench-programs ${name})
  add_dependencies(run-${name} bench-programs)
  add_dependencies(bench run-${name})
endfunction()
