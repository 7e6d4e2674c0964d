#!/usr/bin/env python3
"""Measures the pauses behind the warnings to an ordinary user.

    time_pauses.py BUILD_DIRECTORY CASE_DIRECTORY

Plays the case and notes when the texts of its screen appear. A pause cannot be shorter than it
should be, however late this script gets to read; how much longer it is depends on the host, and is
not tested. What lies between two texts may seem shorter, by as much as the first was read late.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

import run_case

READ_LATE = 1  # seconds

# Each text, the seconds since the start before which it cannot appear, and those since the text
# before it.
TEXTS = [(b"<40 ", 0, 0), (b"<41 ", 3, 3), (b"<42 ", 3, 0), (b"<11 ", 8, 5)]


def appearances(program, case, settings, root):
    """Returns when each text appeared, in seconds since the start of the program."""
    host = run_case.Host(settings, root)
    run_case.lay_out(case, settings, host)
    started = time.monotonic()
    child = run_case.start([program], host, settings, stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE)
    screen = b""
    seen = {}
    while piece := os.read(child.stdout.fileno(), 4096):
        screen += piece
        for text, _, _ in TEXTS:
            if text in screen:
                seen.setdefault(text, time.monotonic() - started)
    child.stdout.close()
    child.wait()
    return seen


def main():
    build, case = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-run-", dir="/tmp"))
    root.chmod(0o755)
    try:
        seen = appearances(build / "morvane", case, run_case.read_settings(case), root)
    finally:
        shutil.rmtree(root)
    before = failed = 0
    for text, since_start, since_before in TEXTS:
        at = seen.get(text, -1)
        too_early = at < since_start or at - before < since_before - READ_LATE
        print(f"{text.decode()}... appeared after {at:.3f} s{': too early' if too_early else ''}")
        failed += too_early
        before = at
    sys.exit(failed > 0)


if __name__ == "__main__":
    main()
