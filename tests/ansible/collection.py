#!/usr/bin/env python3
"""Builds the collection, and looks at it with Ansible's own checks, as far as they need no network.

    collection.py BUILD_DIRECTORY
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import needs

PROJECT = pathlib.Path(__file__).resolve().parents[2]
COMMANDS = ("ansible-galaxy", "ansible-doc", "ansible-playbook", "ansible-lint", "ansible-test")

# Of "ansible-test sanity --list-tests": those that install nothing.
SANITY = ("compile", "empty-init", "future-import-boilerplate", "ignores", "line-endings",
          "metaclass-boilerplate", "no-assert", "no-basestring", "no-dict-iteritems", "no-dict-iterkeys",
          "no-dict-itervalues", "no-get-exception", "no-illegal-filenames", "no-main-display",
          "no-smart-quotes", "no-unicode-literals", "replace-urlopen", "shebang", "symlinks",
          "use-argspec-type-path", "use-compat-six")


class CollectionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="morvane-collection-", dir="/tmp")
        cls.addClassCleanup(scratch.cleanup)
        cls.root = pathlib.Path(scratch.name)
        (cls.root / "home").mkdir()
        cls.environment = {"PATH": needs.PATH, "LC_ALL": "C.UTF-8",
                           "HOME": str(cls.root / "home"), "ANSIBLE_NOCOLOR": "1", "NO_COLOR": "1",
                           "ANSIBLE_COLLECTIONS_PATH": str(cls.root), "SOURCE_DATE_EPOCH": "1000000000"}
        cls.tarball = pathlib.Path(cls.run_command(PROJECT / "scripts/collection", cls.root).rstrip("\n"))
        cls.run_command("ansible-galaxy", "collection", "install", "-p", cls.root, cls.tarball)
        cls.installed = cls.root / "ansible_collections/morvane/distribution"

    @classmethod
    def run_command(cls, *command, where=PROJECT):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False, env=cls.environment, cwd=where, timeout=300)
        if done.returncode != 0:
            raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}")
        return done.stdout

    def documentation(self, kind, name):
        return json.loads(self.run_command("ansible-doc", "--json", "-t", kind, name))[name]

    def test_it_has_the_version_of_the_program(self):
        version = re.search(r"^project\(morvane VERSION (\S+) ", (PROJECT / "CMakeLists.txt").read_text(),
                            re.MULTILINE).group(1)
        manifest = json.loads((self.installed / "MANIFEST.json").read_text())
        self.assertEqual(manifest["collection_info"]["version"], version + ".0")
        self.assertEqual(self.tarball.name, f"morvane-distribution-{version}.0.tar.gz")

    def test_the_same_sources_give_the_same_bytes(self):
        again = self.root / "again"
        self.run_command(PROJECT / "scripts/collection", again)
        self.assertEqual((again / self.tarball.name).read_bytes(), self.tarball.read_bytes())

    def test_everything_but_its_template_is_in_it(self):
        def files(directory):
            return {str(path.relative_to(directory)) for path in directory.rglob("*") if path.is_file()
                    and "__pycache__" not in path.parts}

        self.assertEqual(files(self.installed) ^ files(PROJECT / "ansible"),
                         {"galaxy.yml.in", "MANIFEST.json", "FILES.json", "CHANGELOG.md"})

    def test_the_role_knows_what_the_module_knows(self):
        module = self.documentation("module", "morvane.distribution.installation")["doc"]["options"]
        role = self.documentation("role", "morvane.distribution.install")["entry_points"]["main"]["options"]
        self.assertEqual({name.removeprefix("install_") for name in role}, set(module))
        for name, option in module.items():
            of_role = role["install_" + name]
            for key in ("type", "required", "default"):
                self.assertEqual(of_role.get(key), option.get(key) or None, (name, key))

    def test_the_examples_can_be_read(self):
        for playbook in ("one_host.yml", "many_hosts.yml"):
            self.run_command("ansible-playbook", "-i", "inventory.yml", "--syntax-check", playbook,
                             where=self.installed / "examples")

    def test_ansible_lint_finds_nothing(self):
        tree = self.root / "lint/ansible_collections/morvane/distribution"
        shutil.copytree(self.installed, tree)
        (tree / "galaxy.yml").write_text((PROJECT / "ansible/galaxy.yml.in").read_text()
                                         .replace("@VERSION@", "1.0.0"))
        self.run_command("ansible-lint", "--offline", "--profile", "production", where=tree)

    def test_ansible_test_finds_nothing(self):
        tree = self.root / "sanity/ansible_collections/morvane/distribution"
        shutil.copytree(self.installed, tree)
        chosen = [option for name in SANITY for option in ("--test", name)]
        self.run_command("ansible-test", "sanity", "--python", "3.11", *chosen, where=tree)


def main():
    why = needs.missing(*COMMANDS)
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])


if __name__ == "__main__":
    main()
