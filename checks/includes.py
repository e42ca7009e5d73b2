#!/usr/bin/env python3
"""No include points up the house, and the module includes no library header that allocates, opens or locks."""
import os
import re

from tracked import CodeSuffixes, Files, Finish, Root, Text

Module = "modules/browser/source"

# The folders of the module from the ground up: one may include itself and what stands below.
Floors = ["services", "model", "storage", "nodes", "plugins", "search", "background", "exchange", "ui", "host"]

# What the other folders may include besides themselves. Folders that are not named may include everything.
Allowed = {
    "sdk": set(),
    "examples": {"sdk"},
    "hosts/core": {"sdk"},
    "hosts/testing": {"sdk", "hosts/core"},
    "hosts/gui": {"sdk", "hosts/core"},
    "hosts/headless": {"sdk", "hosts/core", "hosts/gui"},
    "hosts/desktop": {"sdk", "hosts/core", "hosts/gui", "hosts/headless"},
    "hosts/console": {"sdk", "hosts/core", "hosts/gui", "hosts/headless"},
}
for height, floor in enumerate(Floors):
    Allowed[f"{Module}/{floor}"] = {"sdk"} | {f"{Module}/{below}" for below in Floors[:height]}

# Where a quoted include is looked up besides the folder of its file.
SearchedIn = ["sdk/include", Module, "hosts", ""]

Everywhere = {"format", "ranges"}  # the tools of the supported systems cannot read them
InModule = set(
    "any condition_variable deque filesystem forward_list fstream functional future iostream list map mutex queue regex "
    "semaphore set shared_mutex sstream stack string thread unordered_map unordered_set vector".split()
)

Include = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def AreaOf(path):
    """The row of the table that a file belongs to, or its first folder."""
    fitting = [area for area in Allowed if path.startswith(area + "/")]
    return max(fitting, key=len) if fitting else path.split("/", 1)[0]


def Resolve(file, target):
    """The file of the project that an include names, or none if it is of the system or made by the build."""
    for folder in [os.path.dirname(file)] + SearchedIn:
        candidate = os.path.normpath(os.path.join(folder, target))
        if (Root / candidate).is_file():
            return candidate
    return None


def ProblemOf(file, quote, target):
    area = AreaOf(file)
    reached = Resolve(file, target)
    if reached is None:
        forbidden = Everywhere | (InModule if file.startswith(Module) else set())
        if quote == "<" and target in forbidden:
            return f"<{target}> is not used here"
        if quote == '"' and target.split("/", 1)[0] in ("core", "testing", "console") and file.startswith(Module):
            return f'"{target}" is of a host'
        return None
    to = AreaOf(reached)
    if area in Allowed and to != area and to not in Allowed[area]:
        return f"{area} may not include {to}: {target}"
    return None


problems = []
count = 0
for source in Files(CodeSuffixes):
    text = Text(source)
    for include in Include.finditer(text):
        count += 1
        problem = ProblemOf(source, *include.groups())
        if problem:
            problems.append(f"{source}:{text.count(chr(10), 0, include.start(2)) + 1}: {problem}")
Finish(problems, f"{count} includes")
