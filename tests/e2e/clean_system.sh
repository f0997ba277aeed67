#!/bin/bash
# clean_system.sh WINDOWS_PROGRAM: on a Wine that was just set up, a scan of all areas finds
# what the README says, area by area. Whoever changes what is found there changes that
# table, and looks whether each new row is truly dead.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
top=$(cd "$here/../.." && pwd)
if [ -z "${HSW_PREFIX:-}" ]; then
  exec "$top/rig/prefix.sh" "$here/$(basename "$0")" "$@"
fi
found=$(wine "$1" scan --areas all --no-progress | tr -d '\r' | sed -n '/^Area  /,$p')
told=$(sed -n '/^## A clean system/,/^## /p' "$top/README.md" | sed -n '/^Area  /,/^```/p' | sed '/^```/d')
[ -n "$told" ] || {
  echo "README.md has no table of a clean system" >&2
  exit 1
}
diff <(printf '%s\n' "$told") <(printf '%s\n' "$found")
