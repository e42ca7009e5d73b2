#!/usr/bin/env python3
"""Words that do not belong into the project: of unfinished work, of documents outside of it, paths of one machine.

The patterns are written in pieces, so that this file passes its own check.
"""
import re

from tracked import Files, Finish, Root, Text

CodeLike = (".h", ".cpp", ".c", ".py", ".sh", ".cmake", ".txt", ".bash", ".fish", ".zsh", "dev", ".ci/run")
Unchecked = ("LICENSE",)

Outside = re.compile(
    r"\bPa" r"rts? [0-9]+(?:\.[0-9]+)?\b|\bspeci" r"fications?\b|\bspec" r"\.md\b|\b[Tt]he sp" r"ec\b|\bM-" r"[A-Z][0-9]+\b|\b[Ii]ss" r"ue #?[0-9]+\b"
)
Meant = re.compile(r"(?:thread|format|type) speci" r"fication|speci" r"fication of c\+\+", re.I)
Unfinished = re.compile(r"\b(?:TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK|not imple" r"mented|unimple" r"mented|stu" r"b)\b")


def MachinePaths():
    """Where this checkout lies, unless that is a name that anything may have, and home folders."""
    homes = r"(?<![\w/.])/(?:home/(?!USER|user|you)[a-z]\w*|ro" r"ot)/"
    return re.compile(homes if len(Root.parts) < 3 else homes + "|" + re.escape(str(Root)) + r"(?![\w.-])")


def ProblemsOf(name, line):
    if any(not Meant.search(line[max(0, found.start() - 20) : found.end() + 10]) for found in Outside.finditer(line)):
        yield "speaks of a document outside of the project"
    if machine.search(line):
        yield "a path of one machine"
    if name.endswith(CodeLike):
        found = Unfinished.search(line)
        if found:
            yield f"unfinished work: {found.group(0)}"


machine = MachinePaths()
problems = []
count = 0
for file in Files():
    problems += [f"{file}: the name {problem}" for problem in ProblemsOf("", file)]
    if file in Unchecked or b"\0" in (Root / file).read_bytes()[:8192]:
        continue
    count += 1
    for number, text in enumerate(Text(file).splitlines(), 1):
        problems += [f"{file}:{number}: {problem}" for problem in ProblemsOf(file, text)]
Finish(problems, f"{count} files")
