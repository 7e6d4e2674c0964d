#!/usr/bin/env python3
"""Runs morvane-lint as people and their CI do: options, statuses, formats, suppressions, the sample
distribution, and descriptions that fuzzing made.

    lint_command.py BUILD_DIRECTORY
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv[1]).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[2]
LINT = BUILD / "morvane-lint"

HEAD = "Name = X\nFullName = \"Ex\"\nVersion = 1.0\n"
NOTE = HEAD + "Target = t\n"
WARNING = HEAD + "Owner =\n"
ERROR = HEAD + "Nmae = X\n"


def run(*arguments, directory="."):
    return subprocess.run([LINT, *arguments], cwd=directory, capture_output=True, text=True,
                          timeout=60, check=False)


class LintTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-lint-")
        self.addCleanup(scratch.cleanup)
        self.directory = pathlib.Path(scratch.name)

    def write(self, name, content):
        path = self.directory / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(content)

    def status(self, *arguments):
        return run(*arguments, directory=self.directory).returncode


class Command(LintTest):
    def test_a_finding_is_a_line(self):
        self.write("x.descr", ERROR)
        done = run("x.descr", directory=self.directory)
        self.assertEqual(done.stdout, "x.descr:4:1: error: no such keyword: 'Nmae', did you mean "
                                      "'Name'? [keyword-unknown]\n")
        self.assertEqual((done.stderr, done.returncode), ("", 1))

    def test_the_least_severity_that_fails_can_be_chosen(self):
        statuses = {}
        for name, content in {"note": NOTE, "warning": WARNING, "error": ERROR}.items():
            self.write("x.descr", content)
            statuses[name] = [self.status("x.descr", *option) for option in (
                [], ["--fail-on=note"], ["--fail-on=warning"], ["--fail-on=error"])]
        self.assertEqual(statuses, {"note": [0, 1, 0, 0], "warning": [1, 1, 1, 0],
                                    "error": [1, 1, 1, 1]})

    def test_wrong_use_and_what_cannot_be_read_are_status_2(self):
        self.write("x.txt", "")
        for arguments in (["--wrong"], ["--format=xml"], ["--fail-on=all"], ["--explain=none"],
                          ["missing"], ["missing.descr"], ["x.txt"], ["-C", "missing"]):
            done = run(*arguments, directory=self.directory)
            self.assertEqual((done.stdout, done.returncode), ("", 2), arguments)
            self.assertIn("morvane-lint", done.stderr)

    def test_a_full_disk_is_no_success(self):
        self.write("x.descr", HEAD)
        with open("/dev/full", "w", encoding="ascii") as full:
            done = subprocess.run([LINT, "--format=json", "x.descr"], cwd=self.directory,
                                  stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"No space", done.stderr)

    def test_help_and_version_are_printed(self):
        self.assertIn("--fail-on=SEVERITY", run("--help").stdout)
        self.assertRegex(run("--version").stdout, r"\Amorvane-lint \d+\.\d+\n\Z")

    def test_every_check_is_explained(self):
        self.write("x.descr", HEAD)
        log = json.loads(run("--format=sarif", "x.descr", directory=self.directory).stdout)
        for rule in log["runs"][0]["tool"]["driver"]["rules"]:
            done = run(f"--explain={rule['id']}")
            self.assertEqual(done.returncode, 0)
            self.assertTrue(done.stdout.startswith(f"{rule['id']} ("))
            self.assertTrue(all(len(line) < 80 for line in done.stdout.splitlines()))
            self.assertIn(rule["fullDescription"]["text"], done.stdout.replace("\n", " "))

    def test_operands_behind_two_hyphens_may_look_like_options(self):
        self.write("--x.descr", HEAD)
        self.assertEqual(self.status("--", "--x.descr"), 0)

    def test_findings_are_sorted_and_named_behind_their_directory(self):
        self.write("dist/b.descr", ERROR)
        self.write("dist/a.descr", HEAD + "Owner =\nNmae = X\n")
        for operand in ("dist", "dist/", "dist//"):
            lines = run(operand, directory=self.directory).stdout.splitlines()
            self.assertEqual([line.split(": ")[0] for line in lines],
                             ["dist/a.descr:1:1", "dist/a.descr:4:1", "dist/a.descr:5:1",
                              "dist/b.descr:1:1", "dist/b.descr:1:1", "dist/b.descr:4:1"])

    def test_a_distribution_has_keywords_of_its_own(self):
        messages = (BUILD / "morvane.rsc").read_text()
        self.write("morvane.rsc", re.sub("^201 .*", "201 Denomination", messages,
                                         flags=re.MULTILINE))
        self.write("x.descr", HEAD.replace("Name", "Denomination", 1))
        self.assertEqual(self.status("x.descr"), 0)
        self.write("x.descr", HEAD)
        self.assertEqual(self.status("x.descr"), 1)

    def test_what_is_not_printable_is_escaped(self):
        self.write("x.descr", HEAD + "N\033[31m = 1\n")
        done = run("x.descr", directory=self.directory)
        self.assertNotIn("\033", done.stdout)

    def test_a_hidden_archive_is_no_product(self):
        for name in (".tar", ".x.tar", ".x.descr"):
            self.write(name, "")
        done = run("--format=json", directory=self.directory)
        self.assertEqual([(found["file"], found["id"], found["severity"])
                          for found in json.loads(done.stdout)["findings"]],
                         [(".tar", "identifier-characters", "error"),
                          (".x.tar", "identifier-characters", "error")])

    def test_nothing_of_the_distribution_is_run_or_waited_for(self):
        os.mkfifo(self.directory / "x.descr")
        os.mkfifo(self.directory / "x.tar")
        self.write("y.descr", HEAD + "Path = `touch$(touch ran)`\n")
        self.assertEqual(self.status(), 1)
        self.assertFalse((self.directory / "ran").exists())


class Suppressions(LintTest):
    def found(self):
        done = run("--format=json", directory=self.directory)
        return [(found["id"], found["line"]) for found in json.loads(done.stdout)["findings"]]

    def setUp(self):
        super().setUp()
        (self.directory / "x").mkdir()  # the source tree

    def test_one_reaches_to_the_next_entry(self):
        allow = "# lint: allow value-empty: a reason\n"
        self.write("x.descr", HEAD + allow + "# more\n\nOwner =\nGroup =\n")
        self.assertEqual(self.found(), [("value-empty", 8)])

    def test_several_stand_above_one_entry(self):
        self.write("x.descr", HEAD + "# lint: allow value-empty: a reason\n"
                   "# lint: allow entry-repeated: another\nName =\n")
        self.assertEqual(self.found(), [("name-missing", 1)])

    def test_above_the_first_entry_one_holds_for_the_whole_file(self):
        self.write("x.descr", "#\n# lint: allow name-missing: it has none\n" +
                   HEAD.partition("\n")[2])
        self.assertEqual(self.found(), [])

    def test_those_of_archives_are_in_a_file(self):
        self.write("x.descr", HEAD)
        self.write("x.tar", "")
        self.assertEqual(self.found(), [("archive-empty", 1)])
        self.write("lint.allow", "# what is allowed\n\nx.tar archive-empty: filled later\n")
        self.assertEqual(self.found(), [])
        self.write("lint.allow", "x.tar archive-empty:\nx.tar\n y.tar archive-empty: why\n")
        self.assertEqual(self.found(), [("allow-malformed", 1), ("allow-malformed", 2),
                                        ("allow-unused", 3), ("archive-empty", 1)])


class Sarif(LintTest):
    """Each member that SARIF 2.1.0 requires, and those that code-hosting sites go by."""

    def test_a_log_has_what_is_required(self):
        self.write("a b.descr", ERROR + "Owner =\nOwner =\n")
        log = json.loads(run("--format=sarif", "a b.descr", directory=self.directory).stdout)
        self.assertEqual(log["version"], "2.1.0")
        self.assertTrue(log["$schema"].endswith("sarif-2.1.0.json"))
        self.assertEqual(len(log["runs"]), 1)
        driver = log["runs"][0]["tool"]["driver"]
        self.assertEqual(driver["name"], "morvane-lint")
        identifiers = [rule["id"] for rule in driver["rules"]]
        self.assertEqual(len(identifiers), len(set(identifiers)))
        for rule in driver["rules"]:
            self.assertTrue(rule["shortDescription"]["text"])
            self.assertTrue(rule["fullDescription"]["text"])
            self.assertIn(rule["defaultConfiguration"]["level"], ("note", "warning", "error"))
        results = log["runs"][0]["results"]
        self.assertEqual(len(results), 4)
        fingerprints = set()
        for result in results:
            self.assertTrue(result["message"]["text"])
            self.assertEqual(identifiers[result["ruleIndex"]], result["ruleId"])
            self.assertIn(result["level"], ("note", "warning", "error"))
            self.assertEqual(len(result["locations"]), 1)
            location = result["locations"][0]["physicalLocation"]
            self.assertEqual(location["artifactLocation"], {"uri": "a%20b.descr"})
            self.assertGreaterEqual(location["region"]["startLine"], 1)
            self.assertGreaterEqual(location["region"]["startColumn"], 1)
            fingerprints.update(result["partialFingerprints"].values())
        self.assertEqual(len(fingerprints), len(results))

    def test_the_line_of_the_manual_page_for_a_ci_fails_after_it_wrote_the_log(self):
        steps = (PROJECT / "man/examples/lint.yml").read_text()
        line = re.search(r"run: (.*)", steps)[1]
        log = self.directory / re.search(r"sarif_file: (.*)", steps)[1]
        for text, status, results in ((HEAD, 0, []), (ERROR, 1, ["keyword-unknown"])):
            self.write("products/x.descr", text)
            self.write("products/x/file", "")
            done = subprocess.run(["sh", "-c", line], cwd=self.directory, check=False,
                                  env={"PATH": f"{BUILD}:/usr/bin:/bin"})
            found = json.loads(log.read_text())["runs"][0]["results"]
            self.assertEqual(done.returncode, status)
            self.assertEqual([result["ruleId"] for result in found], results)

    def test_a_log_without_results_has_an_empty_list(self):
        self.write("x.descr", HEAD)
        log = json.loads(run("--format=sarif", "x.descr", directory=self.directory).stdout)
        self.assertEqual(log["runs"][0]["results"], [])


class Samples(LintTest):
    def test_the_sample_distribution_has_nothing_above_a_note(self):
        trees = sorted(path for path in (PROJECT / "examples").iterdir() if path.is_dir())
        made = self.directory / "made"
        subprocess.run([PROJECT / "scripts/make-distribution", "--build", BUILD, made, *trees],
                       check=True, capture_output=True)
        for directory in (made, PROJECT / "examples"):
            done = run(str(directory))
            self.assertEqual(done.returncode, 0, done.stdout)

    def test_the_messages_have_no_findings_in_any_language(self):
        for file in sorted(BUILD.glob("morvane*.rsc")):
            done = run(f"--translation={file}", str(file))
            self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_commands_in_messages_are_read_wherever_the_path_leads(self):
        done = subprocess.run([LINT, BUILD / "morvane.rsc"], env={"PATH": "/missing"},
                              capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_descriptions_that_fuzzing_made_end_in_findings(self):
        corpus = [path for name in ("seeds", "found")
                  for path in sorted((PROJECT / "fuzz" / name / "description").glob("*"))]
        self.assertGreater(len(corpus), 5)
        for path in corpus:
            (self.directory / "x.descr").write_bytes(path.read_bytes())
            done = run("--format=json", "x.descr", directory=self.directory)
            self.assertIn(done.returncode, (0, 1), path)
            self.assertEqual(done.stderr, "", path)
            json.loads(done.stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
