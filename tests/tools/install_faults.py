#!/usr/bin/env python3
"""Installs while the Nth system call fails, for each N, counted over morvane-install, make and all that
it runs. What was replaced is there or kept, what is not the product's is left alone, and no receipt
tells of anything but what lies there.

    install_faults.py BUILD_DIRECTORY [--all]
"""

import errno
import pathlib
import subprocess
import sys
import tempfile
import unittest

EVERY = "--all" in sys.argv
sys.argv = [word for word in sys.argv if word != "--all"]

import made_distribution  # noqa: E402
from faulty_calls import FAULTS  # noqa: E402
from made_distribution import PATH, tree  # noqa: E402

BUILD = pathlib.Path(sys.argv[1]).resolve()
TRACER = BUILD / "tests/system_calls"
SKIPPED = 77
SAMPLE = 40 if EVERY else 1  # runs of a fault: one takes a second, and there are thousands of calls
EARLIER = "an earlier file\n"
MAKEFILE = "program:\n\tmkdir -p ../bin\n\techo made > ../bin/app\n"


class Faults(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-install-", dir="/tmp")
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        self.made = made_distribution.Distribution(BUILD, self.root)
        self.app = self.made.add("app", {"data": "new\n", "lib/a": "a\n"}, MAKEFILE, ["program"])
        self.made.configure()
        self.runs = 0

    def install_with(self, call, number, error):
        """Returns how a first installation ended that was struck, and the calls that there were."""
        self.made.clear()
        (self.app / "data").write_text(EARLIER)
        (self.app / "foreign").write_text(EARLIER)
        self.runs += 1
        self.kept = self.root / f"kept{self.runs}"
        self.registry = self.root / f"registry{self.runs}"
        with tempfile.NamedTemporaryFile("r") as report:
            done = subprocess.run(
                [TRACER, report.name, call, str(number), "error", str(getattr(errno, error)),
                 BUILD / "morvane-install", "-C", self.made.dist, f"--registry={self.registry}",
                 f"--keep-replaced={self.kept}"], stdin=subprocess.DEVNULL, capture_output=True,
                text=True, timeout=120, check=False, umask=0o022,
                env={"PATH": PATH, "LC_ALL": "C"})
            if done.returncode == SKIPPED:
                self.skipTest("no process can be traced here")
            lines = [line.split() for line in report]
        return done, {line[1]: int(line[2]) for line in lines if line[0] == "count"}

    def left(self):
        """Returns what is installed, but for that on which install.mk does not insist."""
        left = tree(self.app)
        for name in ("install/Makefile", "install/app.make"):
            left.pop(str(self.app / name), None)
        return left

    def judge(self, done, wanted, is_answer):
        """Fails where something is lost, or not told. `is_answer` says that the call may have ended
        so without a fault: what is said not to be there is believed."""
        said = done.stdout + done.stderr
        if done.returncode == 0:
            self.assertEqual(self.left(), wanted)
            self.assertTrue((self.app / "install/app.receipt").exists(), said)
        else:
            self.assertIn(done.returncode, (2, 3, 4), said)
            self.assertNotEqual(done.stderr, "")
        self.assertEqual((self.app / "foreign").read_text(), EARLIER)
        copy = self.kept / str(self.app)[1:] / "data"
        places = [path for path in (self.app / "data", copy)
                  if path.exists() and path.read_text() == EARLIER]
        self.assertNotEqual(places, [], said)
        if list(self.root.glob(f"{self.registry.name}/*")) or list(self.app.glob("*/*.receipt")):
            verified = self.made.run("morvane-verify", f"--registry={self.registry}", self.app)
            said += verified.stdout + verified.stderr
            self.assertIn(verified.returncode, (0, 1) if is_answer else (0,), said)
            self.assertNotIn("not as installed", verified.stdout, said)

    def test_a_system_call_that_fails_anywhere_loses_nothing_and_is_told(self):
        done, counts = self.install_with("any", 0, "EIO")
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        wanted = self.left()
        for call, errors in FAULTS.items():
            count = counts.get(call, 0)
            stride = max(1, count // SAMPLE)
            for error in errors:
                for number in range(1 + 7 * len(error) % stride, count + 1, stride):
                    with self.subTest(call=call, number=number, error=error):
                        done, _ = self.install_with(call, number, error)
                        self.judge(done, wanted, is_answer=error == "ENOENT")
        print(f"{self.runs} runs of {sum(counts.values())} calls")


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False, module=sys.modules[__name__],
                           defaultTest="Faults").result
    for _, reason in result.skipped:
        print("skipped:", reason)
    sys.exit(0 if result.wasSuccessful() and not result.skipped else
             SKIPPED if result.wasSuccessful() else 1)
