#!/usr/bin/env python3
"""Plays the same two sessions with each message file, answered with the letters of that file.

    play_messages.py BUILD_DIRECTORY MESSAGE_FILE ...

The one goes through to the end, the other quits at the first question. Nothing may come on standard
error, no line may be wider than the terminal, and what is written must be the same every time.
"""

import grp
import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import tempfile

import message_list

WIDEST_LINE = 79
TIMEOUT = 60

APP = """\
Name = App
FullName = "The application"
Version = 1.0
Path = {root}/opt/app
Owner = {user}
Group = {group}
Target = program
NeedsCategory = STORE
NeedsText = "a store of data"
NeedsType = small
NeedsVersion = 1.2
NeedsFiles = lib/data
NeedsPath = {root}/opt/store
NeedsType = large
"""
STORE = """\
Name = Store
Version = 1.3
Category = STORE
Type = small
"""


def whole_session(root, yes, no):
    return ["1", "?", yes,  # selects the product; the second answer is none
            "opt", "", yes,  # a path that is none; then the one proposed, which is made
            "", "", no,  # owner, group, access
            "huge", "",  # a type that will not do; then the one proposed
            f"{root}/opt", no,  # the needed product: not there; not to be used all the same
            "", "", yes,  # then where it is
            no, yes]  # nothing changes, and the installation goes on


def lay_out(root, messages):
    names = {"root": root, "user": pwd.getpwuid(os.getuid()).pw_name,
             "group": grp.getgrgid(os.getgid()).gr_name}
    files = {"dist/app.tar": "", "dist/app.descr": APP.format(**names),
             "opt/store/install/store.descr": STORE, "opt/store/lib/data": "",
             "dist/Makefile": "", "dist/morvane.SunOS4": "", "dist/morvane.SunOS5": ""}
    for name, content in files.items():
        path = root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)
    shutil.copy(messages, root / "dist/morvane.rsc")


def run_faults(program, directory, answers, status, farewell):
    done = subprocess.run([program], cwd=directory, input="".join(f"{one}\n" for one in answers),
                          capture_output=True, text=True, check=False, timeout=TIMEOUT)
    if done.returncode != status:
        yield f"status {done.returncode} instead of {status}:\n{done.stdout}"
    if done.stderr:
        yield f"on standard error: {done.stderr}"
    for line in done.stdout.expandtabs().splitlines():
        if len(line) > WIDEST_LINE:
            yield f"wider than {WIDEST_LINE}: {line}"
    if not done.stdout.endswith(farewell):
        yield "it ended without its farewell"


def results(root):
    """Returns what was written, without its comments and the directory's name."""
    text = "".join((root / "dist" / name).read_text() for name in ("app.dat", "install.mk"))
    return [line.replace(str(root), "DIR") for line in text.splitlines()
            if not line.startswith("#")]


def play(program, path):
    """Returns what is wrong with the two sessions, and what the first one wrote."""
    messages = message_list.read_messages(path)
    yes, no, leave = messages[message_list.NUMBERS["ANSWER_LETTERS"]]
    farewell = messages[message_list.NUMBERS["FAREWELL"]]
    with tempfile.TemporaryDirectory(prefix="morvane-messages-", dir="/tmp") as directory:
        root = pathlib.Path(directory)
        lay_out(root, path)
        faults = [*run_faults(program, root / "dist", [leave.upper()], 1, farewell),
                  *run_faults(program, root / "dist", whole_session(root, yes, no), 0, farewell)]
        return faults, [] if faults else results(root)


def main():
    build, *paths = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    failed, first = False, None
    for path in paths:
        faults, written = play(build / "tests/morvane_without_pauses", path)
        first = first or written
        if not faults and written != first:
            faults = ["what is written is not the same as with the first message file"]
        for fault in faults:
            print(f"{path.name}: {fault}")
        failed = failed or bool(faults)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
