# How this project's own code is compiled and linked.

option(HIVESWEEP_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(HIVESWEEP_PCH "Compile the common headers once per build instead of once per source" ON)
option(HIVESWEEP_CCACHE "Compile through ccache, where it is installed" ON)
set(HIVESWEEP_TIDY "" CACHE STRING "clang-tidy command to run over our own sources, as a list")
set(HIVESWEEP_ICON_FOLDER ${CMAKE_BINARY_DIR}/icons/ico CACHE PATH "Where the icons are drawn")
# Where "Help" and "Home page" lead. A name is that of a file beside the program.
set(HIVESWEEP_MANUAL_PAGE "Manual.html" CACHE STRING "Address or file name of the manual")
set(HIVESWEEP_HOME_PAGE "" CACHE STRING "Address of the home page; empty: the manual")

set(HIVESWEEP_WINDOWS ${WIN32})

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

# For everything in the build, GoogleTest too: what changes the layout of a
# library type, or what a sanitizer must see to trust the memory around it.
add_compile_definitions(_GLIBCXX_ASSERTIONS)
# No folder of the building machine in any message or debug information.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
if(HIVESWEEP_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # AddressSanitizer then also sees a read between size() and capacity().
  add_compile_definitions(_GLIBCXX_SANITIZE_VECTOR)
endif()

if(HIVESWEEP_WINDOWS)
  add_compile_definitions(UNICODE _UNICODE)
  add_compile_options(-ffunction-sections -fdata-sections -fstack-protector-strong)
  add_link_options(-static
                   "LINKER:--gc-sections,--nxcompat,--dynamicbase,--tsaware,--no-insert-timestamp"
                   -fstack-protector-strong)
else()
  # Everything ends in a program, libraries too. CMake's own way would give those another
  # flag, and a precompiled header serves one flag only.
  add_compile_options(-fPIE -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  add_link_options(-pie "LINKER:-z,relro,-z,now")
endif()
# Needs optimisation, and would hide from AddressSanitizer what it replaces.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
  add_compile_definitions(_FORTIFY_SOURCE=2)
endif()

# The two that ccache must be told for precompiled headers; no source asks for the time.
# Paths below the project are taken without it; yet two checkouts share only what is
# compiled without precompiled headers, as those hold the paths of their own.
if(HIVESWEEP_CCACHE)
  find_program(HIVESWEEP_CCACHE_PROGRAM ccache)
  if(HIVESWEEP_CCACHE_PROGRAM)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${HIVESWEEP_CCACHE_PROGRAM})
    add_compile_options(-fpch-preprocess) # or ccache does not see what they hold
  endif()
endif()

# How a test is compiled, and GoogleTest, other than what is tested. Optimisation would take
# longer than it saves. What is left out of UBSan makes most of its code, and
# AddressSanitizer sees a null or a wild pointer as well.
set(HIVESWEEP_TEST_OPTIONS "")
if(HIVESWEEP_SANITIZE)
  set(HIVESWEEP_TEST_OPTIONS -fno-sanitize=null,alignment,object-size,vptr)
elseif(HIVESWEEP_WINDOWS)
  set(HIVESWEEP_TEST_OPTIONS -Og)
endif()

# Our own code alone, never a library's.
add_library(hivesweep_own_code INTERFACE)
target_include_directories(hivesweep_own_code INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(hivesweep_own_code INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
