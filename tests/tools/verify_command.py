#!/usr/bin/env python3
"""The command morvane-verify as an operator meets it.

    verify_command.py BUILD_DIRECTORY [TEST...]
"""

import hashlib
import json
import re
import shutil
import sys
import unittest

import installed


class VerifyTest(unittest.TestCase):
    def setUp(self):
        self.host = installed.Host()
        self.addCleanup(self.host.__exit__)
        self.app = self.host.opt / "app"

    def one(self, **more):
        product = installed.Product("app", self.app, {
            "lib": installed.Member(mode=0o755), "lib/data": installed.Member(b"data"),
            "link": installed.Member(mode=0o777, link="lib/data")}, **more)
        self.host.configure([product])
        self.host.make()

    def saved(self, **more):
        self.one(**more)
        self.host.verify("-C", self.host.distribution, "--save", check=0)

    def check(self, done, status, out, err=""):
        self.assertEqual((done.stdout, done.stderr, done.returncode), (out, err, status))

    def test_a_receipt_stands_for_its_product_alone(self):
        second = installed.Product("second", self.app, {"more": installed.Member(b"more")})
        first = installed.Product("app", self.app, {"data": installed.Member(b"data")})
        self.host.install([first, second])
        for operand in (self.app / "install/second.receipt", "opt/app/install/../install/second.receipt"):
            done = self.host.verify("--format=json", operand, check=0)
            self.assertEqual([each["product"] for each in json.loads(done.stdout)["products"]], ["second"])
        self.check(self.host.verify(self.app / "install/third.receipt"), 2, "",
                   f"morvane-verify: {self.app}/install/third.receipt: there is no such receipt\n")

    def damage(self):
        (self.app / "lib/data").write_text("changed")
        (self.app / "link").unlink()
        (self.app / "link").symlink_to("else\x1bwhere")
        (self.app / "install/app.descr").unlink()
        (self.app / "lib").chmod(0o700)
        (self.app / "more").write_text("")

    def test_says_that_all_is_as_installed(self):
        self.saved()
        for operand in ("app", self.app):
            self.check(self.host.verify(operand), 0,
                       f"app 1.0 in {self.app}: 9 paths, all as installed\n")

    def test_says_what_is_not_as_installed(self):
        self.saved()
        self.damage()
        self.check(self.host.verify(), 1,
                   f"app 1.0 in {self.app}: 9 paths, 4 not as installed, 1 additional\n"
                   "  install/app.descr: missing\n"
                   "  lib: mode 700 instead of 755\n"
                   "  lib/data: content changed, size 7 instead of 4\n"
                   "  link: leads to 'else\\033where' instead of 'lib/data'\n"
                   "  more: additional\n")

    def test_writes_as_package_managers_do(self):
        self.saved()
        self.damage()
        self.check(self.host.verify("--format=rpm"), 1,
                   f"missing      {self.app}/install/app.descr\n"
                   f".M.......    {self.app}/lib\n"
                   f"S.5....T.    {self.app}/lib/data\n"
                   f"....L....    {self.app}/link\n"
                   f"additional   {self.app}/more\n")

    def test_writes_json(self):
        self.saved()
        self.damage()
        done = self.host.verify("--format=json", "app")
        product, = json.loads(done.stdout)["products"]
        self.assertTrue(product["complete"])
        self.assertEqual((product["product"], product["directory"], product["made_afterwards"]),
                         ("app", str(self.app), True))
        states = {each["path"].removeprefix(f"{self.app}/"): each["state"]
                  for each in product["differing"]}
        self.assertEqual(states, {"install/app.descr": "missing", "lib": "differs",
                                  "lib/data": "differs", "link": "differs", "more": "additional"})
        self.assertEqual(product["differing"][1]["mode"], {"expected": "755", "found": "700"})

    def test_tells_of_what_was_changed_before_the_receipt(self):
        self.one()
        (self.app / "lib/data").write_text("late")
        done = self.host.verify("-C", self.host.distribution, "--save")
        self.check(done, 1, f"app 1.0 in {self.app}: 9 paths, 1 not as installed\n"
                            "  lib/data: content changed\n")

    def test_is_not_certain_of_what_parts_made(self):
        self.saved(parts={"program": "echo made > ../made"})
        (self.app / "made").write_text("changed")
        self.assertIn("  made: content changed, size 7 instead of 5 (perhaps not of the product)\n",
                      self.host.verify().stdout)

    def test_makes_no_second_receipt(self):
        self.saved()
        receipt, = self.host.registry.iterdir()
        done = self.host.verify("-C", self.host.distribution, "--save", "app")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, f"morvane-verify: app: has a receipt already, {receipt}\n")

    def test_makes_no_receipt_of_what_is_not_installed(self):
        self.one()
        shutil.rmtree(self.app)
        done = self.host.verify("-C", self.host.distribution, "--save")
        self.check(done, 2, "", f"morvane-verify: app: no receipt is made: its directory {self.app} "
                                "is not there\n")
        self.app.mkdir()
        done = self.host.verify("-C", self.host.distribution, "--save")
        self.check(done, 2, "", "morvane-verify: app: no receipt is made: it is not installed: "
                                f"{self.app}/install/app.dat is missing\n")

    def test_makes_no_receipt_by_an_edited_makefile(self):
        self.one()
        with open(self.host.distribution / "install.mk", "a", encoding="utf-8") as makefile:
            makefile.write("more:\n")
        done = self.host.verify("-C", self.host.distribution, "--save")
        self.assertEqual(done.returncode, 2)
        self.assertRegex(done.stderr, r"^morvane-verify: install\.mk:\d+: this is not what the "
                                      r"configurator writes\n$")

    def test_shows_a_closed_product_to_its_group_alone(self):
        self.saved(access=False)
        self.assertEqual((self.app / "install/app.receipt").stat().st_mode & 0o7777, 0o640)
        registered, = self.host.registry.iterdir()
        self.assertEqual(registered.stat().st_mode & 0o7777, 0o600)

    def test_warns_of_a_receipt_of_another_user(self):
        self.saved()
        shutil.rmtree(self.host.registry)
        receipt = self.app / "install/app.receipt"
        receipt.chmod(0o666)
        self.check(self.host.verify(self.app), 0,
                   f"app 1.0 in {self.app}: 9 paths, all as installed\n",
                   f"morvane-verify: {receipt}: another user can have written it, and let it tell "
                   "anything\n")

    def test_wrong_use(self):
        self.check(self.host.verify(), 2, "", f"morvane-verify: there are no receipts in "
                                              f"{self.host.registry}: name the directory of a "
                                              "product\n")
        self.check(self.host.verify("nothing"), 2, "",
                   "morvane-verify: nothing: there is no receipt of such a product\n")
        self.check(self.host.verify("--save"), 2, "",
                   "morvane-verify: install.mk: No such file or directory\n")
        self.assertEqual(self.host.verify("--format=x").returncode, 2)

    def test_a_report_that_cannot_be_written_is_a_fault(self):
        self.saved()
        with open("/dev/full", "w", encoding="utf-8") as full:
            done = installed.subprocess.run(
                [installed.BUILD / "morvane-verify", "--registry", self.host.registry], check=False,
                stdout=full, stderr=installed.subprocess.PIPE, text=True)
        self.assertEqual((done.returncode, done.stderr), (
            2, "morvane-verify: the report cannot be written: No space left on device\n"))

    def test_options_stand_in_the_manual(self):
        for command in ("morvane-verify", "morvane-remove"):
            page = (installed.PROJECT / f"man/{command}.1").read_text()
            for option in re.findall(r"^  (--[a-z-]+|-C)", self.host.run(command, "--help").stdout,
                                     re.MULTILINE):
                name = option.removeprefix("-")
                self.assertRegex(page, rf"(?m)^\.(?:It|Op) .*(?<!\w){name}\b")

    def test_the_receipt_in_the_manual_is_one(self):
        example = (installed.PROJECT / "man/examples/tansy.receipt").read_text()
        self.host.registry.mkdir()
        digits = hashlib.sha256(b"/opt/tansy").hexdigest()[:16]
        file = self.host.registry / f"tansy.{digits}.receipt"
        file.write_text(example)
        done = self.host.verify("tansy")
        self.assertEqual((done.returncode, done.stderr), (1, ""))


if __name__ == "__main__":
    result = unittest.main(argv=[sys.argv[0], *sys.argv[2:]], exit=False).result
    sys.exit(0 if result.wasSuccessful() else 1)
