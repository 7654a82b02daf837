#!/usr/bin/env python3
"""Compares the dynamic symbols that libzorvancow.so defines with the manifest.

    check_exports.py --nm NM --library LIB --manifest FILE [--compiler ID]

Runs `NM -DC --defined-only LIB`, keeps the demangled names, drops the few
symbols that the linker adds to every shared object, and folds the variants
of each constructor and destructor (they print alike). Prints every member
that the manifest lists and the library lacks as "missing:", every member the
library exports beyond the manifest as "extra:", with a count for each, and
passes only when both counts are 0 and the manifest's format is sound (each
group sorted, no member twice). A manifest line is compared without its
return type (and without a leading `template <>`), as nm prints it.

The manifest is written for x86-64 Linux; g++ and clang builds export the
same set and are both checked. Under another compiler the check is skipped
(exit code 77). A sanitizer build exports the same set (the
sanitizers' runtimes are shared libraries of their own), so it is checked too.
"""
import argparse
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "cmake"))
from zorvancow_exports import read_manifest  # noqa: E402

SKIP = 77

# Symbols that the linker defines in every shared object; they are no member
# of the library. Anything else that the library exports must be listed.
LINKER_SYMBOLS = {"_init", "_fini", "__bss_start", "_edata", "_end"}


def read_library(nm, library):
    """The library's defined dynamic symbols, demangled, variants folded."""
    result = subprocess.run([nm, "-DC", "--defined-only", library],
                            capture_output=True, text=True)
    if result.returncode != 0:
        sys.stderr.write(result.stderr)
        raise SystemExit("%s failed on %s" % (nm, library))
    # "<address> <type> <name>"; the name may hold spaces.
    rows = (line.split(None, 2) for line in result.stdout.splitlines())
    return {row[2] for row in rows if len(row) == 3 and row[2] not in LINKER_SYMBOLS}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--nm", required=True)
    parser.add_argument("--library", required=True)
    parser.add_argument("--manifest", required=True)
    parser.add_argument("--compiler", default="GNU")
    args = parser.parse_args()

    if args.compiler not in ("GNU", "Clang"):
        print("skipped: the manifest is checked for g++ and clang builds; this build uses %s"
              % args.compiler)
        return SKIP

    # What nm prints of each line: the member without its return type.
    members, problems = read_manifest(args.manifest)
    expected = {member.member for member in members}
    for problem in problems:
        print("manifest: " + problem)
    actual = read_library(args.nm, args.library)

    missing, extra = sorted(expected - actual), sorted(actual - expected)
    for label, names in (("missing", missing), ("extra", extra)):
        for name in names:
            print("%s: %s" % (label, name))
    print("missing: %d  extra: %d  (manifest %d members, library %d)"
          % (len(missing), len(extra), len(expected), len(actual)))
    return 1 if missing or extra or problems else 0


if __name__ == "__main__":
    sys.exit(main())
