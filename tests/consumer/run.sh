#!/usr/bin/env bash
# The installed library as a user meets it. Runs the install commands of the
# README's "Using it from your project" section into a temporary prefix, then
# checks the installed tree and builds and runs app/app.cpp three ways, each
# taken from the README as written: the CMake package, pkg-config and the
# hand-written compile line; each with g++ and clang++, at -O0 and -O2. No
# program runs with LD_LIBRARY_PATH.
#
# Also compiles each public header alone, with -I (not -isystem) and strict
# warnings, as a client that includes one header would.
#
#   tests/consumer/run.sh            build and install as the README says
#   tests/consumer/run.sh BUILD_DIR  install BUILD_DIR instead (already built)
#
# CMAKE_CXX_COMPILER_LAUNCHER in the environment (ccache) is passed on.
set -euo pipefail
root="$(cd "$(dirname "$0")/../.." && pwd)"
readme="$root/README.md"
unset LD_LIBRARY_PATH

work="$(mktemp -d "${TMPDIR:-/tmp}/zorvancow-consumer.XXXXXX")"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
failed=0
fail() { echo "FAIL: $*" >&2; failed=1; }

# The shell block that follows <!-- NAME --> in the README, with the
# README's prefix replaced by ours.
readme_block() {
  awk -v mark="<!-- $1 -->" '$0 == mark { found = 1; next }
    found && /^```/ { if (inside) exit; inside = 1; next } inside' "$readme" | sed "s|/opt/zorvancow|$prefix|g"
}
# The same block without the lines that run the program (./app): this
# script runs it itself.
build_block() { readme_block "$1" | grep -v '^\./'; }
for block in install-commands cmake-consumer cmake-commands pkg-config-line compile-line; do
  [ -n "$(readme_block "$block")" ] || { echo "README.md has no block after <!-- $block -->" >&2; exit 1; }
done

echo "== install"
if [ $# -ge 1 ]; then cmake --install "$1" --prefix "$prefix" >/dev/null
else (cd "$root" && bash -euo pipefail -c "$(readme_block install-commands)") >/dev/null; fi

echo "== installed tree"
for lib in zorvancow zorvanmem zorvanstr zorvanbase zorvantyp; do
  so="$prefix/lib/lib$lib.so"
  [ -L "$so" ] || { fail "$so missing"; continue; }
  soname="$(readelf -d "$so" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')"
  [[ "$soname" =~ ^lib$lib\.so\.[0-9]+$ ]] || fail "lib$lib: SONAME '$soname'"
  [ -e "$prefix/lib/$soname" ] || fail "lib$lib: no $soname in lib/"
  [[ "$(readlink -f "$so")" =~ \.so\.[0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "lib$lib: no full version"
  readelf -d "$so" | grep -q 'RUNPATH.*\[\$ORIGIN\]' || fail "lib$lib: runpath is not \$ORIGIN"
done
for file in lib/pkgconfig/zorvancow.pc lib/cmake/Zorvancow/ZorvancowConfig.cmake \
    lib/cmake/Zorvancow/ZorvancowConfigVersion.cmake include/zorvancow/zorvancow_version.h; do
  [ -f "$prefix/$file" ] || fail "$file missing"
done
[ -z "$(find "$prefix" -type d -empty)" ] || fail "empty folders installed: $(find "$prefix" -type d -empty)"
# The libraries find each other through $ORIGIN alone.
! ldd "$prefix/lib/libzorvancow.so" | grep -q "not found" || fail "libzorvancow.so does not find its siblings"

strict=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror)

echo "== each public header alone"
for cxx in g++ clang++; do
  for header in $(cd "$prefix/include" && find . -name '*.h' -not -path '*/detail/*' | sed 's|^\./||' | sort); do
    echo "#include <$header>" | $cxx -x c++ -std=c++17 -fsyntax-only "${strict[@]}" -I"$prefix/include" - \
      || fail "$cxx: $header"
  done
done

# run <label> <program> (LD_LIBRARY_PATH is unset above).
run() { local out; out="$("$2" 2>&1)" && echo "ok    $1: $out" || fail "$1: $out"; }

echo "== consumers"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
for cxx in g++ clang++; do
  for opt in -O0 -O2; do
    dir="$work/app-$cxx$opt"
    mkdir -p "$dir"
    cp "$root/tests/consumer/app/app.cpp" "$dir/app.cpp"
    readme_block cmake-consumer >"$dir/CMakeLists.txt"
    # The README's commands, with this compiler and these flags.
    (cd "$dir" && CXX=$cxx CXXFLAGS="$opt ${strict[*]}" \
      bash -euo pipefail -c "$(build_block cmake-commands)") >"$dir/cmake.log" 2>&1 \
      && run "find_package $cxx $opt" "$dir/build/app" \
      || { cat "$dir/cmake.log" >&2; fail "find_package $cxx $opt: build"; }
    for way in pkg-config-line compile-line; do
      line="$(build_block $way | sed "s|^g++ |$cxx $opt ${strict[*]} |; s| -o app | -o app-$way |")"
      (cd "$dir" && bash -euo pipefail -c "$line") && run "$way $cxx $opt" "$dir/app-$way" \
        || fail "$way $cxx $opt: build"
    done
  done
done

[ "$failed" -eq 0 ] || { echo "consumer test FAILED" >&2; exit 1; }
echo "consumer test passed"
