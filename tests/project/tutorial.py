#!/usr/bin/env python3
"""Follows docs/first-distribution.md, or another tutorial, to the letter.

    tutorial.py BUILD_DIRECTORY [TUTORIAL]

Blocks marked "sh" are run, one after the other, in an empty directory. A block "answers" behind one
is typed to its last command: the word that begins each line, Enter for an empty one. A block
"output" behind one is what it must print, each line of a block "lines" is part of what it prints, though
blanks may be wider there. Nothing to paste holds a tab: an interactive shell would complete a name
instead.
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

PROJECT = pathlib.Path(__file__).resolve().parents[2]
TUTORIAL = PROJECT / "docs/first-distribution.md"
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
SKIPPED = 77
TIMEOUT = 300


def typed(answers):
    words = [line.split()[0] for line in answers.splitlines()]
    own = {"Enter": "", "USER": pwd.getpwuid(os.getuid()).pw_name, "GROUP": grp.getgrgid(os.getegid()).gr_name}
    return "".join(own.get(word, word) + "\n" for word in words)


def run(commands, answers, work, environment):
    """Runs a block where the one before it ended, and returns what it printed."""
    here = pathlib.Path(environment["HERE"])
    done = subprocess.run(["sh", "-euc", commands + '\npwd >"$HERE"'], input=answers, text=True,
                          cwd=here.read_text().rstrip("\n") if here.exists() else work,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment,
                          timeout=TIMEOUT, check=False)
    if done.returncode != 0:
        sys.exit(f"{commands}\n{done.stdout}\nended with {done.returncode}")
    return done.stdout


def follow(tutorial, work, environment):
    """Types the blocks of a tutorial. Returns what it typed, block by block, with what came of it."""
    session = []
    blocks = BLOCK.findall(tutorial.read_text())
    for number, (kind, commands) in enumerate(blocks):
        if kind != "sh":
            continue
        if "\t" in commands:
            sys.exit(f"{commands}\nholds a tab")
        following = dict(blocks[number + 1:number + 2])
        printed = run(commands, typed(following.get("answers", "")), work, environment)
        session.append((commands, printed))
        wanted = following.get("output")
        if wanted is not None and printed != wanted:
            sys.exit(f"{commands}\nprinted\n{printed}\ninstead of\n{wanted}")
        for line in following.get("lines", "").splitlines():
            if line not in re.sub(" +", " ", printed):
                sys.exit(f"{commands}\nprinted\n{printed}\nwithout\n{line}")
    return session


def leave_registry_alone(prefix, work):
    """Returns a directory of commands that come before those installed: receipts stay in `work`."""
    own = work / "bin"
    own.mkdir()
    if (prefix / "bin/morvane-install").exists():
        command = own / "morvane-install"
        command.write_text(f'#!/bin/sh\nexec "{prefix}/bin/morvane-install" '
                           f'--registry="{work}/registry" "$@"\n')
        command.chmod(0o755)
    return own


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory(prefix="morvane-tutorial-", dir="/tmp") as scratch:
        work = pathlib.Path(scratch)
        prefix = work / "prefix"
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        own = leave_registry_alone(prefix, work)
        path = f"{own}:{prefix}/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"
        for command in ("morvane-lint", "dot"):
            if not shutil.which(command, path=path):
                print(f"skipped: there is no {command}")
                sys.exit(SKIPPED)
        follow_in = work / "empty"
        follow_in.mkdir()
        tutorial = PROJECT / "docs" / sys.argv[2] if len(sys.argv) > 2 else TUTORIAL
        follow(tutorial, follow_in, {"PATH": path, "LC_ALL": "C", "HERE": str(work / "here")})


if __name__ == "__main__":
    main()
