#!/bin/sh
# check_imports.sh LIST PROGRAM.exe... : fails when a 32-bit program could not
# start on Windows 2000, that is when
#   - it imports a function that is not in LIST ("dll function" a line, "#" begins
#     a comment), or one by ordinal, which no list can vouch for;
#   - its header asks for a newer system than 5.0.
# A missing import is no error that the program could handle: the loader refuses
# to start it at all. Hence a list of what is known, not of what is forbidden.
set -eu
list=$1
shift
objdump=${OBJDUMP:-i686-w64-mingw32-objdump}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rc=0
for program in "$@"; do
  LC_ALL=C "$objdump" -p "$program" >"$work/dump"
  awk -v list="$list" '
    BEGIN {
      while ((getline line < list) > 0) {
        sub(/#.*/, "", line)
        if (split(line, word, " ") == 2) known[tolower(word[1]) " " word[2]] = 1
      }
    }
    /^MajorOSystemVersion/  { system_major = $2 }
    /^MajorSubsystemVersion/ { major = $2 }
    /^MinorSubsystemVersion/ { minor = $2 }
    /^Entry d / && $3 !~ /^0+$/ { print "  has delayed imports, which are not checked" }
    /^\tDLL Name:/ { dll = tolower($3); next }
    /^The Export Tables|^PE File Base Relocations/ { dll = "" }
    /^\t[0-9a-f]+[ \t]+[0-9]+[ \t]/ && dll != "" {
      seen++
      if ($3 == "<none>") print "  " dll " ordinal " $2
      else if (!((dll " " $3) in known)) print "  " dll " " $3
    }
    END {
      if (major != 5 && major != 4 || major == 5 && minor != 0 || system_major > 5)
        print "  asks for subsystem " major "." minor " of system " system_major
      if (!seen) print "  has no imports at all: not a program that can be judged"
    }' "$work/dump" >"$work/bad"
  if [ -s "$work/bad" ]; then
    printf '%s: not known to start on Windows 2000:\n' "$program"
    cat "$work/bad"
    rc=1
  fi
done
exit $rc
