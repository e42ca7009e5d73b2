#!/usr/bin/env python3
"""Measures the browser beside what one would take instead, both sides in one run.

    run.py PROGRAM [GROUP]… [--rounds N] [--data FOLDER] [--json FILE]

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

GROUPS = ("list", "walk", "view", "lists", "grid", "start", "index", "growth")
ALL = "listing"
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
    Goal("index", "crc_ns_per_byte", 1.1, CRC, "slice8_ns_per_byte", "slice by 8"),
    Goal("index", "hash_url_ns", 0.5, CRC, "bytewise_url_ns", "bytewise"),
    Goal("growth", "find_url_us.100000", 2, OURS, "find_url_us.1000", "vx3, 1,000"),
]


@dataclass
class Contender:
    """A command that prints lines `case<TAB>value<TAB>unit`, or one that is timed from outside as `timed`."""

    group: str
    name: str
    command: list
    timed: str = ""

    def Run(self):
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


def ListContenders(program, data):
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
    yield Contender("index", OURS, [program, "index"])
    yield Contender("growth", OURS, [program, "growth"])


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


def Judge(goal, rounds):
    """The row of a goal: medians of both sides and of the ratios of each round; None where nothing was measured."""
    ours = [figures.get(f"{OURS}:{goal.case}") for figures in rounds]
    theirs = [figures.get(f"{goal.theirs}:{goal.theirCase}") for figures in rounds]
    pairs = [(own, other) for own, other in zip(ours, theirs) if own is not None and other]
    row = {"case": goal.case, "theirs": goal.shown or goal.theirs, "goal": goal.factor, "ours": None, "their": None, "ratio": None, "met": False}
    if pairs:
        row["ours"] = statistics.median(own for own, _ in pairs)
        row["their"] = statistics.median(other for _, other in pairs)
        row["ratio"] = statistics.median(own / other for own, other in pairs)
        row["met"] = row["ratio"] <= goal.factor
    return row


def PrintTable(rows):
    number = lambda value: "-" if value is None else f"{value:.4g}"
    print(f"{'case':<26} {'ours':>9} {'theirs':>9}  {'beside':<17} {'ratio':>7} {'goal':>6}")
    for row in rows:
        verdict = "ok" if row["met"] else "MISSED" if row["ratio"] is not None else "not measured"
        ratio = "-" if row["ratio"] is None else f"{row['ratio']:.3f}"
        print(
            f"{row['case']:<26} {number(row['ours']):>9} {number(row['their']):>9}  {row['theirs']:<17} {ratio:>7} {row['goal']:>6}  {verdict}"
        )


def ReadArguments():
    parser = argparse.ArgumentParser(description="Measures the browser beside what one would take instead.")
    parser.add_argument("program", help="vx3-bench, with its comparators beside it")
    parser.add_argument("groups", nargs="*", metavar="GROUP", help=f"{ALL} (all of them, the default), {', '.join(GROUPS)}")
    parser.add_argument("--rounds", type=int, default=5, help="how often each contender runs (5)")
    parser.add_argument("--data", default=os.path.join(tempfile.gettempdir(), "vx3-bench"), help="where the files to list are made once and kept; nothing hidden, which the browser does not show")
    parser.add_argument("--json", help="writes the figures of all rounds there")
    arguments = parser.parse_args()
    unknown = set(arguments.groups) - set(GROUPS) - {ALL}
    if unknown or arguments.rounds < 1:
        parser.error(f"no such group: {', '.join(sorted(unknown))}" if unknown else "at least one round is needed")
    if not arguments.groups or ALL in arguments.groups:
        arguments.groups = list(GROUPS)
    return arguments


def Main():
    arguments = ReadArguments()
    if {"list", "walk", "grid", "start"} & set(arguments.groups):
        makedata.Provide(arguments.data)
    with Display("start" in arguments.groups) as hasDisplay:
        if "start" in arguments.groups and not hasDisplay:
            print("No Xvfb: the start is not measured", file=sys.stderr)
            arguments.groups.remove("start")
        return Measure(arguments)


def Measure(arguments):
    contenders = []
    for contender in ListContenders(arguments.program, arguments.data):
        if contender.group not in arguments.groups:
            continue
        if contender.command[0] == "ls" or os.path.exists(contender.command[0]):
            contenders.append(contender)
        else:
            print(f"Not built: {contender.command[0]}", file=sys.stderr)
    rounds = []
    for number in range(arguments.rounds):
        print(f"Round {number + 1} of {arguments.rounds} …", file=sys.stderr)
        rounds.append(RunRound(contenders))
    rows = [Judge(goal, rounds) for goal in GOALS if goal.group in arguments.groups]
    PrintTable(rows)
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump({"rows": rows, "rounds": rounds}, file, indent=1)
    missed = [row for row in rows if not row["met"]]
    print(f"{len(rows) - len(missed)} of {len(rows)} goals are met, as medians of {arguments.rounds} rounds.")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(Main())
