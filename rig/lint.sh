#!/bin/bash
# lint.sh [--fix] [--all]: everything that "./dev lint" checks; fails on any finding, after
# all of them have been shown. With --fix the sources are formatted first. It looks at what
# changed since this branch left main, also before it is committed; on main itself, with
# nothing changed, at the last commit; with --all, or after a change of how it looks itself,
# at everything.
set -euo pipefail
cd "$(dirname "$0")/.."
say() { printf 'lint: %s\n' "$*" >&2; }
rc=0
fix=no
all=no
for argument in "$@"; do
  case $argument in
    --fix) fix=yes ;;
    --all) all=yes ;;
    *)
      say "unknown: $argument"
      exit 2
      ;;
  esac
done

# ---- What to look at -----------------------------------------------------------------
# Ours, also before they are committed.
present() { # the files of that kind that are there: PATTERN...
  git ls-files --cached --others --exclude-standard -- "$@" | sort -u | while read -r file; do
    [ ! -e "$file" ] || printf '%s\n' "$file"
  done
}
mapfile -t every_source < <(present '*.cpp' '*.h')
mapfile -t every_script < <(present dev .ci/run '*.sh')
[ ${#every_source[@]} -gt 0 ] || {
  say "no sources found"
  exit 1
}

# changes BASE: the files that differ from that commit.
changes() {
  git diff --name-only --diff-filter=d "$1" --
  git ls-files --others --exclude-standard
}

if [ $all = no ]; then
  base=
  for main in origin/main main '@{upstream}'; do
    if base=$(git merge-base HEAD "$main" 2>/dev/null); then break; fi
  done
  if [ -z "$base" ]; then
    say "no main to compare with: everything"
    all=yes
  elif [ -z "$(changes "$base")" ]; then
    if base=$(git rev-parse -q --verify HEAD~1); then
      say "nothing changed: the last commit"
    else
      all=yes
    fi
  fi
fi
if [ $all = no ]; then
  mapfile -t changed < <(changes "$base" | sort -u)
  say "what changed since $(git log -1 --format='%h (%s)' "$base"): ${#changed[@]} files"
  for file in "${changed[@]}"; do
    case $file in
      .clang-tidy | .clang-format | rig/lint.sh | rig/tidy.sh)
        say "$file changed: everything"
        all=yes
        ;;
    esac
  done
fi

# both A B: the lines that both lists have.
both() { comm -12 <(printf '%s\n' "$1" | sort) <(printf '%s\n' "$2" | sort) | sed '/^$/d'; }

if [ $all = yes ]; then
  sources=("${every_source[@]}")
  scripts=("${every_script[@]}")
  mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep '\.cpp$')
else
  lines=$(printf '%s\n' "${changed[@]}")
  mapfile -t sources < <(both "$lines" "$(printf '%s\n' "${every_source[@]}")")
  mapfile -t scripts < <(both "$lines" "$(printf '%s\n' "${every_script[@]}")")
  # A header is read in the sources that name it; where only headers do, in theirs.
  declare -A seen=()
  queue=("${sources[@]}")
  while [ ${#queue[@]} -gt 0 ]; do
    file=${queue[0]}
    queue=("${queue[@]:1}")
    [ -z "${seen[$file]:-}" ] || continue
    seen[$file]=yes
    [[ $file == *.h ]] || continue
    mapfile -t users < <(grep -lF "#include \"$file\"" "${every_source[@]}" || :)
    mapfile -t direct < <(printf '%s\n' "${users[@]}" | grep '\.cpp$' || :)
    if [ ${#direct[@]} -gt 0 ]; then queue+=("${direct[@]}"); else queue+=("${users[@]}"); fi
  done
  mapfile -t units < <([ ${#seen[@]} = 0 ] || printf '%s\n' "${!seen[@]}" | grep '\.cpp$' | sort)
fi

# ---- The checks ------------------------------------------------------------------------
if [ ${#scripts[@]} -gt 0 ]; then
  say "shellcheck, ${#scripts[@]} scripts"
  shellcheck -x "${scripts[@]}" || rc=1
fi

if [ ${#sources[@]} -gt 0 ]; then
  say "clang-format, ${#sources[@]} files"
  [ $fix = no ] || clang-format -i "${sources[@]}"
  clang-format --dry-run -Werror "${sources[@]}" || rc=1
fi

for preset in lint lint-win32; do
  if [ $all = yes ]; then
    say "clang-tidy ($preset)"
    ./dev build "$preset" || rc=1
  elif [ ${#units[@]} -gt 0 ]; then
    say "clang-tidy ($preset), of ${#units[@]} sources those that it compiles"
    ./dev tidy "$preset" "${units[@]}" || rc=1
  fi
done

if [ ${#units[@]} -gt 0 ]; then
  say "cppcheck, ${#units[@]} sources"
  mkdir -p build/cppcheck
  cppcheck --quiet --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
    --std=c++20 --language=c++ -j2 --cppcheck-build-dir=build/cppcheck -I . \
    --template='{file}:{line}: {severity}: {message} [{id}]' \
    --library=gnu --library=posix --library=windows --library=googletest \
    --suppress=internalAstError --suppress=unknownMacro --suppress=normalCheckLevelMaxBranches \
    "${units[@]}" || rc=1
fi

if [ $rc = 0 ]; then say "clean"; else say "there are findings"; fi
exit $rc
