#!/usr/bin/env python3
"""Runs morvane-graph as people do: formats, options, statuses, hostile descriptions, settings of a
run, and a picture that is written as a whole or not at all.

    graph_command.py BUILD_DIRECTORY
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

BUILD = pathlib.Path(sys.argv[1]).resolve()
GRAPH = BUILD / "morvane-graph"
WITHOUT_DOT = shutil.which("dot") is None
SVG = "{http://www.w3.org/2000/svg}"

STORE = "Name = Store\nVersion = 1.2\nCategory = STORE\nType = flat\n"
BOARD = ("Name = Board\nVersion = 2\nCategory = BOARD\nTarget = t\nNeedsCategory = STORE\n"
         "NeedsType = flat\nNeedsVersion = 1.2\n")


def run(*arguments, directory=".", **more):
    return subprocess.run([GRAPH, *arguments], cwd=directory, capture_output=True, text=True,
                          timeout=60, check=False, **more)


class GraphTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-graph-")
        self.addCleanup(scratch.cleanup)
        self.directory = pathlib.Path(scratch.name)

    def add(self, identifier, description):
        content = description if isinstance(description, bytes) else description.encode()
        (self.directory / f"{identifier}.descr").write_bytes(content)
        (self.directory / f"{identifier}.tar").touch()

    def drawn(self, *arguments):
        done = run("--format=json", *arguments, directory=self.directory)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        return json.loads(done.stdout)

    def relations(self, *arguments):
        drawn = self.drawn(*arguments)
        names = {node["id"]: node["lines"][0] for node in drawn["nodes"]}
        return {(names[edge["from"]], edge["kind"], names[edge["to"]]) for edge in drawn["edges"]}

    def refused(self, *arguments, **more):
        done = run(*arguments, directory=self.directory, **more)
        self.assertEqual((done.stdout, done.returncode), ("", 2))
        return done.stderr


class Formats(GraphTest):
    def test_json_has_nodes_edges_and_reasons(self):
        self.add("store", STORE)
        self.add("board", BOARD.replace("Target = t\n", 'Target = t\nAsk = "Really?"\n'))
        self.assertEqual(self.drawn(), {
            "nodes": [
                {"id": "product1", "kind": "product", "product": "board",
                 "prospect": "installable", "lines": ["board", "2.0"],
                 "details": "Board (BOARD)"},
                {"id": "product2", "kind": "product", "product": "store",
                 "prospect": "installable", "lines": ["store", "1.2"],
                 "details": "Store (STORE, flat)"}],
            "edges": [
                {"from": "product1", "to": "product2", "kind": "need", "ring": False,
                 "needs": [{"part": "t", "needs": "STORE flat 1.2", "optional": True,
                            "elsewhere": False}]}],
            "hidden": 0})

    def test_kinds_of_nodes(self):
        self.add("store", STORE)
        self.add("stash", STORE.replace("flat", "hashed"))
        self.add("store-1", STORE + "Patch = 1\nRequiredPatches = 0\n")
        self.add("board", BOARD.replace("NeedsType = flat\nNeedsVersion = 1.2\n", "") +
                 "NeedsCategory = BOARD\nNeedsType = t\nNeedsVersion = 3\nNeedsCategory = HOST\n")
        kinds = {node["kind"]: node["lines"] for node in self.drawn()["nodes"]
                 if node["kind"] != "product"}
        self.assertEqual(kinds, {"patch": ["store-1", "1.2, patch 1"],
                                 "choice": ["STORE", "one of"], "host": ["HOST"],
                                 "unmet": ["BOARD", "t 3.0", "nearest: board"]})
        self.assertIn(("store-1", "patch-of", "store"), self.relations())

    def test_dot_is_the_default_and_always_the_same(self):
        self.add("store", STORE)
        done = run(directory=self.directory)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        self.assertTrue(done.stdout.startswith("digraph needs {\n"))
        self.assertEqual(done.stdout, run("--format=dot", str(self.directory)).stdout)

    def test_no_bytes_of_a_description_leave_their_place(self):
        if WITHOUT_DOT:
            self.skipTest("there is no dot")
        hostile = bytes(range(1, 256)).replace(b"\n", b"").replace(b'"', b"")
        words = b'"><script>&lt;&amp;</TD>]];\\' + bytes(range(0x80, 0xa0))
        self.add("a", b"Name = " + words + b'\nFullName = "' + hostile[:70] + b'"\nCategory = ' +
                 words[:49] + b"\nTarget = t\nNeedsCategory = " + words[:49] +
                 b"\nNeedsType = " + words[:40] + b"\nNeedsVersion = 9\n")
        self.add("b<&>'\"\\\n\t\x1b", "Name = B\n")
        self.add("c&lt;]]>", "Name = C\nCategory = C\nTarget = t\nNeedsCategory = C\n")
        json.loads(run("--format=json", directory=self.directory).stdout)
        done = run("--format=svg", directory=self.directory)
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        picture = ElementTree.fromstring(done.stdout)
        texts = ["".join(text.itertext()) for text in picture.iter(f"{SVG}text")]
        self.assertIn("c&lt;]]>", texts)
        self.assertIn("b<&>'\"\\\\n\\t\\033", texts)  # as in C, but for its own backslash
        self.assertEqual([], list(picture.iter(f"{SVG}script")))


class Options(GraphTest):
    def setUp(self):
        super().setUp()
        self.add("a", "Category = A\nTarget = t\nNeedsCategory = B\nNeedsCategory = C\n")
        self.add("b", "Category = B\nTarget = t\nNeedsCategory = C\n")
        self.add("c", "Category = C\n")
        self.add("d", "Category = D\nTarget = t\nNeedsCategory = D\n")

    def test_a_product_with_its_relations(self):
        self.assertEqual(self.relations("--product=b"), {
            ("a", "need", "b"), ("a", "need", "c"), ("b", "need", "c")})
        self.assertEqual(self.relations("--product=b", "--needs"), {("b", "need", "c")})
        self.assertEqual(self.relations("--product=b", "--needed-by"), {("a", "need", "b")})

    def test_needs_that_follow_are_counted(self):
        drawn = self.drawn("--reduce")
        self.assertEqual((len(drawn["edges"]), drawn["hidden"]), (3, 1))
        self.assertEqual([edge["ring"] for edge in drawn["edges"]], [False, False, True])

    def test_wrong_use(self):
        for arguments, why in (
                (["--format=png"], "--format does not take 'png'"),
                (["--needs"], "--needs and --needed-by go with --product"),
                (["--product=e"], "there is no product 'e'"),
                (["-o", ""], "-o does not take ''"),
                (["a", "b"], "one directory at a time"),
                (["missing"], "missing: No such file or directory"),
                (["--run"], ".: no run has written settings here")):
            self.assertIn(f"morvane-graph: {why}\n", self.refused(*arguments))

    def test_a_description_that_is_not_understood_is_named(self):
        self.add("e", "Nmae = E\n")
        done = run(directory=self.directory)
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "morvane-graph: e.descr: not all of it is understood, see "
                                      "what morvane-lint says\n")

    def test_more_products_than_the_program_takes(self):
        for number in range(47):
            (self.directory / f"p{number}.tar").touch()
        done = run("--format=json", directory=self.directory)
        self.assertEqual(done.stderr, "morvane-graph: the program's table holds 50 products: the "
                                      "others are left out\n")
        self.assertEqual(len(json.loads(done.stdout)["nodes"]), 50)


class Output(GraphTest):
    def setUp(self):
        super().setUp()
        self.add("store", STORE)

    def test_a_file_is_written_as_a_whole(self):
        path = self.directory / "picture"
        path.write_text("before")
        old = path.open()
        self.addCleanup(old.close)
        done = run("-o", "picture", directory=self.directory)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))
        self.assertEqual(path.read_text(), run(directory=self.directory).stdout)
        self.assertEqual(old.read(), "before")
        mask = os.umask(0o22)
        os.umask(mask)
        self.assertEqual(path.stat().st_mode & 0o777, 0o666 & ~mask)

    def test_nothing_is_left_where_a_file_cannot_be_written(self):
        for name, why in (("missing/picture", "No such file or directory"),
                          ("directory", "Is a directory"), ("/dev/null", "Invalid argument")):
            (self.directory / "directory").mkdir(exist_ok=True)
            before = sorted(self.directory.iterdir())
            self.assertEqual(self.refused("-o", name), f"morvane-graph: {name}: {why}\n")
            self.assertEqual(sorted(self.directory.iterdir()), before)

    def test_a_full_disk_is_reported(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([GRAPH], cwd=self.directory, stdout=full, text=True,
                                  stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.stderr, done.returncode),
                         ("morvane-graph: the picture: No space left on device\n", 2))

    def test_without_graphviz_its_package_is_named(self):
        (self.directory / "picture").write_text("before")
        why = self.refused("--format=svg", "-o", "picture", env={"PATH": str(self.directory)})
        self.assertEqual(why, "morvane-graph: there is no 'dot' to draw with: install the package "
                              "'graphviz'\n")
        self.assertEqual((self.directory / "picture").read_text(), "before")

    def test_a_dot_that_fails_draws_nothing(self):
        dot = self.directory / "dot"
        dot.write_text("#!/bin/sh\necho '<svg>'\nexit 1\n")
        dot.chmod(0o755)
        why = self.refused("--format=svg", env={"PATH": f"{self.directory}:/usr/bin:/bin"})
        self.assertEqual(why, "morvane-graph: dot could not draw the picture\n")


class Runs(GraphTest):
    def test_what_was_chosen(self):
        self.add("board", BOARD)
        self.add("store", STORE)
        self.add("store-1", STORE + "Patch = 1\nRequiredPatches = 0\n")
        self.add("other", "Name = Other\n")
        head = "# head\nHOST_OS = Linux\n"
        own = "PRODUCT_NAME = {}\nPRODUCT_PATH = {}\nPRODUCT_OWNER = o\nPRODUCT_VERSION = {}\n"
        (self.directory / "store.dat").write_text(head + own.format("Store", "/opt/s", "1.2"))
        (self.directory / "store-1.dat").write_text(
            head + own.format("Store", "/opt/s", "1.2, patch 1"))
        (self.directory / "board.dat").write_text(
            head + own.format("Board", "/opt/b", "2.0") +
            "STORE_NAME = Store\nSTORE_PATH = /opt/s\nSTORE_TYPE = flat\nSTORE_VERSION = 1.2\n"
            "MY_KEYS_NAME = Keys\nMY_KEYS_PATH = /usr/keys\nMY_KEYS_TYPE = (unknown)\n"
            "MY_KEYS_VERSION = -1.-1\n")
        self.assertEqual(self.relations("--run"), {
            ("board", "need", "store"), ("board", "need", "Keys"),
            ("store-1", "patch-of", "store")})
        nodes = {node["lines"][0]: node for node in self.drawn("--run")["nodes"]}
        self.assertEqual(nodes["board"]["path"], "/opt/b")
        self.assertEqual((nodes["Keys"]["kind"], nodes["Keys"]["lines"], nodes["Keys"]["details"]),
                         ("host", ["Keys", "/usr/keys"], "MY_KEYS: (unknown) -1.-1"))
        self.assertEqual(self.relations("--run", "--product=store-1"),
                         {("store-1", "patch-of", "store")})

    def test_settings_that_are_none(self):
        self.add("store", STORE)
        for content in ("", "PRODUCT_PATH = /x\n", "A_NAME = x\n", "=\n = \n_ = \n", "x" * 10 ** 6):
            (self.directory / "store.dat").write_text(content)
            self.assertIn("no run has written settings", self.refused("--run"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
