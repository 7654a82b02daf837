#!/usr/bin/env python3
"""Turns the JSON output of the benchmark programs into one Markdown table.

Every row sets one Zorvancow case beside one peer: the median CPU time of
each over the repetitions of the run (or, for a case that reports a
"bytes_per_version" counter, that many bytes), their ratio (Zorvancow / peer, below 1
means Zorvancow is faster) and the target for that ratio, with a check mark
when the run meets it. Rows whose cases are missing from the output (the Qt
peers of a build without Qt) are left out.

    ratio_table.py [--build TEXT] [--out FILE] RESULT.json...
"""

import argparse
import datetime
import fractions
import json
import os
import platform
import re
import sys

# The rows of the table: ratio_rows.tsv beside this file.
ROWS_FILE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "ratio_rows.tsv")


def rows(path=ROWS_FILE):
    """(case, Zorvancow benchmark, peer benchmark, target) for every row of
    the rows file; a target is a bound on the ratio, or None."""
    found = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            line = line.rstrip("\n")
            if not line or line.startswith("#"):
                continue
            case, ours, peer, target = line.split("\t")
            found.append((case, ours, peer, None if target == "-" else float(fractions.Fraction(target))))
    return found


UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


# Names of the cases whose value is bytes (their bytes_per_version counter), not time.
BYTE_CASES = set()


def load(paths):
    """Median CPU time in ns (or bytes, for a case with a bytes_per_version
    counter) of every benchmark in the files, the context of the first file,
    and the number of repetitions."""
    medians, context, most = {}, None, 0
    for path in paths:
        with open(path, encoding="utf-8") as f:
            data = json.load(f)
        context = context or data.get("context", {})
        runs = {}
        repetitions = 0
        for b in data.get("benchmarks", []):
            # A case with its own run time or iteration count carries it in its name.
            name = re.sub(r"/(min_time:[0-9.]+|iterations:[0-9]+)", "", b.get("run_name", b["name"]))
            ns = b["cpu_time"] * UNIT_NS[b.get("time_unit", "ns")]
            if "bytes_per_version" in b:
                ns = b["bytes_per_version"]
                BYTE_CASES.add(name)
            repetitions = max(repetitions, int(b.get("repetitions", 1)))
            if b.get("run_type") == "aggregate":
                if b.get("aggregate_name") == "median":
                    medians[name] = ns
            else:
                runs.setdefault(name, []).append(ns)
        # Output of single runs (no repetitions): take their median here.
        for name, times in runs.items():
            if name not in medians:
                times.sort()
                mid = len(times) // 2
                medians[name] = times[mid] if len(times) % 2 else (times[mid - 1] + times[mid]) / 2
        most = max(most, repetitions)
    return medians, context or {}, most


def significant(x, digits=3):
    """x with `digits` significant digits, thousands separated."""
    if x == 0:
        return "0"
    text = f"{x:.{digits}g}"
    if "e" in text:
        text = f"{float(text):.0f}"
    if "." in text:
        whole, frac = text.split(".")
        return f"{int(whole):,}.{frac}"
    return f"{int(text):,}"


def ratio_text(r):
    # Far below 1 a ratio reads best as "1/N".
    return f"1/{significant(1 / r)}" if r < 0.01 else significant(r)


def time_text(ns, name=None):
    if name in BYTE_CASES:
        for unit, scale in (("MB", 1e6), ("KB", 1e3)):
            if ns >= scale:
                return f"{significant(ns / scale)} {unit}"
        return f"{significant(ns)} B"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if ns >= scale:
            return f"{significant(ns / scale)} {unit}"
    return f"{significant(ns)} ns"


def machine():
    model = platform.processor() or platform.machine()
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as f:
            for line in f:
                if line.startswith("model name"):
                    model = line.split(":", 1)[1].strip()
                    break
    except OSError:
        pass
    return f"{model}, {os.cpu_count()} cores"


def table(medians, context, build, repetitions):
    lines = []
    date = context.get("date", datetime.datetime.now().isoformat(timespec="minutes"))
    load_text = ""
    if hasattr(os, "getloadavg"):
        load_text = f", load average {os.getloadavg()[0]:.2f} at the end"
    lines.append(f"Run of {date} on {machine()}{load_text}; {build}.")
    lines.append(f"Median CPU time of each case (heap bytes, for bytes per version) over {repetitions} repetitions; "
                 "a ratio below 1 means Zorvancow is faster.")
    lines.append("")
    lines.append("| Case | Zorvancow | Peer | Ratio | Target |")
    lines.append("|---|---|---|---|---|")
    met = missed = 0
    for case, ours, peer, target in rows():
        if ours not in medians or peer not in medians:
            continue
        r = medians[ours] / medians[peer]
        if target is None:
            goal = "report"
        else:
            ok = r <= target
            met += ok
            missed += not ok
            goal = f"≤ {ratio_text(target)} {'✓' if ok else '✗'}"
        lines.append(f"| {case} | {time_text(medians[ours], ours)} | {time_text(medians[peer], peer)} | {ratio_text(r)} | {goal} |")
    lines.append("")
    lines.append(f"{met} targets met, {missed} missed.")
    return "\n".join(lines)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="", help="compiler and build type, for the heading")
    parser.add_argument("--out", help="also write the table to this file")
    parser.add_argument("results", nargs="+")
    args = parser.parse_args(argv)
    missing = [p for p in args.results if not os.path.exists(p)]
    if missing:
        print("no benchmark output in: " + ", ".join(missing), file=sys.stderr)
        return 1
    medians, context, repetitions = load(args.results)
    text = table(medians, context, args.build, repetitions)
    print(text)
    if args.out:
        with open(args.out, "w", encoding="utf-8") as f:
            f.write(text + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
