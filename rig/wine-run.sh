#!/bin/bash
# wine-run.sh PROGRAM.exe ARG...: runs a Windows program, in the prefix of the
# prefix.sh around it, or else in a fresh one. This is CMake's
# CMAKE_CROSSCOMPILING_EMULATOR.
set -euo pipefail
if [ -n "${HSW_PREFIX:-}" ]; then
  exec wine "$@"
fi
exec "$(dirname "$0")/prefix.sh" wine "$@"
