#!/usr/bin/env python3
"""Compares the manual pages of morvane-answers with its options and names, and checks the example.

    answers_manual.py BUILD_DIRECTORY
"""

import grp
import os
import pathlib
import pwd
import re
import shutil
import subprocess
import sys
import tempfile

BUILD = pathlib.Path(sys.argv[1]).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[2]
ANSWERS = BUILD / "tests/morvane_answers_without_pauses"
COMMAND = (PROJECT / "man/morvane-answers.1").read_text()
FORMAT = (PROJECT / "man/morvane.answers.5").read_text()


def output(*arguments, directory="."):
    return subprocess.run([ANSWERS, *arguments], capture_output=True, text=True, check=True,
                          cwd=directory).stdout


def undocumented_options():
    for option in re.findall(r"^  (--[a-z-]+|-C)", output("--help"), re.MULTILINE):
        name = option.removeprefix("-")
        if not re.search(rf"^\.(?:It|Op) .*(?<!\w){name}\b", COMMAND, re.MULTILINE):
            yield f"morvane-answers.1 does not have {option}"


def undocumented_names():
    names = (PROJECT / "tools/answers/question_name.h").read_text()
    names = names[:names.index("// Values besides")]
    kinds = (PROJECT / "tools/answers/question_name.cc").read_text()
    for name in [*re.findall(r' = "([a-z-]+)";', names), *re.findall(r'"([a-z]+\.)"', kinds)]:
        if not re.search(rf"^\.It Ic {re.escape(name)} ", FORMAT, re.MULTILINE):
            yield f"morvane.answers.5 does not have {name}"


def refused_examples():
    """Rehearses the example in the sample distribution, for whoever runs this."""
    with tempfile.TemporaryDirectory(prefix="morvane-answers-") as scratch:
        distribution = pathlib.Path(scratch) / "dist"
        distribution.mkdir()
        shutil.copy(BUILD / "morvane.rsc", distribution)
        for description in PROJECT.glob("examples/*.descr"):
            shutil.copy(description, distribution)
            (distribution / f"{description.stem}.tar").write_text("")
        text = (PROJECT / "man/examples/marlpost.answers").read_text()
        text = text.replace("owner = root", f"owner = {pwd.getpwuid(os.geteuid()).pw_name}")
        text = text.replace("group = root", f"group = {grp.getgrgid(os.getegid()).gr_name}")
        (distribution / "example").write_text(text)
        done = subprocess.run([ANSWERS, "check", "--plan", f"--set=root={scratch}", "example"],
                              cwd=distribution, capture_output=True, text=True, check=False)
        if done.returncode != 0 or f"marlpost 1.0 -> {scratch}/marlpost" not in done.stdout:
            yield f"the example is refused:\n{done.stdout}{done.stderr}"


def main():
    faults = [*undocumented_options(), *undocumented_names(), *refused_examples()]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
