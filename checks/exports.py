#!/usr/bin/env python3
"""The module exports its entry function alone, and needs of the system only what neither allocates, opens, locks nor throws."""
import re

from elf import Binary, Lines
from tracked import Finish

Exported = {"vx3_main"}

# Pure functions of memory and numbers; a new one is added here only if it keeps to the first line.
Functions = set(
    "memchr memcmp memcpy memmove memset strlen strcmp strncmp bcmp "
    "ceil cos exp exp2 floor fmod log log2 lround pow round sin sqrt tan trunc "
    "ceilf cosf expf floorf fmodf lroundf powf roundf sinf sqrtf truncf".split()
)
# What the compiler itself asks for: start and end of the binary, stack guards, a call of a pure virtual function.
Compiler = {
    "_ITM_deregisterTMCloneTable",
    "_ITM_registerTMCloneTable",
    "__cxa_finalize",
    "__cxa_pure_virtual",
    "__gmon_start__",
    "__stack_chk_fail",
}
Libraries = {"libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libc.so.6"}

binary = Binary()
problems = []

rows = [line.split() for line in Lines("nm", "-D", "--defined-only", binary)]
exports = {row[-1].split("@")[0] for row in rows}
problems += [f"{binary}: exports {name}" for name in sorted(exports - Exported)]
problems += [f"{binary}: does not export {name}" for name in sorted(Exported - exports)]

imports = {line.split()[-1].split("@")[0] for line in Lines("nm", "-D", "--undefined-only", binary)}
problems += [f"{binary}: needs {name} of the system" for name in sorted(imports - Functions - Compiler)]

# A symbol that is unique in the process keeps the binary from ever being unloaded.
unique = [line.split()[-1] for line in Lines("nm", binary) if re.match(r"\S+ u ", line)]
problems += [f"{binary}: {name} is unique in the process" for name in sorted(set(unique))]

for line in Lines("readelf", "-dW", binary):
    if "(TEXTREL)" in line:
        problems.append(f"{binary}: relocations in code")
    needed = re.search(r"\(NEEDED\).*\[(.+)\]", line)
    if needed and needed.group(1) not in Libraries:
        problems.append(f"{binary}: links {needed.group(1)}")

Finish(problems, f"{', '.join(sorted(exports))}; {len(imports)} symbols of the system")
