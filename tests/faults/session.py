"""Plays the whole session with something going wrong in it, and checks what must hold all the same.

Every script beside this one is started as

    SCRIPT BUILD_DIRECTORY [--all]

and goes through one kind of fault at its first step, its second, ... until a run passes untouched.
Where that takes long, only some steps are tried unless --all is given; the output says which.
"""

import concurrent.futures
import contextlib
import fcntl
import glob
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "runs"))
import run_case  # noqa: E402  (its directory had to be named first)

CASE = HERE / "whole-session"
TIMEOUT = 60
ENDLESS = 16 << 20  # bytes that no session writes
WORKERS = 3
MAKEFILE_TAIL = b'.c:\n\techo "** compiling $@"\n\t$(CC) $(OPTS) -o ./$@ ./$*.c\n\n\n'
FAREWELL = b"<299 farewell>\n"
# Also that of a run without messages, and of one whose message file could not be read to its end.
FAREWELLS = (FAREWELL, b"BYE! ***\n\n\n", b"No resource #299!\n")
NO_MEMORY = b"morvane: failed to allocate memory"
PRODUCTS = [b"base", b"app", b"fix", b"kept"]  # those of the session, in the order of installation


class Stage:
    """A fresh distribution in DIR/dist, and one run of the program on it."""

    def __init__(self, program, user="either", case=CASE):
        self.program = [str(program)]
        self.settings = {**run_case.read_settings(case), "user": user, "env": []}
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-faults-", dir="/tmp"))
        self.root.chmod(0o755)
        self.host = run_case.Host(self.settings, self.root)
        run_case.lay_out(case, self.settings, self.host)
        self.distribution = self.root / "dist"
        self.report = self.root / "struck"
        self.typed = self.host.to_host((case / "typed").read_bytes())
        self.laid_out = self.files()
        self.status = self.output = self.errors = self.child = None
        self.scratch_directory = "/tmp"
        self.scratch = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.child is not None and self.child.poll() is None:
            self.child.kill()
            self.child.wait()
        subprocess.run(["chmod", "-R", "u+rwX", self.root], check=False)
        shutil.rmtree(self.root)

    def set(self, **variables):
        self.settings["env"] += [f"{name}={value}" for name, value in variables.items()]

    def files(self):
        return {path.name for path in self.distribution.iterdir()}

    def start(self, before=(), **streams):
        """Starts the program, by way of the command `before`, which has to end in its place."""
        self.started = time.time() - 1
        # Whoever started this script may have it ignore signals: nohup, or a shell's "&".
        command = ["/usr/bin/env", "--default-signal", *before, *self.program]
        self.child = run_case.start(command, self.host, self.settings, **streams)
        return self.child

    def ended(self):
        """Notes the exit status, and which scratch files are left; takes those away."""
        self.status = self.child.wait(TIMEOUT)
        for name in glob.glob(f"{self.scratch_directory}/{self.child.pid}.tmp*"):
            if os.lstat(name).st_mtime >= self.started:
                self.scratch.append(name)
                if os.path.isdir(name) and not os.path.islink(name):
                    os.rmdir(name)
                else:
                    os.unlink(name)

    def play(self, typed=None, before=(), stdout=subprocess.PIPE, **streams):
        """Plays the session through pipes. Returns whether it ended in time."""
        streams = {"stdin": subprocess.PIPE, "stderr": subprocess.PIPE, **streams}
        child = self.start(before, stdout=stdout, **streams)
        pieces = {"output": b"", "errors": b""}
        threads = [threading.Thread(target=self.type, args=[self.typed if typed is None else typed])]
        for name, stream in (("output", child.stdout), ("errors", child.stderr)):
            if stream is not None:
                threads.append(threading.Thread(target=self.collect, args=[name, stream, pieces]))
        for thread in threads:
            thread.start()
        deadline = threading.Timer(TIMEOUT, child.kill)
        deadline.start()
        for thread in threads:
            thread.join()
        child.wait()
        self.output, self.errors = pieces["output"], pieces["errors"]
        in_time = deadline.is_alive() and max(len(text) for text in pieces.values()) < ENDLESS
        deadline.cancel()
        self.ended()
        return in_time

    def start_on_terminal(self, columns=80):
        """Starts the program on a terminal of its own; returns the terminal's other end."""
        terminal, slave = pty.openpty()
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        # The shell leads a session: what it opens becomes its terminal.
        opening = f'exec "$0" "$@" <>{os.ttyname(slave)} >&0'
        self.start(["sh", "-c", opening], start_new_session=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self.terminal, self.slave = terminal, slave
        return terminal

    def end_on_terminal(self, hang_up=False):
        """Collects what the program wrote until it ended. Returns whether it ended in time."""
        deadline = time.time() + TIMEOUT
        self.output = b""
        if hang_up:
            os.close(self.slave)
            os.close(self.terminal)
        while not hang_up:
            ended = self.child.poll() is not None
            if select.select([self.terminal], [], [], 0 if ended else 0.01)[0]:
                self.output += os.read(self.terminal, 1 << 16).replace(b"\r\n", b"\n")
            elif ended or time.time() > deadline or len(self.output) > ENDLESS:
                break
        if not hang_up:
            os.close(self.slave)
            os.close(self.terminal)
        in_time = True
        try:
            self.child.wait(TIMEOUT if hang_up else 0.1)
        except subprocess.TimeoutExpired:
            in_time = False
            self.child.kill()
        self.errors = self.child.stderr.read()
        self.child.stderr.close()
        self.ended()
        return in_time

    def type(self, typed):
        if self.child.stdin is None:
            return
        with contextlib.suppress(BrokenPipeError):
            self.child.stdin.write(typed)
        with contextlib.suppress(BrokenPipeError):
            self.child.stdin.close()

    def collect(self, name, stream, pieces):
        """Reads what the program writes; kills it where that is without end."""
        while piece := stream.read1(1 << 16):
            if len(pieces[name]) < ENDLESS:
                pieces[name] += piece
            else:
                self.child.kill()
        stream.close()

    def struck(self):
        """Returns what the fault struck: a command, an allocation; nothing where none did."""
        return self.report.read_bytes() if self.report.exists() else None

    def read(self, name):
        path = self.distribution / name
        return path.read_bytes() if path.is_file() else b""  # a device may be endless

    def products(self):
        """Returns the products that install.mk installs."""
        found = re.search(rb"^products:(.*)$", self.read("install.mk"), re.MULTILINE)
        return found.group(1).split() if found else []

    def problems(self, ended, signals=(), scratch_may_stay=False, farewell=True):
        """Returns what does not hold after the run that must hold after every one."""
        found = []
        if not ended:
            return ["it did not end"]
        if self.status < 0 and -self.status not in signals:
            found.append(f"it died of {signal.Signals(-self.status).name}")
        if self.status > 1:
            found.append(f"its exit status is {self.status}")
        errors, output = self.errors or b"", self.output or b""
        if b"Sanitizer" in errors or b"runtime error" in errors:
            found.append("a sanitizer reports: " + errors.decode(errors="replace"))
        if self.status == 0:
            found += self.missing_results(errors)
        if farewell and self.status in (0, 1) and not output.endswith(FAREWELLS):
            found.append("it ended without its farewell")
        if self.scratch and not scratch_may_stay:
            found.append(f"it left {self.scratch}")
        results = {"install.mk"} | {name + ".dat" for name in ("app", "base", "fix", "kept")}
        strange = self.files() - self.laid_out - results
        if strange:
            found.append(f"it left {sorted(strange)} in the distribution")
        return found

    def missing_results(self, errors):
        """Returns what success promises and is not there."""
        found = []
        if not self.is_complete("install.mk"):
            found.append("status 0, but install.mk is not complete")
        if b"TAR_PATH\t= \n" in self.read("install.mk") and not errors:
            found.append("status 0, but install.mk does not know where the archives are")
        for name in self.products():
            descriptions = [f"{name.decode()}.descr", f"install/{name.decode()}.descr"]
            if not any((self.distribution / one).exists() for one in descriptions):
                continue
            settings = name.decode() + ".dat"
            if b"PRODUCT_PATH = \n" in self.read(settings) and not errors:
                found.append(f"status 0, but {settings} does not know its directory")
            if not self.is_complete(settings) and settings.encode() not in errors:
                found.append(f"status 0, but {settings} is not complete")
        return found

    def is_complete(self, name):
        """Tells whether a result is there from its first line to its last."""
        content = self.read(name)
        if name == "install.mk":
            return content.endswith(MAKEFILE_TAIL)
        return content.startswith(b"# ") and bool(re.search(rb"_VERSION = .*\n\Z", content))


def wait_for_question(child):
    """Waits until the program has read all that was typed and wants more. Returns whether it does."""
    deadline = time.time() + TIMEOUT
    while child.poll() is None and not run_case.waits_for_answer(child):
        if time.time() > deadline:
            return False
        time.sleep(0.002)
    return child.poll() is None


class Sweep:
    """Runs the steps of a sweep side by side and collects what is wrong."""

    def __init__(self):
        self.failures = []
        self.skipped = []
        self.runs = 0
        self.lock = threading.Lock()

    def note(self, what, problems):
        with self.lock:
            self.runs += 1
            self.failures += [f"{what}: {problem}" for problem in problems]

    def all(self, function, items):
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
            for done in [pool.submit(function, item) for item in items]:
                done.result()

    def finish(self, *remarks):
        for line in remarks:
            print(line)
        for line in self.skipped:
            print("skipped:", line)
        for line in self.failures:
            print("FAILED", line)
        print(f"{self.runs} runs, {len(self.failures)} failures")
        sys.exit(1 if self.failures else run_case.SKIPPED if self.skipped else 0)


def untouched(stage, ended):
    """Returns what is wrong with a run in which nothing went wrong."""
    found = stage.problems(ended)
    if stage.status != 0:
        found.append(f"status {stage.status} without a fault")
    if stage.errors:
        found.append(f"on standard error without a fault: {stage.errors!r}")
    if stage.products() != PRODUCTS:
        found.append(f"installs {stage.products()} without a fault")
    return found


TESTS = []


def test(function):
    """Notes a test: it is called with the program and yields what is wrong, in lists."""
    TESTS.append(function)
    return function


class Skipped(Exception):
    """A test cannot be run here; says why."""


def play_tests():
    """Plays the tests that the command line names behind the build directory, or all of them."""
    signal.signal(signal.SIGPIPE, signal.SIG_IGN)
    build, *names = [word for word in sys.argv[1:] if word != "--all"]  # it is all anyway
    program = pathlib.Path(build).resolve() / "tests/morvane_with_faults"
    results = Sweep()

    def play(function):
        try:
            for problems in function(program):
                results.note(function.__name__, problems)
        except Skipped as why:
            results.skipped.append(f"{function.__name__}: {why}")

    chosen = [function for function in TESTS if not names or function.__name__ in names]
    results.all(play, chosen)
    results.finish(f"{len(chosen)} tests")


def main(sweep):
    """Calls `sweep` with the build directory and with whether every step is to be tried."""
    signal.signal(signal.SIGPIPE, signal.SIG_IGN)
    arguments = sys.argv[1:]
    every = "--all" in arguments
    if every:
        arguments.remove("--all")
    if len(arguments) != 1:
        sys.exit(f"usage: {sys.argv[0]} BUILD_DIRECTORY [--all]")
    sweep(pathlib.Path(arguments[0]).resolve(), every)
