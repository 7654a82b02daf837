#!/usr/bin/env python3
"""Writes libzorvancow.so's export declarations and instantiations from the manifest.

    zorvancow_exports.py --manifest FILE --source-dir DIR --include-dir DIR --sources-dir DIR
    zorvancow_exports.py --list ...   (the same arguments: prints the files it writes)

The manifest (cmake/libzorvancow.exports) lists each exported member once, as
a declaration: `cow_List<int>& cow_List<int>::Append(int const&)`. A member
of a class template instantiation is a row, and becomes

- `extern template ZORVANCOW_API <line>;` in the rows header that a family
  header includes at its end, so that clients call the library's copy, and
- `template ZORVANCOW_API <line>;` in a source the library compiles.

A row goes to the family header that defines the highest class template it
names, found from the headers themselves: the header whose own includes
already declare every other type the row names. A row that names types of
families its owner does not include (a tree of fixed arrays) goes to
zorvancow/zorvancow_exports.h, which the umbrella header includes. A line
opening with `template <>` is an explicit specialization, defined in the
family's .cpp: it is declared, not instantiated. Plain functions and classes
carry ZORVANCOW_API in their headers and produce nothing here.

The module also reads the manifest for the symbol test
(tests/exports/check_exports.py).
"""

import argparse
import collections
import os
import re
import sys

Member = collections.namedtuple(
    "Member", "line specialization ret scope name params const member")

SPECIALIZATION = "template <> "


def split_top(text, sep=","):
    """Splits at `sep` outside <>, () and []."""
    parts, depth, current = [], 0, ""
    for ch in text:
        if ch in "<([":
            depth += 1
        elif ch in ">)]":
            depth -= 1
        if ch == sep and depth == 0:
            parts.append(current.strip())
            current = ""
        else:
            current += ch
    if current.strip():
        parts.append(current.strip())
    return parts


def parse(line):
    """One manifest line as a Member; `member` is the line as nm -DC prints it."""
    specialization = line.startswith(SPECIALIZATION)
    text = line[len(SPECIALIZATION):] if specialization else line
    const = text.endswith(" const")
    body = text[: -len(" const")] if const else text
    if not body.endswith(")"):
        raise ValueError("no parameter list")
    depth = 0
    for i in range(len(body) - 1, -1, -1):
        depth += {")": 1, "(": -1}.get(body[i], 0)
        if depth == 0:
            open_at = i
            break
    head, params = body[:open_at], body[open_at + 1 : -1]
    # The return type ends at the last space outside template arguments
    # before the name; an operator's name (operator new) has its own space.
    found = re.search(r"\boperator\b", head)
    before = head[: found.start()] if found else head
    depth, cut = 0, -1
    for i, ch in enumerate(before):
        depth += {"<": 1, ">": -1}.get(ch, 0)
        if ch == " " and depth == 0:
            cut = i
    ret, qualified = head[:cut] if cut >= 0 else "", head[cut + 1 :]
    # The last '::' outside template arguments separates scope and name.
    depth, split = 0, -1
    for i, ch in enumerate(qualified):
        if qualified.startswith("operator", i) and depth == 0:
            break
        depth += {"<": 1, ">": -1}.get(ch, 0)
        if qualified.startswith("::", i) and depth == 0:
            split = i
    scope = qualified[:split] if split >= 0 else ""
    name = qualified[split + 2 :] if split >= 0 else qualified
    member = text[cut + 1 :] if cut >= 0 else text
    return Member(line, specialization, ret, scope, name, split_top(params), const, member)


def is_row(member):
    """A member of a class template instantiation, or a specialization of one."""
    return "<" in member.scope


def read_manifest(path):
    """The manifest's members in file order, and what is wrong with its format.

    A '#' line opens a group; within it the members are sorted by what nm
    prints (the line without its return type), and no member is listed twice.
    """
    members, problems = [], []
    group, previous, seen = None, None, set()
    for number, raw in enumerate(open(path, encoding="utf-8"), 1):
        line = raw.rstrip("\n")
        if not line.strip():
            continue
        if line.startswith("#"):
            group, previous = line, None
            continue
        where = "%s:%d" % (path, number)
        if line != line.strip() or "  " in line:
            problems.append("%s: stray white space in %r" % (where, line))
        try:
            member = parse(line.strip())
        except ValueError as error:
            problems.append("%s: %s: %r" % (where, error, line))
            continue
        if previous is not None and member.member <= previous:
            problems.append("%s: not sorted within %s: %r after %r"
                            % (where, group or "the first group", member.member, previous))
        if member.member in seen:
            problems.append("%s: listed twice: %r" % (where, member.member))
        seen.add(member.member)
        members.append(member)
        previous = member.member
    return members, problems


# What the rows name besides class types.
BUILTIN = {"bool", "char", "const", "double", "float", "int", "long", "short",
           "signed", "unsigned", "void", "volatile"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)
DEFINITION = re.compile(r"^(?:class|struct)\s+(?:[A-Z_]+\s+)?(\w+)\s*(?::[^;]*)?\{?\s*$", re.M)


class Headers:
    """The library's and the stand-ins' headers: what each defines and includes."""

    def __init__(self, source_dir):
        self.includes, self.defines = {}, {}
        for top, base in (("zorvancow", source_dir), ("", os.path.join(source_dir, "platform"))):
            for folder, _, files in os.walk(os.path.join(base, top)):
                for file in files:
                    if not file.endswith(".h"):
                        continue
                    path = os.path.join(folder, file)
                    header = os.path.relpath(path, base).replace(os.sep, "/")
                    text = open(path, encoding="utf-8").read()
                    self.includes[header] = INCLUDE.findall(text)
                    for name in DEFINITION.findall(text):
                        self.defines.setdefault(name, header)
        self.closures = {}

    def closure(self, header):
        """The header and every header it includes, directly or not."""
        if header not in self.closures:
            reached, todo = set(), [header]
            while todo:
                current = todo.pop()
                if current in reached or current not in self.includes:
                    continue
                reached.add(current)
                todo.extend(self.includes[current])
            self.closures[header] = reached
        return self.closures[header]

    def rows_header(self, header):
        """The generated rows header that `header` includes at its end, if any."""
        folder, file = header.rsplit("/", 1)
        rows = "%s/detail/%sExports.h" % (folder, file[: -len(".h")])
        return rows if rows in self.includes[header] else None

    def family_headers(self):
        return sorted(h for h in self.includes if h.startswith("zorvancow/") and self.rows_header(h))


TOP = "zorvancow/zorvancow_exports.h"
NOTICE = "// Written by cmake/zorvancow_exports.py from cmake/libzorvancow.exports. Do not edit.\n"


def place(members, headers):
    """{family header or TOP: [rows]}, and the headers the TOP rows need."""
    placed = collections.defaultdict(list)
    needed = set()
    for member in members:
        if not is_row(member):
            continue
        text = " ".join([member.ret, member.scope] + member.params)
        names = set(re.findall(r"[A-Za-z_]\w*", text)) - BUILTIN
        unknown = sorted(n for n in names if n not in headers.defines)
        if unknown:
            raise SystemExit("manifest: no header defines %s, named in %r"
                             % (", ".join(unknown), member.line))
        candidates = {headers.defines[n] for n in names}
        owners = [c for c in sorted(candidates) if candidates <= headers.closure(c)]
        owner = owners[0] if owners and headers.rows_header(owners[0]) else TOP
        if owner == TOP:
            # The fewest headers that declare everything these rows name.
            needed |= {c for c in candidates
                       if not any(c in headers.closure(o) for o in candidates - {c})}
        placed[owner].append(member)
    return placed, needed


def guard(path):
    return re.sub(r"\W", "_", path).upper()


def rows_file(header, rows, includes, about):
    lines = [NOTICE, "//\n", about, "\n#ifndef %s\n#define %s\n\n" % (guard(header), guard(header))]
    lines += ['#include "%s"\n' % h for h in ["zorvancow/core/cow_Export.h"] + sorted(includes)]
    lines.append("\n")
    for member in rows:
        text = member.line[len(SPECIALIZATION):] if member.specialization else member.line
        if member.specialization:
            lines.append("template <> ZORVANCOW_API %s;\n" % text)
        else:
            lines.append("extern template ZORVANCOW_API %s;\n" % text)
    lines.append("\n#endif\n")
    return "".join(lines)


def outputs(headers):
    """{path below the include or sources folder: (kind, family header or TOP)}."""
    result = {}
    for header in headers.family_headers() + [TOP]:
        rows = TOP if header == TOP else headers.rows_header(header)
        result[rows] = ("header", header)
        result[rows.rsplit("/", 1)[1][: -len(".h")] + ".cpp"] = ("source", header)
    return result


def write(path, text):
    """Writes only what changed, so that an unchanged file rebuilds nothing."""
    if os.path.exists(path) and open(path, encoding="utf-8").read() == text:
        return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as out:
        out.write(text)


def main():
    options = argparse.ArgumentParser()
    options.add_argument("--manifest", required=True)
    options.add_argument("--source-dir", required=True)
    options.add_argument("--include-dir", required=True)
    options.add_argument("--sources-dir", required=True)
    options.add_argument("--list", action="store_true")
    args = options.parse_args()

    headers = Headers(args.source_dir)
    files = outputs(headers)
    if args.list:
        for path, (kind, _) in sorted(files.items()):
            print(os.path.join(args.include_dir if kind == "header" else args.sources_dir, path))
        return 0

    members, problems = read_manifest(args.manifest)
    if problems:
        sys.stderr.write("".join("manifest: %s\n" % p for p in problems))
        return 1
    placed, needed = place(members, headers)
    for path, (kind, header) in files.items():
        rows = placed.get(header, [])
        if kind == "header" and header == TOP:
            about = ("// The rows that name types of families their own family header does not\n"
                     "// include (see zorvancow/core/cow_Export.h). zorvancow/zorvancow.h includes\n"
                     "// this header; a client that includes family headers one by one may too.\n")
            text = rows_file(path, rows, needed, about)
        elif kind == "header":
            about = ("// The members of the class templates of %s that\n"
                     "// libzorvancow.so holds (see zorvancow/core/cow_Export.h). That header\n"
                     "// includes this one at its end.\n" % header)
            text = rows_file(path, rows, [], about)
        else:
            text = (NOTICE + "// The library's instantiations of the rows in %s.\n\n"
                    '#include "zorvancow/zorvancow.h"\n\n' % header
                    + "".join("template ZORVANCOW_API %s;\n" % m.line
                              for m in rows if not m.specialization))
        write(os.path.join(args.include_dir if kind == "header" else args.sources_dir, path), text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
