#!/bin/bash
# provision.sh: makes the private Wine that the Windows programs are run with, on
# an amd64 Debian 12. Nothing is done when it is there already.
#
# Makes, in the rig's folder (rig/paths.sh):
#   env        shell variables, to be sourced; written last, so that its first line
#              means "complete"
#   usr/       a tree of its own in which the installed 64-bit Wine meets the
#              32-bit Wine and the few 32-bit libraries that it needs
#   bin/wine   the command that starts it
#   template/  a Wine prefix to be cloned (rig/prefix.sh); never used itself
#
# Why not the packaged 32-bit Wine: it needs i386 as a foreign architecture, which
# changes the user's system, and cannot be installed while the two architectures'
# package versions differ. Here i386 packages are only unpacked; apt's and dpkg's
# own configuration, lists and state are left alone.
#
# Needs the packages that "./dev" installs; run it through "./dev".
set -euo pipefail
umask 022
export LC_ALL=C.UTF-8
# shellcheck source=rig/paths.sh
. "$(dirname "$0")/paths.sh"

FORMAT=2 # raise it to have every existing rig built anew
TRIPLE=i386-linux-gnu
# What the Unix side of the 32-bit Wine links to or loads.
I386=(wine32 libwine libc6 libgcc-s1 libx11-6 libxext6 libxcb1 libxau6 libxdmcp6
  libbsd0 libmd0 libfreetype6 libpng16-16 zlib1g libbrotli1 libfontconfig1 libexpat1
  libxrender1 libxrandr2 libxi6 libxfixes3 libxcursor1 libxcomposite1 libxinerama1)

say() { printf 'rig: %s\n' "$*" >&2; }
die() {
  say "error: $*"
  exit 1
}

[ "$(dpkg --print-architecture)" = amd64 ] || die "an amd64 Debian is needed"
version=$(dpkg-query -W -f='${Version}' libwine:amd64) || die "Wine is not installed"
stamp="# rig $FORMAT, Wine $version, in $HSW_RIG"

# ---- Fonts ----------------------------------------------------------------------
# Wine never looks where Debian puts its fonts, and lays out windows with whatever
# else it finds. Not part of FORMAT: an older rig gets them, too.
add_fonts() {
  local fonts=$HSW_RIG/template/drive_c/windows/Fonts name
  for name in tahoma tahomabd marlett; do
    [ -s "$fonts/$name.ttf" ] && continue
    cp "/usr/share/wine/fonts/$name.ttf" "$fonts/$name.new" && mv "$fonts/$name.new" "$fonts/$name.ttf"
  done
}

# ---- Complete already? ---------------------------------------------------------
if [ -r "$HSW_RIG/env" ] && [ "$(head -n 1 "$HSW_RIG/env")" = "$stamp" ] &&
  [ -s "$HSW_RIG/template/system.reg" ] && [ -x "$HSW_RIG/bin/wine" ]; then
  add_fonts
  exit 0
fi

# What interrupted runs left; the caller holds the rig's lock, so none is at work.
for folder in "$HSW_RIG"/tmp.*; do
  if [ -d "$folder/prefix" ]; then
    WINEPREFIX=$folder/prefix timeout 20 /usr/lib/wine/wineserver64 -k >/dev/null 2>&1 || :
    WINEPREFIX=$folder/prefix timeout 20 /usr/lib/wine/wineserver64 -w >/dev/null 2>&1 || :
  fi
  rm -rf "$folder" || :
done

# ---- Helpers ---------------------------------------------------------------------
TMP=$(mktemp -d "$HSW_RIG/tmp.XXXXXX")
WINE="" WINESERVER="" WINEDLLPATH=""

cleanup() {
  [ -z "$WINESERVER" ] || stop_server "$TMP/prefix"
  rm -rf "$TMP"
}
trap cleanup EXIT
trap 'exit 1' HUP INT TERM

# "-k", never "-k9", which would leave Wine's services running.
stop_server() {
  WINEPREFIX=$1 "$WINESERVER" -k >/dev/null 2>&1 || :
  WINEPREFIX=$1 timeout 20 "$WINESERVER" -w >/dev/null 2>&1 || :
}

# wine_in PREFIX ARG...
wine_in() (
  export WINEPREFIX=$1 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
  shift
  unset WINELOADER WINEARCH DISPLAY
  if [ -n "$WINEDLLPATH" ]; then export WINEDLLPATH; else unset WINEDLLPATH; fi
  exec timeout 120 "$WINE" "$@"
)

# Both bitnesses start; cmd.exe is Wine's own, so no compiler is needed.
works() {
  local arch=() folder
  for folder in syswow64 system32; do
    arch+=("$(wine_in "$1" "C:\\windows\\$folder\\cmd.exe" /c 'echo %PROCESSOR_ARCHITECTURE%' 2>/dev/null | tr -d '\r\n')")
  done
  [ "${arch[*]}" = "x86 AMD64" ]
}

# Uses WINE, WINESERVER and WINEDLLPATH; leaves a prefix in $TMP/prefix.
make_prefix() {
  rm -rf "$TMP/prefix"
  wine_in "$TMP/prefix" wineboot -i >/dev/null 2>&1 || return 1
  if ! works "$TMP/prefix"; then
    stop_server "$TMP/prefix"
    return 1
  fi
  # A crash must end a test, not wait for a click.
  wine_in "$TMP/prefix" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
  # No display is needed, or used when there is one.
  wine_in "$TMP/prefix" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
  stop_server "$TMP/prefix" # this also writes the registry to disk
  [ -s "$TMP/prefix/system.reg" ] && [ -s "$TMP/prefix/user.reg" ] || return 1
  # Desktop, Documents and so on are links into the user's real home: folders instead.
  find "$TMP/prefix/drive_c/users" -type l -print0 | while IFS= read -r -d '' link; do
    rm "$link"
    mkdir "$link"
  done
  # Wine must never rewrite the files that the clones share.
  echo disable >"$TMP/prefix/.update-timestamp"
}

# Leaves the tree in $TMP/usr, made to be run from $HSW_RIG/usr.
make_tree() {
  local file want=() package
  say "reading the i386 package index (a private copy)"
  mkdir -p "$TMP/lists/partial" "$TMP/cache/archives/partial" "$TMP/sources" "$TMP/deb"
  : >"$TMP/status"
  : >"$TMP/none"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources; do
    # The system's sources, freed of "amd64 only".
    [ ! -r "$file" ] ||
      sed -E '/^Architectures:/Id; s/^(deb[^[]*\[[^]]*)\barch=[^] ]+ ?/\1/; s/^(deb[a-z-]*) +\[ *\]/\1/' \
        "$file" >"$TMP/sources/$(basename "$file")"
  done
  local private=(-o APT::Architecture=i386 -o APT::Architectures=i386 -o APT::Sandbox::User=root
    -o Dir::Etc::SourceList="$TMP/none" -o Dir::Etc::SourceParts="$TMP/sources"
    -o Dir::State::Status="$TMP/status" -o Dir::State::Lists="$TMP/lists" -o Dir::Cache="$TMP/cache"
    -o Acquire::Languages=none -o Acquire::IndexTargets::deb::DEP-11::DefaultEnabled=false
    -o Acquire::Retries=3)
  # An index that cannot be read is skipped; the others mostly serve.
  apt-get "${private[@]}" update -qq >"$TMP/update.log" 2>&1 || :

  say "downloading the 32-bit Wine and its libraries (110 MB)"
  for package in "${I386[@]}"; do
    case $package in wine32 | libwine) package+="=$version" ;; esac
    want+=("$package")
  done
  (cd "$TMP/deb" && apt-get "${private[@]}" -qq download "${want[@]}" >&2) || {
    cat "$TMP/update.log" >&2
    die "the i386 packages could not be downloaded"
  }

  say "unpacking"
  mkdir -p "$TMP/x" "$TMP/usr/lib/$TRIPLE" "$TMP/usr/lib/wine" "$TMP/usr/lib/x86_64-linux-gnu" "$TMP/usr/share"
  for file in "$TMP"/deb/*.deb; do
    dpkg-deb --fsys-tarfile "$file" | tar -x -C "$TMP/x" --exclude='./usr/share/*' --exclude='./etc/*'
  done
  for file in "$TMP/x/lib/$TRIPLE" "$TMP/x/usr/lib/$TRIPLE"; do
    cp -al "$file/." "$TMP/usr/lib/$TRIPLE/"
  done
  # The DLLs come with debug data: 550 MB become 146 MB.
  find "$TMP/usr/lib/$TRIPLE/wine/i386-windows" -type f -size +16k ! -name '*16' -print0 |
    xargs -0 -P2 -n32 i686-w64-mingw32-strip 2>/dev/null || :
  # user32 needs this one, which the 64-bit package makes only when it is installed.
  cp -aL /usr/lib/x86_64-linux-gnu/wine/i386-windows/zlib1.dll "$TMP/usr/lib/$TRIPLE/wine/i386-windows/"
  cp -a "$TMP/x/usr/lib/wine/wine" "$TMP/usr/lib/wine/wine"
  # Wine looks for everything beside its own program: copies, where links would lead away.
  cp -aL /usr/lib/wine/wine64 /usr/lib/wine/wineserver64 "$TMP/usr/lib/wine/"
  ln -s wineserver64 "$TMP/usr/lib/wine/wineserver"
  ln -s /usr/lib/x86_64-linux-gnu/wine "$TMP/usr/lib/x86_64-linux-gnu/wine"
  ln -s /usr/lib/x86_64-linux-gnu/wine/x86_64-unix "$TMP/usr/lib/$TRIPLE/wine/x86_64-unix"
  ln -s /usr/share/wine "$TMP/usr/share/wine"
  patchelf --set-interpreter "$HSW_RIG/usr/lib/$TRIPLE/ld-linux.so.2" --force-rpath \
    --set-rpath "$HSW_RIG/usr/lib/$TRIPLE" "$TMP/usr/lib/wine/wine"
}

# ---- Which Wine? -------------------------------------------------------------------
rm -rf "${HSW_RIG:?}"/{env,template,bin}
found=no
if [ -x /usr/lib/wine/wine ]; then # the packaged 32-bit Wine is installed
  WINE=/usr/lib/wine/wine64 WINESERVER=/usr/lib/wine/wineserver64
  if make_prefix; then
    found=yes
    say "using the installed 32-bit Wine"
  fi
fi
if [ $found = no ]; then
  if [ "$(cat "$HSW_RIG/usr/version" 2>/dev/null || :)" != "$stamp" ]; then
    make_tree
    echo "$stamp" >"$TMP/usr/version"
    rm -rf "${HSW_RIG:?}/usr"
    mv "$TMP/usr" "$HSW_RIG/usr"
  fi
  say "creating the template prefix"
  WINE=$HSW_RIG/usr/lib/wine/wine64 WINESERVER=$HSW_RIG/usr/lib/wine/wineserver64
  # Where the 64-bit side looks for the 32-bit DLLs.
  WINEDLLPATH=$HSW_RIG/usr/lib/$TRIPLE/wine
  if ! "$HSW_RIG/usr/lib/wine/wine" --version >/dev/null 2>&1 || ! make_prefix; then
    # A kernel that cannot start 32-bit programs: the 64-bit Wine alone, with the
    # 32-bit DLLs, still runs console programs.
    say "no 32-bit programs on this kernel: trying the 64-bit Wine alone"
    WINE=/usr/lib/wine/wine64 WINESERVER=/usr/lib/wine/wineserver64
    make_prefix || die "Wine does not run 32-bit programs here"
  fi
fi

# ---- Finish --------------------------------------------------------------------------
# Without debug data the template shrinks from 1.3 GB to under 200 MB.
find "$TMP"/prefix/drive_c/windows/system32 "$TMP"/prefix/drive_c/windows/winsxs "$TMP"/prefix/drive_c/windows/*.exe \
  -type f -size +16k \( -name '*.dll' -o -name '*.exe' -o -name '*.drv' -o -name '*.ocx' -o -name '*.cpl' \
  -o -name '*.sys' -o -name '*.acm' -o -name '*.ax' \) -print0 |
  xargs -0 -P2 -n32 x86_64-w64-mingw32-strip 2>/dev/null || :
works "$TMP/prefix" || die "the finished prefix does not work"
stop_server "$TMP/prefix"
mv "$TMP/prefix" "$HSW_RIG/template"
add_fonts
if command -v hardlink >/dev/null && [ -d "$HSW_RIG/usr" ]; then
  hardlink -q -t "$HSW_RIG/template/drive_c" "$HSW_RIG/usr/lib/$TRIPLE/wine/i386-windows" || :
fi

mkdir "$HSW_RIG/bin"
printf '#!/bin/sh\nexec "%s" "$@"\n' "$WINE" >"$HSW_RIG/bin/wine"
printf '#!/bin/sh\nexec "%s" "$@"\n' "$WINESERVER" >"$HSW_RIG/bin/wineserver"
chmod +x "$HSW_RIG"/bin/*
printf '%s\nWINESERVER=%q\nWINEDLLPATH=%q\n' "$stamp" "$WINESERVER" "$WINEDLLPATH" >"$TMP/env"
mv "$TMP/env" "$HSW_RIG/env"
say "ready, $(du -sm --exclude='tmp.*' "$HSW_RIG" | cut -f1) MB in $HSW_RIG"
