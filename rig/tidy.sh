#!/bin/bash
# tidy.sh ...SOURCE -- COMPILER-ARGUMENTS: clang-tidy, as CMake calls it beside the
# compiler in the "lint" presets. So ninja knows which files changed since they last
# were clean, and a second "./dev lint" looks at nothing else.
set -euo pipefail
source=
for argument in "$@"; do
  [ "$argument" != -- ] || break
  source=$argument
done

extra=(--extra-arg=-Wno-unknown-warning-option)
# The path-exploring checks take three times as long as all others together on a test's
# macros, and what they look for the sanitizers see when the test runs.
case $source in */tests/* | */bench/*) extra+=('--checks=-clang-analyzer-*') ;; esac
# In the Windows build: only what the native one does not compile, and with the
# folders in which this compiler finds its headers.
if [[ " $* " == *" -march=i586 "* ]]; then
  here=$(cd "$(dirname "$0")" && pwd)
  native=$here/../build/lint/compile_commands.json
  [ -r "$native" ] || { echo "tidy.sh: configure the preset lint first" >&2 && exit 1; }
  ! grep -qF "\"file\": \"$source\"" "$native" || exit 0
  extra+=(--extra-arg=--target=i686-w64-mingw32)
  while read -r folder; do
    extra+=("--extra-arg=-isystem$folder")
  done < <(LC_ALL=C i686-w64-mingw32-g++-win32 -E -v -x c++ /dev/null 2>&1 >/dev/null |
    sed -n '/^#include </,/^End/s/^ //p' | grep -v '/lib/gcc/[^/]*/[^/]*/include$')
fi
exec clang-tidy --quiet "${extra[@]}" "$@"
