# Other people's libraries. All of them come from Debian packages, as sources or
# headers, so one copy serves the native and the Windows builds.

# ---- GoogleTest --------------------------------------------------------------
set(HIVESWEEP_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's sources")
set(g ${HIVESWEEP_GTEST_SOURCE})
add_library(hivesweep_gtest STATIC EXCLUDE_FROM_ALL
            ${g}/googletest/src/gtest-all.cc
            ${g}/googletest/src/gtest_main.cc)
target_include_directories(hivesweep_gtest SYSTEM PUBLIC ${g}/googletest/include)
target_include_directories(hivesweep_gtest PRIVATE ${g}/googletest)
target_compile_options(hivesweep_gtest PRIVATE ${HIVESWEEP_TEST_OPTIONS})
if(HIVESWEEP_WINDOWS)
  # The win32 thread model has no std::mutex, which GoogleTest wants to use; our
  # tests have one thread. Its death tests then lack one small class.
  target_compile_definitions(hivesweep_gtest PUBLIC GTEST_IS_THREADSAFE=0)
  set_source_files_properties(${g}/googletest/src/gtest-all.cc PROPERTIES
                              COMPILE_OPTIONS "-include;${CMAKE_CURRENT_LIST_DIR}/gtest-autohandle.h")
endif()
unset(g)

# ---- Header-only libraries -----------------------------------------------------
# Their folders are linked into the build tree one by one: /usr/include itself
# must never be on the path of a Windows build, where it would hide mingw's own
# headers.
function(hivesweep_headers name folder package)
  if(NOT EXISTS /usr/include/${folder})
    message(FATAL_ERROR "/usr/include/${folder} is missing: install ${package}")
  endif()
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK /usr/include/${folder} ${root}/${folder} SYMBOLIC)
  add_library(hivesweep_${name} INTERFACE)
  target_include_directories(hivesweep_${name} SYSTEM INTERFACE ${root})
  add_library(hivesweep::${name} ALIAS hivesweep_${name})
endfunction()

hivesweep_headers(json nlohmann nlohmann-json3-dev)
hivesweep_headers(options CLI libcli11-dev)
# std::filesystem would bring 100 KB and imports of its own, for path checks that
# the command line does not use.
target_compile_definitions(hivesweep_options INTERFACE CLI11_HAS_FILESYSTEM=0)
