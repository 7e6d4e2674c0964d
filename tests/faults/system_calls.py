#!/usr/bin/env python3
"""The Nth system call goes wrong, for each N, counted over the program and all its commands: it
fails, reads or writes but a byte, or a signal arrives with it.

    system_calls.py BUILD_DIRECTORY [--all] [CALL ...]
    system_calls.py BUILD_DIRECTORY CALL FAULT N

The first goes through the faults of those calls, of all calls where none is named; the second plays
a single run and shows it. A signal alone strikes the process that makes the call, with "-group" the
whole process group.
"""

import errno
import os
import re
import shutil
import subprocess
import sys
import time

import session

SIGNALS = ["SIGKILL", "SIGTERM", "SIGHUP", "SIGINT", "SIGQUIT", "SIGSTOP"]
FAULTS = {
    "open": ["ENOENT", "EACCES", "EMFILE", "EIO", "ENOSPC"],
    "read": ["EIO", "EINTR", "short"],
    "write": ["ENOSPC", "EIO", "EINTR", "short"],
    "close": ["EIO", "ENOSPC"],
    "list": ["EIO", "ENOMEM"],
    "stat": ["EACCES", "EIO"],
    "access": ["EACCES", "EIO"],
    "unlink": ["EACCES", "EROFS"],
    "mkdir": ["EACCES", "ENOSPC"],
    "change": ["EPERM", "EIO"],
    "truncate": ["EIO"],
    "lock": ["ENOLCK", "EINTR"],
    "directory": ["EACCES", "ENOENT"],
    "memory": ["ENOMEM"],
    "pipe": ["EMFILE"],
    "process": ["EAGAIN", "ENOMEM"],
    "execute": ["EACCES", "ENOMEM"],
    "wait": ["EINTR"],
    "any": SIGNALS + [name + "-group" for name in SIGNALS],
}
HARMLESS = ["short", "SIGSTOP", "SIGSTOP-group"]  # nobody may notice these
SAMPLE = 4  # runs of a fault, where not all are wanted
RESULTS = ["install.mk", "app.dat", "base.dat", "fix.dat", "kept.dat"]
EARLIER = b"left by an earlier run\n"
LEFT_OUT = {"tmp", "program", "tracer", "struck"}  # of what a stage holds

# By which of its messages the screen tells that something is not as it should be.
TELLING = [b"<%d " % number for number in (95, 97, 98, 101, 102, 103, 114, 123, 124, 131, 133, 146)]
TELLING.append(b"Cannot find resource file")

# What looks like an honest answer: a product without a description, a file that is not for this
# user, a place that cannot be looked at and counts as empty, a name that the host does not know. The
# dialogue then goes another way, for all to see.
HONEST = re.compile(r"open ENOENT .*\.descr$|access (EACCES|EIO) |stat EACCES |"
                    r".* (\d+=)?/etc/(nsswitch\.conf|passwd|group)$")

# Makes "$0/tmp" the /tmp of what runs then, and of that alone. The stage "$0" keeps its name there.
ENTER = ('mount --bind "$0" "$0/tmp/${0##*/}" && mount --rbind "$0/tmp" /tmp && cd "$0/dist" && '
         'exec %s "$@"')


def private_tmp():
    """Returns the command that gives the one behind it a /tmp of its own; nothing where the host
    does not let it."""
    if os.geteuid() == 0:
        command = ["unshare", "--mount", "sh", "-c", ENTER % ""]
    else:
        again = f"unshare --map-user={os.geteuid()} --map-group={os.getegid()}"
        command = ["unshare", "--map-root-user", "--mount", "sh", "-c", ENTER % again]
    with Stage(None, []) as stage:
        allowed = subprocess.run([*command, stage.root, "true"], stderr=subprocess.DEVNULL,
                                 check=False).returncode == 0
    return command if allowed else []


class Stage(session.Stage):
    """A stage with what an earlier run left, and with a tracer for the program."""

    def __init__(self, build, private):
        super().__init__("program")
        for name in RESULTS:
            (self.distribution / name).write_bytes(EARLIER)
        (self.root / "tmp" / self.root.name).mkdir(parents=True)
        (self.root / "tmp").chmod(0o1777)
        if build is None:
            return
        # The build directory may lie in the /tmp that is not seen any more.
        tracer = shutil.copy(build / "tests/system_calls", self.root / "tracer")
        self.program = [shutil.copy(build / "tests/morvane_without_pauses", self.root / "program")]
        self.entering = [*private, self.root] if private else []
        self.tracing = [tracer, self.report]
        if private:
            self.scratch_directory = self.root / "tmp"

    def play_with(self, call, fault, number):
        """Plays the session with that fault. Returns whether it ended in time."""
        name, _, group = fault.partition("-")
        if name.startswith("SIG"):
            what = ["group" if group else "signal", session.signal.Signals[name].value]
        else:
            what = ["short", 1] if name == "short" else ["error", getattr(errno, name)]
        before = [*self.entering, *self.tracing, call, number, *what]
        self.play(before=[str(word) for word in before])
        lines = [line.split(b" ", 4) for line in (self.struck() or b"").splitlines()]
        self.counts = {line[1].decode(): int(line[2]) for line in lines if line[0] == b"count"}
        self.victim = next((line[1:] for line in lines if line[0] == b"struck"), None)
        return bool(self.counts)

    def left(self):
        """Returns everything in the distribution and beside it, in names that every run shares."""
        found = {}
        for path, (*state, content) in session.run_case.snapshot(self.root).items():
            path = path.relative_to(self.root)
            if path.parts[0] not in LEFT_OUT:
                found[path] = (*state, content and self.host.to_case(content))
        return found


def judge(stage, ended, fault, undisturbed):
    """Returns what is wrong with a run that the fault struck."""
    if not ended:
        return [f"it had not ended after {time.time() - stage.started:.0f} seconds"]
    call, pid, _, thing = stage.victim
    program_struck = int(pid) == stage.child.pid or fault.endswith("-group")
    killed = fault.startswith("SIGKILL") and program_struck
    signals = [session.signal.Signals[fault.partition("-")[0]]] if fault.startswith("SIG") else []
    lost = call == b"write" and program_struck  # it may be the farewell
    found = stage.problems(ended, signals, scratch_may_stay=killed, farewell=not lost)
    # An interrupt that comes as a command is started is lost: the program leaves it to the command,
    # which is not there yet to hear it.
    interrupt = fault.startswith(("SIGINT", "SIGQUIT"))
    starting = interrupt and program_struck and call in (b"memory", b"process")
    # What a shell has started outlives it where the interrupt strikes the shell alone.
    orphan = interrupt and not program_struck and call in (b"process", b"wait")
    # While the program waits for a command, it leaves interrupts to that.
    ends_it = fault.endswith("-group") or fault in ("SIGKILL", "SIGTERM", "SIGHUP")
    is_due = program_struck and ends_it and fault not in HARMLESS and not starting
    if is_due and stage.status != -signals[0]:
        found.append(f"the signal does not end it: status {stage.status}")

    told = (stage.errors or any(text in stage.output for text in TELLING) or
            (program_struck and HONEST.match(f"{call.decode()} {fault} {thing.decode()}")))
    same = stage.left() == undisturbed
    if stage.status == 0 and not same and not told:
        found.append("something else comes out than without the fault, and nobody is told")
    input_struck = program_struck and call == b"read" and thing.startswith(b"0=")
    if stage.status == 1 and not told and not input_struck:
        found.append("it ends, and nobody is told why")
    if fault in HARMLESS and (stage.status != 0 or stage.errors or not same):
        found.append(f"status {stage.status}, on standard error {stage.errors!r}, "
                     f"what is left {'is' if same else 'differs from'} that of other runs")
    for name in RESULTS:
        half = stage.read(name) != EARLIER and not stage.is_complete(name)
        there = (stage.distribution / name).exists()
        told_of = name.encode() in stage.errors + stage.output
        if half and there and not told_of and not (killed or starting or orphan):
            found.append(f"{name} is half-written, and nobody is told")
    return found


def single_run(build, private, call, fault, number):
    undisturbed, _ = undisturbed_run(build, private)
    with Stage(build, private) as stage:
        ended = stage.play_with(call, fault, number)
        print(stage.output.decode(errors="replace"))
        print("on standard error:", stage.errors)
        print("struck:", stage.victim, "status:", stage.status, "scratch files:", stage.scratch)
        print("differs:", [str(path) for path in stage.left().keys() | undisturbed.keys()
                           if stage.left().get(path) != undisturbed.get(path)])
        found = judge(stage, ended, fault, undisturbed)
        sys.exit("\n".join(found) if found else 0)


def undisturbed_run(build, private):
    """Returns what a run without a fault leaves, and how many calls it makes."""
    with Stage(build, private) as stage:
        ended = stage.play_with("any", "EIO", 0)
        if not stage.report.exists() or stage.status == session.run_case.SKIPPED:
            print("skipped: no process can be traced here")
            sys.exit(session.run_case.SKIPPED)
        found = session.untouched(stage, ended)
        if found:
            sys.exit("\n".join(found))
        return stage.left(), stage.counts | {"any": sum(stage.counts.values())}


def steps(call, fault, count, every):
    """Returns the numbers of the calls that the fault is to strike."""
    stride = 1 if every else max(1, count // SAMPLE)
    first = FAULTS[call].index(fault) * 7 % stride  # so that each fault strikes other calls
    return range(1 + first, count + 1, stride)


def main():
    session.signal.signal(session.signal.SIGPIPE, session.signal.SIG_IGN)
    every = "--all" in sys.argv
    build, *chosen = [word for word in sys.argv[1:] if word != "--all"]
    build = session.pathlib.Path(build).resolve()
    private = private_tmp()
    if len(chosen) == 3 and chosen[2].isdigit():
        single_run(build, private, *chosen)
    undisturbed, counts = undisturbed_run(build, private)
    results = session.Sweep()
    remarks = []

    def strike(step):
        call, fault, number = step
        with Stage(build, private) as stage:
            ended = stage.play_with(call, fault, number)
            if stage.victim is not None:  # there may be fewer calls in this run
                what = f"{call} {fault} {number} ({b' '.join(stage.victim).decode()})"
                results.note(what, judge(stage, ended, fault, undisturbed))

    for call in chosen or FAULTS:
        count = counts.get(call, 0)
        tried = []
        for fault in FAULTS[call]:
            before = results.runs
            results.all(strike, [(call, fault, n) for n in steps(call, fault, count, every)])
            tried.append(f"{fault} {results.runs - before}")
        remarks.append(f"{call}: {count} calls; runs: {', '.join(tried)}")
    results.finish(f"with {'a /tmp of its own' if private else 'the /tmp of all'}", *remarks)


if __name__ == "__main__":
    main()
