#!/usr/bin/env python3
"""Records runs of made-up distributions by an operator who types anything, and plays those that end
well: in a fresh copy, and in one with more products. The files must be the same.

    answers_random.py BUILD_DIRECTORY [FIRST LAST]

A seed is a distribution and what is typed; FIRST and LAST choose the seeds.
"""

import collections
import concurrent.futures
import grp
import os
import pathlib
import pwd
import random
import shutil
import subprocess
import sys
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parents[2]
ANSWERS = pathlib.Path(sys.argv[1]).resolve() / "tests/morvane_answers_without_pauses"
USER = pwd.getpwuid(os.geteuid()).pw_name
GROUP = grp.getgrgid(os.getegid()).gr_name
CATEGORIES = ["STORE", "FONT", "READER"]
TYPES = ["small", "large", "x y"]
DIRECTORIES = ["a", "b", "c", *(f"p{number}" for number in range(8))]


def need(rng, category, root):
    yield f'NeedsCategory = {category}\nNeedsText = "a {category}"\n'
    for kind in rng.sample(TYPES, rng.randrange(1, 3)):
        yield f'NeedsType = "{kind}"\nNeedsVersion = {rng.randrange(1, 3)}.0\n'
        if rng.random() < 0.5:
            yield f"NeedsPath = {root}/{rng.choice(['else', 'opt/a', 'opt/b', 'none'])}\n"
        if rng.random() < 0.3:
            yield "NeedsFiles = lib/data\n"


def description(rng, name, root, needs_patches=True):
    yield f"Name = {name}\nVersion = {rng.randrange(1, 3)}.{rng.randrange(3)}\n"
    yield f"Owner = {USER}\nGroup = {GROUP}\n"
    if rng.random() < 0.3:
        yield f"Patch = {rng.randrange(1, 3)}\n"
    if rng.random() < 0.9:
        yield f"Path = {root}/opt/{rng.choice(DIRECTORIES)}\n"
    if rng.random() < 0.6:
        yield f'Category = {rng.choice(CATEGORIES)}\nType = "{rng.choice(TYPES)}"\n'
    if needs_patches and rng.random() < 0.3:
        yield f"RequiredPatches = {rng.choice(['0', '0 1', '1'])}\n"
    if rng.random() < 0.2:
        yield 'NeededTools = "notool"\n'
    for _ in range(rng.randrange(3)):
        yield f"Target = {rng.choice(['program', 'pages', 'x.y'])}\n"
        if rng.random() < 0.5:
            yield 'Ask = "Really?"\n'
        if rng.random() < 0.3:
            yield 'AskAgain = "Again?"\n'
        if rng.random() < 0.2:
            yield "SuppliersElsewhere = 1\n"
        for category in rng.sample(CATEGORIES, rng.randrange(3)):
            yield from need(rng, category, root)


def put(directory, identifier, text):
    (directory / f"{identifier}.descr").write_text("".join(text))


def lay_out(seed, root, more):
    """Makes the distribution of a seed anew, and further products where `more` says so."""
    shutil.rmtree(root, ignore_errors=True)
    rng = random.Random(seed)
    dist = root / "dist"
    dist.mkdir(parents=True)
    messages = (PROJECT / "tests/runs/common/morvane.rsc").read_text()
    system = os.uname()
    (dist / "morvane.rsc").write_text(messages.replace("@SYSTEM@", system.sysname)
                                      .replace("@MACHINE@", system.machine))
    products = [f"p{number}" for number in range(rng.randrange(1, 6))]
    for identifier in products:
        name = identifier if rng.random() < 0.8 else f"p{rng.randrange(3)}"
        put(dist, identifier, description(rng, name, root))
    for name in DIRECTORIES:
        (root / "opt" / name).mkdir(parents=True)
    for place in ("dist", "else", "opt/a"):
        if rng.random() < 0.5:
            (root / place / "install").mkdir(parents=True)
            for number in range(rng.randrange(3)):
                identifier = f"{rng.choice('pi')}{number}"
                put(root / place / "install", identifier, description(rng, identifier, root))
    (root / "else/lib").mkdir(parents=True, exist_ok=True)
    (root / "else/lib/data").write_text("")
    for number in range(3 if more else 0):  # in front, between and behind
        identifier = ["a0", "p2x", "zz"][number]
        put(dist, identifier, description(rng, f"more{number}", root, needs_patches=False))
        products.append(identifier)
    for identifier in products:
        (dist / f"{identifier}.tar").write_text("")


def typed(seed, root):
    rng = random.Random(-seed - 1)
    lines = [" ".join(map(str, rng.sample(range(1, 8), rng.randrange(1, 6)))), ""]
    for _ in range(400):
        other = f"{root}/{rng.choice(['opt/a', 'opt/b/', 'opt/c', 'else', 'new'])}"
        lines += rng.choices(["", "n", "y", other, rng.choice([*TYPES, USER])],
                             [62, 18, 4, 11, 5])
    return "".join(line + "\n" for line in lines)


def run(root, *arguments, answers=""):
    return subprocess.run([ANSWERS, "-C", root / "dist", *arguments], input=answers, text=True,
                          capture_output=True, timeout=120, check=False,
                          env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C"})


def tree(root):
    return {path: path.read_text() if path.is_file() else None for path in root.rglob("*")}


def settings(root):
    return {path.name: path.read_text() for path in (root / "dist").iterdir()
            if path.suffix in (".dat", ".mk")}


def outcome(seed, scratch):
    root, file = scratch / f"{seed}", scratch / f"{seed}.answers"
    lay_out(seed, root, more=False)
    recorded = run(root, "record", file, answers=typed(seed, root))
    if recorded.returncode != 0:
        return "did not end well" if recorded.returncode == 1 else recorded.stderr
    wanted = settings(root)
    # What is made for an answer that is mended later stays: it may be what another answer builds on.
    makes_directories = "<129 path missing>" in recorded.stdout
    for more in (False, True):
        lay_out(seed, root, more)
        before = tree(root)
        played = run(root, "play", file)
        if played.returncode != 0 and tree(root) != before:
            return f"status {played.returncode}, and something was written"
        if played.returncode == 3 and makes_directories:
            return "builds on what was mended"
        if played.returncode != 0:
            return f"status {played.returncode}: {played.stderr}"
        if settings(root) != wanted:
            return f"other files, with more products: {more}"
    return "played"


def main():
    first, last = map(int, sys.argv[2:]) if len(sys.argv) > 2 else (0, 40)
    counts = collections.Counter()
    with tempfile.TemporaryDirectory(prefix="morvane-answers-", dir="/tmp") as scratch:
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            seeds = range(first, last)
            for seed, came in zip(seeds, pool.map(lambda seed: outcome(
                    seed, pathlib.Path(scratch)), seeds)):
                counts[came] += 1
                if came not in ("played", "did not end well", "builds on what was mended"):
                    print(f"seed {seed}: {came}")
    print(counts)
    fine = counts["played"] + counts["did not end well"] + counts["builds on what was mended"]
    sys.exit(0 if fine == last - first and counts["played"] > 0 else 1)


if __name__ == "__main__":
    main()
