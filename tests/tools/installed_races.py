#!/usr/bin/env python3
"""Somebody who owns a product's directory changes it while morvane-install, morvane-verify and
morvane-remove are at work in it: before the Nth system call, for each N, something there becomes a
link, a pipe, a file without end, or goes. Nothing outside of the product's directory is changed,
removed, copied or noted in a receipt, and every command ends.

    installed_races.py BUILD_DIRECTORY [--all]
"""

import functools
import hashlib
import os
import shutil
import subprocess
import sys

import installed

EVERY = "--all" in sys.argv
TRACER = installed.BUILD / "tests/system_calls"
SKIPPED = 77
SAMPLE = 60 if EVERY else 4  # calls before which somebody comes
IN_TIME = 30  # seconds
SECRET = b"what only its owner can read"

# What is done in the product's directory; "$out" looks like it, and is none of its business.
DEEDS = {
    "directory becomes a link": "mv d was; ln -s $out/d d",
    "install becomes a link": "mv install was; ln -s $out/install install",
    "directory becomes another one": "mv d was; mv e d",
    "directory goes": "mv d ../gone-$$",
    "file becomes a link": "rm -f d/b; ln -s $out/secret d/b",
    "file becomes a pipe": "rm -f d/b; mkfifo d/b",
    "receipt becomes a link": "rm -f install/app.receipt; ln -s $out/secret install/app.receipt",
    "receipt becomes a pipe": "rm -f install/app.receipt; mkfifo install/app.receipt",
    "receipt becomes a link to another one":
        "rm -f install/app.receipt; ln -s $out/install/app.receipt install/app.receipt",
    "description becomes a pipe": "rm -f install/app.descr; mkfifo install/app.descr",
    "settings become a link": "rm -f install/app.dat; ln -s $out/secret install/app.dat",
}


# The same where no receipt is made of whatever lies there.
ENDLESS = {
    "description grows without end": "truncate -s 1T install/app.descr",
    "file becomes one without end": "rm -f d/b; truncate -s 1T d/b",
    "file grows without end": "truncate -s 1T d/b",
    "changed file becomes one without end": "rm -f d/c; truncate -s 1T d/c",
}


class Stage(installed.Host):
    """An installed product with changed files, and a copy of it outside; as often as wanted."""

    def __init__(self):
        super().__init__()
        self.app, self.out = self.opt / "app", self.root / "out"
        product = installed.Product("app", self.app, {
            "d": installed.Member(mode=0o755), "d/a": installed.Member(b"a"),
            "d/b": installed.Member(b"b"), "d/c": installed.Member(b"c"),
            "e": installed.Member(mode=0o755), "e/b": installed.Member(b"b"),
            "l": installed.Member(mode=0o777, link="d/a")},
            parts={"program": "touch ../d/made"})
        self.configure([product])
        self.make()
        self.verify("-C", self.distribution, "--save", check=0)
        (self.app / "d/c").write_text("changed")
        subprocess.run(["cp", "-a", self.app, self.out], check=True)
        (self.out / "secret").write_bytes(SECRET)
        (self.out / "secret").chmod(0o600)
        self.saved = self.root / "saved"
        self.saved.mkdir()
        for name in ("opt", "registry"):
            subprocess.run(["cp", "-a", self.root / name, self.saved / name], check=True)
        self.outside = outside(self.out)

    def restore(self, with_receipts):
        for name in ("opt", "registry", "kept"):
            shutil.rmtree(self.root / name, ignore_errors=True)
        subprocess.run(["cp", "-a", self.saved / "opt", self.root / "opt"], check=True)
        if with_receipts:
            subprocess.run(["cp", "-a", self.saved / "registry", self.registry], check=True)
        else:
            (self.app / "install/app.receipt").unlink()

    def run_with(self, deed, number, command):
        """Runs a command; before its call `number` somebody does `deed`. Returns how it ended, or
        None where it did not, and the number of calls."""
        report = self.root / "report"
        report.write_text("")
        program, *arguments = command
        environment = {**installed.ENVIRONMENT, "MAKE": "true",
                       "MEANWHILE": f"cd {self.app} || exit; out={self.out}; {deed}"}
        try:
            done = subprocess.run(
                [TRACER, report, "any", str(number), "meanwhile", "0", installed.BUILD / program,
                 "--registry", self.registry, *arguments], stdin=subprocess.DEVNULL,
                capture_output=True, text=True, check=False, timeout=IN_TIME, cwd=self.root,
                env=environment)
        except subprocess.TimeoutExpired:
            return None, 0
        counted = [line.split() for line in report.read_text().splitlines()]
        return done, sum(int(line[2]) for line in counted if line[0] == "count")

    def problems(self, done):
        """Yields what is wrong after a run."""
        if done is None:
            yield "it does not end"
            return
        if done.returncode not in (0, 1, 2, 3, 4):
            yield "no such status"
        if done.returncode in (2, 3, 4) and not done.stderr and " block" not in done.stdout:
            yield "nobody is told why"
        now = outside(self.out)
        for path in sorted(now.keys() | self.outside.keys()):
            if now.get(path) != self.outside.get(path):
                yield f"{path}: {self.outside.get(path)} became {now.get(path)}"
        digest = hashlib.sha256(SECRET).hexdigest()
        for receipt in self.root.glob("registry/*.receipt"):
            if digest in receipt.read_text():
                yield f"{receipt} tells of what lies outside"
        for copy in self.root.glob("kept/**/*"):
            if copy.is_file() and not copy.is_symlink() and begin_of(copy) == SECRET:
                yield f"{copy} is a copy of what lies outside"


def begin_of(path):
    with open(path, "rb") as file:
        return file.read(len(SECRET) + 1)


def outside(directory):
    """Returns all that is known of what lies in a directory, but when it was read."""
    found = {path: (installed.state(path), os.lstat(path).st_mtime_ns, os.lstat(path).st_ctime_ns)
             for path in installed.snapshot(directory)}
    return found


def commands(stage):
    """Returns commands, and whether there are receipts before them."""
    kept = stage.root / "kept"
    return [
        (("morvane-verify",), True),
        (("morvane-verify", stage.app), True),
        (("morvane-verify", "-C", stage.distribution, "--save"), False),
        (("morvane-remove", "--yes", "app"), True),
        (("morvane-remove", "--yes", "--keep-in", kept, "app"), True),
        (("morvane-install", "-C", stage.distribution, "--plan"), True),
        (("morvane-install", "-C", stage.distribution, "--keep-replaced", kept), True),
        (("morvane-install", "-C", stage.distribution), False),
    ]


def races(number):
    """Yields what is wrong with one of the commands, and None for each run."""
    with Stage() as stage:
        command, with_receipts = commands(stage)[number]
        stage.restore(with_receipts)
        done, calls = stage.run_with(":", 0, command)
        if done is not None and done.returncode == SKIPPED:
            print("skipped: no process can be traced here")
            sys.exit(SKIPPED)
        if done is None or done.returncode not in (0, 1):
            yield f"{command}: {done}"
            return
        stride = max(1, calls // SAMPLE)
        makes_receipt = command[0] == "morvane-install" and "--plan" not in command
        deeds = DEEDS if makes_receipt else DEEDS | ENDLESS
        for position, (name, deed) in enumerate(deeds.items()):
            for before in range(1 + position * 7 % stride, calls + 1, stride):
                stage.restore(with_receipts)
                done, _ = stage.run_with(deed, before, command)
                yield None
                for problem in stage.problems(done):
                    said = "" if done is None else f"\n{done.stdout}{done.stderr}"
                    yield f"{command[0]} {command[1:]} {before} of {calls}, {name}: {problem}{said}"


def main():
    installed.end_after([functools.partial(races, number) for number in range(8)], os.cpu_count())


if __name__ == "__main__":
    main()
