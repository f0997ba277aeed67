#!/bin/bash
# fix_and_restore.sh WINDOWS_PROGRAM NATIVE_PROGRAM: the shipped program fixes all that it
# finds in a live registry, and the restore that it names brings back every byte of it.
set -euo pipefail
# shellcheck source=tests/e2e/parts.sh
. "$(dirname "$0")/parts.sh"
rerun_in_sample "$@"
live_program=$1 native_program=$2
need_program "$native_program"
work=$WINEPREFIX/undo
mkdir "$work"
die() {
  printf '%s\n' "$*" >&2
  exit 1
}
fix=(fix --areas all --risk "low,medium,high" --no-progress)

# snapshot NAME: the whole registry, as programs of either width see it.
snapshot() {
  export_registry "$work/$1.32.reg"
  wine 'C:\windows\regedit.exe' /E "$(windows_path "$work/$1.64.reg")" >/dev/null
}
# same NAME NAME
same() { cmp "$work/$1.32.reg" "$work/$2.32.reg" && cmp "$work/$1.64.reg" "$work/$2.64.reg"; }
# files: the names of all that the prefix's disk holds.
files() { (cd "$WINEPREFIX/drive_c" && find . | LC_ALL=C sort); }
# last_name OUTPUT: of the backup that undoes it.
last_name() { sed -n 's/^To undo it: hivesweep-cli restore \(backup[^ ]*\.reg\)\r*$/\1/p' "$1"; }

# The first program that asks the shell anything gets a desktop, for which Wine describes
# a display in the registry; with the last one it goes, and the next is another display.
# One that waits with a window keeps it for the whole test, and dies with the prefix.
wine notepad >/dev/null 2>&1 &
wine "$live_program" scan --areas all --no-progress >/dev/null

# A dry run, and a question that nobody can answer, leave everything as it is.
snapshot before
files >"$work/files.before"
wine "$live_program" "${fix[@]}" --dry-run >"$work/dry.txt"
rc=0
wine "$live_program" "${fix[@]}" >/dev/null 2>&1 </dev/null || rc=$?
[ $rc = 2 ] || die "unasked, the fix ended with $rc"
snapshot dry
same before dry || die "the dry run changed the registry"
files | diff "$work/files.before" - || die "the dry run changed the disk"

# The native program, on the same registry as text, would fix the same.
describe "$work"
"$native_program" "${fix[@]}" --dry-run "${text[@]}" >"$work/native.txt"
diff <(LC_ALL=C sort "$work/dry.txt") <(LC_ALL=C sort "$work/native.txt") ||
  die "the native dry run differs"

wine "$live_program" "${fix[@]}" --yes >"$work/fix.txt"
fixed=$(sed -n 's/^\([0-9]*\) problems fixed\r*$/\1/p' "$work/fix.txt")
[ "${fixed:-0}" -gt 25 ] || die "fixed only ${fixed:-nothing}"
snapshot fixed
! cmp -s "$work/before.32.reg" "$work/fixed.32.reg" || die "the fix changed nothing"

wine "$live_program" restore "$(last_name "$work/fix.txt")" --yes >"$work/restore.txt"
snapshot restored
same before restored || die "the restore did not bring everything back"

# And the restore can be undone as well.
wine "$live_program" restore "$(last_name "$work/restore.txt")" --yes >/dev/null
snapshot again
same fixed again || die "undoing the restore did not bring the fix back"
echo "$fixed problems fixed, restored, and fixed again; $(wc -c <"$work/before.64.reg") bytes of registry are the same"
