#!/usr/bin/env python3
"""Plays scenarios in a host and compares what they print with what stands beside them.

    run.py [--update] [--only NAME] COMMAND…

COMMAND plays a script: the path of a scenario is put behind it. The last lines of its standard error, such as the longest
event of the main thread, are told for each scenario. Ends with 1 if one differs, fails or takes too long.
"""
import argparse
import difflib
import pathlib
import subprocess
import sys

FOLDER = pathlib.Path(__file__).resolve().parent
LIMIT = 180  # seconds, for a scenario under a sanitizer


def Play(command, script):
    """What it printed, and what it told; none and the reason if it failed."""
    try:
        done = subprocess.run([*command, str(script)], stdin=subprocess.DEVNULL, capture_output=True, timeout=LIMIT)
    except subprocess.TimeoutExpired:
        return None, f"did not end within {LIMIT} seconds"
    told = done.stderr.decode("utf-8", "replace").strip()
    if done.returncode:
        return None, f"ended with {done.returncode}\n{told}"
    return done.stdout.decode("utf-8", "replace"), told


def Compare(expected, printed):
    lines = difflib.unified_diff(expected.splitlines(), printed.splitlines(), "expected", "printed", lineterm="", n=6)
    return "\n".join(lines)


def Check(command, script, update):
    """True if all is as it should be."""
    expectation = script.with_suffix(".txt")
    printed, told = Play(command, script)
    if printed is None:
        print(f"FAIL  {script.stem}: {told}")
        return False
    if update:
        expectation.write_text(printed, encoding="utf-8")
    difference = Compare(expectation.read_text(encoding="utf-8") if expectation.exists() else "", printed)
    if difference:
        print(f"FAIL  {script.stem}\n{difference}")
        return False
    print(f"ok    {script.stem:10}  " + "; ".join(told.splitlines()[-2:]))
    return True


def Main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--update", action="store_true", help="write what is printed, to be read before it is kept")
    parser.add_argument("--only", metavar="NAME", help="one scenario alone")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    wanted = parser.parse_args()
    scripts = sorted(FOLDER.glob(f"{wanted.only or '*'}.script"))
    if not wanted.command or not scripts:
        parser.error("there is nothing to play, or nobody to play it")
    results = [Check(wanted.command, script, wanted.update) for script in scripts]
    print(f"{results.count(True)} of {len(results)} scenarios as they should be")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(Main())
