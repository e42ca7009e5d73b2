"""Reads the module's binary for the checks, by the tools of binutils."""
import subprocess
import sys

from tracked import Finish, Root

Default = "build/modules/browser/browser.so"


def Binary():
    """The file of the command line, or the module of the release build."""
    name = sys.argv[1] if len(sys.argv) > 1 else Default
    if not (Root / name).is_file():
        Finish([f"{name}: is not there; ./dev build makes it"], "")
    return name


def Lines(*command):
    done = subprocess.run(command, capture_output=True, text=True, cwd=Root, errors="replace")
    if done.returncode != 0:
        Finish([f"{' '.join(command)}: {done.stderr.strip()}"], "")
    return done.stdout.splitlines()
