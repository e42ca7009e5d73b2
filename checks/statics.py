#!/usr/bin/env python3
"""The module has no static object with a constructor or destructor: nothing runs before action 1 or after action 3."""
import re

from elf import Binary, Lines
from tracked import Finish

# The compiler's own start files put one pointer into each: frame_dummy and __do_global_dtors_aux.
PointerSize = 8
OwnPointers = 1
Arrays = {".init_array", ".fini_array", ".preinit_array", ".ctors", ".dtors"}

binary = Binary()
problems = []
for line in Lines("readelf", "-SW", binary):
    section = re.match(r"\s*\[\s*\d+\]\s+(\S+)\s+\S+\s+\S+\s+\S+\s+([0-9a-f]+)", line)
    if section and section.group(1) in Arrays:
        pointers = int(section.group(2), 16) // PointerSize
        if pointers > OwnPointers:
            problems.append(f"{binary}: {section.group(1)} has {pointers} entries instead of {OwnPointers}")

for line in Lines("nm", "-C", binary):
    if re.search(r"_GLOBAL__|__static_initialization_and_destruction|guard variable for", line):
        problems.append(f"{binary}: {line.split(maxsplit=2)[-1]}")
Finish(problems, "no constructors or destructors")
