#!/usr/bin/env python3
"""Plays a golden run on a pseudo-terminal, as an operator would.

    play_on_terminal.py BUILD_DIRECTORY CASE_DIRECTORY

Each answer of the case's session is typed when all that stands before it has appeared: typed ahead,
its echo would come out of order. The screen must then be the session, the answers echoed at their
places.
"""

import os
import pathlib
import pty
import select
import shutil
import sys
import tempfile

import run_case


def read_until(terminal, screen, wanted):
    """Appends to the screen what the program writes until it ends with `wanted`, or stops."""
    while not screen.endswith(wanted):
        if not select.select([terminal], [], [], run_case.TIMEOUT)[0]:
            return screen
        try:
            piece = os.read(terminal, 4096)
        except OSError:  # the program has ended
            return screen
        screen += piece.replace(b"\r\n", b"\n")
    return screen


def play(program, case, settings, root):
    """Returns the expected screen, and screen, exit status and host of the run."""
    host = run_case.Host(settings, root)
    run_case.lay_out(case, settings, host)
    session = host.to_host((case / "session").read_bytes())
    terminal, slave = pty.openpty()
    child = run_case.start([program], host, settings, stdin=slave, stdout=slave, stderr=slave)
    os.close(slave)
    screen = expected = b""
    pieces = run_case.ANSWER.split(session)  # texts and answers in turn
    for text, answer in zip(pieces[0::2], pieces[1::2]):
        expected += text
        screen = read_until(terminal, screen, expected)
        if screen != expected:
            break
        expected += answer + b"\n"
        os.write(terminal, answer + b"\n")
    else:
        expected += pieces[-1]
        screen = read_until(terminal, screen, expected)
    os.close(terminal)
    return expected, {"screen": screen, "status": child.wait(), "host": host}


def main():
    build, case = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    settings = run_case.read_settings(case)
    if settings["user"] == "root" and os.geteuid() != 0:
        print(f"skipped: {case.name} needs the superuser")
        sys.exit(run_case.SKIPPED)
    root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-run-", dir="/tmp"))
    root.chmod(0o755)
    try:
        expected, got = play(build / "tests/morvane_without_pauses", case, settings, root)
    finally:
        shutil.rmtree(root)
    same = run_case.compare({"screen": expected, "status": int(settings["status"])}, got,
                            ["screen", "status"])
    sys.exit(0 if same else 1)


if __name__ == "__main__":
    main()
