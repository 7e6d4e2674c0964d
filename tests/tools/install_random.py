#!/usr/bin/env python3
"""Installs made-up distributions by make, by morvane-install, and by morvane-install with several
jobs: what lies there afterwards must be the same each time, and morvane-verify must find nothing.

    install_random.py BUILD_DIRECTORY [FIRST LAST]

A seed is a distribution; FIRST and LAST choose the seeds.
"""

import concurrent.futures
import grp
import os
import pathlib
import pwd
import random
import sys
import tempfile

import made_distribution
from made_distribution import GROUP, USER, tree

BUILD = pathlib.Path(sys.argv[1]).resolve()
CATEGORIES = ["STORE", "FONT", "READER"]
DIRECTORIES = ["shared", "shared/below", "a", "a/b/c"]
NAMES = ["lib/a", "lib/b", "bin/run", "doc/x/y", "top", "lib/deep/er/file"]

# What parts do: make files, link, change what the archive brought, read what a supplier has.
PARTS = [
    "\tmkdir -p ../made && echo $(PRODUCT_VERSION) > ../made/version\n",
    "\tmkdir -p ../made; ln -sf ../install ../made/link\n",
    "\tdate > /dev/null; chmod 700 ../lib 2>/dev/null || :\n",
    "\ttest ! -w ../top || echo more >> ../top\n",
    "\tmkdir -p ../made; cat $(STORE_PATH)/top > ../made/of-store 2>/dev/null || :\n",
]


def members(rng, identifier):
    found = {}
    for name in rng.sample(NAMES, rng.randrange(1, len(NAMES))):
        content = f"{identifier} {name}\n" * rng.randrange(1, 40)
        found[name] = (rng.choice([0o644, 0o600, 0o755, 0o444, 0o640, 0o777]), content)
    if rng.random() < 0.4:
        found["empty/"] = (rng.choice([0o755, 0o700, 0o2755]), "")
    if rng.random() < 0.4:
        found["link"] = f"-> {rng.choice(sorted(set(found) - {'empty/'}))}"
    return found


def owners(rng):
    """Returns an owner and a group that whoever runs this can give files to."""
    if os.geteuid() != 0:
        return USER, grp.getgrgid(rng.choice([os.getegid(), *os.getgroups()])).gr_name
    users = [entry.pw_name for entry in pwd.getpwall()][:5]
    return rng.choice(users), rng.choice([GROUP, "daemon", "bin"])


def lay_out(seed, root):
    rng = random.Random(seed)
    made = made_distribution.Distribution(BUILD, root)
    for number in range(rng.randrange(4, 9)):
        identifier = f"p{number}"
        own = root / "opt" / identifier
        described = number < len(CATEGORIES) or rng.random() < 0.8
        # What is not described hands on files of the whole directory.
        shared = described and rng.random() < 0.4
        directory = root / "opt" / rng.choice(DIRECTORIES) if shared else own
        parts = rng.sample(["program", "pages", "check"], rng.randrange(3)) if described else []
        makefile = "".join(f"{part}:\n{rng.choice(PARTS)}" for part in parts) if parts else None
        text, answers = "", []
        if number < len(CATEGORIES):
            text = f"Category = {CATEGORIES[number]}\nType = t\n"
        elif parts and rng.random() < 0.6:  # what the last part needs
            needed = rng.randrange(len(CATEGORIES))
            text = f"NeedsCategory = {CATEGORIES[needed]}\nNeedsType = t\n"
            answers = [f"supplier.{parts[-1]}.{CATEGORIES[needed]} = p{needed}"]
        owner, group = owners(rng)
        made.add(identifier, members(rng, identifier), makefile, parts, text, answers=answers,
                 described=described, directory=directory, owner=owner,
                 group=group, access=rng.choice(["yes", "no"]))
    return made


def outcome(seed, scratch):
    root = scratch / str(seed)
    made = lay_out(seed, root)
    made.configure()
    ways = [("make", made.make), ("one job", made.install),
            ("three jobs", lambda: made.install("--jobs=3"))]
    wanted = None
    for name, way in ways:
        made.clear()
        done = way()
        if done.returncode != 0:
            return f"{name}: status {done.returncode}: {done.stdout}{done.stderr}"
        left = tree(made.dist, root / "opt")
        if wanted is not None and left != wanted:
            return f"{name}: differs: {[path for path in left.keys() | wanted.keys() if left.get(path) != wanted.get(path)]}"
        wanted = left
    verified = made.run("morvane-verify", f"--registry={made.registry}",
                        *sorted({path.parent.parent for path in root.glob("opt/**/*.receipt")}))
    if verified.returncode != 0:
        return f"verify: status {verified.returncode}: {verified.stdout}{verified.stderr}"
    return ""


def main():
    first, last = map(int, sys.argv[2:]) if len(sys.argv) > 2 else (0, 6)
    faults = 0
    with tempfile.TemporaryDirectory(prefix="morvane-install-", dir="/tmp") as scratch:
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            seeds = range(first, last)
            for seed, fault in zip(seeds, pool.map(
                    lambda seed: outcome(seed, pathlib.Path(scratch)), seeds)):
                if fault:
                    print(f"seed {seed}: {fault}")
                    faults += 1
    print(f"{last - first} distributions, {faults} faults")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
