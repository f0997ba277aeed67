# 32-bit Windows, from Windows 2000 on.
set(HIVESWEEP_TRIPLE i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

set(CMAKE_CXX_FLAGS_INIT "-march=i586 -mtune=generic -D_WIN32_WINNT=0x0500 -DWINVER=0x0500 -D_WIN32_IE=0x0500")
# --no-seh belongs to the 32-bit format alone: without it the loader believes
# that the program has a table of safe exception handlers.
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,--major-os-version,5,--minor-os-version,0,--major-subsystem-version,5,--minor-subsystem-version,0,--no-seh")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")
