#!/bin/bash
# same_findings.sh WINDOWS_PROGRAM NATIVE_PROGRAM: the shipped program, scanning a live
# registry, finds what the native one finds in an export of that registry and a
# description of that machine; and all that the sample alone is known to hold.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/e2e/sample.sh
. "$here/sample.sh"
if [ -z "${HSW_PREFIX:-}" ]; then
  exec "$top/rig/prefix.sh" --sample "$here/$(basename "$0")" "$@"
fi
live_program=$1 native_program=$2
[ -x "$native_program" ] || {
  echo "the native program is not built: $native_program" >&2
  exit 1
}
work=$WINEPREFIX/compare
mkdir "$work"

# The order in which a registry enumerates its entries is its own affair: rows and
# backup lines are compared as a set.
wine "$live_program" scan "${options[@]}" --format csv | LC_ALL=C sort >"$work/live.csv"
wine "$live_program" scan "${options[@]}" --format json | sed 's/","/"\n"/g; s/},{/}\n{/g' |
  LC_ALL=C sort >"$work/live.json"

# The 32-bit editor exports what 32-bit programs see; the current user's keys are not in
# an export of everything, where they stand below HKEY_USERS.
for part in LOCAL_MACHINE CURRENT_USER; do
  wine 'C:\windows\syswow64\regedit.exe' /E "Z:${work//\//\\}\\$part.reg" HKEY_$part >/dev/null
done
{
  printf '[Machine]\nWinDir=C:\\windows\nWow64=1\n[Drives]\nC=fixed\n[Files]\n'
  cd "$WINEPREFIX/drive_c"
  find . -mindepth 1 \( -type d -printf '%P/\n' -o -printf '%P\n' \) | sed 's/^/C:\\/; s/\//\\/g'
} >"$work/machine.ini"
text=(--registry "$work/LOCAL_MACHINE.reg" --registry "$work/CURRENT_USER.reg" --machine "$work/machine.ini")
"$native_program" scan "${options[@]}" "${text[@]}" --format csv | LC_ALL=C sort >"$work/text.csv"
"$native_program" scan "${options[@]}" "${text[@]}" --format json |
  sed 's/","/"\n"/g; s/},{/}\n{/g' | LC_ALL=C sort >"$work/text.json"

diff "$work/live.csv" "$work/text.csv"
diff "$work/live.json" "$work/text.json"

# What the sample's own two files hold is all there.
scan_sample "$native_program" csv | LC_ALL=C sort >"$work/sample.csv"
missing=$(LC_ALL=C comm -23 "$work/sample.csv" "$work/live.csv")
[ -z "$missing" ] || {
  printf 'of the sample, the live scan did not find:\n%s\n' "$missing" >&2
  exit 1
}
rows=$(wc -l <"$work/sample.csv")
[ "$rows" -gt 30 ] || {
  echo "the sample holds only $rows rows" >&2
  exit 1
}
echo "$(wc -l <"$work/live.csv") rows are the same, $rows of them the sample's"
