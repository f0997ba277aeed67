#!/bin/bash
# sample.sh: makes the current Wine prefix (see prefix.sh) a machine with a history:
# imports sample/registry.reg, and creates the files and folders that sample/machine.ini
# lists in its sections [Files], one Windows path a line, and [Shortcuts], "path=target".
# A trailing backslash makes a folder; ";" begins a comment. All else that the registry
# names is missing, which is what a scan is to find.
set -euo pipefail
export LC_ALL=C.UTF-8
sample=$(cd "$(dirname "$0")/../sample" && pwd)
: "${WINEPREFIX:?run this through prefix.sh}"
die() {
  printf 'sample.sh: %s\n' "$*" >&2
  exit 1
}

# create PATH: a path below drive_c, with slashes; folders need a trailing one. Wine
# takes names in any case, so a part that is there in another spelling is that part.
# Leaves the real path in "created".
create() {
  local folder=$WINEPREFIX/drive_c rest=$1 part entry
  while [[ $rest == */* ]]; do
    part=${rest%%/*} rest=${rest#*/}
    if [ ! -d "$folder/$part" ]; then
      shopt -s nocasematch
      for entry in "$folder"/*/; do
        entry=${entry%/} entry=${entry##*/}
        [[ $entry != "$part" ]] || part=$entry
      done
      shopt -u nocasematch
    fi
    folder+=/$part
    mkdir -p "$folder"
  done
  # An existing file may be one of the template's, shared by all clones: not touched.
  [ -z "$rest" ] || [ -e "$folder/$rest" ] || : >"$folder/$rest"
  created=$folder/$rest
}

# little BYTES VALUE: little-endian, as printf's escapes.
little() {
  local count=$1 value=$2 out='' byte
  while [ "$count" -gt 0 ]; do
    printf -v byte '\\x%02x' $((value & 255))
    out+=$byte
    value=$((value >> 8)) count=$((count - 1))
  done
  printf '%s' "$out"
}

# shortcut FILE TARGET: writes a shortcut file with a plain path in ASCII, or with none.
shortcut() {
  local file=$1 target=$2 flags=128 bytes length=${#2} # its texts, had it any, are UTF-16
  [ -z "$target" ] || flags=$((flags | 2))             # it names a place
  bytes="$(little 4 76)\\x01\\x14\\x02$(little 5 0)\\xc0$(little 6 0)\\x46$(little 4 $flags)"
  bytes+=$(little 52 0)
  if [ -n "$target" ]; then
    # Where the parts of the place stand: a volume without a name, the path, no more of it.
    bytes+="$(little 4 $((47 + length)))$(little 4 28)$(little 4 1)$(little 4 28)$(little 4 45)"
    bytes+="$(little 4 0)$(little 4 $((46 + length)))"
    bytes+="$(little 4 17)$(little 4 3)$(little 4 0)$(little 4 16)$(little 1 0)"
  fi
  {
    printf '%b' "$bytes"
    [ -z "$target" ] || printf '%s\0\0' "$target"
    printf '\0\0\0\0'
  } >"$file"
}

# One folder is seen under a second name as well.
mkdir -p "$WINEPREFIX/drive_c/Program Files/Northwick"
ln -s Northwick "$WINEPREFIX/drive_c/Program Files/Northwick Link"

section=
number=0
while IFS= read -r line || [ -n "$line" ]; do
  number=$((number + 1))
  line=${line%$'\r'} line=${line#$'\ufeff'}
  case $line in
    '' | ';'*) ;;
    '['*']') section=${line,,} ;;
    *)
      target=
      case $section in
        '[files]') ;;
        '[shortcuts]') target=${line#*=} line=${line%%=*} ;;
        *) continue ;;
      esac
      [[ $line == [Cc]:\\* && $line != *..* ]] ||
        die "machine.ini, line $number: not an absolute path on drive C: $line"
      path=${line:3}
      path=${path//\\//}
      create "$path"
      [ "$section" = '[files]' ] || shortcut "$created" "$target"
      # A 32-bit program is led to another folder under this name.
      shopt -s nocasematch
      if [[ $path == windows/system32/* ]]; then create "windows/syswow64/${path:17}"; fi
      shopt -u nocasematch
      ;;
  esac
done <"$sample/machine.ini"

# The editor takes a text without a mark for one in the code page, and then widens even
# its binary data; the UTF-16 that Windows itself exports is understood as it stands.
[ -r "$sample/registry.reg" ] || die "sample/registry.reg is missing"
text=$WINEPREFIX/registry.reg
{ printf '\xff\xfe' && iconv -f UTF-8 -t UTF-16LE "$sample/registry.reg"; } >"$text"

# The 32-bit editor, so that the keys land where a 32-bit program looks for them. Its
# exit code is 0 whatever happens: the file's presence is checked here.
wine 'C:\windows\syswow64\regedit.exe' /s "Z:${text//\//\\}" >/dev/null
rm "$text"
