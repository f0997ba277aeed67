#!/bin/bash
# golden_scan.sh PROGRAM: a scan of the sample is, byte for byte, the one in
# golden_scan.json, which somebody has read line by line against the sample.
# golden_scan.sh --renew PROGRAM: makes that file anew; read what "git diff" shows of it.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=tests/e2e/parts.sh
. "$here/parts.sh"
golden=$here/golden_scan.json
renew=no
if [ "${1:-}" = --renew ]; then
  renew=yes
  shift
fi
scan=$(mktemp)
trap 'rm "$scan"' EXIT
scan_sample "$1" json >"$scan"
if [ $renew = yes ]; then
  cp "$scan" "$golden"
  echo "$(wc -l <"$golden") lines written"
else
  diff "$golden" "$scan"
fi
