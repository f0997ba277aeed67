#!/bin/bash
# about_commit.sh SOURCES: the about box has to name the commit that is built, also when
# CMake was configured at another one; and no commit where the sources did not come by git.
set -euo pipefail
sources=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_SYSTEM=/dev/null

# The folder of the about box in a project of its own, whose checkout is made here.
cat >"$folder/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(About VERSION 1.2.3 LANGUAGES NONE)
set(HIVESWEEP_WINDOWS ON)
set(CMAKE_SIZEOF_VOID_P 4)
function(hivesweep_dll name)
  add_custom_target(\${name} ALL)
endfunction()
function(target_compile_definitions)
endfunction()
add_custom_target(hivesweep_icon_files)
add_subdirectory($sources/infopane infopane)
END

commit() {
  git -C "$folder" add CMakeLists.txt
  git -C "$folder" -c user.name=test -c user.email=test@localhost commit -q --allow-empty -m "$1"
}
build() { cmake --build "$folder/build" >"$folder/log" || { cat "$folder/log"; exit 1; }; }
about=$folder/build/infopane/About.rc
# expect WHY PATTERN: both languages' version line ends like that.
expect() {
  [ "$(grep -cE "Version 1\.2\.3 \(32-[Bb]it\)$2\"" "$about")" = 2 ] || {
    echo "about_commit: $1"
    grep Version "$about"
    exit 1
  }
}
head() { git -C "$folder" rev-parse --short HEAD; }

git -C "$folder" init -q
commit one
cmake -S "$folder" -B "$folder/build" -G Ninja >"$folder/log" || { cat "$folder/log"; exit 1; }
build
expect "the commit that is built" ", build $(head)"
commit two
build
expect "the commit that is built, not the one at configuring" ", build $(head)"

touch -d '2001-01-01' "$about"
build
[ "$(date -r "$about" +%Y)" = 2001 ] || { echo "about_commit: written anew without need"; exit 1; }

rm -rf "$folder/.git"
build
expect "no commit without git" ""
