#!/usr/bin/env python3
"""The command morvane-remove as an operator meets it.

    remove_command.py BUILD_DIRECTORY [TEST...]
"""

import json
import os
import pty
import shutil
import subprocess
import sys
import threading
import unittest

import installed

ALMANAC = ("Category = ALMANAC\nType = days\nVersion = 3.1\n")
GREETING = ("Version = 1.2\nTarget = program\nNeedsCategory = ALMANAC\nNeedsText = \"the almanac\"\n"
            "NeedsType = days\nNeedsVersion = 3.0\n")


class RemoveTest(unittest.TestCase):
    def setUp(self):
        self.host = installed.Host()
        self.addCleanup(self.host.__exit__)
        self.opt = self.host.opt

    def one(self, **more):
        """Installs a product with a file, a link and a directory."""
        product = installed.Product("app", self.opt / "app", {
            "lib": installed.Member(mode=0o755), "lib/data": installed.Member(b"data"),
            "link": installed.Member(mode=0o777, link="lib/data")}, **more)
        self.host.install([product])

    def check(self, done, status, out, err=""):
        self.assertEqual((done.stdout, done.stderr, done.returncode), (out, err, status))

    def needing(self):
        almanac = installed.Product("almanac", self.opt / "almanac",
                                    {"days": installed.Member(b"1")}, ALMANAC)
        greet = installed.Product("greet", self.opt / "greet", {"in": installed.Member(b"2")},
                                  GREETING, parts={"program": "touch ../made"})
        greet.more_answers = "supplier.program.ALMANAC = almanac\n"
        self.host.install([almanac, greet])

    def test_takes_all_away_but_the_directory(self):
        self.one()
        self.check(self.host.remove("--yes", "app"), 0,
                   f"app 1.0 in {self.opt}/app: removes 5 files, 2 directories, 1 link, leaves the "
                   "directory itself\napp: removed 5 files, 2 directories, 1 link\n")
        self.assertEqual(os.listdir(self.opt / "app"), [])
        self.assertEqual(os.listdir(self.host.registry), [])

    def test_only_tells_the_plan(self):
        self.one()
        before = installed.snapshot(self.host.root)
        self.check(self.host.remove("--plan", "app"), 0,
                   f"app 1.0 in {self.opt}/app: removes 5 files, 2 directories, 1 link, leaves the "
                   "directory itself\n")
        self.assertEqual(installed.snapshot(self.host.root), before)

    def told(self, *arguments, status):
        done = self.host.remove("--format=json", *arguments, check=status)
        self.assertEqual(done.stderr, "")
        return json.loads(done.stdout)["products"]

    def test_tells_everything_as_json(self):
        self.one()
        app = self.opt / "app"
        (app / "lib/data").write_text("changed")
        (app / "lib/new").write_text("new")
        planned, = self.told("--plan", "app", status=1)
        self.assertEqual((planned["product"], planned["version"], planned["directory"]),
                         ("app", "1.0", str(app)))
        kept = [{"path": f"{app}/lib/data", "text": "content changed, size 7 instead of 4"}]
        self.assertEqual((planned["kept"], planned["remarks"]), (kept, []))
        self.assertEqual(planned["removed"], sorted(
            f"{app}/{path}" for path in ("Makefile", "install", "install/app.dat", "install/app.descr",
                                         "lib", "link", "morvane.rsc")))
        done, = self.told("--yes", "app", status=1)
        self.assertEqual(done["removed"], [path for path in planned["removed"] if path != f"{app}/lib"])
        self.assertEqual((done["kept"], done["remarks"], done["faults"]),
                         (kept, ["leaves lib/new: it is not of the product"], []))

    def test_asks_nobody_for_json(self):
        self.one()
        self.check(self.host.remove("--format=json", "app"), 2, "",
                   "morvane-remove: --format=json asks nobody: say --plan or --yes\n")

    def test_a_receipt_names_a_product_whose_directory_is_gone(self):
        self.one()
        shutil.rmtree(self.opt / "app")
        self.check(self.host.remove("--yes", self.opt / "app/install/app.receipt"), 0,
                   f"app 1.0 in {self.opt}/app: removes nothing\napp: removed nothing\n")
        self.assertEqual(os.listdir(self.host.registry), [])

    def test_refuses_where_nobody_can_be_asked(self):
        self.one()
        done = self.host.remove("app")
        self.assertEqual(done.returncode, 3)
        self.assertEqual(done.stderr, "morvane-remove: nobody can be asked: say --yes; nothing was "
                                      "removed\n")
        self.assertTrue((self.opt / "app/lib/data").exists())

    def on_terminal(self, answer):
        terminal, slave = pty.openpty()
        with subprocess.Popen([installed.BUILD / "morvane-remove", "--registry", self.host.registry,
                               "app"], stdin=slave, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True) as child:
            os.write(terminal, answer)
            output, errors = child.communicate(timeout=installed.TIMEOUT)
        os.close(slave)
        os.close(terminal)
        self.assertIn("Remove this? (y/n) [n]: ", output)
        return child.returncode, errors

    def test_asks_once_on_a_terminal(self):
        self.one()
        for answer in (b"\n", b"n\n", b"x\n", b"\x04"):
            self.assertEqual(self.on_terminal(answer),
                             (3, "morvane-remove: nothing was removed\n"))
        self.assertTrue((self.opt / "app/lib/data").exists())
        self.assertEqual(self.on_terminal(b"y\n"), (0, ""))
        self.assertFalse((self.opt / "app/lib/data").exists())

    def test_keeps_what_was_changed(self):
        self.one()
        (self.opt / "app/lib/data").write_text("changed")
        (self.opt / "app/lib/new").write_text("new")
        done = self.host.remove("--yes", "app")
        self.check(done, 1,
                   f"app 1.0 in {self.opt}/app: removes 4 files, 2 directories, 1 link, leaves the "
                   "directory itself\n  keeps lib/data: content changed, size 7 instead of 4\n"
                   "  leaves lib/new: it is not of the product\n"
                   "app: removed 4 files, 1 directory, 1 link\n")
        self.assertEqual((self.opt / "app/lib/data").read_text(), "changed")

    def test_moves_what_was_changed(self):
        self.one()
        (self.opt / "app/lib/data").write_text("changed")
        (self.opt / "app/lib/data").chmod(0o604)
        kept = self.host.root / "kept"
        done = self.host.remove("--yes", "--keep-in", kept, "app")
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn(f"  moved lib/data to {kept}/app/lib/data\n", done.stdout)
        self.assertEqual((kept / "app/lib/data").read_text(), "changed")
        self.assertEqual((kept / "app/lib/data").stat().st_mode & 0o7777, 0o604)
        self.assertEqual(os.listdir(self.opt / "app"), [])

    def test_moves_to_another_file_system(self):
        if not os.path.isdir("/dev/shm") or os.stat("/dev/shm").st_dev == os.stat("/tmp").st_dev:
            self.skipTest("there is no other file system")
        self.one()
        (self.opt / "app/lib/data").write_text("changed")
        (self.opt / "app/link").unlink()
        (self.opt / "app/link").symlink_to("elsewhere")
        kept = f"/dev/shm/{self.host.root.name}"
        self.addCleanup(shutil.rmtree, kept)
        done = self.host.remove("--yes", "--keep-in", kept, "app")
        self.assertEqual(done.returncode, 1, done.stderr)
        with open(f"{kept}/app/lib/data", encoding="utf-8") as file:
            self.assertEqual(file.read(), "changed")
        self.assertEqual(os.readlink(f"{kept}/app/link"), "elsewhere")
        self.assertEqual(os.listdir(self.opt / "app"), [])

    def test_does_not_replace_what_was_moved_before(self):
        self.one()
        (self.opt / "app/lib/data").write_text("changed")
        kept = self.host.root / "kept"
        (kept / "app/lib").mkdir(parents=True)
        (kept / "app/lib/data").write_text("before")
        done = self.host.remove("--yes", "--keep-in", kept, "app")
        self.assertEqual(done.returncode, 4)
        self.assertEqual(done.stderr, f"morvane-remove: app: cannot be moved to {kept}/app/lib/data: "
                                      "File exists\nmorvane-remove: app: not finished, its receipt "
                                      "is still there: run this again\n")
        self.assertEqual((kept / "app/lib/data").read_text(), "before")
        self.assertEqual((self.opt / "app/lib/data").read_text(), "changed")

    def test_refuses_what_another_product_needs(self):
        self.needing()
        done = self.host.remove("--yes", "almanac")
        self.check(done, 3, "", f"morvane-remove: 'greet' in {self.opt}/greet needs 'almanac' in "
                                f"{self.opt}/almanac\nmorvane-remove: nothing was removed\n")
        self.assertEqual(self.host.remove("--yes", "greet", "almanac").returncode, 1)
        self.assertFalse((self.opt / "almanac/days").exists())

    def test_finds_products_without_a_receipt_that_need_it(self):
        self.needing()
        for name in os.listdir(self.host.registry):
            if name.startswith("greet"):
                os.unlink(self.host.registry / name)
        os.unlink(self.opt / "greet/install/greet.receipt")
        refusal = (f"morvane-remove: 'greet' in {self.opt}/greet needs 'almanac' in "
                   f"{self.opt}/almanac\nmorvane-remove: nothing was removed\n")
        self.check(self.host.remove("--yes", "--search", self.opt, "almanac"), 3, "", refusal)
        self.assertEqual(self.host.remove("--yes", "almanac").returncode, 0)

    def patched(self, leave_receipts):
        original = installed.Product("app", self.opt / "app", {
            "a": installed.Member(b"original"), "b": installed.Member(b"kept")},
            "Name = app\nPatch = 0\n")
        original.asks_directory = False
        patch = installed.Product("app-1", self.opt / "app", {
            "a": installed.Member(b"patched"), "c": installed.Member(b"new")},
            "Name = app\nPatch = 1\nRequiredPatches = 0\n")
        self.host.configure([original, patch])
        leave_receipts()

    def test_names_no_directory_that_another_product_has_too(self):
        both = [installed.Product(name, self.opt / "both", {
            "lib": installed.Member(mode=0o755), f"lib/{name}": installed.Member(b"")})
            for name in ("one", "two")]
        self.host.install(both)
        for name in os.listdir(self.opt / "both"):
            if name not in ("lib", "install"):
                (self.opt / "both" / name).unlink()  # the configurator's, which both have
        done = self.host.remove("--yes", "one")
        self.check(done, 0, f"one 1.0 in {self.opt}/both: removes 3 files, leaves the directory "
                            "itself\none: removed 3 files\n")
        (self.opt / "both/lib").chmod(0o700)
        self.assertIn("  keeps lib: mode 700 instead of 755\n",
                      self.host.remove("--yes", "two").stdout)

    def test_refuses_an_original_under_its_patch(self):
        for leave_receipts in (self.host.install_with_receipts, self.host.make_and_save_receipts):
            self.patched(leave_receipts)
            done = self.host.remove("--yes", "app")
            self.assertEqual(done.returncode, 3)
            self.assertEqual(done.stderr, f"morvane-remove: 'app-1' in {self.opt}/app is a patch of "
                                          f"'app' in {self.opt}/app\nmorvane-remove: nothing was "
                                          "removed\n")
            self.host.remove("--yes", "app", "app-1", check=0)

    def test_tells_what_the_original_lacks_without_its_patch(self):
        self.patched(self.host.make_and_save_receipts)
        done = self.host.remove("--yes", "app-1")
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn("  removes a: it replaced the file of 'app', which is gone: install 'app' "
                      "again\n", done.stdout)
        self.assertEqual(self.host.differing("app"), {f"{self.opt}/app/a": "missing"})

    def test_leaves_the_files_of_an_original_that_was_installed_again(self):
        self.patched(self.host.make_and_save_receipts)
        self.host.make()  # both, in their order: the original's time is told by hand
        for place in (self.host.registry, self.opt / "app/install"):
            for file in place.iterdir():
                if file.name.startswith("app.") and file.name.endswith(".receipt"):
                    text = file.read_text()
                    old = text.split("\ninstalled = ")[1].split("\n")[0]
                    file.write_text(text.replace(f"= {old}", "= 3000000000.000000000"))
        (self.opt / "app/a").write_bytes(b"original")
        os.utime(self.opt / "app/a", (1_700_000_000, 1_700_000_000))
        self.assertEqual(self.host.differing(), {})
        done = self.host.remove("--yes", "app-1")
        self.assertIn("  leaves a: 'app' has it too; content changed", done.stdout)
        self.assertEqual((self.opt / "app/a").read_bytes(), b"original")
        self.assertEqual(self.host.differing(), {})

    def test_refuses_a_receipt_that_another_user_can_have_written(self):
        self.one()
        for name in os.listdir(self.host.registry):
            os.unlink(self.host.registry / name)
        receipt = self.opt / "app/install/app.receipt"
        receipt.chmod(0o666)
        done = self.host.remove("--yes", f"{self.opt}/app")
        self.check(done, 3, "", f"morvane-remove: {receipt}: another user can have written it\n"
                                "morvane-remove: nothing was removed\n")

    def test_removes_what_has_its_receipt_beside_it_alone(self):
        self.one()
        shutil.rmtree(self.host.registry)
        self.assertEqual(self.host.remove("--yes", f"{self.opt}/app").returncode, 0)
        self.assertEqual(os.listdir(self.opt / "app"), [])

    def test_follows_no_link(self):
        self.one()
        outside = self.host.root / "outside"
        shutil.move(self.opt / "app/lib", outside)
        (self.opt / "app/lib").symlink_to(outside)
        done = self.host.remove("--yes", "app")
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn("  keeps lib: is link instead of directory\n", done.stdout)
        self.assertTrue((outside / "data").exists())

    def test_continues_a_removal_that_was_cut_off(self):
        self.one()
        (self.opt / "app/lib/data").unlink()
        (self.opt / "app/lib").rmdir()
        done = self.host.remove("--yes", "app")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(os.listdir(self.opt / "app"), [])

    def test_refuses_a_damaged_registry(self):
        self.one()
        (self.host.registry / "x.receipt").write_text("damaged\n")
        done = self.host.remove("--yes", "app")
        self.check(done, 2, "", f"morvane-remove: {self.host.registry}/x.receipt: line 1: the first "
                                "line is not 'morvane receipt 1'\n")

    def test_wrong_use(self):
        self.check(self.host.remove(), 2, "", "morvane-remove: no product is named\n")
        self.check(self.host.remove("nothing"), 2, "",
                   "morvane-remove: nothing: there is no receipt of such a product\n")
        self.assertEqual(self.host.remove("--search", "/nowhere", "x").returncode, 2)

    def test_race_with_somebody_in_the_directory(self):
        """What is swapped for a link while it is looked at leads nowhere."""
        outside = self.host.root / "outside"
        members = {}
        for number in range(40):
            members[f"d{number}"] = installed.Member(mode=0o755)
            members[f"d{number}/file"] = installed.Member(b"same")
        product = installed.Product("app", self.opt / "app", members)
        self.host.install([product])
        for number in range(40):
            (outside / f"d{number}").mkdir(parents=True)
            shutil.copy2(self.opt / f"app/d{number}/file", outside / f"d{number}/file")
        before = installed.snapshot(outside)
        stop = threading.Event()

        def swap():
            while not stop.is_set():
                for number in range(40):
                    path = self.opt / f"app/d{number}"
                    try:
                        path.rename(f"{path}.away")
                        path.symlink_to(outside / f"d{number}")
                        path.unlink()
                        os.rename(f"{path}.away", path)
                    except OSError:
                        pass

        swapping = threading.Thread(target=swap)
        swapping.start()
        try:
            for _ in range(20):
                self.host.remove("--yes", "app")
        finally:
            stop.set()
            swapping.join()
        self.assertEqual(installed.snapshot(outside), before)


if __name__ == "__main__":
    result = unittest.main(argv=[sys.argv[0], *sys.argv[2:]], exit=False).result
    for _, reason in result.skipped:
        print("skipped:", reason)
    sys.exit(0 if result.wasSuccessful() else 1)
