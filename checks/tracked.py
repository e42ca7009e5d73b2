"""The files of the project, for the checks: those under version control, or all but builds where there is none.

As a program it prints those with the given suffixes: tracked.py .h .cpp
"""
import os
import subprocess
import sys
from pathlib import Path

Root = Path(__file__).resolve().parent.parent
CodeSuffixes = (".h", ".cpp", ".c")


def ListedByGit():
    # The owner of a checkout may be another user than the one who checks it.
    command = ["git", "-c", f"safe.directory={Root}", "-C", str(Root), "ls-files", "-z"]
    try:
        answer = subprocess.run(command, capture_output=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return None
    return [name for name in answer.decode("utf-8", "surrogateescape").split("\0") if name]


def ListedByWalk():
    for folder, subfolders, names in os.walk(Root):
        subfolders[:] = [name for name in subfolders if name not in (".git", "__pycache__") and not name.startswith("build")]
        for name in names:
            yield str((Path(folder) / name).relative_to(Root))


def Files(suffixes=(), below=""):
    """Paths relative to the root, in order."""
    listed = ListedByGit()
    names = ListedByWalk() if listed is None else listed
    return sorted(
        name
        for name in names
        if name.startswith(below) and (not suffixes or name.endswith(tuple(suffixes))) and (Root / name).is_file()
    )


def Text(name):
    return (Root / name).read_text(encoding="utf-8", errors="replace")


def Finish(problems, summary):
    """Prints the problems, or the summary if there are none, and ends the check."""
    for problem in problems:
        print(problem)
    if problems:
        sys.exit(1)
    print(summary)
    sys.exit(0)


if __name__ == "__main__":
    print("\n".join(Files(sys.argv[1:])))
