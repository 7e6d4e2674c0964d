#!/usr/bin/env python3
"""Installs the whole sample distribution, verifies it, changes one thing, and takes all away again.

    sample_installed.py BUILD_DIRECTORY
"""

import json
import os
import re
import subprocess
import tempfile
import unittest

import installed
from installed import BUILD, GROUP, PROJECT, SUPERUSER, USER

SUPERUSERS = "sablog.tar"  # whose files would belong to others


class SampleTest(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-sample-", dir="/tmp")
        self.addCleanup(scratch.cleanup)
        self.distribution = f"{scratch.name}/dist"
        self.opt = f"{self.distribution}/opt"
        subprocess.run([PROJECT / "scripts/distribution", BUILD, self.distribution], check=True,
                       capture_output=True)

    def run_command(self, status, command, *arguments):
        if command in ("morvane-install", "morvane-verify", "morvane-remove"):
            arguments = ("--registry=receipts", *arguments)
        done = subprocess.run([BUILD / command, *arguments], cwd=self.distribution, text=True,
                              capture_output=True, check=False, stdin=subprocess.DEVNULL,
                              env=installed.ENVIRONMENT, timeout=installed.TIMEOUT)
        self.assertEqual((done.returncode, done.stderr), (status, ""), done.stdout)
        return done.stdout

    def answer(self):
        """Writes the answers: what is proposed, and by hand what is not."""
        products = sorted(name[:-len(".tar")] for name in os.listdir(self.distribution)
                          if name.endswith(".tar") and (SUPERUSER or name != SUPERUSERS))
        answers = f"{self.distribution}/answers"
        self.run_command(0, "morvane-answers", "template", f"--products={' '.join(products)}", answers)
        with open(answers, encoding="utf-8") as file:
            text = file.read()
        missing = {"directory": f"{self.opt}/undernote", "owner": USER, "group": GROUP}
        for name, value in missing.items():
            text = re.sub(rf"^{name} =$", f"{name} = {value}", text, flags=re.MULTILINE)
            if not SUPERUSER and name != "directory":  # who can only own what is its own
                text = re.sub(rf"^{name} = .*", f"{name} = {value}", text, flags=re.MULTILINE)
        with open(answers, "w", encoding="utf-8") as file:
            file.write(text)
        return products, answers

    def test_comes_as_it_should_be_and_goes_without_a_trace(self):
        products, answers = self.answer()
        os.makedirs(f"{self.opt}/marlpost/bin")
        os.mkdir(f"{self.opt}/undernote")
        with open(f"{self.opt}/marlpost/bin/notes", "w", encoding="utf-8") as file:
            file.write("not of the product\n")
        self.run_command(0, "tests/morvane_answers_without_pauses", "play", answers)
        before = installed.snapshot(self.opt)
        self.run_command(0, "morvane-install")
        verified = self.run_command(0, "morvane-verify")
        self.assertEqual(verified.count(", all as installed\n"), len(products), verified)

        changed = f"{self.opt}/kelstone/install/kelstone.dat"
        os.chmod(changed, 0o600)
        said = json.loads(self.run_command(1, "morvane-verify", "--format=json", "kelstone"))
        self.assertEqual([each["path"] for each in said["products"][0]["differing"]], [changed])
        os.chmod(changed, 0o644)

        self.run_command(0, "morvane-remove", "--yes", *products)
        self.assertEqual(installed.snapshot(self.opt), before)


unittest.main(argv=[__file__])
