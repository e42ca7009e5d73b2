#!/usr/bin/env python3
"""Each header of the boundary compiles alone, twice in a row, as pedantic C11 and as C++20, with both compilers."""
import subprocess
from concurrent.futures import ThreadPoolExecutor
from os import cpu_count

from tracked import Files, Finish, Root

Warnings = ["-pedantic-errors", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-Isdk/include"]
Compilers = [
    ["gcc", "-std=c11", "-x", "c"],
    ["clang-16", "-std=c11", "-x", "c"],
    ["g++", "-std=c++20", "-x", "c++"],
    ["clang++-16", "-std=c++20", "-x", "c++"],
]


def Compile(job):
    header, compiler = job
    line = f'#include "vx3/{header.rsplit("/", 1)[1]}"\n'
    try:
        done = subprocess.run(compiler + Warnings + ["-"], input=line * 2, text=True, capture_output=True, cwd=Root)
    except FileNotFoundError:
        return f"{compiler[0]} is not installed"
    if done.returncode == 0:
        return None
    return f"{header}: does not compile alone with {' '.join(compiler[:2])}\n{done.stderr.rstrip()}"


headers = Files([".h"], "sdk/include/vx3/")
jobs = [(header, compiler) for header in headers for compiler in Compilers]
with ThreadPoolExecutor(cpu_count()) as pool:
    problems = list(dict.fromkeys(filter(None, pool.map(Compile, jobs))))
if not headers:
    problems.append("sdk/include/vx3: there are no headers")
Finish(problems, f"{len(headers)} headers, {len(jobs)} ways")
