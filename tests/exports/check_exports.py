#!/usr/bin/env python3
"""Compares the dynamic symbols libzorvancow.so defines with the manifest.

    check_exports.py --nm NM --library LIB --manifest FILE [--compiler ID]

Prints each listed member the library lacks ("missing:") and each exported
member the manifest does not list ("extra:"), and passes only when there are
none and the manifest's format is sound. Manifest lines are compared as
`nm -DC` prints them: without return type or `template <>`, constructor and
destructor variants folded. Checked for g++ and clang builds (sanitizer
builds too); skipped (exit 77) under any other compiler.
"""
import argparse
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "cmake"))
from zorvancow_exports import read_manifest  # noqa: E402

# Defined by the linker in every shared object; no member of the library.
LINKER_SYMBOLS = {"_init", "_fini", "__bss_start", "_edata", "_end"}


def main():
    parser = argparse.ArgumentParser()
    for option in ("--nm", "--library", "--manifest"):
        parser.add_argument(option, required=True)
    parser.add_argument("--compiler", default="GNU")
    args = parser.parse_args()
    if args.compiler not in ("GNU", "Clang"):
        print("skipped: the manifest is checked for g++ and clang builds, not %s" % args.compiler)
        return 77

    members, problems = read_manifest(args.manifest)
    for problem in problems:
        print("manifest: " + problem)
    expected = {member.member for member in members}
    nm = subprocess.run([args.nm, "-DC", "--defined-only", args.library], capture_output=True, text=True)
    if nm.returncode != 0:
        sys.stderr.write(nm.stderr)
        raise SystemExit("%s failed on %s" % (args.nm, args.library))
    # "<address> <type> <name>"; the name may hold spaces.
    rows = (line.split(None, 2) for line in nm.stdout.splitlines())
    actual = {row[2] for row in rows if len(row) == 3 and row[2] not in LINKER_SYMBOLS}

    missing, extra = sorted(expected - actual), sorted(actual - expected)
    for label, names in (("missing", missing), ("extra", extra)):
        for name in names:
            print("%s: %s" % (label, name))
    print("missing: %d  extra: %d  (manifest %d members, library %d)"
          % (len(missing), len(extra), len(expected), len(actual)))
    return 1 if missing or extra or problems else 0


if __name__ == "__main__":
    sys.exit(main())
