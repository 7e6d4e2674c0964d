#!/usr/bin/env python3
"""Runs the modules of the collection on this host, as Ansible does on others.

    modules.py BUILD_DIRECTORY
"""

import fcntl
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
ANSWERS = BUILD / "morvane-answers"
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
        arguments = {"distribution": str(self.dist), "executable": str(ANSWERS), **options}
        if "answers" not in options:
            arguments.setdefault("products", self.products)
        return self.run_module("installation", **arguments)

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


class Installing(ModuleTest):
    BOTH = {"base": "installed", "app": "installed"}
    NEITHER = {"base": "unchanged", "app": "unchanged"}
    MADE = ["base program", "app program"]

    def setUp(self):
        super().setUp()
        (self.root / "opt").mkdir()

    def install_all(self):
        self.expect(self.install(), True, self.BOTH, self.MADE)

    def test_a_second_time_changes_nothing(self):
        self.install_all()
        self.assertEqual(self.installed("app/app.txt").stat().st_mode & 0o777, 0o644)
        self.assertIn("STORE_VERSION = 1.3\n", self.installed("app/install/app.dat").read_text())
        self.expect(self.install(), False, self.NEITHER, [])

    def test_check_mode_touches_nothing(self):
        before = sorted(self.root.rglob("*"))
        result = self.install(_ansible_check_mode=True, _ansible_diff=True)
        self.expect(result, True, {"base": "to be installed", "app": "to be installed"}, [])
        self.assertEqual(sorted(self.root.rglob("*")), before)
        self.assertEqual([(each["header"], each["before"]) for each in result["diff"]],
                         [(f"base in {self.root}/opt/base", ""), (f"app in {self.root}/opt/app", "")])
        self.assertIn('"PRODUCT_VERSION = 1.3"', result["diff"][0]["after"])
        self.install_all()
        self.expect(self.install(_ansible_check_mode=True), False, self.NEITHER, [])

    def test_a_changed_answer_installs_that_product(self):
        self.install_all()
        self.products[0]["parts"]["pages"] = "yes"
        self.expect(self.install(_ansible_check_mode=True), True,
                    {"base": "unchanged", "app": "to be installed"}, [])
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"},
                    ["app program", "app pages"])
        self.expect(self.install(), False, self.NEITHER, [])

    def test_what_gets_something_from_a_changed_product_is_installed_again(self):
        self.install_all()
        self.products[1]["access"] = False
        self.expect(self.install(), True, self.BOTH, self.MADE)
        self.assertEqual(self.installed("base/base.txt").stat().st_mode & 0o777, 0o640)
        self.expect(self.install(), False, self.NEITHER, [])

    def test_a_changed_archive_is_installed(self):
        self.install_all()
        self.pack("app", "new")
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])
        self.assertEqual(self.installed("app/app.txt").read_text(), "new")

    def test_a_changed_description_is_installed(self):
        self.install_all()
        with open(self.dist / "app.descr", "a", encoding="utf-8") as file:
            file.write("# A comment.\n")
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])

    def test_settings_that_somebody_changed_are_put_right(self):
        self.install_all()
        settings = self.installed("app/install/app.dat")
        right = settings.read_text()
        settings.write_text(right.replace("PRODUCT_ACCESS = 1", "PRODUCT_ACCESS = 0"))
        result = self.install(_ansible_check_mode=True)
        self.assertIn('"PRODUCT_ACCESS = 0"', result["diff"][0]["before"])
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])
        self.assertEqual(settings.read_text(), right)

    def test_another_version_of_the_program_installs_nothing(self):
        self.install_all()
        for identifier in ("app", "base"):
            settings = self.installed(f"{identifier}/install/{identifier}.dat")
            settings.write_text(settings.read_text().replace("# Version: ", "# Version: another "))
        self.expect(self.install(), False, self.NEITHER, [])

    def test_a_product_that_was_removed_comes_back(self):
        self.install_all()
        shutil.rmtree(self.installed("app"))
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])

    def test_after_a_failure_the_next_run_goes_on(self):
        (self.root / "broken-app").touch()
        result = self.install()
        self.assertEqual((result["failed"], result["changed"], self.outcomes(result)),
                         (True, True, {"base": "installed", "app": "failed"}))
        self.assertEqual(result["msg"], "make ended with status 2 at app: no app today. "
                         "When that is mended, run this again.")
        self.assertIn("no app today", result["output"])
        self.assertEqual(self.made(), self.MADE)
        (self.root / "broken-app").unlink()
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])
        self.expect(self.install(), False, self.NEITHER, [])

    def test_a_failure_is_not_forgotten_when_the_answer_is_taken_back(self):
        self.install_all()
        self.products[0]["parts"]["pages"] = True
        (self.root / "broken-app").touch()
        self.assertTrue(self.install()["failed"])
        self.made()
        (self.root / "broken-app").unlink()
        self.products[0]["parts"]["pages"] = False
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])

    def test_a_patch_is_installed_over_its_original_each_time(self):
        patch = {"id": "app1", "owner": USER, "group": GROUP, "access": True}
        self.products.append(patch)
        outcomes = {**self.BOTH, "app1": "installed"}
        made = ["base program", "app program", "app1 program"]
        self.expect(self.install(), True, outcomes, made)
        self.expect(self.install(), False, {**self.NEITHER, "app1": "unchanged"}, [])
        self.pack("app", "new")
        self.expect(self.install(), True, {**outcomes, "base": "unchanged"}, made[1:])
        self.pack("app1", "new")
        # The original shares the directory, but nothing came over it.
        self.expect(self.install(), True, {"base": "unchanged", "app": "unchanged", "app1": "installed"},
                    made[2:])

    def test_a_product_without_a_description_is_installed_once(self):
        archive(self.dist / "plain.tar", {"plain.txt": ""})
        self.products = [self.product("plain")]
        self.expect(self.install(), True, {"plain": "installed"}, [])
        self.expect(self.install(), False, {"plain": "unchanged"}, [])
        (self.installed("plain/plain.txt")).unlink()
        (self.installed("plain/install/plain.ansible")).unlink()
        self.expect(self.install(), True, {"plain": "installed"}, [])
        self.assertTrue(self.installed("plain/plain.txt").exists())

    def test_no_product_is_no_change(self):
        self.products = []
        self.expect(self.install(), False, {}, [])

    def test_recorded_answers_are_played_with_other_variables(self):
        answers = (f"morvane answers 1\nvariable root = /nowhere\nproducts = base\n[base]\n"
                   f"directory = ${{root}}/opt/base\ncreate-directory = yes\nowner = {USER}\n"
                   f"group = {GROUP}\naccess = yes\n")
        options = {"answers": answers, "variables": {"root": str(self.root)}}
        self.expect(self.install(**options), True, {"base": "installed"}, ["base program"])
        self.products = self.products[1:]
        self.expect(self.install(), False, {"base": "unchanged"}, [])

    def test_the_distribution_is_only_read(self):
        (self.dist / "base.dat").write_text("from another run")
        (self.dist / "install.mk").write_text("from another run")
        before = {path: path.stat().st_mtime_ns for path in [self.dist, *self.dist.iterdir()]}
        self.dist.chmod(0o555)
        self.addCleanup(self.dist.chmod, 0o755)
        self.install_all()
        after = {path: path.stat().st_mtime_ns for path in [self.dist, *self.dist.iterdir()]}
        self.assertEqual(after, before)

    def test_one_installation_at_a_time_works_in_a_directory(self):
        self.installed("app").mkdir()
        descriptor = os.open(self.installed("app"), os.O_RDONLY)
        self.addCleanup(os.close, descriptor)
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        result = self.install()
        self.assertEqual(result["msg"], f"Another installation is at work in {self.root}/opt/app.")
        self.assertEqual(self.made(), [])
        fcntl.flock(descriptor, fcntl.LOCK_UN)
        self.install_all()

    def test_a_link_in_the_place_of_the_record_is_not_followed(self):
        self.install_all()
        record = self.installed("app/install/app.ansible")
        (self.root / "precious").write_text("kept")
        record.unlink()
        record.symlink_to(self.root / "precious")
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])
        self.assertEqual((self.root / "precious").read_text(), "kept")
        self.assertFalse(record.is_symlink())

    def test_a_record_that_cannot_be_understood_counts_as_none(self):
        self.install_all()
        for text in ("", "{", "[]", "\udcff"):
            self.installed("app/install/app.ansible").write_text(text, errors="surrogateescape")
            self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])


class Refusing(ModuleTest):
    def refused(self, reason, **options):
        result = self.install(**options)
        self.assertTrue(result["failed"])
        self.assertEqual(result["msg"], reason)
        self.assertFalse((self.root / "opt").exists())
        self.assertEqual(self.made(), [])
        return result

    def answers_refused(self, reasons):
        return self.refused("The answers were refused, and nothing was touched: " + reasons)

    def test_everything_that_is_wrong_is_said_at_once(self):
        del self.products[1]["owner"]
        self.products[0]["parts"] = {"pagse": True}
        result = self.answers_refused(
            "[app] part.pages: there is no answer (proposal: yes); [app] part.pagse: no question takes "
            "this answer; [base] owner: there is no answer")
        self.assertEqual([found["trouble"] for found in result["findings"]],
                         ["missing", "left over", "missing"])

    def test_a_misspelt_key_is_refused(self):
        self.products[1]["onwer"] = USER
        self.assertIn("Unsupported parameters", self.install()["msg"])
        del self.products[1]["onwer"]
        self.products[0]["needs"][0]["suplier"] = "base"
        self.assertIn("suplier", self.install()["msg"])
        self.assertIn("prodcts", self.install(prodcts=[])["msg"])

    def test_what_is_neither_yes_nor_no_is_refused(self):
        self.products[0]["parts"]["pages"] = "perhaps"
        self.assertIn("[app] part.pages: ", self.install()["msg"])

    def test_a_product_that_is_not_offered_is_refused(self):
        self.products[1]["id"] = "bsae"
        self.assertIn("bsae", self.install()["msg"])

    def test_no_byte_of_a_value_means_something_else_in_the_file(self):
        for value in ("x%y", "x${root}", " x", "x ", "x\ty", "#x", "[x]", "x = y", "%41"):
            self.products[1]["owner"] = value
            result = self.install()
            self.assertTrue(result["failed"])
            self.assertEqual([(each["section"], each["name"]) for each in result["findings"]], [("base", "owner")],
                             result)
            self.assertFalse((self.root / "opt").exists())

    def test_a_value_of_two_lines_is_shown(self):
        self.products[1]["owner"] = "x\ny"
        self.answers_refused("owner = x%0Ay: '%' is not followed by two hexadecimal digits")

    def test_a_line_that_cannot_be_read_is_shown(self):
        self.refused("The answers were refused, and nothing was touched: the file is empty", answers="")
        self.refused("The answers were refused, and nothing was touched: prodcts: neither 'name = value', nor "
                     "'[section]', nor a comment", answers="morvane answers 1\nprodcts\n")

    def test_a_directory_without_a_distribution_is_named(self):
        for path in (self.root / "nowhere", self.root):
            self.refused(f"There is no distribution in {path}: no file morvane.rsc that can be read.",
                         distribution=str(path))

    def test_what_is_no_directory_is_no_product_s(self):
        for identifier in ("app", "base"):
            self.products.append(self.products.pop(0))
            (self.root / identifier).write_text("kept")
            self.products[-1]["directory"] = f"{self.root}/{identifier}"
        self.answers_refused(f"[base] directory: {self.root}/base is no directory; "
                             f"[app] directory: {self.root}/app is no directory")
        self.assertEqual((self.root / "app").read_text(), "kept")

    @unittest.skipIf(os.geteuid() == 0, "the superuser reads everything")
    def test_an_archive_that_cannot_be_read_is_named(self):
        (self.dist / "app.tar").chmod(0)
        self.answers_refused("[app] app.tar cannot be read")

    def test_a_missing_command_is_named(self):
        for name in ("executable", "make"):
            self.assertIn("no-such-command", self.install(**{name: "no-such-command"})["msg"])

    def test_a_command_that_is_another_is_told(self):
        self.refused("morvane-answers ended with status 1: ", executable="/bin/false")

    def test_answers_have_one_form(self):
        self.assertIn("one of the following is required: products, answers",
                      self.run_module("installation", distribution=str(self.dist))["msg"])
        self.assertIn("mutually exclusive", self.install(answers="x", products=[])["msg"])
        self.assertIn("missing parameter(s) required by 'variables'", self.install(variables={"a": 1})["msg"])


class Telling(ModuleTest):
    def test_what_is_installed_is_found(self):
        (self.root / "opt").mkdir()
        self.assertEqual(self.run_module("installation_info", directories=[f"{self.root}/opt/*"])["products"], [])
        self.install()
        self.installed("app/install/app.ansible").unlink()
        result = self.run_module("installation_info", directories=[f"{self.root}/opt/*", f"{self.root}/opt/app/"])
        self.assertFalse(result["changed"])
        self.assertEqual([(each["id"], each["directory"], each["record"] is None) for each in result["products"]],
                         [("app", f"{self.root}/opt/app", True), ("base", f"{self.root}/opt/base", False)])
        self.assertEqual(result["products"][0]["settings"]["STORE_PATH"], f"{self.root}/opt/base")


def main():
    why = needs.missing("make", modules=["ansible"])
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])


if __name__ == "__main__":
    main()
