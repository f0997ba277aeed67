#!/bin/bash
# two_fixes_at_once.sh WINDOWS_PROGRAM: two programs that fix at the same moment each remove
# their own entry and keep the record of it, ten times.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/e2e/parts.sh
. "$here/parts.sh"
[ -n "${HSW_PREFIX:-}" ] || exec "$top/rig/prefix.sh" "$here/$(basename "$0")" "$@"
program=$1
work=$WINEPREFIX/two
mkdir "$work"
# With neighbours that make the writing of a record take some time.
large='"large"=hex:'$(printf '00,%.0s' {1..400000})00
cat >"$work/dead.reg" <<END
REGEDIT4

[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]
"dead.hlp"="C:\\\\gone"
$large

[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run]
"dead"="C:\\\\gone\\\\dead.exe"
$large
END
# fix AREA: again, when the other program is just writing the settings.
fix() {
  for _ in 1 2 3 4 5; do
    wine "$program" fix --areas "$1" --risk "low,medium,high" --yes --no-progress \
      --data-folder "$(windows_path "$data")" >"$data/$1.txt" 2>&1 && return
    grep -q 'ini: could not be read' "$data/$1.txt" || return
  done
}
for round in 1 2 3 4 5 6 7 8 9 10; do
  data=$work/$round
  mkdir "$data"
  wine 'C:\windows\syswow64\regedit.exe' /s "$(windows_path "$work/dead.reg")"
  fixing=()
  for area in Help Startup; do
    fix "$area" &
    fixing+=($!)
  done
  ended=0
  for one in "${fixing[@]}"; do wait "$one" || ended=$?; done
  records=("$data"/undo/*.undo)
  left=$(wine "$program" scan --areas Help,Startup --no-progress --format csv | grep -c dead || :)
  [ "$ended ${#records[@]} $left" = "0 2 0" ] || {
    echo "round $round: ended with $ended, ${#records[@]} records, $left entries left" >&2
    cat "$data"/*.txt >&2
    exit 1
  }
done
echo "ten times two fixes, two records and no entry left"
