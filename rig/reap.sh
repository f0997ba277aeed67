#!/bin/bash
# reap.sh [PREFIX]: ends a Wine prefix and removes it. Without an argument: all those
# that killed runs left behind.
set -euo pipefail
# shellcheck source=rig/paths.sh
. "$(dirname "$0")/paths.sh"

remove() {
  # "-k", never "-k9": that would leave Wine's services behind, running.
  if [ -x "$HSW_RIG/bin/wineserver" ]; then
    WINEPREFIX=$1 timeout 20 "$HSW_RIG/bin/wineserver" -k || :
    WINEPREFIX=$1 timeout 20 "$HSW_RIG/bin/wineserver" -w || :
  fi
  rm -rf "$1" || :
}

if [ $# -gt 0 ]; then
  remove "$1"
  exit 0
fi
# While "starting" is held, every prefix in use has its lock.
(
  flock 8
  for prefix in "$HSW_RIG"/run.*; do
    flock -n "$prefix/.lock" true 2>/dev/null || [ ! -e "$prefix/.lock" ] || continue
    printf '%s\n' "$prefix"
  done
) 8>"$HSW_RIG/starting" | while read -r prefix; do
  [ ! -d "$prefix" ] || remove "$prefix"
done
