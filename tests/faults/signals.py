#!/usr/bin/env python3
"""A signal arrives after the Nth answer, for each N, while the program waits for the next one; and
at any time, while commands run.

    signals.py BUILD_DIRECTORY [--all]
"""

import os
import signal
import time

import session

SIGNALS = [signal.SIGINT, signal.SIGHUP, signal.SIGTERM]


def sweep(build, every):
    results = session.Sweep()
    program = build / "tests/morvane_with_faults"
    with session.Stage(program) as stage:
        count = stage.typed.count(b"\n")

    def while_waiting(step):
        number, which = step
        with session.Stage(program) as stage:
            answers = stage.typed.splitlines(keepends=True)
            with open(stage.root / "screen", "wb") as screen:
                child = stage.start(stdin=session.subprocess.PIPE, stdout=screen, stderr=screen)
                child.stdin.write(b"".join(answers[:number]))
                child.stdin.flush()
                found = [] if session.wait_for_question(child) else ["it does not wait for an answer"]
                child.send_signal(which)
                try:
                    child.wait(session.TIMEOUT)
                except session.subprocess.TimeoutExpired:
                    found.append("it did not end")
                    child.kill()
                child.stdin.close()
            stage.ended()
            found += stage.problems(True, signals=[which], farewell=False)
            if stage.status != -which:
                found.append(f"status {stage.status}")
            if number < count - 1 and (stage.distribution / "install.mk").exists():
                found.append("install.mk is there before everything is settled")
            results.note(f"{which.name} after answer {number}", found)

    def from_terminal(number):
        """The operator types the interrupt character. It ends the program, also where it meets a
        command; only at the moment when a command starts or has ended it can be lost, and the program
        then goes on until the terminal is closed."""
        with session.Stage(program) as stage:
            answers = stage.typed.splitlines(keepends=True)
            terminal = stage.start_on_terminal()
            os.write(terminal, b"".join(answers[:number]))
            time.sleep(0.3)
            os.write(terminal, b"\x03")
            ended = stage.end_on_terminal()
            found = stage.problems(ended, signals=[signal.SIGINT, signal.SIGHUP], farewell=False)
            if stage.status == 0:
                found.append("status 0")
            results.note(f"interrupt character after answer {number}", found)

    def at_any_time(step):
        moment, which = step
        with session.Stage(program) as stage:
            with open(stage.root / "typed", "wb+") as typed:
                typed.write(stage.typed)
                typed.seek(0)
                child = stage.start(stdin=typed, stdout=session.subprocess.DEVNULL,
                                    stderr=session.subprocess.DEVNULL)
            time.sleep(moment)
            if child.poll() is None:
                child.send_signal(which)
            try:
                child.wait(session.TIMEOUT)
                found = []
            except session.subprocess.TimeoutExpired:
                child.kill()
                found = ["it did not end"]
            time.sleep(0.05)  # a command that it started may still run
            stage.ended()
            found += stage.problems(True, signals=[which], scratch_may_stay=True, farewell=False)
            results.note(f"{which.name} {moment * 1000:.0f} ms after the start", found)

    steps = [(number, which) for number in range(count) for which in SIGNALS]
    results.all(while_waiting, steps)
    results.all(from_terminal, range(0, count, 1 if every else 8))
    moments = [0.002 * n for n in range(100 if every else 20)]
    results.all(at_any_time, [(moment * (1 if every else 4), SIGNALS[n % 3])
                              for n, moment in enumerate(moments)])
    results.finish(f"{count} questions, each signal at each; {len(moments)} moments besides")


if __name__ == "__main__":
    session.main(sweep)
