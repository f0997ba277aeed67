# What the scripts of this folder share; they read it in.
# shellcheck shell=bash
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
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
