#!/usr/bin/env bash
# Counts the code of the repository: non-blank lines that are not only a
# comment, in C++ (.h .cpp), Python (.py), shell (.sh and .ci/) and CMake
# (CMakeLists.txt, .cmake), over the files git tracks. Fuzz corpora and the
# exports manifest are data and not counted. Test code is tests/ plus the
# fuzz drivers (fuzz/ without its corpora).
#   tests/faults/count_lines.sh [REPO]
# COUNT_DETAIL=FILE also writes each file's kind and count to FILE.
set -euo pipefail
cd "${1:-$(dirname "$0")/../..}"
git ls-files -co --exclude-standard |
  grep -E '\.(h|cpp|py|sh|cmake)$|(^|/)CMakeLists\.txt$|^\.ci/' |
  grep -vE '^fuzz/(corpus|regressions)/|^tests/exports/libzorvancow\.exports$' |
  while read -r f; do
    [ -f "$f" ] || continue
    case "$f" in *.h|*.cpp) style=c ;; *) style=hash ;; esac
    n=$(awk -v style=$style '
      { line = $0; sub(/^[ \t]+/, "", line) }
      style == "c" && inblock { if (line ~ /\*\//) { inblock = 0; sub(/.*\*\//, "", line); sub(/^[ \t]+/, "", line) } else next }
      style == "c" && line ~ /^\/\*/ { if (line !~ /\*\//) { inblock = 1; next } sub(/^\/\*.*\*\//, "", line); sub(/^[ \t]+/, "", line) }
      line == "" { next }
      style == "c" && line ~ /^\/\// { next }
      style == "hash" && line ~ /^#/ { next }
      { n++ }
      END { print n + 0 }' "$f")
    case "$f" in tests/*|fuzz/*) kind=test ;; *) kind=code ;; esac
    echo "$kind $n $f"
  done |
  tee "${COUNT_DETAIL:-/dev/null}" | awk '{ all += $2; if ($1 == "test") test += $2 }
       END { printf "test code %d of %d lines (%.1f%%)\n", test, all, 100 * test / all }'
