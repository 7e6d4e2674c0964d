#!/usr/bin/env python3
"""Plays answers while the Nth system call fails, for each N, counted over rehearsal, run and all their
commands. What was asked for is there in the end, or what was there before.

    answers_faults.py BUILD_DIRECTORY [--all]
"""

import errno
import pathlib
import subprocess
import sys
import tempfile
import unittest

EVERY = "--all" in sys.argv
sys.argv = [word for word in sys.argv if word != "--all"]

import answers_command  # noqa: E402  (it reads the arguments)
from faulty_calls import FAULTS  # noqa: E402

TRACER = answers_command.BUILD / "tests/system_calls"
SKIPPED = 77
SAMPLE = 2  # runs of a fault, where not all are wanted
EARLIER = {"install.mk": "an earlier makefile\n", "app.dat": "earlier settings\n"}


class Faults(answers_command.AnswersTest):
    def lay_out(self, language="", more=()):
        super().lay_out(language, more)
        for name, text in EARLIER.items():
            (self.dist / name).write_text(text)

    def play_with(self, call, number, error):
        """Returns how a run ended that was struck, and how many calls there were, by their names."""
        with tempfile.NamedTemporaryFile("r") as report:
            done = subprocess.run(
                [TRACER, report.name, call, str(number), "error", str(getattr(errno, error)),
                 answers_command.ANSWERS, "-C", self.dist, "play", self.file],
                stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False,
                env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C"}, umask=0o022)
            if done.returncode == SKIPPED:
                self.skipTest("no process can be traced here")
            lines = [line.split() for line in report]
        return done, {line[1]: int(line[2]) for line in lines if line[0] == "count"}

    def judge(self, done, before, after):
        now = self.shapes()
        if done.returncode == 0:
            self.assertEqual(now, after)
        else:
            self.assertIn(done.returncode, (2, 3, 4))
            self.assertNotEqual(done.stderr + done.stdout, "")
            left = {path for path in now.keys() | before.keys() if now.get(path) != before.get(path)}
            if left:  # what could not be taken back is named
                self.assertEqual(done.returncode, 4)
                unnamed = [path for path in left
                           if pathlib.Path(path).name not in done.stderr + done.stdout]
                self.assertEqual(unnamed, [])

    def test_a_system_call_that_fails_anywhere_leaves_the_whole_or_nothing(self):
        self.write(answers_command.FILE)
        before = self.shapes()
        done, counts = self.play_with("any", 0, "EIO")
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))
        after = self.shapes()
        runs = 0
        for call, errors in FAULTS.items():
            count = counts.get(call, 0)
            stride = 1 if EVERY else max(1, count // SAMPLE)
            for error in errors:
                for number in range(1 + len(error) % stride, count + 1, stride):
                    with self.subTest(call=call, number=number, error=error):
                        self.lay_out()
                        done, _ = self.play_with(call, number, error)
                        self.judge(done, before, after)
                        runs += 1
        print(f"{runs} runs")


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False, module=sys.modules[__name__],
                           defaultTest="Faults").result
    for _, reason in result.skipped:
        print("skipped:", reason)
    sys.exit(0 if result.wasSuccessful() and not result.skipped else
             SKIPPED if result.wasSuccessful() else 1)
