#!/usr/bin/env python3
"""What the module installation installs, when, and what it leaves alone.

    installing.py BUILD_DIRECTORY
"""

import fcntl
import os
import shutil
import subprocess

import needs
from module_test import BUILD, GROUP, USER, ModuleTest, archive, main


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
        self.assertEqual([(each["after_header"], each["before"]) for each in result["diff"]],
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
        self.assertEqual(result["msg"], "app could not be installed, see the output. "
                         "When that is mended, run this again.")
        self.assertIn("no app today", result["output"])
        self.assertIsNone(self.find()["app"]["receipt"])
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
        self.assertEqual(self.find()["app"]["receipt"]["complete"], "no")
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
        (self.installed("plain/install/plain.receipt")).unlink()
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

    def test_names_may_be_in_any_encoding(self):
        self.products[1]["directory"] = f"{self.root}/opt/Bücher"
        for name in ("Bücher".encode(), "Bücher".encode("latin-1")):
            (self.dist / "base.descr").write_bytes(b"Name = Base\nFullName = \"" + name + b"\"\nVersion = 1.3\n"
                                                   b"Category = STORE\nType = plain\nTarget = program\n")
            self.expect(self.install(_ansible_diff=True), True, self.BOTH, self.MADE)
            self.assertIn(name, self.installed("app/install/app.dat").read_bytes())
            self.expect(self.install(), False, self.NEITHER, [])

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

    def test_after_a_failure_what_was_not_begun_is_told(self):
        self.install_all()
        (self.root / "broken-base").touch()
        self.products[1]["access"] = False
        result = self.install()
        self.assertEqual(self.outcomes(result), {"base": "failed", "app": "to be installed"})
        self.assertEqual(self.made(), ["base program"])
        (self.root / "broken-base").unlink()
        self.expect(self.install(), True, self.BOTH, self.MADE)

    def test_a_receipt_that_cannot_be_kept_is_a_failure(self):
        self.install_all()
        receipt = self.installed("base/install/base.receipt")
        receipt.unlink()
        receipt.mkdir()
        result = self.install()
        self.assertTrue(result["failed"])
        self.assertEqual(self.outcomes(result), {"base": "failed", "app": "installed"})
        self.assertIn("no receipt could be kept", "\n".join(result["output"]))

    def test_what_is_installed_is_as_morvane_verify_expects_it(self):
        self.install_all()
        for identifier in ("app", "base"):
            done = subprocess.run([BUILD / "morvane-verify", f"--registry={self.root}/registry", identifier],
                                  capture_output=True, text=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)

    def test_what_an_operator_installed_is_left_alone(self):
        by_hand = self.root / "by-hand"
        shutil.copytree(self.dist, by_hand)
        answers = self.root / "answers"
        answers.write_text(f"morvane answers 1\nproducts = base\n[base]\ndirectory = {self.root}/opt/base\n"
                           f"create-directory = yes\nowner = {USER}\ngroup = {GROUP}\naccess = yes\n")
        for command in (["morvane-answers", "play", answers],
                        ["morvane-install", f"--registry={self.root}/registry"]):
            subprocess.run([BUILD / command[0], "-C", by_hand, *command[1:]], check=True, umask=0o022,
                           capture_output=True, env={"PATH": needs.PATH})
        self.made()
        self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])

    def test_a_link_in_the_place_of_the_receipt_is_not_followed(self):
        self.install_all()
        receipt = self.installed("app/install/app.receipt")
        (self.root / "precious").write_text("kept")
        receipt.unlink()
        receipt.symlink_to(self.root / "precious")
        result = self.install()
        self.assertEqual(self.outcomes(result), {"base": "unchanged", "app": "failed"})
        self.assertIn("no receipt could be kept", "\n".join(result["output"]))
        self.assertEqual((self.root / "precious").read_text(), "kept")

    def test_a_receipt_that_cannot_be_understood_counts_as_none(self):
        self.install_all()
        for text in ("", "{", "morvane receipt 2\n", "morvane receipt 1\n",
                     "morvane receipt 1\nneed-name = x\nentries = 0\n", "\udcff"):
            self.installed("app/install/app.receipt").write_text(text, errors="surrogateescape")
            self.expect(self.install(), True, {"base": "unchanged", "app": "installed"}, ["app program"])


if __name__ == "__main__":
    main()
