#!/usr/bin/env python3
"""Receipts are made, and products verified and removed, while the Nth system call fails, for each N.
No receipt tells what is not so; a verification that saw less than all says so; whatever stays of a
product without a receipt is named; and the next run does what was left.

    installed_faults.py BUILD_DIRECTORY [--all]
"""

import errno
import os
import shutil
import signal
import subprocess
import sys

import installed

EVERY = "--all" in sys.argv
TRACER = installed.BUILD / "tests/system_calls"
SKIPPED = 77
SAMPLE = 4  # runs of a fault, where not all are wanted
FAULTS = {
    "open": ["EACCES", "EMFILE", "EIO", "ENOSPC"],
    "read": ["EIO"],
    "write": ["ENOSPC", "EIO"],
    "close": ["EIO"],
    "list": ["EIO"],
    "stat": ["EACCES", "EIO"],
    "unlink": ["EACCES", "EROFS"],
    "rename": ["EIO"],
    "mkdir": ["ENOSPC"],
    "change": ["EPERM"],
    "truncate": ["EIO"],
    "process": ["EAGAIN"],
    "any": ["SIGKILL", "SIGTERM"],
}


def strike(host, call, number, fault, *command):
    """Runs a command of which a call fails. Returns how it ended, and how many calls there were."""
    report = host.root / "report"
    report.write_text("")
    what = ["signal", signal.Signals[fault].value] if fault.startswith("SIG") else [
        "error", getattr(errno, fault)]
    done = subprocess.run([TRACER, report, call, str(number), *map(str, what),
                           installed.BUILD / command[0], "--registry", host.registry, *command[1:]],
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                          timeout=installed.TIMEOUT, cwd=host.root, env=installed.ENVIRONMENT)
    counts = {}
    for line in report.read_text().splitlines():
        if line.startswith("count "):
            counts[line.split()[1]] = int(line.split()[2])
    return done, counts


class Stage(installed.Host):
    """Products that need each other, a patch, and changed files; as often as wanted."""

    def __init__(self):
        super().__init__()
        base = installed.Product("base", self.opt / "base", {
            "d": installed.Member(mode=0o755), "d/a": installed.Member(b"a"),
            "d/b": installed.Member(b"b"), "l": installed.Member(mode=0o777, link="d/a")},
            "Name = base\nPatch = 0\n", parts={"program": "touch ../made"})
        base.asks_directory = False
        patch = installed.Product("base-1", self.opt / "base", {"d/a": installed.Member(b"new")},
                                  "Name = base\nPatch = 1\nRequiredPatches = 0\n")
        self.configure([base, patch])
        self.make()
        self.saved = self.root / "saved"

    def save(self):
        (self.saved).mkdir()
        for name in ("opt", "registry"):
            if (self.root / name).exists():
                subprocess.run(["cp", "-a", self.root / name, self.saved / name], check=True)

    def restore(self):
        for name in ("opt", "registry"):
            shutil.rmtree(self.root / name, ignore_errors=True)
            if (self.saved / name).exists():
                subprocess.run(["cp", "-a", self.saved / name, self.root / name], check=True)


def steps(counts):
    counts = counts | {"any": sum(counts.values())}
    for call, faults in FAULTS.items():
        count = counts.get(call, 0)
        stride = 1 if EVERY else max(1, count // SAMPLE)
        for position, fault in enumerate(faults):
            for number in range(1 + position * 7 % stride, count + 1, stride):
                yield call, number, fault


def sweep(stage, command, judge):
    """Strikes a command at each of its calls. Yields what is wrong, and None for each run."""
    _, counts = strike(stage, "any", 0, "EIO", *command)
    for call, number, fault in steps(counts):
        stage.restore()
        done, _ = strike(stage, call, number, fault, *command)
        yield None
        for problem in judge(done):
            yield (f"{command[0]} {call} {number} {fault}: {problem}; status {done.returncode}\n"
                   f"{done.stdout}{done.stderr}")


def removals():
    """Yields what is wrong with removals."""
    with Stage() as stage:
        if strike(stage, "any", 0, "EIO", "morvane-verify", "--version")[0].returncode == SKIPPED:
            print("skipped: no process can be traced here")
            sys.exit(SKIPPED)
        stage.verify("-C", stage.distribution, "--save", check=0)
        (stage.opt / "base/d/b").write_text("changed")
        (stage.opt / "base/d/more").write_text("not of the product")
        stage.save()
        products = set(stage.entries())
        command = ("morvane-remove", "--yes", "base", "base-1")
        stage.run(command[0], "--registry", stage.registry, *command[1:], check=1)
        wanted = {path: each[4] for path, each in installed.snapshot(stage.opt).items()}

        def judge(done):
            if done.returncode not in (0, 1, 2, 3, 4, -signal.SIGKILL, -signal.SIGTERM):
                yield "no such status"
            left = {path: each[4] for path, each in installed.snapshot(stage.opt).items()}
            for path, content in wanted.items():
                if left.get(path) != content:
                    yield f"{path} is lost"
            if done.returncode == 1 and left != wanted:
                yield f"something is left: {left.keys() - wanted.keys()}"
            if done.returncode in (2, 3, 4) and not done.stderr:
                yield "nobody is told why"
            receipts = len(list(stage.registry.glob("*.receipt")))
            unnamed = [path for path in left.keys() & products - wanted.keys()
                       if not path.endswith(".receipt")]
            if unnamed and not receipts:
                yield f"left, and no receipt tells: {unnamed}"
            if receipts:
                names = [name.split(".")[0] for name in os.listdir(stage.registry)
                         if name.endswith(".receipt")]
                again = stage.remove("--yes", *names)
                left = {path: each[4] for path, each in installed.snapshot(stage.opt).items()
                        if ".receipt." not in path}
                if again.returncode not in (0, 1) or left != wanted:
                    yield f"not continued: {left.keys() ^ wanted.keys()}, {again.stderr}"

        yield from sweep(stage, command, judge)


def saves():
    """Yields what is wrong with receipts that are made afterwards."""
    with Stage() as stage:
        stage.save()
        stage.verify("-C", stage.distribution, "--save", check=0)
        wanted = entries(stage)
        command = ("morvane-verify", "-C", stage.distribution, "--save")

        def judge(done):
            made = entries(stage)
            for path, line in made.items():
                if line[6].startswith("install/") and line[5] == "perhaps":
                    continue  # what an interrupted run left of a receipt
                if path not in wanted or without_time(line) != without_time(wanted[path]):
                    yield f"the receipt tells {line} instead of {wanted.get(path)}"
            # An ordinary user need not be able to write the registry.
            is_told = done.stderr and not installed.SUPERUSER
            if done.returncode == 0 and made.keys() != wanted.keys() and not is_told:
                yield f"{made.keys() ^ wanted.keys()}"
            if done.returncode in (2, 3, 4) and not done.stderr:
                yield "nobody is told why"

        yield from sweep(stage, command, judge)


def verifications(changed):
    """Yields what is wrong with verifications, of products that were changed or were not."""
    with Stage() as stage:
        stage.verify("-C", stage.distribution, "--save", check=0)
        if changed:
            (stage.opt / "base/d/b").write_text("changed")
            (stage.opt / "base/d/more").write_text("not of the product")
            (stage.opt / "base/l").unlink()
        stage.save()
        command = ("morvane-verify",)
        wanted = stage.run(command[0], "--registry", stage.registry, check=1 if changed else 0)

        def judge(done):
            if done.returncode not in (0, 1, 2, -signal.SIGKILL, -signal.SIGTERM):
                yield "no such status"
            is_told = done.stderr or "cannot be" in done.stdout or done.returncode < 0
            if not is_told and done.stdout != wanted.stdout:
                yield f"nobody is told of a fault; without it,\n{wanted.stdout}"
            if done.returncode == 0 and (changed or is_told):
                yield "it ends as if all was well"

        yield from sweep(stage, command, judge)


def entries(host):
    """Returns the lines of all receipts, by product and path."""
    found = {}
    for file in host.registry.glob("*.receipt"):
        text = file.read_text()
        for line in text[text.index("\nentries = "):].splitlines()[2:]:
            found[file.name, line.split(" ")[6]] = line.split(" ")
    return found


def without_time(line):
    return [word for number, word in enumerate(line) if number not in (4, 8)]


def main():
    installed.end_after([removals, saves, lambda: verifications(False), lambda: verifications(True)], 2)


if __name__ == "__main__":
    main()
