# shellcheck shell=bash
# To be sourced by the tests of this folder. Those of a live registry run in a Wine prefix
# of their own that has the sample's leftovers.
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# rerun_in_sample ARG...: starts the test again in such a prefix, if it is not in one.
rerun_in_sample() {
  [ -n "${HSW_PREFIX:-}" ] || exec "$top/rig/prefix.sh" --sample "$0" "$@"
}

# need_program FILE
need_program() {
  [ -x "$1" ] || {
    echo "the program is not built: $1" >&2
    exit 1
  }
}

# windows_path PATH
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# export_registry FILE [KEY]: what 32-bit programs see, as the editor exports it.
export_registry() {
  wine 'C:\windows\syswow64\regedit.exe' /E "$(windows_path "$1")" "${@:2}" >/dev/null
}

# describe FOLDER: this registry and the machine that it belongs to, as the text files that
# the native program is given in the array text. The current user's keys are not in an
# export of everything, where they stand below HKEY_USERS.
describe() {
  local part
  text=(--machine "$1/machine.ini")
  for part in LOCAL_MACHINE CURRENT_USER; do
    export_registry "$1/$part.reg" HKEY_$part
    text+=(--registry "$1/$part.reg")
  done
  {
    printf '[Machine]\nWinDir=C:\\windows\nWow64=1\n[Drives]\nC=fixed\n'
    # What the sample adds to a fresh machine: its folders and shortcuts, and what can be
    # seen through a link, which the list of files stops at.
    sed -n '/^; ---- what/,$p' "$top/sample/machine.ini"
    printf '[Files]\n'
    find "$WINEPREFIX/drive_c" -mindepth 1 \( -type d -printf '%P/\n' -o -printf '%P\n' \) |
      sed 's/^/C:\\/; s/\//\\/g'
  } >"$1/machine.ini"
}

options=(--areas all --show-protected --no-progress)

# scan_sample PROGRAM FORMAT: scans the sample's registry and machine, from their texts.
# A Windows program is run under Wine.
scan_sample() {
  local program run=()
  program=$(realpath "$1")
  case $program in *.exe) run=("$top/rig/wine-run.sh") ;; esac
  # Names that both systems understand.
  (cd "$top/sample" &&
    "${run[@]}" "$program" scan "${options[@]}" --registry registry.reg --machine machine.ini \
      --format "$2")
}
