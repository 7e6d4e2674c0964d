#!/usr/bin/env python3
"""Records every golden run that ends well with morvane-answers, and plays it in a fresh copy.

    answers_runs.py BUILD_DIRECTORY [CASE...]

What is recorded must look as the run itself, byte for byte, and what is played must leave the same
files and directories.
"""

import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/runs"))
import run_case  # noqa: E402 (it lies beside the golden runs)

BUILD = pathlib.Path(sys.argv[1]).resolve()
ANSWERS = BUILD / "tests/morvane_answers_without_pauses"

def fresh(case, settings):
    root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-run-", dir="/tmp"))
    root.chmod(0o755)
    host = run_case.Host(settings, root)
    run_case.lay_out(case, settings, host)
    return root, host


def hide(host, files):
    return {name: host.to_case(content) for name, content in files.items()}


def in_fresh(case, settings, answers, command, typed_of):
    """Runs `command` in each directory of a fresh copy of the case; returns what came of it."""
    root, host = fresh(case, settings)
    try:
        before = run_case.snapshot(root)
        screens, statuses = [], []
        for directory, suffix in run_case.runs(settings):
            file = answers / f"{case.name}{suffix}"
            if command == "play":  # written for another copy
                file.write_bytes(host.to_host(file.read_bytes()))
            output, _, status = run_case.run(
                [ANSWERS, *command.split(), "-C", pathlib.Path(host.root) / directory, "--", file],
                host, settings, directory, typed_of(host, suffix))
            if command == "record" and file.exists():
                file.write_bytes(host.to_case(file.read_bytes()))
            screens.append(host.to_case(output))
            statuses.append(status)
            if settings["again"]:
                run_case.run(["make", "-f", "install.mk"], host, settings, directory)
        tree, left = run_case.changes(before, run_case.snapshot(root), root)
        return screens, statuses, host.to_case(tree), hide(host, left)
    finally:
        shutil.rmtree(root)


def problems(case, settings, answers):
    recorded = in_fresh(case, settings, answers, "record", lambda host, suffix: host.to_host(
        run_case.expected_typed(case, suffix)))
    wanted = run_case.expectations(case, settings)
    host = run_case.Host(settings, "@DIR@")
    if recorded[1] != wanted["status"]:
        yield f"record ends with {recorded[1]}: {recorded[0][-1][-300:]}"
        return
    if b"".join(recorded[0]) != host.to_case(host.to_host(wanted["screen"])):
        yield "what is recorded looks different"
    kept = [(answers / f"{case.name}{suffix}").exists() for _, suffix in run_case.runs(settings)]
    if not all(kept):
        yield "there is no answer file"
        return
    text = b"".join((answers / f"{case.name}{suffix}").read_bytes()
                    for _, suffix in run_case.runs(settings))
    played = in_fresh(case, settings, answers, "play", lambda host, suffix: b"")
    if set(played[1]) != {0}:
        yield f"play ends with {played[1]}: {b' '.join(played[0]).decode()}\n{text.decode()}"
    elif played[2:] != recorded[2:]:
        yield f"play leaves other files\n{recorded[2].decode()}---\n{played[2].decode()}"
        for name in recorded[3]:
            if played[3].get(name) != recorded[3][name]:
                yield f"{name}\n{recorded[3][name]}\n{played[3].get(name)}"


def check(case, answers):
    settings = run_case.read_settings(case)
    if settings["status"] != "0":
        return case.name, None
    if settings["user"] == "root" and os.geteuid() != 0:
        return case.name, []
    return case.name, list(problems(case, settings, answers))


def main():
    cases = [run_case.RUNS / name for name in sys.argv[2:]] or sorted(
        path.parent for path in run_case.RUNS.glob("*/why"))
    faults, count = [], 0
    with tempfile.TemporaryDirectory(prefix="morvane-answers-", dir="/tmp") as scratch:
        os.chmod(scratch, 0o777)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for name, found in pool.map(lambda case: check(case, pathlib.Path(scratch)), cases):
                if found is None:
                    continue
                count += 1
                faults += [f"{name}: {each}" for each in found]
    print(f"{count} runs")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
