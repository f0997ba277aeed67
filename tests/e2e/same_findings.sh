#!/bin/bash
# same_findings.sh WINDOWS_PROGRAM NATIVE_PROGRAM: the shipped program, scanning a live
# registry, finds what the native one finds in an export of that registry and a
# description of that machine; and all that the sample alone is known to hold.
set -euo pipefail
# shellcheck source=tests/e2e/parts.sh
. "$(dirname "$0")/parts.sh"
rerun_in_sample "$@"
live_program=$1 native_program=$2
need_program "$native_program"
work=$WINEPREFIX/compare
mkdir "$work"

# The order in which a registry enumerates its entries is its own affair: rows and
# backup lines are compared as a set.
wine "$live_program" scan "${options[@]}" --format csv | LC_ALL=C sort >"$work/live.csv"
wine "$live_program" scan "${options[@]}" --format json | sed 's/","/"\n"/g; s/},{/}\n{/g' |
  LC_ALL=C sort >"$work/live.json"

describe "$work"
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
