# What both Windows toolchains share. The file that includes this one sets
# HIVESWEEP_TRIPLE, CMAKE_SYSTEM_PROCESSOR and the flags of its own bitness.
set(CMAKE_SYSTEM_NAME Windows)

# The "-win32" thread model, whatever the unversioned names point at: the
# "-posix" runtime imports AddVectoredExceptionHandler and GetTickCount64, which
# Windows 2000 does not have. The price: no std::thread and no std::mutex.
set(CMAKE_C_COMPILER ${HIVESWEEP_TRIPLE}-gcc-win32)
set(CMAKE_CXX_COMPILER ${HIVESWEEP_TRIPLE}-g++-win32)
set(CMAKE_RC_COMPILER ${HIVESWEEP_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${HIVESWEEP_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../rig/wine-run.sh)
