"""Runs the modules of the collection on this host, as Ansible does on others."""

import grp
import io
import json
import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

import needs

BUILD = pathlib.Path(sys.argv[1]).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[2]
USER = pwd.getpwuid(os.geteuid()).pw_name
GROUP = grp.getgrgid(os.getegid()).gr_name

DESCRIPTIONS = {
    "app": """\
Name = App
Version = 1.0
Path = /opt/app
Target = program
NeedsCategory = STORE
NeedsText = "a store of data"
NeedsType = plain
NeedsVersion = 1.0
Target = pages
Ask = "Install the pages?"
""",
    "app1": """\
Name = App
Version = 1.0
Patch = 1
RequiredPatches = 0
Path = /opt/app
Target = program
""",
    "base": """\
Name = Base
Version = 1.3
Category = STORE
Type = plain
Target = program
""",
}
# Each product notes that it was made, and fails where it is told to.
MAKEFILE = """\
program pages:
\techo {0} $@ >>{1}/made
\ttest ! -e {1}/broken-{0} || {{ echo no {0} today >&2; exit 1; }}
"""


def archive(path, members):
    with tarfile.open(path, "w") as tar:
        for name, text in members.items():
            member = tarfile.TarInfo(name)
            member.size = len(text)
            member.uid, member.gid = os.geteuid(), os.getegid()
            tar.addfile(member, io.BytesIO(text.encode()))


class ModuleTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-modules-", dir="/tmp")
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        namespace = self.root / "python/ansible_collections/morvane"
        namespace.mkdir(parents=True)
        (namespace / "distribution").symlink_to(PROJECT / "ansible")
        self.dist = self.root / "dist"
        self.dist.mkdir()
        shutil.copy(BUILD / "morvane.rsc", self.dist)
        for name in ("Makefile", "morvane.SunOS4", "morvane.SunOS5"):
            (self.dist / name).write_text("")
        for identifier, text in DESCRIPTIONS.items():
            (self.dist / f"{identifier}.descr").write_text(text)
            self.pack(identifier, "")
        self.products = [self.product("app", parts={"pages": False}), self.product("base")]
        self.products[0]["needs"] = [{"part": "program", "category": "STORE", "supplier": "base"}]

    def pack(self, identifier, text):
        archive(self.dist / f"{identifier}.tar",
                {"install/Makefile": MAKEFILE.format(identifier, self.root), f"{identifier}.txt": text})

    def product(self, identifier, **more):
        return {"id": identifier, "directory": f"{self.root}/opt/{identifier}", "create_directory": True,
                "owner": USER, "group": GROUP, "access": True, **more}

    def run_module(self, name, **arguments):
        done = subprocess.run(
            [needs.PYTHON, "-B", "-m", f"ansible_collections.morvane.distribution.plugins.modules.{name}"],
            input=json.dumps({"ANSIBLE_MODULE_ARGS": arguments}), text=True, capture_output=True, timeout=60,
            check=False, cwd="/", umask=0o077,
            env={"PATH": needs.PATH, "LC_ALL": "C", "MAKEFLAGS": "n",
                 "PYTHONPATH": str(self.root / "python")})
        self.assertEqual(done.stderr, "")
        left = pathlib.Path("/tmp").glob("morvane-*/distribution/base.tar")
        self.assertNotIn(self.dist / "base.tar", [path.readlink() for path in left if path.is_symlink()])
        return json.loads(done.stdout)

    def install(self, **options):
        arguments = {"distribution": str(self.dist), **self.commands(), **options}
        if "answers" not in options:
            arguments.setdefault("products", self.products)
        return self.run_module("installation", **arguments)

    def commands(self):
        return {"commands": str(BUILD), "registry": str(self.root / "registry")}

    def remove(self, *products, **options):
        products = [product if isinstance(product, dict) else {"id": product} for product in products]
        return self.run_module("installation", state="absent", products=products,
                               **{**self.commands(), **options})

    def find(self, **options):
        """Returns what installation_info finds, by identifiers."""
        result = self.run_module("installation_info", directories=[f"{self.root}/opt/*"],
                                 **{**self.commands(), **options})
        self.assertFalse(result["changed"])
        return {product["id"]: product for product in result["products"]}

    def outcomes(self, result):
        return {product["id"]: product["outcome"] for product in result["products"]}

    def made(self):
        """Returns what was made since the last call."""
        path = self.root / "made"
        lines = path.read_text().splitlines() if path.exists() else []
        path.unlink(missing_ok=True)
        return lines

    def expect(self, result, changed, outcomes, made):
        self.assertNotIn("failed", result)
        self.assertEqual((result["changed"], self.outcomes(result), self.made()), (changed, outcomes, made))

    def installed(self, path):
        return self.root / "opt" / path


def main():
    """Runs the tests of the script that is started, where they can be."""
    why = needs.missing("make", modules=["ansible"])
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
