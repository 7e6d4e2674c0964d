#!/usr/bin/env python3
"""Runs morvane-install as operators do: what it shows, what it refuses, what it does, and what it
leaves when something fails.

    install_command.py BUILD_DIRECTORY
"""

import fcntl
import hashlib
import json
import os
import pathlib
import pty
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import made_distribution
from made_distribution import GROUP, PATH, USER, tree

BUILD = pathlib.Path(sys.argv[1]).resolve()
ROOT = os.geteuid() == 0
PROGRAM = """\
program:
\tmkdir -p ../bin
\techo made > ../bin/$(PRODUCT_NAME)
"""


class InstallTest(unittest.TestCase):
    def setUp(self):
        # No directory that everybody can write to, as /tmp, in which they could not be.
        scratch = tempfile.TemporaryDirectory(prefix="morvane-install-", dir="/tmp")
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name)
        self.made = made_distribution.Distribution(BUILD, self.root)

    def add_two(self):
        self.app = self.made.add("app", {"lib/": "", "lib/a": "a\n", "run": (0o750, "run\n"),
                                         "link": "-> lib/a"}, PROGRAM, ["program"])
        self.base = self.made.add("base", {"data": "base\n"}, access="no")
        self.made.configure()

    def outcome(self, done):
        return done.returncode, done.stdout, done.stderr

    def refused(self, *arguments, **options):
        """Runs the command, which must leave everything as it is; returns the texts of what keeps
        it from doing more."""
        before = tree(self.root, receipts=True)
        done = self.made.install("--format=json", *arguments, **options)
        self.assertEqual((done.returncode, done.stderr), (
            3, "morvane-install: nothing was installed; when what blocks is mended, type: "
            f"morvane-install -C {self.made.dist}\n"), done.stdout)
        self.assertEqual(tree(self.root, receipts=True), before)
        plan = json.loads(done.stdout)
        self.assertTrue(plan["blocked"])
        return {found["id"]: found["text"] for found in plan["findings"]
                if found["severity"] == "error"}


class Plan(InstallTest):
    def test_shows_what_is_new_and_what_is_replaced_and_touches_nothing(self):
        self.add_two()
        (self.app / "lib").mkdir()
        (self.app / "lib/a").write_text("earlier")
        before = tree(self.root)
        done = self.made.install("--plan")
        owner = f"owner {USER}, " if ROOT else ""
        self.assertEqual(done.stderr, "")
        self.assertEqual(re.sub(r"needs .* free", "needs some", done.stdout), f"""\
app 1.0 -> {self.app}   new   {owner}group {GROUP}, others keep access
  + 9 files, 1 directory
  ~ 1 replaced, no copy kept: lib/a
  ! part 'program' runs install/Makefile: not predictable
base 1.0 -> {self.base}   new   {owner}group {GROUP}, others lose access
  + 7 files, 1 directory
space: {self.app} needs some        tools: all found
nothing blocks
""")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(tree(self.root), before)

    def test_tells_everything_as_json(self):
        self.add_two()
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        app, base = plan["products"]
        self.assertEqual(app["added"], ["Makefile", "install/app.dat", "install/app.descr",
                                        "install/app.make", "lib/a", "link", "morvane.SunOS4",
                                        "morvane.SunOS5", "morvane.rsc", "run"])
        self.assertEqual(app["added_directories"], ["install", "lib"])
        self.assertEqual((app["parts"], app["replaced"], app["new"]), (["program"], [], True))
        self.assertEqual(base["others_keep_access"], False)
        self.assertEqual(plan["directory"], str(self.made.dist))
        self.assertIn("tar", plan["tools"])
        self.assertEqual((plan["findings"], plan["blocked"]), ([], False))

    def test_files_that_are_the_same_are_not_replaced(self):
        self.add_two()
        shutil.copy(self.made.dist / "morvane.rsc", self.base)
        (self.base / "Makefile").write_text("another\n")
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        self.assertEqual(plan["products"][1]["replaced"], ["Makefile"])

    def test_files_with_the_same_content_are_told_apart(self):
        self.add_two()
        self.assertEqual(self.made.install().returncode, 0)
        (self.app / "run").chmod(0o700)
        (self.app / "lib/a").write_text("b\n")
        (self.app / "link").unlink()
        (self.app / "link").symlink_to("run")
        done = self.made.install("--plan")
        self.assertIn("others keep access\n  = 2 replaced by the same\n"
                      "  ~ 2 replaced, no copy kept: lib/a, link\n", done.stdout)
        self.assertIn("others lose access\n  = 1 replaced by the same\nspace:", done.stdout)
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        self.assertEqual(plan["products"][0]["replaced_by_the_same"],
                         ["install/app.make", "run"])

    def test_warns_of_other_names_of_what_is_written_to(self):
        self.add_two()
        (self.app / "Makefile").write_text("another\n")
        os.link(self.app / "Makefile", self.root / "elsewhere")
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        self.assertEqual([(found["id"], found["severity"], found["text"])
                          for found in plan["findings"]],
                         [("other-names", "warning",
                           "'Makefile' has other names, under which it changes, too")])

    def test_names_the_files_that_two_products_share(self):
        self.app = self.made.add("app", {"a": "1", "b": "2"})
        self.made.add("over", {"b": "3", "c": "4"}, directory=self.app)
        self.made.configure()
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        self.assertEqual([(found["id"], found["product"], found["severity"], found["text"])
                          for found in plan["findings"]],
                         [("files-shared", "over", "note", "replaces 1 of the files of 'app', "
                           f"such as '{self.app}/b'")])

    def test_the_one_of_a_product_that_is_configured_again(self):
        self.add_two()
        self.assertEqual(self.made.install().returncode, 0)
        again = self.root / "again"
        again.write_text(f"morvane answers 1\nproducts =\nreconfigure = base\n"
                         f"[installed base]\naccess = no\ngroup = {GROUP}\n"
                         f"owner = {USER}\n")
        shutil.copyfile(self.made.build / "morvane.rsc", self.base / "morvane.rsc")
        done = subprocess.run([BUILD / "tests/morvane_answers_without_pauses", "-C", self.base,
                               "play", again], capture_output=True, text=True, check=False,
                              env={"PATH": PATH, "LC_ALL": "C"})
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        plan = json.loads(self.made.install("-C", self.base, "--plan", "--format=json").stdout)
        self.assertEqual((plan["products"][0]["new"], plan["products"][0]["added"]), (False, []))
        self.assertEqual((plan["findings"], plan["blocked"]), ([], False))
        self.assertEqual(self.made.install("-C", self.base).returncode, 0)
        verified = self.made.run("morvane-verify", f"--registry={self.made.registry}", self.base)
        self.assertEqual((verified.returncode, verified.stderr), (0, ""), verified.stdout)
        shutil.rmtree(self.made.registry)
        (self.base / "install/base.receipt").unlink()
        done = self.made.install("-C", self.base)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("  note: it has no receipt, and gets none; 'morvane-verify --save' makes one "
                      "where it was installed from [receipt-none]\n", done.stdout)
        self.assertFalse((self.base / "install/base.receipt").exists())


class Refusal(InstallTest):
    def test_of_a_makefile_that_was_edited(self):
        self.add_two()
        lines = self.made.install_mk().read_text().splitlines(keepends=True)
        number = next(i for i, line in enumerate(lines) if "tar -xvpf" in line)
        lines[number] = lines[number].replace("-xvpf", "-xpf")
        self.made.install_mk().write_text("".join(lines))
        before = tree(self.root)
        for plan in (["--plan"], []):
            self.assertEqual(self.outcome(self.made.install(*plan)), (
                2, "", f"morvane-install: install.mk:{number + 1}: not what morvane writes: "
                "configure again, or run make on it\n"))
        self.assertEqual(tree(self.root), before)

    def test_of_no_makefile(self):
        self.assertEqual(self.outcome(self.made.install()), (
            2, "", "morvane-install: install.mk: No such file or directory\n"))

    def test_of_another_use(self):
        for arguments in (["--jobs=0"], ["--jobs=x"], ["--format=xml"], ["--plann=1"]):
            done = self.made.install(*arguments)
            self.assertEqual((done.returncode, done.stdout), (2, ""), arguments)
            self.assertTrue(done.stderr.startswith("morvane-install: ") or
                            "--help" in done.stderr, done.stderr)

    def test_of_a_product_that_is_not_configured(self):
        self.add_two()
        before = tree(self.root)
        for chosen in (["bsae", "app", "ap\x1bp", ""], ["--plan", "bsae"]):
            done = self.made.install(*chosen)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn("morvane-install: bsae: install.mk installs no such product\n", done.stderr)
            self.assertNotIn("app: install.mk", done.stderr)
        self.assertEqual(tree(self.root), before)

    def test_of_chosen_products_names_them_in_the_command_to_continue(self):
        self.add_two()
        self.base.rmdir()
        done = self.made.install("base")
        self.assertEqual((done.returncode, done.stderr), (
            3, "morvane-install: nothing was installed; when what blocks is mended, type: "
            f"morvane-install -C {self.made.dist} base\n"))

    def test_where_the_configurator_is_at_work(self):
        self.add_two()
        held = os.open(self.made.dist, os.O_RDONLY)
        self.addCleanup(os.close, held)
        fcntl.flock(held, fcntl.LOCK_EX)
        self.assertEqual(self.outcome(self.made.install()), (
            3, "", "morvane-install: another configurator is at work in this directory\n"))
        self.assertEqual(self.made.install("--plan").returncode, 0)

    def test_of_directories_that_are_none(self):
        self.add_two()
        self.app.rmdir()
        self.base.rmdir()
        self.base.write_text("a file")
        found = self.refused()
        self.assertEqual(found["directory-missing"],
                         f"its directory '{self.app}' is not there: No such file or directory")
        self.assertEqual(found["directory-none"], f"its directory '{self.base}' is no directory")

    def test_of_an_archive_whose_directory_is_missing_too(self):
        self.add_two()
        self.app.rmdir()
        self.made.pack("app", {"install/Makefile": PROGRAM, "../out": "x"})
        self.assertEqual(set(self.refused()), {"directory-missing", "member-outside"})

    def test_of_a_directory_that_everybody_can_write_to(self):
        self.add_two()
        self.app.chmod(0o777)
        if ROOT:
            self.assertIn("directory-open", self.refused())
        else:
            plan = json.loads(self.made.install("--plan", "--format=json").stdout)
            self.assertIn("directory-open", [found["id"] for found in plan["findings"]])

    def test_warns_of_directories_in_it_that_others_can_write_to(self):
        self.add_two()
        (self.app / "lib").mkdir()
        (self.app / "lib").chmod(0o777)
        plan = json.loads(self.made.install("--plan", "--format=json").stdout)
        self.assertEqual([(found["id"], found["severity"], found["product"], found["text"])
                          for found in plan["findings"]],
                         [("directory-open", "warning", "app",
                           "others can write to 1 of the directories that are there, such as 'lib'")])

    def test_of_unknown_users_and_groups(self):
        self.add_two()
        text = self.made.install_mk().read_text()
        text = re.sub(rf"chgrp {GROUP}\b", "chgrp nogrp", text)
        text = text.replace(f"group to '{GROUP}'", "group to 'nogrp'")
        text = re.sub(rf"chown {USER}\b", "chown nousr", text)
        self.made.install_mk().write_text(text.replace(f"owner to '{USER}'", "owner to 'nousr'"))
        found = self.refused()
        self.assertEqual(found["group-unknown"], "the host knows no group 'nogrp'")
        if ROOT:
            self.assertEqual(found["user-unknown"], "the host knows no user 'nousr'")

    def test_without_tools(self):
        self.add_two()
        tools = self.root / "tools"
        tools.mkdir()
        for tool in ("make", "sh", "cat", "chgrp", "chown", "chmod", "rm", "test", "diff", "cp",
                     "mkdir", "tar"):
            (tools / tool).symlink_to(shutil.which(tool, path=PATH))
        self.assertEqual(self.refused(env={"PATH": str(tools)}),
                         {"tool-missing": "'cut' is in no directory of PATH"})

    def test_of_files_that_are_named_like_rules(self):
        self.add_two()
        (self.made.dist / "app-program").write_text("")
        self.assertEqual(self.refused(), {"file-like-rule": "make takes 'app-program' for a step, or "
                                          "for the source of one: remove it"})

    def test_where_the_distribution_was_moved(self):
        self.add_two()
        moved = self.root / "moved"
        shutil.copytree(self.made.dist, moved)
        self.made.dist = moved
        self.assertIn("was written in", self.refused()["directory-other"])

    def test_of_hostile_archives(self):
        for name, content, expected in (
                ("../out", "x", "member-outside"), ("/etc/motd.new", "x", "member-absolute"),
                ("a b", "x", "member-name"), ("a[b]", "x", "member-name"),
                ("link", "-> /etc", "link-astray"),
                ("link", "-> nowhere", "link-astray"), ("link", "-> ../base", "link-astray")):
            with self.subTest(name=name, content=content):
                shutil.rmtree(self.root / "dist")
                self.made = made_distribution.Distribution(BUILD, self.root)
                self.add_two()
                self.made.pack("app", {"install/Makefile": PROGRAM, name: content})
                self.assertEqual(set(self.refused()), {expected})

    def test_of_a_member_that_goes_through_an_earlier_link(self):
        self.add_two()
        self.made.pack("app", {"install/Makefile": PROGRAM, "d": "-> lib", "lib/": "", "d/x": "x"})
        self.assertIn("member-below-file", self.refused())

    def test_of_links_on_the_disk_that_lead_out(self):
        self.add_two()
        (self.app / "lib").symlink_to("/etc")
        (self.base / "Makefile").symlink_to("/etc/hostname")
        (self.base / "install").symlink_to(self.app)
        done = json.loads(self.made.install("--plan", "--format=json").stdout)
        blocked = [found["text"].split("'")[1] for found in done["findings"]
                   if found["id"] == "through-link"]
        self.assertEqual(sorted(blocked), sorted(map(str, [
            self.app / "lib", self.base / "Makefile", self.base / "install"])))

    def test_of_archives_that_are_gone_or_none(self):
        self.add_two()
        (self.made.dist / "app.tar").unlink()
        (self.made.dist / "base.tar").write_bytes(b"\x1f\x8b...")
        found = self.refused()
        self.assertIn("app.tar", found["archive-unreadable"])
        self.assertIn("base.tar", found["archive-compressed"])

    def test_of_parts_that_nothing_makes(self):
        self.add_two()
        self.made.pack("app", {"lib/a": "a\n"})
        self.assertEqual(self.refused(), {"makefile-missing": "there is no install/Makefile, "
                                          "which is to make part 'program'"})

    def test_of_a_directory_for_copies_that_holds_some(self):
        self.add_two()
        kept = self.root / "kept"
        kept.mkdir(0o777)
        kept.chmod(0o777)
        (self.root / "link").symlink_to(self.app)
        for directory in (self.app.parent, kept, self.root / "link"):
            self.assertEqual(set(self.refused(f"--keep-replaced={directory}")), {"kept-there"})

    @unittest.skipUnless(ROOT, "skipped: owners are handed on by the superuser")
    def test_of_handing_on_what_belongs_to_others(self):
        shared = self.made.add("app", described=False, directory=self.root / "opt", owner="daemon")
        self.made.configure()
        (shared / "foreign").write_text("secret")
        (shared / "foreign").chmod(0o600)
        self.assertIn("also what is not of this product: 1, such as 'foreign'",
                      self.refused()["handing-on"])
        (shared / "foreign").unlink()
        for _ in range(2):  # its own receipt is no foreign file
            self.assertEqual(self.made.install().returncode, 0)


class Run(InstallTest):
    def test_leaves_what_make_leaves_and_receipts(self):
        self.add_two()
        self.assertEqual(self.made.make().returncode, 0)
        by_make = tree(self.made.dist, self.app, self.base)
        self.made.clear()
        done = self.made.install()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertTrue(done.stdout.endswith("nothing blocks\napp: installed, 1 of 2\n"
                                             "base: installed, 2 of 2\n"), done.stdout)
        self.assertEqual(tree(self.made.dist, self.app, self.base), by_make)
        receipt = (self.app / "install/app.receipt").read_text()
        shown = [line.split()[:1] + line.split()[4:7] for line in receipt.splitlines()
                 if line.split()[0] in ("file", "directory", "link") and "=" not in line]
        self.assertEqual(shown, [
            ["directory", "empty", "configurator", "."],
            ["file", "new", "configurator", "Makefile"],
            ["directory", "new", "part", "bin"],
            ["file", "new", "part", "bin/app"],
            ["directory", "new", "configurator", "install"],
            ["file", "new", "settings", "install/app.dat"],
            ["file", "new", "configurator", "install/app.descr"],
            ["file", "new", "configurator", "install/app.make"],
            ["directory", "new", "archive", "lib"],
            ["file", "new", "archive", "lib/a"],
            ["link", "new", "archive", "link"],
            ["file", "new", "configurator", "morvane.SunOS4"],
            ["file", "new", "configurator", "morvane.SunOS5"],
            ["file", "new", "configurator", "morvane.rsc"],
            ["file", "new", "archive", "run"]])
        verified = self.made.run("morvane-verify", f"--registry={self.made.registry}", self.app,
                                 self.base)
        self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)

    def test_notes_what_a_part_makes_anew_within_a_second(self):
        shared = self.root / "opt/both"
        for identifier, content, fraction in (("first", "one", 1), ("second", "two", 2)):
            self.made.add(identifier, None, f"made:\n\techo {content} > ../made\n"
                          f"\ttouch -d @1700000000.{fraction} ../made\n", ["made"], directory=shared)
        self.made.configure()
        self.assertEqual(self.made.install().returncode, 0)
        done = self.made.run("morvane-verify", f"--registry={self.made.registry}")
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)

    def test_of_chosen_products_touches_no_other(self):
        self.add_two()
        done = self.made.install("base")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertTrue(done.stdout.startswith(f"base 1.0 -> {self.base} "), done.stdout)
        self.assertTrue(done.stdout.endswith("base: installed, 1 of 1\n"), done.stdout)
        self.assertEqual(list(self.app.iterdir()), [])
        self.assertTrue((self.base / "install/base.receipt").exists())

    def test_of_chosen_products_keeps_their_order(self):
        self.add_two()
        self.made.add("last")
        self.made.configure()
        done = self.made.install("last", "app", "last")
        self.assertEqual(re.findall(r"^(\w+): installed", done.stdout, re.MULTILINE), ["app", "last"])

    def test_works_with_links_to_the_files_of_a_distribution(self):
        self.add_two()
        self.assertEqual(self.made.install().returncode, 0)
        installed = tree(self.app, self.base)
        self.made.clear()
        original = self.root / "original"
        original.mkdir()
        for path in self.made.dist.iterdir():
            path.rename(original / path.name)
            path.symlink_to(original / path.name)
        done = self.made.install()
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        self.assertEqual(tree(self.app, self.base), installed)
        archive = hashlib.sha256((original / "app.tar").read_bytes()).hexdigest()
        self.assertIn(f"\narchive = {archive}\n", (self.app / "install/app.receipt").read_text())

    def test_takes_nothing_over_from_a_receipt_of_another_user(self):
        if not ROOT:
            self.skipTest("needs the superuser")
        self.add_two()
        self.assertEqual(self.made.install().returncode, 0)
        receipt = self.base / "install/base.receipt"
        (self.base / "foreign").write_text("")
        lines = receipt.read_text().splitlines()
        place = next(i for i, line in enumerate(lines) if line.endswith(" install"))
        lines.insert(place, lines[-1].replace(" morvane.rsc ", " foreign "))
        entries = next(i for i, line in enumerate(lines) if line.startswith("entries = "))
        lines[entries] = f"entries = {len(lines) - entries - 1}"
        receipt.write_text("\n".join(lines) + "\n")
        os.chown(receipt, 65534, 65534)
        shutil.rmtree(self.made.registry)
        told = self.made.run("morvane-verify", self.base)
        self.assertIn("foreign", told.stdout, told.stderr)
        self.assertEqual(self.made.install().returncode, 0)
        self.assertNotIn("foreign", receipt.read_text())

    def test_can_be_repeated(self):
        self.add_two()
        self.assertEqual(self.made.install().returncode, 0)
        first = tree(self.made.dist, self.app, self.base)
        again = self.made.install()
        self.assertEqual((again.returncode, again.stderr), (0, ""))
        self.assertEqual(tree(self.made.dist, self.app, self.base), first)
        self.assertIn(" new part bin/app", (self.app / "install/app.receipt").read_text())

    def test_shows_the_output_of_what_fails_and_how_to_go_on(self):
        self.made.add("first")
        failing = "program:\n\ttest -f ../mended || { echo see here; exit 1; }\n"
        app = self.made.add("middle", makefile=failing, parts=["program"])
        last = self.made.add("other")
        self.made.configure()
        done = self.made.install()
        self.assertEqual(done.returncode, 4)
        self.assertIn("see here\n", done.stderr)
        self.assertTrue(done.stderr.endswith(f"""\
morvane-install: middle: the installation failed, see above
morvane-install: not begun: other
morvane-install: the installation is not complete; to continue it, type: morvane-install -C \
{self.made.dist}
"""), done.stderr)
        self.assertTrue(done.stdout.endswith("first: installed, 1 of 3\n"))
        self.assertTrue((self.root / "opt/first/install/first.receipt").exists())
        self.assertFalse((app / "install/middle.receipt").exists())
        self.assertEqual(list(last.iterdir()), [])
        (app / "mended").write_text("")
        self.assertEqual(self.made.install().returncode, 0)

    def test_a_failure_leaves_no_receipt_that_says_all_is_well(self):
        failing = "program:\n\ttest ! -f ../broken\n"
        app = self.made.add("app", makefile=failing, parts=["program"])
        self.made.configure()
        receipt = app / "install/app.receipt"
        self.assertEqual(self.made.install().returncode, 0)
        whole = receipt.read_text()
        (app / "broken").write_text("")
        self.assertEqual(self.made.install().returncode, 4)
        marked = whole.replace("\ncomplete = yes\n", "\ncomplete = no\n")
        self.assertNotEqual(marked, whole)
        self.assertEqual(receipt.read_text(), marked)
        registered = list(self.made.registry.iterdir())
        self.assertEqual([path.read_text() for path in registered], [marked])
        (app / "broken").unlink()
        verified = self.made.run("morvane-verify", f"--registry={self.made.registry}", "app")
        self.assertEqual((verified.returncode, verified.stderr), (
            1, f"morvane-verify: 'app' in {app}: an installation began since, and did not end well: "
            "install it again\n"))
        self.assertEqual(self.made.install().returncode, 0)
        self.assertIn("\ncomplete = yes\n", receipt.read_text())
        self.assertNotIn("app.receipt", receipt.read_text())  # it is no file that the part made
        self.assertIn(" new archive data ", receipt.read_text())

    def test_ends_at_a_signal_with_all_that_it_started(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number=number):
                shutil.rmtree(self.root / "dist")
                self.made = made_distribution.Distribution(BUILD, self.root)
                waiting = "program:\n\techo $$$$ > ../pid; while :; do sleep 60; done\n"
                app = self.made.add("app", makefile=waiting, parts=["program"])
                self.made.add("base")
                self.made.configure()
                (app / "pid").unlink(missing_ok=True)
                running = subprocess.Popen(
                    [BUILD / "morvane-install", "-C", self.made.dist,
                     f"--registry={self.made.registry}"], stdout=subprocess.DEVNULL,
                    stderr=subprocess.PIPE, text=True, env={"PATH": PATH, "LC_ALL": "C"},
                    preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))
                while not (app / "pid").exists() or not (app / "pid").read_text():
                    time.sleep(0.02)
                shell = int((app / "pid").read_text())
                running.send_signal(number)
                _, errors = running.communicate(timeout=30)
                self.assertEqual(running.returncode, 4)
                self.assertIn("morvane-install: app: the installation was interrupted\n", errors)
                self.assertIn(f"ended by signal: {signal.strsignal(number)}\n", errors)
                self.assertIn("morvane-install: not begun: base\n", errors)
                self.assertFalse(self.is_running(shell))
                self.assertFalse((app / "install/app.receipt").exists())

    @staticmethod
    def is_running(process):
        for _ in range(100):
            try:
                state = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0]
            except FileNotFoundError:
                return False
            if state == "Z":
                return False
            time.sleep(0.05)
        return True

    def test_keeps_what_is_replaced(self):
        self.add_two()
        (self.app / "lib").mkdir()
        (self.app / "lib/a").write_text("earlier\n")
        (self.app / "lib/a").chmod(0o604)
        os.utime(self.app / "lib/a", ns=(1, 1_234_567_890_000_000_000))
        (self.app / "run").symlink_to("lib")
        (self.base / "Makefile").write_text("another\n")
        kept = self.root / "kept"
        done = self.made.install(f"--keep-replaced={kept}")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("  ~ 2 replaced, kept: lib/a, run\n", done.stdout)
        below = kept / str(self.app)[1:]
        copy = (below / "lib/a").stat()
        self.assertEqual((below / "lib/a").read_text(), "earlier\n")
        self.assertEqual((copy.st_mode & 0o777, copy.st_uid, copy.st_mtime), (0o604, os.geteuid(),
                                                                            1_234_567_890))
        self.assertEqual(os.readlink(below / "run"), "lib")
        self.assertEqual((kept / str(self.base)[1:] / "Makefile").read_text(), "another\n")
        self.assertEqual(kept.stat().st_mode & 0o777, 0o700)

    def test_keeps_what_lay_there_before_the_first_of_several_products(self):
        directory = self.made.add("app", {"a": "1\n"})
        self.made.add("more", {"a": "2\n"}, directory=directory)
        self.made.configure()
        (directory / "a").write_text("earlier\n")
        (directory / "Makefile").write_text("another\n")
        done = self.made.install(f"--keep-replaced={self.root}/kept")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        below = self.root / "kept" / str(directory)[1:]
        self.assertEqual((below / "a").read_text(), "earlier\n")
        self.assertEqual((below / "Makefile").read_text(), "another\n")

    def test_several_at_a_time_do_not_mix_their_outputs(self):
        for name in ("a", "b", "c"):
            lines = "".join(f"\techo {name}{name} {n}; sleep 0.01\n" for n in range(20))
            self.made.add(name, makefile=f"program:\n{lines}\texit 1\n", parts=["program"])
        self.made.configure()
        done = self.made.install("--jobs=3")
        self.assertEqual(done.returncode, 4)
        heads = re.findall(r"^(\w)\1 \d+$", done.stderr, re.MULTILINE)
        self.assertEqual(len(heads), 60)
        self.assertEqual(sum(a != b for a, b in zip(heads, heads[1:])), 2)

    def test_shows_its_progress_on_a_terminal(self):
        self.add_two()
        leader, follower = pty.openpty()
        self.addCleanup(os.close, leader)
        done = self.made.install(stdout=follower, stderr=subprocess.PIPE, capture_output=False)
        os.close(follower)
        shown = b""
        while True:
            try:
                block = os.read(leader, 65536)
            except OSError:
                break
            if not block:
                break
            shown += block
        self.assertEqual(done.returncode, 0)
        self.assertIn(b"\r\x1b[Kproduct 1 of 2: app ...\r\x1b[Kapp: installed, 1 of 2\r\n"
                      b"\r\x1b[Kproduct 2 of 2: base ...\r\x1b[Kbase: installed, 2 of 2\r\n", shown)

    def test_a_receipt_that_cannot_be_kept_is_told(self):
        self.add_two()
        (self.base / "install/base.receipt").mkdir(parents=True)
        done = self.made.install()
        self.assertEqual(done.returncode, 4)
        self.assertIn("morvane-install: base: no receipt could be kept: ", done.stderr)
        self.assertEqual((self.base / "data").read_text(), "base\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[2:])
