#!/bin/bash
# prefix.sh [--sample] COMMAND ARG...: runs a command (any, not only a Windows
# program) with a fresh Wine prefix of its own, and removes the prefix afterwards.
# The command finds WINEPREFIX set and "wine" on its path. The exit code is the
# command's; 125 when there is no prefix to be had.
#   --sample   the prefix holds the leftovers of sample/ (see sample.sh); HSW_SAMPLE=yes
#              asks for the same
#   --display  windows are really drawn, on a display of their own that nobody sees;
#              HSW_DISPLAY=yes asks for the same
#   --desktop  windows are drawn on the display that DISPLAY names, for somebody to use
#   --dpi N    the display has that many dots per inch, and more dots; not --desktop's
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=rig/paths.sh
. "$here/paths.sh"
sample=${HSW_SAMPLE:-no}
display=${HSW_DISPLAY:-no}
dpi=96
while [[ ${1:-} == --* ]]; do
  case $1 in
    --sample) sample=yes ;;
    --display) display=yes ;;
    --desktop) display=${DISPLAY:-} ;;
    --dpi)
      dpi=$2
      shift
      ;;
    *)
      echo "prefix.sh: unknown option $1" >&2
      exit 125
      ;;
  esac
  shift
done
[ -n "$display" ] || {
  echo "prefix.sh: DISPLAY names no display" >&2
  exit 125
}
[ -r "$HSW_RIG/env" ] || {
  echo "prefix.sh: no Wine in $HSW_RIG; ./dev build makes it" >&2
  exit 125
}
# shellcheck source=/dev/null
. "$HSW_RIG/env"

# The lock says "in use" for as long as this script lives, however it ends: that is
# how reap.sh tells a killed run's leftovers from a running one's. No child may
# inherit it, hence the 9>&- below. "starting" is held until the lock is.
exec 8>"$HSW_RIG/starting"
flock 8
WINEPREFIX=$(mktemp -d "$HSW_RIG/run.XXXXXX") || exit 125
exec 9>"$WINEPREFIX/.lock"
flock 9
exec 8>&-
# shellcheck disable=SC2317 # called by the trap
remove() {
  # In the background, as Wine takes most of a second to end; closing the terminal
  # meanwhile must not stop it half-way.
  trap '' HUP INT TERM
  {
    "$here/reap.sh" "$WINEPREFIX" || :
    [ -z "${xvfb:-}" ] || kill "$xvfb" # last: Wine complains of a display that goes
  } </dev/null >/dev/null 2>&1 9>&- &
}
trap remove EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# DLLs as hard links (80 ms, no space); what Wine writes to as copies.
template=$HSW_RIG/template
cp -al "$template/drive_c" "$WINEPREFIX/drive_c" &&
  cp -a "$template"/*.reg "$template/.update-timestamp" "$template/dosdevices" "$WINEPREFIX/" &&
  cp --remove-destination "$template"/drive_c/windows/{win,system}.ini "$WINEPREFIX/drive_c/windows/" ||
  exit 125

export WINEPREFIX PATH="$HSW_RIG/bin:$PATH"
# UTF-8, or Wine cannot give Unix files and arguments their names; and never the user's
# language, which Windows programs would take on.
export LC_ALL=C.UTF-8
export WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=;winemenubuilder.exe=d}"
unset WINELOADER WINEARCH DISPLAY
if [ -n "$WINEDLLPATH" ]; then export WINEDLLPATH; else unset WINEDLLPATH; fi
export HSW_PREFIX=$WINEPREFIX # for wine-run.sh: this one, not another

# user_value KEY NAME VALUE: a value of the user's registry, as Wine's file has it.
user_value() { printf '\n[%s]\n"%s"=%s\n' "${1//\\/\\\\}" "$2" "$3" >>"$WINEPREFIX/user.reg"; }

if [ "$display" = yes ]; then
  # The server chooses a number that is free, and writes it when it is ready.
  mkfifo "$WINEPREFIX/display"
  Xvfb -displayfd 7 -screen 0 $((dpi * 1280 / 96))x$((dpi * 960 / 96))x24 -nolisten tcp \
    7>"$WINEPREFIX/display" </dev/null >/dev/null 2>&1 9>&- &
  xvfb=$!
  read -r -t 20 number <"$WINEPREFIX/display" || {
    echo "prefix.sh: Xvfb does not start" >&2
    exit 125
  }
  export DISPLAY=:$number
  user_value 'Control Panel\Desktop' LogPixels "dword:$(printf %08x "$dpi")"
  # Wine draws the frames itself: there is no window manager to wait for.
  user_value 'Software\Wine\X11 Driver' Managed '"N"'
elif [ "$display" != no ]; then
  export DISPLAY=$display
fi
[ "$display" = no ] || user_value 'Software\Wine\Drivers' Graphics '"x11"'

# Wine's services inherit the output of the program that starts them and keep it
# open: whoever waits for its end (ctest does) would wait for them.
wine wineboot </dev/null >/dev/null 2>&1 9>&-
if [ "$sample" = yes ]; then
  "$here/sample.sh" </dev/null 9>&- || exit 125
fi
rc=0
"$@" 9>&- || rc=$?
exit $rc
