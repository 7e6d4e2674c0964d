#!/usr/bin/env python3
"""Compares what the commands say of needs with what the program does, on distributions made at
random.

    needs_agree.py BUILD_DIRECTORY [NUMBER_OF_DISTRIBUTIONS [SEED]]

The prospect of each product is that of "morvane-graph --format=json". The program then is driven
through its questions: without ever asking for a directory it has to configure what is called
installable, without a ring; what is in a ring, with one; and what can never be installed, in no
selection at all.
"""

import grp
import itertools
import json
import os
import pathlib
import pwd
import random
import re
import subprocess
import sys
import tempfile

BUILD = pathlib.Path(sys.argv[1]).resolve()
MESSAGES = pathlib.Path(__file__).resolve().parents[1] / "runs/common/morvane.rsc"
PROGRAM = BUILD / "tests/morvane_without_pauses"
GRAPH = BUILD / "morvane-graph"
COUNT = int(sys.argv[2]) if len(sys.argv) > 2 else 30
SEED = int(sys.argv[3]) if len(sys.argv) > 3 else 1

RING = "product dependencies build a ring"
QUESTION = re.compile(r"Q(29|30|32|34|43|75|100|128|266|270|276|277|289)\b|ASK-(\w)-")
PROMPTS = re.compile(r"(Q29\n|HINT\n|Q(128|270)[^\n]*:\n\([^\n]*\) \n|Q270[^\n]*:\n|"
                     r"Q(30|32)[^\n]* : |Q266[^\n]*\n[^\n]* : \([^()\n]*\) )$")


class Distribution:
    """A few products, in the current directory of a run."""

    def __init__(self, chance, directory):
        self.directory = directory
        self.chance = chance
        self.types = {}  # of each need, by product, part and category
        self.names = {}  # identifiers, by name and version as the questions show them
        self.parts = {}  # parts that ask, by product
        self.products = [f"p{n}" for n in range(chance.randint(2, 4))]
        kinds = []
        for product in self.products:
            original = chance.choice(kinds) if kinds and chance.random() < 0.3 else None
            kinds.append(self.describe(product, original, kinds))

    def describe(self, product, original, others):
        chance = self.chance
        name, category, kind, version, level = (product, chance.choice("ABC"), chance.choice("st"),
                                                chance.randint(1, 3), chance.choice((0, 0, 0, 1)))
        lines = ""
        if original:
            name, category, kind, version, _ = original
            level = 1 + max(other[4] for other in others if other[0] == name)
            levels = chance.sample(range(level), chance.randint(1, level))
            lines = f'RequiredPatches = "{" ".join(map(str, levels))}"\n'
        elif chance.random() < 0.1:
            level, lines = 2, "RequiredPatches = 1\n"
        shown = f"version {version}.0" + (f", patch {level}" if level else "")
        self.names[name, shown] = product
        target = self.directory / "opt" / product
        target.mkdir(parents=True)
        (self.directory / f"{product}.tar").touch()
        (self.directory / f"{product}.descr").write_text(
            f"Name = {name}\nFullName = {product}\nVersion = {version}\nPatch = {level}\n"
            f"Category = {category}\nType = {kind}\nPath = {target}\n"
            f"Owner = {pwd.getpwuid(os.geteuid()).pw_name}\n"
            f"Group = {grp.getgrgid(os.getegid()).gr_name}\n" + lines + self.some_parts(product))
        return name, category, kind, version, level

    def some_parts(self, product):
        chance = self.chance
        lines = ""
        for part in "xy"[:chance.choice((0, 1, 1, 2))]:
            lines += f"Target = {part}\n"
            if chance.random() < 0.3:
                lines += f"Ask = ASK-{part}-\n"
                self.parts.setdefault(product, []).append(part)
            if chance.random() < 0.1:
                lines += "SuppliersElsewhere = 1\n"
            for category in chance.sample("ABCD", chance.choice((0, 1, 1, 1, 2))):
                if category == "D" and chance.random() < 0.8:
                    continue
                lines += f"NeedsCategory = {category}\nNeedsText = text\n"
                types = chance.sample("stu", chance.choice((0, 1, 1, 2)))
                self.types[product, part, category] = types
                for kind in types:
                    lines += (f"NeedsType = {kind}\nNeedsVersion = {chance.choice('00122')}\n"
                              f"NeedsPatch = {chance.choice('0001')}\n"
                              f"NeedsPath = {self.directory / 'empty'}\n")
        return lines


class Stuck(Exception):
    """The program asks for what the distribution does not have."""


class Operator:
    """Answers the questions of one run."""

    def __init__(self, distribution, selection, wants_part, accepts):
        self.distribution = distribution
        self.selection = selection
        self.wants_part = wants_part
        self.accepts = accepts
        self.tried = {}
        self.searched = False

    def run(self):
        """Returns the program's status and standard error; raises Stuck."""
        with tempfile.TemporaryFile() as errors, subprocess.Popen(
                [PROGRAM], cwd=self.distribution.directory, stdin=subprocess.PIPE,
                stdout=subprocess.PIPE, stderr=errors, env={"PATH": "/usr/bin:/bin"}) as program:
            shown, answered = "", 0
            while block := os.read(program.stdout.fileno(), 65536):
                shown += block.decode()
                if not PROMPTS.search(shown, answered):
                    continue
                try:
                    answer = self.answer(shown, shown[answered:])
                except Stuck:
                    program.kill()
                    raise
                if answer is None:  # there is more of the question to come
                    continue
                answered = len(shown)
                program.stdin.write(answer.encode() + b"\n")
                program.stdin.flush()
            status = program.wait()
            errors.seek(0)
            return status, errors.read().decode()

    def answer(self, shown, asked):
        number, part = QUESTION.findall(asked)[-1]
        product = (re.findall(r"P r o d u c t : (\w+)", shown) or [None])[-1]
        if part:
            return "y" if self.wants_part(product, part) else "n"
        match number:
            case "29":
                every = self.distribution.products
                return " ".join(str(every.index(each) + 1) for each in self.selection)
            case "43":
                return "n"
            case "266":
                return self.next_type(product, shown)
            case "270":
                return self.directory(product, shown)  # or nothing, if its proposal is to come
            case "276":
                return "n"
            case "277":
                return self.judge(product, asked)
            case "289":
                raise Stuck("a patch level")
        return ""

    def need(self, product, shown):
        words = re.sub(r"\s+", " ", shown)
        part, category = re.findall(r"Q261 '(\w)', Q262 Q263 '(\w)'", words)[-1]
        return product, part, category

    def next_type(self, product, shown):
        need = self.need(product, shown)
        self.tried[need] = self.tried.get(need, -1) + 1
        return self.distribution.types[need][self.tried[need] % len(self.distribution.types[need])]

    def directory(self, product, shown):
        """Nothing selected will do: another type, or another host, or the end."""
        need = self.need(product, shown)
        if self.distribution.types[need] and shown.endswith(":\n"):
            return None
        description = (self.distribution.directory / f"{product}.descr").read_text()
        part = re.search(rf"^Target = {need[1]}\n(?:Ask.*\n)?(.*)", description, re.MULTILINE)[1]
        if part.startswith("SuppliersElsewhere"):
            self.searched = "taken"
            return str(self.distribution.directory / "elsewhere")
        if self.tried.get(need, 0) + 1 >= len(self.distribution.types[need]):
            raise Stuck(f"{need}")
        self.searched = "refused"
        return str(self.distribution.directory / "empty")

    def judge(self, product, asked):
        searched, self.searched = self.searched, False
        if searched:
            return "y" if searched == "taken" else "n"
        words = re.sub(r"\s+", " ", asked)
        patch = re.findall(r"Q260 '(\w+) (version [^']*)' Q269", words)
        if patch:
            product = self.distribution.names[patch[-1]]
        candidate = re.findall(r"\n\t(\w+)\n", asked)[-1]
        if candidate not in self.distribution.products:  # taken for another part, elsewhere
            return "n"
        return "y" if self.accepts(product, candidate) else "n"


class Claims:
    """What the command says of a distribution."""

    def __init__(self, directory):
        drawn = json.loads(subprocess.run([GRAPH, "--format=json", directory], check=True,
                                          capture_output=True, text=True).stdout)
        nodes = {node["id"]: node for node in drawn["nodes"]}
        self.prospects = {node["product"]: node["prospect"] for node in drawn["nodes"]
                          if "product" in node}
        suppliers = {}
        for edge in drawn["edges"]:
            suppliers.setdefault(edge["from"], set()).add(nodes[edge["to"]].get("product"))
        self.needs = []  # product, part, whether the part asks, suppliers
        for edge in drawn["edges"]:
            start, end = nodes[edge["from"]], nodes[edge["to"]]
            found = {end["product"]} if "product" in end else suppliers.get(edge["to"], set())
            for need in edge["needs"]:
                if not need["elsewhere"]:
                    self.needs.append((start["product"], need.get("part"), need["optional"], found))

    def having(self, *prospects):
        return [product for product, each in self.prospects.items() if each in prospects]

    def is_met(self, product, part):
        possible = set(self.having("installable", "in-ring"))
        return all(found & possible for needer, of, _, found in self.needs
                   if (needer, of) == (product, part))

    def order(self):
        placed = []
        while True:
            ready = [product for product in self.having("installable") if product not in placed and
                     all(found & set(placed) for needer, _, optional, found in self.needs
                         if needer == product and not optional)]
            if not ready:
                return placed
            placed += ready


def yes(*_):
    return True


def no(*_):
    return False


def outcome(distribution, selection, wants_part, accepts):
    """Returns "stuck", or whether a ring was reported; None for any other end."""
    try:
        status, errors = Operator(distribution, selection, wants_part, accepts).run()
    except Stuck:
        return "stuck"
    if status != 0:
        return f"status {status}: {errors}"
    return "ring" if RING in errors else "done"


def subsets(products):
    for size in range(1, len(products) + 1):
        yield from itertools.combinations(products, size)


def disagreements(distribution):
    claims = Claims(distribution.directory)
    possible, order = claims.having("installable", "in-ring"), claims.order()
    earlier = lambda product, candidate: (candidate in order and product in order and
                                          order.index(candidate) < order.index(product))

    if possible:
        found = outcome(distribution, possible, claims.is_met, yes)
        if found not in ("done", "ring"):
            yield f"{possible} with parts that can be met: {found}"
    if claims.having("in-ring"):
        found = outcome(distribution, possible, no, yes)
        if found != "ring":
            yield f"{possible} without a ring: {found}"
    installable = claims.having("installable")
    if installable and outcome(distribution, installable, no, earlier) != "done":
        # A patch takes the best of those selected: fewer leave it the one that it can do with.
        for product in installable:
            if not any(outcome(distribution, selected, no, yes) == "done"
                       for selected in subsets(installable) if product in selected):
                yield f"{product} is not installable"
    for product in possible:
        for part in distribution.parts.get(product, []):
            if not claims.is_met(product, part):
                found = outcome(distribution, possible, lambda *each: each == (product, part), yes)
                if found != "stuck":
                    yield f"part {part} of {product} can be met: {found}"
    for selected in subsets(distribution.products):
        if set(selected) - set(possible):
            found = outcome(distribution, selected, no, yes)
            if found != "stuck":
                yield f"{selected} can be installed: {found}"


def write_messages(path):
    text = MESSAGES.read_text()
    token = lambda found: f"{found[1]} Q{int(found[1])}{found[2] or ''}"
    text = re.sub(r"^(\d{3}) <.*?>(\\n)?$", token, text, flags=re.MULTILINE)
    text = re.sub(r"^035 .*", "035 HINT", text, flags=re.MULTILINE)
    text = re.sub(r"^075 .*", "075 Q75 %s", text, flags=re.MULTILINE)
    machine = os.uname().machine[:4]
    text = text.replace("@SYSTEM@", os.uname().sysname).replace("@MACHINE@", machine)
    path.write_text(text)


def main():
    chance = random.Random(SEED)
    faults, seen = 0, {"installable": 0, "in-ring": 0, "never": 0}
    with tempfile.TemporaryDirectory(prefix="morvane-needs-") as scratch:
        for number in range(COUNT):
            directory = pathlib.Path(scratch) / str(number)
            directory.mkdir()
            (directory / "empty").mkdir()
            write_messages(directory / "morvane.rsc")
            distribution = Distribution(chance, directory)
            for prospect in Claims(directory).prospects.values():
                seen[prospect] += 1
            for fault in disagreements(distribution):
                faults += 1
                print(f"distribution {number} of seed {SEED}: {fault}")
                if faults == 1:
                    for path in sorted(directory.glob("*.descr")):
                        print(f"{path.name}:\n{path.read_text()}")
    print(f"{COUNT} distributions: {seen}")
    sys.exit(1 if faults or not all(seen.values()) else 0)


if __name__ == "__main__":
    main()
