#!/usr/bin/env python3
"""Installs made-up distributions, by make alone or with receipts at once, verifies them, changes one
thing, verifies that, and removes them: verify must tell of just what was changed, and what lay there
before must be back but for what remove names.

    installed_random.py BUILD_DIRECTORY [FIRST LAST]

A seed is a distribution and a change; FIRST and LAST choose the seeds.
"""

import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import stat
import subprocess
import sys
import traceback

import installed

MODES = [0o644, 0o755, 0o600, 0o444, 0o4755, 0o2755, 0o711, 0o640]
DIRECTORY_MODES = [0o755, 0o700, 0o750, 0o2755, 0o775]


def members(rng, names):
    """Returns what an archive holds: a tree of these names."""
    made, files, directories = {}, [], [""]
    for name in names:
        path = rng.choice(directories) + name
        what = rng.random()
        if what < 0.3:
            made[path] = installed.Member(mode=rng.choice(DIRECTORY_MODES))
            directories.append(path + "/")
        elif what < 0.4 and files:
            target = os.path.relpath(rng.choice(files), os.path.dirname(path) or ".")
            made[path] = installed.Member(mode=0o777, link=target)
        elif what < 0.45 and files:
            target = rng.choice(files)
            made[path] = installed.Member(mode=made[target].mode, hard_link=target)
        else:
            made[path] = installed.Member(rng.randbytes(rng.choice([0, 1, 20, 5000])),
                                          mode=rng.choice(MODES))
            files.append(path)
            if rng.random() < 0.15:  # make deals with the name up to the blank
                made[path + " copy"] = installed.Member(b"a blank in its name", mode=0o644)
    if not files:
        made["only"] = installed.Member(b"file")
    return made


def products(rng, host):
    names = [f"n{number}" for number in range(12)]
    made = []
    for number in range(rng.randrange(1, 4)):
        shared = made and rng.random() < 0.5
        own = rng.sample(names, rng.randrange(2, 9))
        directory = made[0].directory if shared else host.opt / f"d{number}"
        if shared:
            own = [f"{name}-{number}" for name in own]
        parts = {}
        if rng.random() < 0.5:
            parts = {"program": "mkdir -p ../made; date > ../made/by-$(PRODUCT_NAME)"}
        product = installed.Product(f"p{number}", directory, members(rng, own),
                                    owner=rng.choice(installed.OWNERS),
                                    access=rng.random() < 0.7, parts=parts)
        if shared:
            common = [name for name, member in made[0].members.items()
                      if member.content is None and not member.link and not member.hard_link]
            for name in common[:2]:
                product.members[name] = installed.Member(mode=0o755)
                product.members[f"{name}/of-p{number}"] = installed.Member(b"shared directory")
        if rng.random() < 0.3:
            product.members["in-common"] = installed.Member(rng.choice([b"one", b"other"]))
        made.append(product)
    if rng.random() < 0.4:
        made.append(patch(rng, made[0]))
    return made


def patch(rng, original):
    """Returns a patch that brings some files of its original anew, and one more."""
    files = [name for name, member in original.members.items()
             if member.content is not None and name != "install/Makefile" and " " not in name]
    linked = {member.hard_link for member in original.members.values()}
    changed = {name: installed.Member(b"patched", mode=0o644)
               for name in rng.sample(files, min(2, len(files))) if name not in linked}
    original.entries += "Patch = 0\n"
    original.asks_directory = False
    return installed.Product(
        original.identifier + "-1", original.directory,
        {**changed, "of-the-patch": installed.Member(b"new")},
        f"Name = {original.identifier}\nPatch = 1\nRequiredPatches = 0\n", original.owner,
        original.access)


def lay_before(rng, made):
    """Puts something into the directories of the products before they come."""
    for product in made:
        if rng.random() < 0.3:
            pathlib.Path(product.directory).mkdir(parents=True, exist_ok=True)
            (pathlib.Path(product.directory) / "before").write_text("not of the product")
            common = [other.members["n1"] for other in made
                      if other.directory == product.directory and "n1" in other.members]
            if all(member.content is None and not member.link and not member.hard_link
                   for member in common):
                (pathlib.Path(product.directory) / "n1").mkdir(exist_ok=True)
                (pathlib.Path(product.directory) / "n1/before").write_text("neither")


def change(rng, entries):
    """Changes one thing. Returns what verify is to say."""
    path = rng.choice(sorted(path for path, line in entries.items()
                             if line[6] != "." and os.path.lexists(path)))
    found = os.lstat(path)
    below = {other: "missing" for other in entries if other.startswith(path + "/")}
    ways = ["remove", "other kind"]
    if stat.S_ISREG(found.st_mode):
        ways += ["append", "same size", "mode"]
    elif stat.S_ISLNK(found.st_mode):
        ways += ["target"]
    else:
        ways += ["mode", "add"]
    if installed.SUPERUSER:
        ways += ["owner", "group"]
    way = rng.choice(ways)
    if way == "same size" and found.st_size == 0:
        way = "append"
    if way in ("append", "same size"):
        os.chmod(path, 0o600)  # or an ordinary user could not write to it
        with open(path, "r+b") as file:
            first = file.read(1)
            file.seek(0, os.SEEK_END if way == "append" else os.SEEK_SET)
            file.write(b"x" if way == "append" else bytes([first[0] ^ 1]))
        os.chmod(path, found.st_mode & 0o7777)
    elif way == "mode":
        os.chmod(path, found.st_mode & 0o7777 ^ 0o020)
    elif way == "target":
        target = os.readlink(path)
        os.unlink(path)
        os.symlink("./" + target, path)
        os.lchown(path, found.st_uid, found.st_gid)
    elif way == "add":
        pathlib.Path(path, "added").write_text("by somebody")
        return way, {f"{path}/added": "additional"} if entries[path][4] == "new" else {}, path
    elif way in ("owner", "group"):
        os.lchown(path, found.st_uid + (way == "owner"), found.st_gid + (way == "group"))
        if stat.S_ISREG(found.st_mode):
            os.chmod(path, found.st_mode & 0o7777)
    else:
        if stat.S_ISDIR(found.st_mode):
            shutil.rmtree(path)
        else:
            os.unlink(path)
        if way == "remove":
            return way, {path: "missing", **below}, path
        if stat.S_ISDIR(found.st_mode):
            os.symlink("elsewhere", path)
        else:
            os.mkdir(path)
    return way, {path: "differs", **(below if way == "other kind" else {})}, path


def hard_links(path):
    """Returns the paths that are the same file."""
    found = os.lstat(path)
    if not stat.S_ISREG(found.st_mode) or found.st_nlink == 1:
        return []
    done = subprocess.run(["find", pathlib.Path(path).parents[-4], "-inum", str(found.st_ino)],
                          capture_output=True, text=True, check=False)
    return done.stdout.splitlines()


NAMED = re.compile(r"^  (?:removes|keeps|leaves) (.*?): ", re.MULTILINE)
HEAD = re.compile(r"^(\S+) \S.* in (\S+): removes ", re.MULTILINE)


def named_in(output):
    """Returns the absolute paths that remove names."""
    named, directory = set(), None
    directories = {}
    for line in output.splitlines():
        if head := HEAD.match(line):
            directory = directories[head[1]] = head[2]
        elif found := NAMED.match(line):
            # What is said while it is done may be of any of the products.
            named |= {os.path.normpath(f"{each}/{found[1]}") for each in directories.values()}
    return named


def problems_after_removal(before, after, named, entries):
    """Yields what is not as it was and was not named."""
    excused = {above for path in named for above in [path, *map(str, pathlib.Path(path).parents)]}
    for path in sorted(set(before) | set(after)):
        if before.get(path) == after.get(path) or path in excused:
            continue
        if path in before and path in after and before[path][0] == after[path][0] == stat.S_IFDIR \
                and path in entries:
            continue  # the archive has given it a mode and an owner
        if path not in entries and any(path.startswith(each + "/") for each in named):
            continue  # it lies in something that was named
        yield f"{path}: {before.get(path)} became {after.get(path)}"


def play(seed):
    rng = random.Random(seed)
    with installed.Host() as host:
        made = products(rng, host)
        lay_before(rng, made)
        host.configure(made)
        before = installed.snapshot(host.opt)
        blanks = any(" " in name for product in made for name in product.members)
        if rng.random() < 0.5 or blanks:  # which are refused, but make deals with these
            host.make()
            host.verify("-C", host.distribution, "--save", check=0)
        else:
            host.run("morvane-install", "--registry", host.registry, "-C", host.distribution,
                     check=0)
        if wrong := host.differing():
            return [f"not clean: {wrong}"]
        entries = host.entries()
        way, wanted, changed = change(rng, entries)
        still = installed.snapshot(host.opt)
        before = {path: there for path, there in before.items() if path in still}
        found = host.differing()
        same = set(hard_links(changed)) if way in ("append", "same size", "mode", "owner",
                                                   "group") else set()
        if found != {**wanted, **{path: "differs" for path in same}}:
            return [f"{way} {changed}: {found} instead of {wanted}"]
        order = [product.identifier for product in made]
        at_once = rng.random() < 0.5
        output = ""
        for group in [order] if at_once else [[one] for one in reversed(order)]:
            done = host.remove("--yes", *group)
            output += done.stdout
            if done.returncode not in (0, 1) or done.stderr:
                return [f"remove {group}: status {done.returncode}: {done.stderr}"]
        if left := sorted(path.name for path in host.registry.iterdir()):
            return [f"receipts are left: {left}"]
        after = installed.snapshot(host.opt)
        wrong = list(problems_after_removal(before, after, named_in(output) | {changed}, entries))
        return [f"{way} {changed}, {'at once' if at_once else 'one by one'}: {wrong}\n{output}"
                for _ in wrong[:1]]


def outcome(seed):
    try:
        return play(seed)
    except Exception:  # pylint: disable=broad-except  # one seed is not to hide the others
        return [traceback.format_exc()]


def main():
    first, last = map(int, sys.argv[2:]) if len(sys.argv) > 2 else (0, 24)
    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for seed, found in zip(range(first, last), pool.map(outcome, range(first, last))):
            for problem in found:
                failures += 1
                print(f"seed {seed}: {problem}")
    print(f"{last - first} distributions, {failures} failures")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
