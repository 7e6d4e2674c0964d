"""Runs programs, tells what they took, and prints tables."""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "runs"))
from run_case import waits_for_answer  # noqa: E402  (its directory had to be named first)


@dataclass
class Cost:
    wall: float  # seconds
    own_cpu: float  # seconds in user and kernel mode, without those of child processes
    output: bytes  # what it wrote to standard output, or nothing


def run(command, directory, typed=b"", environment=None, keep_output=False):
    """Runs `command` to its end, with `typed` waiting for it in a pipe, and returns its Cost."""
    read_end, write_end = os.pipe()
    os.write(write_end, typed)  # answers of one run fit into a pipe
    os.close(write_end)
    output = tempfile.TemporaryFile() if keep_output else subprocess.DEVNULL
    start = time.perf_counter()
    child = subprocess.Popen(command, cwd=directory, env=environment, stdin=read_end,
                             stdout=output, stderr=subprocess.PIPE)
    os.waitid(os.P_PID, child.pid, os.WEXITED | os.WNOWAIT)
    wall = time.perf_counter() - start
    # Of the dead process itself, in nanoseconds; what wait tells counts its children in.
    own_cpu = int(pathlib.Path(f"/proc/{child.pid}/schedstat").read_text().split()[0]) / 1e9
    os.close(read_end)
    errors = child.communicate()[1]
    if child.returncode != 0 or errors:
        sys.exit(f"{command[0]} ended with {child.returncode}: {errors.decode()}")
    if not keep_output:
        return Cost(wall, own_cpu, b"")
    output.seek(0)
    with output:
        return Cost(wall, own_cpu, output.read())


def peak_before_last_answer(command, directory, typed):
    """Returns the peak memory of `command` itself, in KiB, when it waits for its last answer."""
    *answers, last = typed.splitlines(keepends=True)
    child = subprocess.Popen(command, cwd=directory, stdin=subprocess.PIPE,
                             stdout=subprocess.DEVNULL)
    child.stdin.write(b"".join(answers))
    child.stdin.flush()
    while child.poll() is None and not waits_for_answer(child):
        time.sleep(0.01)
    status = pathlib.Path(f"/proc/{child.pid}/status").read_text()
    child.communicate(last)
    return int(status.split("VmHWM:")[1].split()[0])


def processes_of(command, directory, typed=b"", environment=None):
    """Returns how many processes and threads `command` consists of, itself included."""
    with tempfile.NamedTemporaryFile("r") as log:
        run(["strace", "-f", "-e", "trace=none", "-e", "signal=none", "-o", log.name, *command],
            directory, typed, environment)
        return sum("+++" in line for line in log)


def alternately(repetitions, subjects):
    """Calls each of `subjects` in turn, so many times; returns the results of each by name."""
    results = {name: [] for name in subjects}
    for _ in range(repetitions):
        for name, subject in subjects.items():
            results[name].append(subject())
    return results


def ratios(costs, others):
    """Returns the wall times of one subject divided by those of another, round by round: what else
    the machine does weighs on both alike."""
    return [cost.wall / other.wall for cost, other in zip(costs, others)]


def spread(values, digits=0):
    """Returns "MEDIAN (LEAST-MOST)"."""
    values = sorted(values)
    least, median, most = (f"{value:.{digits}f}"
                           for value in (values[0], statistics.median(values), values[-1]))
    return f"{median} ({least}-{most})"


def print_table(title, columns, rows):
    """Prints a table in the form in which README.md shows it."""
    print(f"\n{title}\n")
    print("| " + " | ".join(columns) + " |")
    print("|---" * len(columns) + "|")
    for row in rows:
        print("| " + " | ".join(str(cell) for cell in row) + " |")
    sys.stdout.flush()
