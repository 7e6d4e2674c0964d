#!/usr/bin/env python3
"""Follows docs/ten-hosts.md to the letter, with ten hosts that ssh knows by the names in it.

    ten_hosts.py BUILD_DIRECTORY
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

import hosts as many
import needs

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/project"))
import tutorial  # noqa: E402

BUILD = pathlib.Path(sys.argv[1]).resolve()
NAMES = [f"board{number:02}" for number in range(1, 11)]


def main():
    why = many.missing()
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    with tempfile.TemporaryDirectory(prefix="morvane-hosts-", dir="/tmp") as scratch:
        root = pathlib.Path(scratch)
        root.chmod(0o755)
        prefix, work = root / "prefix", root / "empty"
        work.mkdir()
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        with many.Hosts(root, NAMES, forks=10) as hosts:
            shutil.copy(BUILD / "morvane-answers", root / "bin")
            subprocess.run([PROJECT / "scripts/collection", work], check=True, stdout=subprocess.DEVNULL,
                           env=hosts.environment)
            environment = {**hosts.environment, "PATH": f"{prefix}/bin:{needs.PATH}", "HERE": str(root / "here")}
            tutorial.follow(PROJECT / "docs/ten-hosts.md", work, environment)


if __name__ == "__main__":
    main()
