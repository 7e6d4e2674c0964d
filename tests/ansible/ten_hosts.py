#!/usr/bin/env python3
"""Follows docs/ten-hosts.md to the letter, with ten hosts that ssh knows by the names in it.

    ten_hosts.py [--accept] BUILD_DIRECTORY

What Ansible prints on the way is compared with the session in docs/sessions. --accept writes text and
picture of that instead.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import hosts as many
import needs

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/project"))
import recorded_sessions  # noqa: E402
import tutorial  # noqa: E402

NAMES = [f"board{number:02}" for number in range(1, 11)]
SHOWN = "ansible-playbook -i hosts site.yml"


def follow(build, root):
    """Returns the session: what was typed, and what came of it."""
    prefix, work = root / "prefix", root / "empty"
    work.mkdir()
    subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
    with many.Hosts(root, NAMES, forks=10) as hosts:
        for command in ("morvane-answers", "morvane-install"):
            shutil.copy(build / command, root / "bin")
        subprocess.run([PROJECT / "scripts/collection", work], check=True, stdout=subprocess.DEVNULL,
                       env=hosts.environment)
        environment = {**hosts.environment, "PATH": f"{prefix}/bin:{needs.PATH}", "HERE": str(root / "here")}
        return tutorial.follow(PROJECT / "docs/ten-hosts.md", work, environment)


def in_order(printed):
    """Returns what Ansible prints with the lines of hosts in the order of their names."""
    def sort(lines):
        return "".join(sorted(lines.group().splitlines(keepends=True), key=lambda line: line.partition("[")[2]))

    return re.sub(r"(^\w+: \[\w+\]\n)+", sort, printed, flags=re.MULTILINE)


def shown(session):
    """Returns what stands in docs/sessions: the plays, the commands in double brackets."""
    screen = ""
    for commands, printed in session:
        if SHOWN in commands:
            screen += "".join(f"$ [[{line}]]\n" for line in commands.splitlines()) + in_order(printed)
    return screen


def main():
    arguments = sys.argv[1:]
    accepting = arguments[:1] == ["--accept"]
    why = many.missing()
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    with tempfile.TemporaryDirectory(prefix="morvane-hosts-", dir="/tmp") as scratch:
        root = pathlib.Path(scratch)
        root.chmod(0o755)
        screen = shown(follow(pathlib.Path(arguments[accepting]).resolve(), root))
    if not recorded_sessions.is_shown("ten-hosts", screen, accepting):
        sys.exit(1)


if __name__ == "__main__":
    main()
