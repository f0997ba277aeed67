#!/bin/bash
# lint.sh [--fix]: everything that "./dev lint" checks; fails on any finding, after all of
# them have been shown. With --fix the sources are formatted first.
set -euo pipefail
cd "$(dirname "$0")/.."
say() { printf 'lint: %s\n' "$*" >&2; }
rc=0

# Ours, also before they are committed.
mapfile -t sources < <(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' | while read -r file; do
  [ ! -e "$file" ] || echo "$file"
done)
[ ${#sources[@]} -gt 0 ] || {
  say "no sources found"
  exit 1
}

say "shellcheck"
shellcheck -x dev .ci/run rig/*.sh icons/*.sh tests/e2e/*.sh || rc=1

say "clang-format, ${#sources[@]} files"
[ "${1:-}" != --fix ] || clang-format -i "${sources[@]}"
clang-format --dry-run -Werror "${sources[@]}" || rc=1

for preset in lint lint-win32; do
  say "clang-tidy ($preset)"
  ./dev build "$preset" || rc=1
done

say "cppcheck"
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep '\.cpp$')
mkdir -p build/cppcheck
cppcheck --quiet --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
  --std=c++20 --language=c++ -j2 --cppcheck-build-dir=build/cppcheck -I . \
  --template='{file}:{line}: {severity}: {message} [{id}]' \
  --library=gnu --library=posix --library=windows --library=googletest \
  --suppress=internalAstError --suppress=unknownMacro --suppress=normalCheckLevelMaxBranches \
  "${units[@]}" || rc=1

if [ $rc = 0 ]; then say "clean"; else say "there are findings"; fi
exit $rc
