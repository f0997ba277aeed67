# 64-bit Windows, from its first x64 edition (5.2) on.
set(HIVESWEEP_TRIPLE x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0502 -DWINVER=0x0502 -D_WIN32_IE=0x0600")
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,--major-os-version,5,--minor-os-version,2,--major-subsystem-version,5,--minor-subsystem-version,2,--high-entropy-va")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")
