#!/usr/bin/env python3
"""Standard input ends after the Nth answer, for each N, and in the middle of it: on a pipe, on a
terminal, and because the terminal goes away.

    input.py BUILD_DIRECTORY [--all]
"""

import os
import time

import session

END_OF_INPUT = b"\x04"


def typed_up_to(answers, count, half):
    """Returns the first answers, and a line that has no end."""
    return b"".join(answers[:count]) + (b"y" if half else b"")


def ended_early(stage, ended):
    found = stage.problems(ended)
    if stage.status != 1:
        found.append(f"status {stage.status}")
    if stage.errors:
        found.append(f"on standard error: {stage.errors!r}")
    return found


def sweep(build, every):
    results = session.Sweep()
    program = build / "tests/morvane_with_faults"
    with session.Stage(program) as stage:
        count = stage.typed.count(b"\n")

    def on_pipe(step):
        number, half = step
        with session.Stage(program) as stage:
            answers = stage.typed.splitlines(keepends=True)
            ended = stage.play(typed_up_to(answers, number, half))
            what = f"the pipe ends after answer {number}{' and a half' if half else ''}"
            results.note(what, ended_early(stage, ended) if number < count
                         else session.untouched(stage, ended))

    def on_terminal(step):
        number, half = step
        with session.Stage(program) as stage:
            answers = stage.typed.splitlines(keepends=True)
            terminal = stage.start_on_terminal()
            # In the middle of a line the first one hands over what stands there.
            os.write(terminal, typed_up_to(answers, number, half) + END_OF_INPUT * (1 + half))
            ended = stage.end_on_terminal()
            what = f"end of input on the terminal after answer {number}{' and a half' * half}"
            results.note(what, ended_early(stage, ended) if number < count
                         else session.untouched(stage, ended))

    def without_terminal(number):
        """The terminal goes away while the program waits for an answer, or works."""
        for ignored in (False, True):
            with session.Stage(program) as stage:
                if ignored:
                    stage.program = ["sh", "-c", "trap '' HUP; exec \"$0\"", *stage.program]
                answers = stage.typed.splitlines(keepends=True)
                terminal = stage.start_on_terminal()
                os.write(terminal, b"".join(answers[:number]))
                time.sleep(0.1)
                ended = stage.end_on_terminal(hang_up=True)
                found = stage.problems(ended, signals=[session.signal.SIGHUP],
                                       scratch_may_stay=not ignored, farewell=False)
                if number < count and stage.status == 0:
                    found.append("status 0")
                results.note(f"hang-up after answer {number}"
                             f"{', the signal ignored' if ignored else ''}", found)

    steps = [(number, half) for number in range(count + 1) for half in (False, True)][:-1]
    stride = 1 if every else 2
    results.all(on_pipe, steps)
    results.all(on_terminal, steps[::stride] + steps[-1:])
    results.all(without_terminal, range(0, count, 2 * stride - 1))
    results.finish(f"{count} answers; on the terminal every step but {stride - 1} of {stride}, "
                   f"hang-up at every {2 * stride - 1}th")


if __name__ == "__main__":
    session.main(sweep)
