#!/usr/bin/env bash
# Plants each fault of tests/faults/*.patch in turn in a scratch copy of this
# tree, builds the tests there with checked mode on (unoptimised, to build
# faster; no fuzzers, no benchmarks) and runs them, then prints which tests
# caught each fault.
#
#   tests/faults/run.sh [PATCH...]        all patches when none is named
#   FAULTS_DIR=/tmp/x tests/faults/run.sh  where the copy and its build go
#
# One build tree serves every fault, so each build is incremental. With
# ccache installed, the rebuild after a fault is taken out is nearly free,
# and so is a second run in another FAULTS_DIR for whatever it compiles
# alike. Slow (minutes a fault on two cores) and not part of CI.
set -uo pipefail
repo=$(cd "$(dirname "$0")/../.." && pwd)
work=${FAULTS_DIR:-/tmp/zorvancow-faults}
src=$work/src build=$work/build log=$work/log
mkdir -p "$src" "$log"
[ $# -gt 0 ] && patches=("$@") || patches=("$repo"/tests/faults/*.patch)

# The working tree as it is (committed or not); tar keeps the times, so an
# unchanged file is not rebuilt on a second run.
# (A tree that is not a git checkout is copied whole, but for build/.)
(cd "$repo" && { git ls-files -co --exclude-standard -z 2>/dev/null || find . -path ./build -prune -o -type f -print0; } |
  grep -zv '^\(\./\)\?build/' | tar -c --null -T -) | tar -x -C "$src"
# A run stopped while a fault was planted: the copy above took the fault out
# but gave the files their old times, so mark them changed for the build.
if [ -f "$work/planted" ]; then
  sed -n 's|^+++ b/\([^[:space:]]*\).*|\1|p' "$work/planted" | (cd "$src" && xargs touch)
  rm "$work/planted"
fi

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
export CCACHE_BASEDIR=$work  # paths inside the copy, so other FAULTS_DIRs hit the cache
cmake -S "$src" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE= -DZORVANCOW_CHECKED=ON \
  -DZORVANCOW_BUILD_BENCHMARKS=OFF -DZORVANCOW_BUILD_FUZZERS=OFF "${launcher[@]}" >"$log/configure.txt" ||
  { echo "configure failed: $log/configure.txt"; exit 1; }

# Prints the names of the failing tests, one a line; fails if the build fails.
run_tests() {
  cmake --build "$build" >"$log/$1.build.txt" 2>&1 || return 1
  ctest --test-dir "$build" -j2 --timeout 600 >"$log/$1.test.txt" 2>&1
  sed -n '/tests FAILED:/,$s/^[[:space:]]*[0-9]* - \(.*\) ([^()]*)$/\1/p' "$log/$1.test.txt"
}

failing_before=$(run_tests unfaulted) || { echo "the unfaulted tree does not build: $log/unfaulted.build.txt"; exit 1; }
[ -n "$failing_before" ] && echo "failing without a fault (ignored below): $failing_before"

printf '%-34s %s\n' FAULT "CAUGHT BY"
for patch in "${patches[@]}"; do
  name=$(basename "$patch" .patch)
  if ! patch -d "$src" -p1 -s -f --dry-run <"$patch" >/dev/null 2>&1; then
    printf '%-34s %s\n' "$name" "does not apply"
    continue
  fi
  cp "$patch" "$work/planted"
  patch -d "$src" -p1 -s <"$patch"
  if failing=$(run_tests "$name"); then
    caught=$(comm -13 <(sort <<<"$failing_before") <(sort <<<"$failing") | grep -v '^$')
    count=$(grep -c . <<<"$caught")
    if [ "$count" -eq 0 ]; then
      result="NOT CAUGHT"
    else
      result="$count: $(head -3 <<<"$caught" | paste -sd' ')$([ "$count" -gt 3 ] && echo ' ...')"
    fi
  else
    result="does not build (see $log/$name.build.txt)"
  fi
  printf '%-34s %s\n' "$name" "$result"
  patch -d "$src" -p1 -s -R <"$patch" && rm "$work/planted"
done
