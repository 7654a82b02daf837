#!/usr/bin/env python3
"""Turns the JSON output of the benchmark programs into one Markdown table.

Every row sets one Zorvancow case beside one peer: the median CPU time of
each over the repetitions of the run, their ratio (Zorvancow / peer, below 1
means Zorvancow is faster) and the target for that ratio, with a check mark
when the run meets it. Rows whose cases are missing from the output (the Qt
peers of a build without Qt) are left out.

    ratio_table.py [--build TEXT] [--out FILE] RESULT.json...
"""

import argparse
import datetime
import json
import os
import platform
import re
import sys

# (case, Zorvancow benchmark, peer benchmark, target). A target is a bound on
# the ratio, or None for rows that only report. Rows sharing a case text and
# Zorvancow benchmark print the case once, then "″" for each further peer.
ROWS = [
    # Lists: 1,000,000 ints appended one by one (blocks of 16).
    ("copy and destroy `cow_List<int>` / copy `std::vector<int>`",
     "BM_CopyDestroy_CowList", "BM_CopyDestroy_StdVector", 1 / 1000),
    ("″ / copy `QVector<int>`", "BM_CopyDestroy_CowList", "BM_CopyDestroy_QVector", None),
    ("copy and destroy `cow_1DArrayList<int>` / copy `std::vector<int>`",
     "BM_CopyDestroy_Cow1DArrayList", "BM_CopyDestroy_StdVector", 1 / 1000),
    ("copy a `cow_List<int>`, write one, destroy / same on `std::vector`",
     "BM_CopyWriteDestroy_CowList", "BM_CopyWriteDestroy_StdVector", 1.5),
    ("″ / same on `QVector` (a full detach)", "BM_CopyWriteDestroy_CowList", "BM_CopyWriteDestroy_QVector", None),
    ("″ / same on `QList`", "BM_CopyWriteDestroy_CowList", "BM_CopyWriteDestroy_QList", None),
    ("layout floor: table copy, two passes over 62,500 block counts, one block / `std::vector`",
     "BM_CopyWriteDestroyFloor_TableAndTwoCountPasses", "BM_CopyWriteDestroy_StdVector", None),
    ("the same on `cow_1DArrayList<int>` / `std::vector`",
     "BM_CopyWriteDestroy_Cow1DArrayList", "BM_CopyWriteDestroy_StdVector", 1.5),
    ("the same on a default-grown `cow_1DArray<int>` / `std::vector`",
     "BM_CopyWriteDestroy_Cow1DArray", "BM_CopyWriteDestroy_StdVector", None),
    ("fill `cow_List<int>` by `Append` / `push_back`",
     "BM_FillAppend_CowList", "BM_FillAppend_StdVectorPushBack", 6),
    ("″ / `QVector::append`", "BM_FillAppend_CowList", "BM_FillAppend_QVector", None),
    ("″ / `QList::append`", "BM_FillAppend_CowList", "BM_FillAppend_QList", None),
    ("layout floor of the fill: 62,500 blocks of two heap objects, table grown by 16 slots / `push_back`",
     "BM_FillFloor_BlocksAndTable", "BM_FillAppend_StdVectorPushBack", None),
    ("fill `cow_1DArrayList<int>` by `Append` / `push_back`",
     "BM_FillAppend_Cow1DArrayList", "BM_FillAppend_StdVectorPushBack", 6),
    ("random reads, `cow_List<int>::ConstGet` / `std::vector`",
     "BM_RandomRead_CowList", "BM_RandomRead_StdVector", 3),
    ("″ / `QVector::at`", "BM_RandomRead_CowList", "BM_RandomRead_QVector", None),
    ("″ / `QList::at`", "BM_RandomRead_CowList", "BM_RandomRead_QList", None),
    ("layout floor of a read: slot, block, element, three dependent loads / `std::vector`",
     "BM_RandomReadFloor_ThreeLoads", "BM_RandomRead_StdVector", None),
    ("random reads, `cow_1DArrayList<int>::ConstGet` / `std::vector`",
     "BM_RandomRead_Cow1DArrayList", "BM_RandomRead_StdVector", 3),
    ("`cow_List<int>` as a queue / `std::deque`", "BM_Queue_CowList", "BM_Queue_StdDeque", 2),
    ("″ / `QQueue<int>`", "BM_Queue_CowList", "BM_Queue_QQueue", None),
    ("layout floor of the queue (the fill's 62,500 blocks made and freed) / `std::deque`",
     "BM_FillFloor_BlocksAndTable", "BM_Queue_StdDeque", None),
    ("`cow_List<int>::Sort` / `std::sort` on a vector", "BM_Sort_CowList", "BM_Sort_StdSortVector", 2),
    ("`cow_List<int>::Position` / `std::find`", "BM_Position_CowList", "BM_Position_StdFindVector", 2),
    # Blocked array: 1,000,000 ints.
    ("copy a sized `cow_1DArray<int>` / copy `std::vector<int>`",
     "BM_Copy_Cow1DArray", "BM_Copy_StdVector", 1 / 10000),
    ("first write after that copy / vector copy and write",
     "BM_CopyThenWrite_Cow1DArray", "BM_CopyThenWrite_StdVector", 0.125),
    ("fill a default `cow_1DArray<int>` by `Get` / `push_back`",
     "BM_FillAtEnd_Cow1DArray", "BM_FillAtEnd_StdVectorPushBack", 3),
    ("″ on a sized array / `push_back`",
     "BM_FillAtEnd_Cow1DArraySized", "BM_FillAtEnd_StdVectorPushBack", None),
    ("front growth by `GetHead` / `deque::push_front`",
     "BM_FrontGrowth_Cow1DArrayGetHead", "BM_FrontGrowth_StdDequePushFront", 2),
    ("walk with `cow_1DArrayIter::Next` / range-for",
     "BM_Walk_Cow1DArrayIter", "BM_Walk_StdVectorRangeFor", 2),
    ("″ a block at a time / range-for",
     "BM_Walk_Cow1DArrayIterByBlock", "BM_Walk_StdVectorRangeFor", None),
    ("random reads by `PartialArrayConstGet` (sized) / deque indexing",
     "BM_RandomRead_Cow1DArrayConstGet", "BM_RandomRead_StdDequeIndex", 1.5),
    # The standard interface: range-for and algorithms over 1,000,000 ints.
    ("range-for over `cow_1DArray<int>` / over `std::vector<int>`",
     "BM_RangeFor_Cow1DArray", "BM_RangeFor_Vector", 2),
    ("range-for over `cow_List<int>` / over `std::vector<int>`",
     "BM_RangeFor_CowList", "BM_RangeFor_ListVector", 2),
    ("`std::accumulate` over `cow_Blocks` of a `cow_1DArray<int>` / over `std::vector<int>`",
     "BM_BlockAccumulate_Cow1DArray", "BM_BlockAccumulate_Vector", 1.1),
    ("`std::accumulate` over `cow_Blocks` of a `cow_List<int>` / over `std::vector<int>`",
     "BM_BlockAccumulate_CowList", "BM_RangeFor_ListVector", None),
    ("`std::accumulate` over a `cow_Btree<int,int>` / over `std::map`",
     "BM_Accumulate_Btree", "BM_Accumulate_StdMap", 1.2),
    # Fixed shapes: 1,000,000 doubles.
    ("copy `cow_FixedArray<double>` / copy `std::vector<double>`",
     "BM_FixedArrayCopy", "BM_VectorCopy", 1 / 10000),
    ("first write after that copy / vector copy",
     "BM_FixedArrayFirstWrite", "BM_VectorCopy", 1.3),
    ("first write after copying a 1000 × 1000 `cow_2DArray` / vector copy",
     "BM_2DArrayFirstWrite", "BM_VectorCopy", None),
    ("read every element of `cow_FixedArray<double>` / vector",
     "BM_FixedArrayRead", "BM_VectorRead", None),
    # Tree: 1,000,000 random int keys; 200,000 16-letter string keys.
    ("`cow_Btree<int,int>` insert random keys / `std::map`", "BM_Insert_Btree", "BM_Insert_StdMap", 3),
    ("″ / `QMap`", "BM_Insert_Btree", "BM_Insert_QMap", None),
    ("`cow_Btree` lookup / `std::map::find`", "BM_Lookup_Btree", "BM_Lookup_StdMap", 1.5),
    ("″ / `QMap::constFind`", "BM_Lookup_Btree", "BM_Lookup_QMap", None),
    ("copy a tree and insert one / same on `std::map`",
     "BM_CopyAndInsert_Btree", "BM_CopyAndInsert_StdMap", 1 / 10000),
    ("″ / same on `QMap`", "BM_CopyAndInsert_Btree", "BM_CopyAndInsert_QMap", 1 / 10000),
    ("in-order walk with `cow_BtreeIterator` / `std::map` walk", "BM_Walk_Btree", "BM_Walk_StdMap", None),
    ("`cow_Btree<cow_String,int>` insert / `std::map<std::string,int>`",
     "BM_StringInsert_Btree", "BM_StringInsert_StdMap", None),
    ("″ / `QMap<QString,int>`", "BM_StringInsert_Btree", "BM_StringInsert_QMap", None),
    ("`cow_Btree<cow_String,int>` lookup / `std::map<std::string,int>`",
     "BM_StringLookup_Btree", "BM_StringLookup_StdMap", None),
    ("″ / `QMap<QString,int>`", "BM_StringLookup_Btree", "BM_StringLookup_QMap", None),
    # Map: 1,000,000 random int keys; 200,000 16-letter string keys.
    ("`cow_Map<int,int>` insert random keys / `std::map`", "BM_Insert_CowMap", "BM_Insert_StdMap", 3),
    ("″ / `QMap`", "BM_Insert_CowMap", "BM_Insert_QMap", None),
    ("″ / `QHash`", "BM_Insert_CowMap", "BM_Insert_QHash", None),
    ("`cow_Map::IsMember` / `std::map::find`", "BM_IsMember_CowMap", "BM_IsMember_StdMapFind", 2),
    ("″ / `QMap::contains`", "BM_IsMember_CowMap", "BM_IsMember_QMapContains", None),
    ("″ / `QHash::contains`", "BM_IsMember_CowMap", "BM_IsMember_QHashContains", None),
    ("copy a map and insert one / same on `std::map`",
     "BM_CopyInsert_CowMap", "BM_CopyInsert_StdMap", 1 / 10000),
    ("″ / same on `QMap`", "BM_CopyInsert_CowMap", "BM_CopyInsert_QMap", 1 / 10000),
    ("″ / same on `QHash`", "BM_CopyInsert_CowMap", "BM_CopyInsert_QHash", None),
    ("sorted walk with `cow_ConstMapSortedIt`, sort included / `std::map` walk",
     "BM_SortedWalk_CowMap", "BM_SortedWalk_StdMap", 3),
    ("`cow_Map<cow_String,int>` insert / `std::map<std::string,int>`",
     "BM_StringInsert_CowMap", "BM_StringInsert_StdMap", None),
    ("″ / `QMap<QString,int>`", "BM_StringInsert_CowMap", "BM_StringInsert_QMap", None),
    ("`cow_Map<cow_String,int>::IsMember` / `std::map<std::string,int>`",
     "BM_StringIsMember_CowMap", "BM_StringIsMember_StdMapFind", None),
    ("″ / `QMap<QString,int>`", "BM_StringIsMember_CowMap", "BM_StringIsMember_QMapContains", None),
    # Integer table: 1,000,000 keys, a dense run (/0) or spread over 32 bits (/1).
    ("`omi_IntTable<cow_String>` insert dense keys / `std::unordered_map`",
     "BM_Insert_IntTable/0", "BM_Insert_Std<Unordered>/0", 1),
    ("insert keys spread over 32 bits / `std::unordered_map`",
     "BM_Insert_IntTable/1", "BM_Insert_Std<Unordered>/1", 1),
    ("look up dense keys / `std::unordered_map`", "BM_Find_IntTable/0", "BM_Find_Std<Unordered>/0", 1),
    ("look up spread keys / `std::unordered_map`", "BM_Find_IntTable/1", "BM_Find_Std<Unordered>/1", 1),
    ("ascending walk, dense / `std::map` walk", "BM_Walk_IntTable/0", "BM_Walk_StdMap/0", 1.5),
    ("ascending walk, spread / `std::map` walk", "BM_Walk_IntTable/1", "BM_Walk_StdMap/1", 1.5),
]

UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(paths):
    """Median CPU time in ns of every benchmark in the files, the context of
    the first file, and the number of repetitions."""
    medians, context, most = {}, None, 0
    for path in paths:
        with open(path, encoding="utf-8") as f:
            data = json.load(f)
        context = context or data.get("context", {})
        runs = {}
        repetitions = 0
        for b in data.get("benchmarks", []):
            # A case with its own run time carries it in its name.
            name = re.sub(r"/min_time:[0-9.]+", "", b.get("run_name", b["name"]))
            ns = b["cpu_time"] * UNIT_NS[b.get("time_unit", "ns")]
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


def time_text(ns):
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
    lines.append(f"Median CPU time of each case over {repetitions} repetitions; "
                 "a ratio below 1 means Zorvancow is faster.")
    lines.append("")
    lines.append("| Case | Zorvancow | Peer | Ratio | Target |")
    lines.append("|---|---|---|---|---|")
    met = missed = 0
    for case, ours, peer, target in ROWS:
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
        lines.append(f"| {case} | {time_text(medians[ours])} | {time_text(medians[peer])} | {ratio_text(r)} | {goal} |")
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
