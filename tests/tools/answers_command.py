#!/usr/bin/env python3
"""Runs morvane-answers as operators and their tools do: what it records, what it refuses, what it
leaves alone, and what it takes back.

    answers_command.py BUILD_DIRECTORY
"""

import grp
import json
import os
import pathlib
import pwd
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

BUILD = pathlib.Path(sys.argv[1]).resolve()
ANSWERS = BUILD / "tests/morvane_answers_without_pauses"
USER = pwd.getpwuid(os.geteuid()).pw_name
GROUP = grp.getgrgid(os.getegid()).gr_name

DESCRIPTIONS = {
    "app": """\
Name = App
FullName = "The application"
Version = 1.0
Path = @/opt/app
Target = program
Ask = "Install the program?"
NeedsCategory = STORE
NeedsText = "a store of data"
NeedsType = large
NeedsVersion = 2.0
NeedsType = small
NeedsVersion = 1.2
Target = pages
Ask = "Install the pages?"
NeedsCategory = READER
NeedsText = "a reader of pages"
NeedsType = plain
NeedsVersion = 1.0
NeedsCategory = FONT
NeedsText = "some letters"
NeedsType = bitmap
NeedsFiles = letters
""",
    "base": """\
Name = Base
Version = 1.3
Category = STORE
Type = small
""",
}
READER = "Name = Reader\nVersion = 1.1\nCategory = READER\nType = plain\n"

FILE = f"""\
morvane answers 1
variable root = @
products = app base

[app]
directory = ${{root}}/opt/app
create-directory = yes
owner = {USER}
group = {GROUP}
access = yes
part.program = yes
type.program.STORE = small
supplier.program.STORE = base
part.pages = yes
supplier.pages.READER = reader in ${{root}}/elsewhere
supplier.pages.FONT = ${{root}}/fonts

[base]
directory = ${{root}}/opt/base
create-directory = yes
owner = {USER}
group = {GROUP}
access = no
"""
# A value that changes the result, and the lines of the files that it changes, if any; without them
# it is refused.
OTHERS = {
    "products = app base": ("app", None),
    "variable root = @": ("@/other", None),
    "[app] directory": ("@/opt/else", {"PRODUCT_PATH", "others"}),
    "[app] create-directory": ("no", None),
    "[app] owner": ("nobdy", None),
    "[app] group": ("nobdy", None),
    "[app] access": ("no", {"PRODUCT_ACCESS", "others"}),
    "[app] part.program": ("no", None),
    "[app] type.program.STORE": ("large", None),
    "[app] supplier.program.STORE": ("bas", None),
    "[app] part.pages": ("maybe", None),
    "[app] supplier.pages.READER": ("reader in @/fonts", None),
    "[app] supplier.pages.FONT": ("@/fonts anyway", None),
    "[base] directory": ("@/opt/x", {"PRODUCT_PATH", "STORE_PATH", "others"}),
    "[base] create-directory": ("no", None),
    "[base] owner": ("q", None),
    "[base] group": ("x" * 50, None),
    "[base] access": ("yes", {"PRODUCT_ACCESS", "others"}),
}

WRITES = re.compile(r"\b(mkdir|mkdirat|unlink|unlinkat|rename\w*|chmod|fchmodat\w*|l?chown|fchownat|"
                    r"utime\w*|truncate|link|linkat|symlink\w*|mknod\w*|rmdir|creat)\(")


class AnswersTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-answers-", dir="/tmp")
        self.addCleanup(scratch.cleanup)
        self.root = pathlib.Path(scratch.name) / "host"
        self.file = pathlib.Path(scratch.name) / "answers"
        self.bin = pathlib.Path(scratch.name) / "bin"
        self.bin.mkdir()
        self.lay_out()

    def lay_out(self, language="", more=()):
        """Makes the distribution anew; the products of `more` are beside it."""
        shutil.rmtree(self.root, ignore_errors=True)
        self.dist = self.root / "dist"
        self.dist.mkdir(parents=True)
        shutil.copy(BUILD / f"morvane{language}.rsc", self.dist / "morvane.rsc")
        for name in ("Makefile", "morvane.SunOS4", "morvane.SunOS5"):
            (self.dist / name).write_text("")
        for identifier, text in {**DESCRIPTIONS, **dict(more)}.items():
            (self.dist / f"{identifier}.descr").write_text(self.here(text))
            (self.dist / f"{identifier}.tar").write_text("")
        (self.root / "elsewhere/install").mkdir(parents=True)
        (self.root / "elsewhere/install/reader.descr").write_text(READER)
        (self.root / "fonts").mkdir()
        (self.root / "fonts/letters").write_text("")

    def here(self, text):
        return text.replace("@", str(self.root))

    def write(self, text):
        self.file.write_text(self.here(text))

    def run_answers(self, *arguments, typed="", **options):
        environment = {"PATH": f"{self.bin}:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C"}
        return subprocess.run([ANSWERS, "-C", self.dist, *arguments], input=typed, text=True,
                              capture_output=True, timeout=60, check=False, env=environment,
                              umask=0o022, **options)

    def tree(self):
        """Returns every path with its kind, mode, times and content."""
        seen = {}
        for path in [self.root, *self.root.rglob("*")]:
            status = path.lstat()
            seen[str(path)] = (status.st_mode, status.st_mtime_ns,
                               path.read_text() if path.is_file() else None)
        return seen

    def shapes(self):
        """The same without the times, which move where something came and went."""
        return {path: (mode, content) for path, (mode, _, content) in self.tree().items()}

    def written(self):
        return {path.name: path.read_text() for path in self.dist.iterdir()
                if path.suffix in (".dat", ".mk")}

    def play(self):
        done = self.run_answers("play", self.file)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))
        return self.written()


class Recording(AnswersTest):
    TYPED = ["1 2", "",
             "", "", USER, GROUP, "", "", "small", "", "", "@/elsewhere", "", "@/fonts", "", "n",
             "@/opt/wrong", "n", "relative", "@/opt/base", "", USER, GROUP, "n", "y",
             "@/opt/base", USER, GROUP, "n", "n", ""]
    # Mended answers leave no trace.
    RECORDED = f"""\
morvane answers 1
# Type in the numbers of the products
products = app base

# The application, version 1.0
[app]
directory = @/opt/app
create-directory = yes
owner = {USER}
group = {GROUP}
access = yes
# Install the program?
part.program = yes
type.program.STORE = small
# a store of data
supplier.program.STORE = base
# Install the pages?
part.pages = yes
# a reader of pages
supplier.pages.READER = reader in @/elsewhere
# some letters
supplier.pages.FONT = @/fonts

# Base, version 1.3
[base]
directory = @/opt/base
create-directory = yes
owner = {USER}
group = {GROUP}
access = no
"""

    def record(self):
        typed = "".join(self.here(line) + "\n" for line in self.TYPED)
        done = self.run_answers("record", self.file, typed=typed)
        self.assertEqual((done.stderr, done.returncode), ("", 0), done.stdout)
        return self.file.read_text()

    def test_results_are_recorded_not_keystrokes(self):
        recorded = self.record()
        comments = [line for line in recorded.splitlines() if line.startswith("#")]
        self.assertIn("# Install the pages?", comments)
        self.assertIn("# a store of data", comments)

        def without_comments(text):
            return [line for line in text.splitlines() if not line.startswith("#")]
        self.assertEqual(without_comments(recorded), without_comments(self.here(self.RECORDED)))

    def test_the_same_results_give_the_same_bytes(self):
        recorded = self.record()
        self.lay_out()
        self.TYPED = ["2,1", "y", *self.TYPED[2:16], "@/opt/base", "y", USER, GROUP, "n", "n", "y"]
        self.assertEqual(self.record(), recorded)

    def test_what_is_recorded_in_english_is_played_in_german(self):
        self.record()
        files = self.written()
        self.lay_out(language=".de")
        german = self.play()

        def without_messages(content):
            return re.sub(r"^#.*\n|\((unknown|unbekannt)\)$", "", content, flags=re.MULTILINE)
        self.assertEqual(sorted(german), sorted(files))
        for name in files:
            self.assertEqual(without_messages(german[name]), without_messages(files[name]))

    def test_a_run_that_ends_otherwise_leaves_no_file(self):
        for typed in ("q\n", "", "1\n\nq\n"):
            done = self.run_answers("record", self.file, typed=typed)
            self.assertEqual(done.returncode, 1)
            self.assertFalse(self.file.exists())

    def test_an_earlier_file_stays_until_the_run_has_ended_well(self):
        self.file.write_text("earlier")
        self.run_answers("record", self.file, typed="1\n\nq\n")
        self.assertEqual(self.file.read_text(), "earlier")
        self.assertIn("[app]", self.record())

    def test_a_place_where_no_file_can_be_is_refused_before_the_first_question(self):
        for place in (self.root, self.root / "missing/answers"):
            done = self.run_answers("record", place, typed="q\n")
            self.assertEqual((done.stdout, done.returncode), ("", 2))


class Playing(AnswersTest):
    def setUp(self):
        super().setUp()
        self.write(FILE)

    def test_what_is_configured_is_what_the_file_says(self):
        files = self.play()
        self.assertIn(self.here("PRODUCT_PATH = @/opt/app\n"), files["app.dat"])
        self.assertIn(self.here("STORE_PATH = @/opt/base\n"), files["app.dat"])
        self.assertIn(self.here("READER_PATH = @/elsewhere\n"), files["app.dat"])
        self.assertIn(self.here("FONT_PATH = @/fonts\n"), files["app.dat"])
        self.assertIn("PRODUCT_ACCESS = 0\n", files["base.dat"])
        self.assertIn("install.mk", files)
        self.assertTrue((self.root / "opt/base").is_dir())

    def test_a_second_time_gives_the_same(self):
        self.assertEqual(self.play(), self.play())

    def test_other_products_change_nothing(self):
        files = self.play()
        stores = {name: DESCRIPTIONS["base"].replace("Base", name) for name in ("aaa", "bbb", "zzz")}
        other = {"a0": "Name = Other\nVersion = 1.0\n", "zz": "Name = Else\nVersion = 2.0\n"}
        reader = {"aread": READER.replace("Reader", "Newer")}
        for more in (stores, other, reader, {**stores, **other, **reader}):
            self.lay_out(more=more)
            self.assertEqual(self.play(), files, more)

    def test_a_product_less_is_a_section_less(self):
        files = self.play()
        self.lay_out()
        self.write(re.sub(r"products = .*", "products = base", FILE[:FILE.index("[app]")]) +
                   FILE[FILE.index("[base]"):])
        self.assertEqual(self.play()["base.dat"], files["base.dat"])

    def test_every_answer_that_is_missing_is_said_at_once_with_its_proposal(self):
        self.write("morvane answers 1\nproducts = app base\n[app]\ntype.program.STORE = small\n")
        before = self.tree()
        done = self.run_answers("check", self.file)
        name = self.file
        self.assertEqual(done.stderr, self.here(f"""\
{name}: [base] directory: there is no answer
{name}: [base] owner: there is no answer
{name}: [base] group: there is no answer
{name}: [base] access: there is no answer; proposal: yes
{name}:3: [app] directory: there is no answer; proposal: @/opt/app
{name}:3: [app] create-directory: there is no answer; proposal: yes
{name}:3: [app] owner: there is no answer
{name}:3: [app] group: there is no answer
{name}:3: [app] access: there is no answer; proposal: yes
{name}:3: [app] part.program: there is no answer; proposal: yes
{name}:3: [app] supplier.program.STORE: there is no answer; proposal: base
{name}:3: [app] part.pages: there is no answer; proposal: yes
{name}:3: [app] supplier.pages.READER: there is no answer
{name}:3: [app] supplier.pages.FONT: there is no answer
"""))
        self.assertEqual((done.stdout, done.returncode), ("", 3))
        self.assertEqual(self.tree(), before)

    def refused(self, text):
        self.write(text)
        before = self.tree()
        done = self.run_answers("play", self.file)
        self.assertEqual((done.stdout, done.returncode), ("", 3), text)
        self.assertRegex(done.stderr, rf"^{self.file}:", text)
        self.assertEqual(self.tree(), before, text)
        return done.stderr

    def test_a_line_that_is_missing_doubled_or_misspelt_is_refused(self):
        lines = FILE.splitlines(keepends=True)
        for number, line in enumerate(lines):
            if line == "\n":
                continue
            before, behind = "".join(lines[:number]), "".join(lines[number + 1:])
            misspelt = line[0] + "x" + line[1:]
            for text in (before + behind, before + line + line + behind,
                         before + misspelt + behind):
                self.refused(text)

    def test_another_value_is_refused_or_gives_that_result(self):
        files = self.play()
        seen = set()
        section = ""
        lines = FILE.splitlines(keepends=True)
        for number, line in enumerate(lines):
            if line.startswith("["):
                section = line.strip() + " "
            if "=" not in line:
                continue
            name, _, value = line.strip().partition(" = ")
            key = section + name if section else line.strip()
            other, changed = OTHERS[key]
            seen.add(key)
            text = "".join(lines[:number]) + f"{name} = {other}\n" + "".join(lines[number + 1:])
            if changed is None:
                self.lay_out()
                self.refused(text)
                continue
            self.lay_out()
            self.write(text)
            differing = set()
            for file, content in self.play().items():
                for one, two in zip(content.splitlines(), files[file].splitlines()):
                    if one != two:
                        differing.add("others" if file == "install.mk" else one.split()[0])
            self.assertEqual(differing, changed, key)
        self.assertEqual(seen, set(OTHERS))

    def test_a_file_that_cannot_be_read_is_wrong_use(self):
        for arguments in (["play"], ["play", self.root / "missing"], ["check", self.root],
                          ["record"], ["read", self.file], ["check", self.file, self.file],
                          ["check", "--set", "root", self.file],
                          ["check", "--set", "other=x", self.file],
                          ["check", "--format=xml", self.file], ["template", self.file]):
            done = self.run_answers(*arguments)
            self.assertEqual((done.stdout, done.returncode), ("", 2), arguments)
            self.assertIn("morvane-answers", done.stderr)

    def test_a_report_that_cannot_be_written_is_no_success(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            done = subprocess.run([ANSWERS, "-C", self.dist, "check", "--plan", self.file],
                                  stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"No space", done.stderr)

    def test_a_variable_can_be_set(self):
        self.write(FILE.replace("variable root = @", "variable root = /nowhere"))
        self.assertEqual(self.run_answers("check", self.file).returncode, 3)
        done = self.run_answers("check", f"--set=root={self.root}", self.file)
        self.assertEqual((done.stderr, done.returncode), ("", 0))

    def test_outside_a_distribution_the_reason_is_said(self):
        (self.dist / "morvane.rsc").unlink()
        self.assertIn("Cannot find resource file", self.refused(FILE))

    def test_a_product_that_is_not_there_is_named(self):
        self.assertIn(":3: products: there is no product 'bse'",
                      self.refused(FILE.replace("app base", "app bse")))
        self.assertIn(":3: products: names 'app' twice",
                      self.refused(FILE.replace("app base", "app base app")))

    def test_the_plan_says_what_is_configured_where(self):
        done = self.run_answers("check", "--plan", self.file)
        self.assertEqual(done.stdout, self.here(f"""\
app 1.0 -> @/opt/app   new   owner {USER}, group {GROUP}, others keep access
  part program: STORE from base
  part pages: READER from reader in @/elsewhere, FONT from @/fonts
base 1.3 -> @/opt/base   new   owner {USER}, group {GROUP}, others have no access
"""))
        self.assertEqual((done.stderr, done.returncode), ("", 0))

    def test_programs_read_the_same_as_json(self):
        seen = json.loads(self.run_answers("check", "--format=json", self.file).stdout)
        self.assertEqual((seen["status"], seen["findings"]), ("good", []))
        self.assertEqual(seen["directories"], [self.here(each) for each in
                                               ("@/opt", "@/opt/app", "@/opt/base")])
        planned = {file["name"]: file["content"] for file in seen["files"]}
        self.assertEqual(planned, self.play())
        self.write(FILE.replace(f"owner = {USER}\n", "", 1))
        done = self.run_answers("check", "--format=json", self.file)
        seen = json.loads(done.stdout)
        self.assertEqual((seen["status"], done.returncode), ("refused", 3))
        self.assertEqual(seen["findings"], [
            {"line": 5, "trouble": "missing", "section": "app", "name": "owner",
             "text": "there is no answer", "proposal": ""}])


class Templates(AnswersTest):
    def test_a_template_holds_the_proposals_and_gaps_where_there_are_none(self):
        done = self.run_answers("template", "--products", "app base", self.file)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))
        text = self.file.read_text()
        self.assertIn("supplier.program.STORE =\n", text)  # of the type that is proposed
        self.assertIn(self.here("directory = @/opt/app\ncreate-directory"),
                      re.sub("#.*\n", "", text))
        gaps = re.findall(r"^\S+ =$", text, re.MULTILINE)
        checked = self.run_answers("check", self.file)
        self.assertEqual(checked.stderr.count("has no value"), len(gaps))
        self.assertEqual(checked.returncode, 3)

    def test_a_template_that_is_filled_in_is_played(self):
        self.run_answers("template", "--products", "base", self.file)
        text = self.file.read_text()
        for gap, value in (("directory", self.here("@/b")), ("owner", USER), ("group", GROUP)):
            text = text.replace(f"\n{gap} =\n", f"\n{gap} = {value}\n")
        if "create-directory" not in text:
            text += "create-directory = yes\n"
        self.file.write_text(text)
        self.assertIn("base.dat", self.play())

    def test_a_file_is_not_overwritten_and_what_cannot_be_is_refused(self):
        done = self.run_answers("template", "--products", "nothing", self.file)
        self.assertIn("there is no product 'nothing'", done.stderr)
        self.assertEqual((done.returncode, self.file.exists()), (3, False))
        self.file.write_text("mine")
        done = self.run_answers("template", "--products", "app", self.file)
        self.assertEqual((done.returncode, self.file.read_text()), (2, "mine"))


class Harm(AnswersTest):
    """What a rehearsal touches, and what remains of a run that goes wrong."""

    def setUp(self):
        super().setUp()
        self.write(FILE)

    def test_a_check_touches_nothing(self):
        for name in ("app.dat", "install.mk"):
            (self.dist / name).write_text("earlier")
        before = self.tree()
        self.assertEqual(self.run_answers("check", self.file).returncode, 0)
        self.assertEqual(self.tree(), before)

    def test_no_system_call_of_a_check_writes_anything_but_scratch_files(self):
        if shutil.which("strace") is None:
            self.skipTest("there is no strace")
        log = self.root.parent / "log"
        done = subprocess.run(["strace", "-f", "-o", log, "-e", "trace=file", ANSWERS, "-C",
                               self.dist, "check", self.file], check=False,
                              env={**os.environ, "ASAN_OPTIONS": "detect_leaks=0"})
        self.assertEqual(done.returncode, 0)
        lines = log.read_text().splitlines()
        self.assertGreater(len(lines), 100)
        for line in lines:
            writes = WRITES.search(line) or re.search(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC", line)
            scratch = re.search(r'"/tmp/\d+\.tmp1?"|"/dev/(null|tty)"|"/tmp".*O_TMPFILE|'
                                r'"/tmp/tmpf\w+"', line)
            failed = " = -1 " in line
            self.assertTrue(not writes or scratch or failed, line)

    def command(self, name, script):
        """Puts a command in front of the host's own; $real is that."""
        real = shutil.which(name, path="/usr/bin:/bin")
        path = self.bin / name
        path.write_text(f"#!/bin/sh\nreal={real}\n{script}")
        path.chmod(0o755)

    def test_what_it_is_started_with_does_not_matter(self):
        closed = 'exec "$0" -C "$1" check "$2" <&- >&- 2>&-'
        ignored = 'trap "" CHLD XFSZ; exec "$0" -C "$1" check "$2"'
        self.write(FILE.replace("access", "acess", 1))
        for script in (closed, ignored):
            done = subprocess.run(["sh", "-c", script, ANSWERS, self.dist, self.file], timeout=60,
                                  stderr=subprocess.DEVNULL, check=False)
            self.assertEqual(done.returncode, 3, script)

    def test_nobody_waits_for_the_pauses_of_a_rehearsal(self):
        command = [BUILD / "morvane-answers", "-C", self.dist, "check", self.file]
        if os.geteuid() == 0:
            command[:0] = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]
            for path in [self.root.parent, *self.root.parent.rglob("*")]:
                os.chown(path, 65534, 65534)
        start = time.monotonic()
        subprocess.run(command, stderr=subprocess.DEVNULL, check=False, timeout=60)
        self.assertLess(time.monotonic() - start, 6)  # the program pauses for eight seconds

    def test_an_interrupted_run_takes_back_what_it_made(self):
        (self.dist / "app.dat").write_text("earlier")
        (self.dist / "app.dat").chmod(0o600)
        before = self.shapes()
        self.command("mkdir", f'"$real" "$@"; : >{self.bin}/reached; sleep 2')
        for sent in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            (self.bin / "reached").unlink(missing_ok=True)
            with subprocess.Popen([ANSWERS, "-C", self.dist, "play", self.file], umask=0o022,
                                  stderr=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                  env={"PATH": f"{self.bin}:/usr/bin:/bin"},
                                  start_new_session=True) as playing:
                while not (self.bin / "reached").exists():
                    time.sleep(0.01)
                os.killpg(playing.pid, sent)  # as a terminal does
                errors = playing.stderr.read()
            self.assertEqual(playing.returncode, 4, errors)
            self.assertIn(b"taken back", errors)
            self.assertEqual(self.shapes(), before)

    def test_a_distribution_that_changes_between_rehearsal_and_run_is_noticed(self):
        for name in ("app.dat", "install.mk"):
            (self.dist / name).write_text("earlier\n")
            (self.dist / name).chmod(0o640)
        changes = {
            "a new question": f"echo 'Target = x\nAsk = \"x?\"' >>{self.dist}/base.descr",
            "another version": f"sed -i s/1.3/1.4/ {self.dist}/base.descr",
            "a new product": f": >{self.dist}/aa.tar",
            "a product is gone": f"mv {self.dist}/base.tar {self.dist}/base.gone",
            "a directory is there": f"mkdir -p {self.root}/opt/base",
        }
        originals = self.shapes()
        for what, change in changes.items():
            # Each run tries two groups: the rehearsal has listed the products by then.
            self.command("chgrp", f"""
echo >>{self.bin}/calls
test "$(wc -l <{self.bin}/calls)" != 2 || {{ {change}
}}
exec "$real" "$@"
""")
            (self.bin / "calls").unlink(missing_ok=True)
            done = self.run_answers("play", self.file)
            self.assertEqual((done.stdout, done.returncode), ("", 4), what)
            self.assertIn("what it made was taken back", done.stderr, what)
            after = self.shapes()
            written = {path: state for path, state in after.items()
                       if path.endswith((".dat", ".mk")) or path.endswith("/opt/app")}
            self.assertEqual(written, {path: state for path, state in originals.items()
                                       if path.endswith((".dat", ".mk"))}, what)
            self.lay_out()
            for name in ("app.dat", "install.mk"):
                (self.dist / name).write_text("earlier\n")
                (self.dist / name).chmod(0o640)

    def test_a_command_that_fails_anywhere_leaves_the_whole_or_nothing(self):
        commands = ("ls", "mkdir", "chmod", "touch", "chgrp", "uname", "rm", "sed")
        for name in commands:
            self.command(name, f"""
echo >>{self.bin}/calls
test "$(wc -l <{self.bin}/calls)" != "$(cat {self.bin}/failing)" || exit 1
exec "$real" "$@"
""")
        (self.bin / "failing").write_text("0\n")
        files = self.play()
        calls = (self.bin / "calls").read_text().count("\n")
        self.assertGreater(calls, 15)
        statuses = set()
        for failing in range(1, calls + 1):
            self.lay_out()
            (self.dist / "install.mk").write_text("earlier")
            before = self.shapes()
            (self.bin / "calls").unlink()
            (self.bin / "failing").write_text(f"{failing}\n")
            done = self.run_answers("play", self.file)
            statuses.add(done.returncode)
            if done.returncode == 0:
                self.assertEqual(self.written(), files, failing)
            else:
                self.assertIn(done.returncode, (3, 4), failing)
                self.assertEqual(self.shapes(), before, (failing, done.stderr))
        self.assertEqual(statuses, {0, 3, 4})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
