#!/usr/bin/env python3
"""Measures the browser beside what one would take instead, both sides in one run.

    run.py PROGRAM [GROUP]… [--rounds N] [--items N] [--data FOLDER] [--json FILE]

PROGRAM is vx3-bench; its comparators are looked for beside it. Each round runs every contender once, in the same order, so
that all meet the same state of the machine. A goal is a ratio of two figures of one round, taken as the median over the
rounds; figures of different runs are never compared. Ends with 1 if a goal is missed or could not be measured.
"""
import argparse
import contextlib
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

import makedata

LIBRARY = "library"
GROUPS = ("list", "walk", "view", "lists", "grid", "start", "index", "growth", LIBRARY)
LISTING = "listing"  # all but the library, which takes minutes
PATIENCE = 600  # seconds, after which a contender hangs

OURS = "vx3"
BARE = "bare loop"
LS = "ls -lU"
QDIR = "QDir"
QMODEL = "QFileSystemModel"
QVIEW = "QListView"
PAINTER = "QPainter"
QWINDOW = "an empty window"
COLLATOR = "QCollator"
CRC = "CRC-32"
TREE = "a locked tree"
UNORDERED = "unordered_map"
PLAIN = "plain calls"
SQLITE = "SQLite"
LMDB = "LMDB"

ITEMS = 100_000  # of the library, unless told otherwise; its cases end with {items} until that is known
STORED_BYTES = 30_000  # of an item on the disk
ITEM_BYTES = 4_000  # and in memory
STEP_BYTES = {"bulk": STORED_BYTES, "shrink": STORED_BYTES / 2 + ITEM_BYTES, "growth": 10_000}  # of memory for an item, if other
DISK_BYTES = 50_000  # of an item, with what is written anew
COMMITTED = 2_000  # items that are written one by one
ROUNDS, LIBRARY_ROUNDS = 5, 3
LIBRARY_FOLDER = "library"  # of the data; emptied before each contender, gone at the end


@dataclass
class Goal:
    """`case` of ours is at most `factor` times the figure of theirs."""

    group: str
    case: str
    factor: float
    theirs: str
    theirCase: str = ""  # of the same name as ours unless given
    shown: str = ""

    def __post_init__(self):
        self.theirCase = self.theirCase or self.case


GOALS = [
    Goal("list", "list_ms.1000", 1.7, BARE),
    Goal("list", "list_ms.100000", 1.5, BARE),
    Goal("list", "list_ms.100000", 0.45, LS),
    Goal("list", "list_sorted_ms.100000", 0.6, QDIR),
    Goal("list", "list_sorted_ms.100000", 0.25, QMODEL),
    Goal("list", "relist_ms.100000", 1.5, BARE, "list_ms.100000"),
    Goal("list", "unchanged_us.100000", 4, BARE, shown="one statx"),
    Goal("list", "bytes_per_entry.100000", 0.3, QMODEL),
    Goal("list", "list_ms.100000", 13, OURS, "list_ms.10000", "vx3, 10,000"),
    Goal("walk", "search_ms.202000", 1.6, BARE),
    Goal("walk", "search_known_ms.202000", 5, BARE),
    Goal("view", "sort_name_ms.100000", 0.1, COLLATOR, "collator_compare_ms.100000"),
    Goal("lists", "refresh_ms.100000", 0.15, OURS, "refresh_sort_ms.100000", "vx3, one sort"),
    Goal("lists", "sync_all_new_ms.100000", 15, OURS, "sync_all_new_ms.10000", "vx3, 10,000"),
    Goal("lists", "select_node_us.100000", 3, OURS, "select_node_us.1000", "vx3, 1,000"),
    Goal("grid", "full_frame_ms.10000", 0.4, QVIEW),
    Goal("grid", "scroll_frame_ms.10000", 0.4, QVIEW),
    Goal("grid", "full_frame_ms.10000", 3, PAINTER, "direct_frame_ms.10000"),
    Goal("grid", "show_ms.10000", 0.7, QMODEL),
    Goal("start", "start_ms", 2, QWINDOW),
    Goal("index", "build_ns.100000", 1.1, TREE),
    Goal("index", "find_compare_ns.100000", 1.3, UNORDERED),
    Goal("index", "find_compare_ns.1000000", 0.4, TREE),
    Goal("index", "crc_ns_per_byte", 1.1, CRC, "slice8_ns_per_byte", "slice by 8"),
    Goal("index", "hash_url_ns", 0.5, CRC, "bytewise_url_ns", "bytewise"),
    Goal("growth", "find_url_us.100000", 2, OURS, "find_url_us.1000", "vx3, 1,000"),
    Goal("library", "bulk_ms.{items}", 0.35, SQLITE),
    Goal("library", "bulk_ms.{items}", 1.6, PLAIN),
    Goal("library", "open_index_ms.{items}", 0.9, SQLITE),
    Goal("library", "open_index_ms.{items}", 1.7, PLAIN, "open_index_map_ms.{items}", "a mapping"),
    Goal("library", "log_open_index_ms.{items}", 1.7, PLAIN, "log_open_index_map_ms.{items}", "a mapping"),
    Goal("library", "cold_open_index_ms.{items}", 1.3, PLAIN, "cold_open_index_map_ms.{items}", "a mapping"),
    Goal("library", "loaded_bytes_per_item.{items}", 1.3, SQLITE),
    Goal("library", "lookup_p50_ns.{items}", 0.25, SQLITE),
    Goal("library", "lookup_p99_ns.{items}", 0.25, SQLITE),
    Goal("library", "lookup_p50_ns.{items}", 1, LMDB),
    Goal("library", "preview_p50_us.{items}", 0.6, SQLITE),
    Goal("library", "preview_p50_us.{items}", 2, PLAIN, shown="one pread"),
    Goal("library", f"commit_off_us.{COMMITTED}", 0.4, SQLITE, f"commit_wal_off_us.{COMMITTED}"),
    Goal("library", f"commit_off_us.{COMMITTED}", 2, PLAIN),
    Goal("library", "delete_half_ms.{items}", 0.5, SQLITE),
    Goal("library", "compact_ms.{items}", 0.25, SQLITE, shown="SQLite, VACUUM"),
    Goal("library", "compact_ms.{items}", 1.5, PLAIN),
    Goal("library", "file_MiB.{items}", 1.05, PLAIN),
    Goal("library", "commit_us.100000", 1.5, OURS, "commit_us.1000", "vx3, 1,000"),
    Goal("library", "delete_item_us.100000", 1.5, OURS, "delete_item_us.1000", "vx3, 1,000"),
    Goal("library", "same_hash_us.30000", 1.5, OURS, "same_hash_us.1000", "vx3, 1,000"),
    Goal("library", "same_hash_close_us.30000", 1.5, OURS, "same_hash_close_us.1000", "vx3, 1,000"),
    Goal("library", "remove_library_us.1000000", 2, OURS, "remove_library_us.10000", "vx3, 10,000"),
]


@dataclass
class Contender:
    """A command that prints lines `case<TAB>value<TAB>unit`, or one that is timed from outside as `timed`. `before` is called first."""

    group: str
    name: str
    command: list
    timed: str = ""
    before: tuple = ()

    def Run(self):
        for prepare in self.before:
            prepare()
        environment = dict(os.environ, LC_ALL="C.UTF-8", TZ="UTC", QT_LOGGING_RULES="*.warning=false")
        environment["QT_QPA_PLATFORM"] = "xcb" if self.group == "start" else "offscreen"
        start = time.monotonic()
        output = subprocess.DEVNULL if self.timed else subprocess.PIPE
        done = subprocess.run(self.command, env=environment, stdout=output, text=True, timeout=PATIENCE)
        taken = time.monotonic() - start
        if done.returncode:
            raise RuntimeError(f"{self.name} ended with {done.returncode}")
        if self.timed:
            return {self.timed: taken * 1e3}
        rows = (line.split("\t") for line in done.stdout.splitlines())
        return {row[0]: float(row[1]) for row in rows if len(row) == 3}


def Empty(folder):
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)


def ReadWhole(path):
    with open(path, "rb") as file:
        while file.read(1 << 24):
            pass


def Evict(path):
    """Out of the page cache, what is on the disk already. The caches of others stay, and no rights are needed."""
    with open(path, "rb") as file:
        os.fsync(file.fileno())
        os.posix_fadvise(file.fileno(), 0, 0, os.POSIX_FADV_DONTNEED)


def WarmMemory(folder, size):
    """Memory that nobody used for a while may be with the host of a virtual machine, and then costs ten times as much at first touch."""
    block, path = bytes(1 << 20), os.path.join(folder, "warm")
    with open(path, "wb", buffering=0) as file:
        for _ in range(size // len(block)):
            file.write(block)
    os.remove(path)


def ListLibraryContenders(commands, folder, items):
    """A process for each step. One contender after the other has its files, so that the disk has to hold those of one at a time."""

    def Take(name, step, *before, count=items):
        warm = lambda: WarmMemory(folder, int(items * STEP_BYTES.get(step, ITEM_BYTES)))
        return Contender(LIBRARY, name, [*commands[name], step, folder, str(count)], before=(*before, os.sync, warm))

    clear = lambda: Empty(folder)
    for name, file in ((PLAIN, "library.plain"), (OURS, "ours.libvx"), (SQLITE, "")):
        path = os.path.join(folder, file)
        yield Take(name, "bulk", clear)
        yield Take(name, "open")
        yield Take(name, "use")
        if file:
            yield Take(name, "cold", lambda path=path: Evict(path))
            yield Take(name, "shrink", lambda path=path: ReadWhole(path))
        else:
            yield Take(name, "shrink")
    for name in (PLAIN, OURS):
        yield Take(name, "log", clear)
        yield Take(name, "openlog")
    yield Take(LMDB, "bulk", clear)
    yield Take(LMDB, "use")
    for name in (PLAIN, OURS, SQLITE):
        yield Take(name, "commits", clear, count=COMMITTED)
    yield Take(OURS, "growth", clear)


def ListContenders(program, data, items):
    """In the order in which they run. What is not built is left out, and its goals are reported as not measured."""
    beside = os.path.join(os.path.dirname(os.path.abspath(program)), "comparators")
    comparator = lambda name, *arguments: [os.path.join(beside, name), *arguments]
    folder = lambda name: os.path.join(data, name)
    for name, count in makedata.FLAT.items():
        yield Contender("list", BARE, comparator("bareloop", "list", folder(name)))
        yield Contender("list", OURS, [program, "list", folder(name)])
    largest = folder("flat100k")
    yield Contender("list", LS, ["ls", "-lU", largest], "list_ms.100000")
    yield Contender("list", QDIR, comparator("qtlist", "dir", largest))
    yield Contender("list", QMODEL, comparator("qtlist", "model", largest))
    yield Contender("walk", BARE, comparator("bareloop", "walk", folder(makedata.NESTED)))
    yield Contender("walk", OURS, [program, "walk", folder(makedata.NESTED)])
    yield Contender("view", COLLATOR, comparator("qtsort"))
    yield Contender("view", OURS, [program, "view"])
    yield Contender("lists", OURS, [program, "lists"])
    medium = folder("flat10k")
    inWindow = os.path.join(os.path.dirname(os.path.abspath(program)), "vx3-gridbench")
    yield Contender("grid", QVIEW, comparator("qtgrid", "list", "10000", "64"))
    yield Contender("grid", PAINTER, comparator("qtgrid", "direct", "10000", "64"))
    yield Contender("grid", QMODEL, comparator("qtgrid", "folder", medium, "64"))
    yield Contender("grid", OURS, [inWindow, "frames", "10000", "25"])
    yield Contender("grid", OURS, [inWindow, "show", medium])
    studio = os.path.join(os.path.dirname(os.path.abspath(program)), "vx3-studio")
    yield Contender("start", QWINDOW, comparator("qtempty"), "start_ms")
    yield Contender("start", OURS, [studio, "--until-painted", "--profile", os.path.join(data, "profile"), folder("flat1k")], "start_ms")
    yield Contender("index", CRC, comparator("crcloops"))
    yield Contender("index", TREE, comparator("hashmaps", "tree"))
    yield Contender("index", UNORDERED, comparator("hashmaps", "unordered"))
    yield Contender("index", OURS, [program, "index"])
    yield Contender("growth", OURS, [program, "growth"])
    stores = {PLAIN: comparator("plainlibrary"), OURS: [program, "library"], SQLITE: comparator("sqlitelibrary"), LMDB: comparator("lmdblibrary")}
    yield from ListLibraryContenders(stores, os.path.join(data, LIBRARY_FOLDER), items)


@contextlib.contextmanager
def Display(wanted):
    """An X server that shows nothing to anybody: what a start costs a user is measured as he has it. False: there is none."""
    if not wanted or not shutil.which("Xvfb"):
        yield False
        return
    ours, theirs = os.pipe()
    with subprocess.Popen(["Xvfb", "-displayfd", str(theirs), "-screen", "0", "1920x1200x24"], stderr=subprocess.DEVNULL, pass_fds=[theirs]) as server:
        os.close(theirs)
        with open(ours, encoding="ascii") as number:
            os.environ["DISPLAY"] = ":" + number.readline().strip()
        yield True
        server.terminate()


def RunRound(contenders):
    figures = {}
    for contender in contenders:
        for case, value in contender.Run().items():
            figures[f"{contender.name}:{case}"] = value
    return figures


def Judge(goal, rounds, items):
    """The row of a goal: medians of both sides and of the ratios of each round; None where nothing was measured."""
    case, theirCase = (name.format(items=items) for name in (goal.case, goal.theirCase))
    ours = [figures.get(f"{OURS}:{case}") for figures in rounds]
    theirs = [figures.get(f"{goal.theirs}:{theirCase}") for figures in rounds]
    pairs = [(own, other) for own, other in zip(ours, theirs) if own is not None and other]
    row = {"case": case, "theirs": goal.shown or goal.theirs, "goal": goal.factor, "ours": None, "their": None, "ratio": None, "met": False}
    if pairs:
        row["ours"] = statistics.median(own for own, _ in pairs)
        row["their"] = statistics.median(other for _, other in pairs)
        row["ratio"] = statistics.median(own / other for own, other in pairs)
        row["met"] = row["ratio"] <= goal.factor
    return row


def PrintTable(rows):
    number = lambda value: "-" if value is None else f"{value:.4g}"
    print(f"{'case':<29} {'ours':>9} {'theirs':>9}  {'beside':<17} {'ratio':>7} {'goal':>6}")
    for row in rows:
        verdict = "ok" if row["met"] else "MISSED" if row["ratio"] is not None else "not measured"
        ratio = "-" if row["ratio"] is None else f"{row['ratio']:.3f}"
        print(
            f"{row['case']:<29} {number(row['ours']):>9} {number(row['their']):>9}  {row['theirs']:<17} {ratio:>7} {row['goal']:>6}  {verdict}"
        )


def ReadArguments():
    parser = argparse.ArgumentParser(description="Measures the browser beside what one would take instead.")
    parser.add_argument("program", help="vx3-bench, with its comparators beside it")
    parser.add_argument("groups", nargs="*", metavar="GROUP", help=f"{LISTING} (all but the library, the default), {', '.join(GROUPS)}")
    parser.add_argument("--rounds", type=int, help=f"how often each contender runs ({ROUNDS}; {LIBRARY_ROUNDS} where the library is among the groups)")
    parser.add_argument("--items", type=int, default=ITEMS, help=f"how many the library has ({ITEMS}); fewer for a quick try")
    parser.add_argument("--data", default=os.path.join(tempfile.gettempdir(), "vx3-bench"), help="where the files to list are made once and kept; nothing hidden, which the browser does not show")
    parser.add_argument("--json", help="writes the figures of all rounds there")
    arguments = parser.parse_args()
    unknown = set(arguments.groups) - set(GROUPS) - {LISTING}
    if unknown:
        parser.error(f"no such group: {', '.join(sorted(unknown))}")
    if not arguments.groups or LISTING in arguments.groups:
        arguments.groups += [group for group in GROUPS if group != LIBRARY]
    if arguments.rounds is None:
        arguments.rounds = LIBRARY_ROUNDS if LIBRARY in arguments.groups else ROUNDS
    if arguments.rounds < 1 or arguments.items < 2:
        parser.error("at least one round and two items are needed")
    return arguments


def Main():
    arguments = ReadArguments()
    if {"list", "walk", "grid", "start"} & set(arguments.groups):
        makedata.Provide(arguments.data)
    if LIBRARY in arguments.groups:
        CheckRoom(arguments.data, arguments.items)
    with Display("start" in arguments.groups) as hasDisplay:
        if "start" in arguments.groups and not hasDisplay:
            print("No Xvfb: the start is not measured", file=sys.stderr)
            arguments.groups.remove("start")
        try:
            return Measure(arguments)
        finally:
            shutil.rmtree(os.path.join(arguments.data, LIBRARY_FOLDER), ignore_errors=True)


def CheckRoom(data, items):
    os.makedirs(data, exist_ok=True)
    if shutil.disk_usage(data).free < items * DISK_BYTES:
        sys.exit(f"The library needs {items * DISK_BYTES / 1e9:.1f} GB of disk in {data}; --data names another place")


def Measure(arguments):
    contenders, missing = [], set()
    for contender in ListContenders(arguments.program, arguments.data, arguments.items):
        if contender.group not in arguments.groups:
            continue
        if contender.command[0] == "ls" or os.path.exists(contender.command[0]):
            contenders.append(contender)
        elif contender.command[0] not in missing:
            missing.add(contender.command[0])
            print(f"Not built: {contender.command[0]}", file=sys.stderr)
    rounds = []
    for number in range(arguments.rounds):
        print(f"Round {number + 1} of {arguments.rounds} …", file=sys.stderr)
        rounds.append(RunRound(contenders))
    rows = [Judge(goal, rounds, arguments.items) for goal in GOALS if goal.group in arguments.groups]
    PrintTable(rows)
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump({"rows": rows, "rounds": rounds}, file, indent=1)
    missed = [row for row in rows if not row["met"]]
    print(f"{len(rows) - len(missed)} of {len(rows)} goals are met, as medians of {arguments.rounds} rounds.")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(Main())
