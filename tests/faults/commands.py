#!/usr/bin/env python3
"""The Nth shell command fails, for each N: it cannot be run, dies, says that it failed, or writes
something else than it should.

    commands.py BUILD_DIRECTORY [--all]
"""

import re

import session

# Kinds that the program can see, and kinds in which the command lies about what it did.
FAILING = ["exit1", "exit126", "exit127", "killed", "unstarted", "late"]
LYING = ["nothing", "half", "long", "nul"]
STRIDE = 4

# What the operator is told when a command fails: a text on standard error or on the screen.
# Nothing at all where the failure looks like an honest answer (a listing of nothing, two
# directories that differ) or is made good (a scratch file is removed some other way).
TOLD = [
    (rb"cd .*; ls -id ", None, b""),
    (rb"cd .*; ls \*", None, b""),
    (rb"pwd 1> ", None, b""),
    (rb"'rm' -f ", None, b""),
    (rb"true\n", "output", b"<123 site host failed>"),
    (rb"mkdir -p ", "output", b"<131 path failed>"),
    (rb"touch \./install\.mk ", "errors", b"<101 probe not created>"),
    (rb"touch /", "output", b"<133 path not writable"),
    (rb"chgrp ", "output", b"<97 no rights>"),
    (rb"uname ", "errors", b"failed to get current operating system"),
    (rb"test -f ", "errors", b"missing."),
]


def untold(stage, command, kind):
    """Returns what the operator should have been told and was not."""
    for pattern, stream, text in TOLD:
        if re.match(pattern, command):
            break
    else:
        return [f"an unexpected command: {command!r}"]
    # What a pipe's command wrote counts, whatever its end.
    tells = kind in FAILING and not (kind == "late" and command.startswith(b"uname "))
    tells = tells or (kind == "nothing" and command.startswith(b"uname "))
    if not tells or stream is None or text in getattr(stage, stream):
        return []
    return [f"nothing on standard {'error' if stream == 'errors' else stream} about it"]


def sweep(build, every):
    results = session.Sweep()
    stride = 1 if every else STRIDE
    program = build / "tests/morvane_with_faults"
    commands = {}

    def go_through(number_and_kind):
        number, kind = number_and_kind
        step = 1 + number % stride
        while True:
            with session.Stage(program) as stage:
                stage.set(MORVANE_FAULT_COMMAND=step, MORVANE_FAULT_KIND=kind,
                          MORVANE_FAULT_REPORT=stage.report)
                ended = stage.play()
                command = stage.struck()
                what = f"command {step} ({command!r}) {kind}"
                if command is None:
                    results.note(what, session.untouched(stage, ended))
                    commands[kind] = step - stride
                    return
                results.note(what, stage.problems(ended) + untold(stage, command, kind))
                step += stride

    results.all(go_through, enumerate(FAILING + LYING))
    results.finish(f"every command up to number {max(commands.values())} or so failed in at least "
                   f"{len(commands) // stride} of {len(commands)} ways")


if __name__ == "__main__":
    session.main(sweep)
