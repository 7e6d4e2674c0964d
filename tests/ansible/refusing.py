#!/usr/bin/env python3
"""What the module installation refuses to install, and what installation_info finds.

    refusing.py BUILD_DIRECTORY
"""

import os
import shutil
import unittest

from module_test import BUILD, GROUP, USER, ModuleTest, archive, main


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

    def blocked(self, reasons):
        return self.refused("The installation is blocked, and nothing was touched: " + reasons)

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

    def test_what_no_question_takes_is_left_over_by_its_name(self):
        self.products[0].update(keep_without_tools=True, patches={"0": "base"})
        self.products[0]["needs"][0]["type"] = "plain"
        result = self.install(go_on_all_the_same=True, go_on_without_tools=True, links_file="/x")
        self.assertEqual({(each["trouble"], each["section"], each["name"]) for each in result["findings"]},
                         {("left over", "", "go-on-all-the-same"), ("left over", "", "go-on-without-tools"),
                          ("left over", "", "links-file"), ("left over", "app", "keep-without-tools"),
                          ("left over", "app", "patch.0"), ("left over", "app", "type.program.STORE")})

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
        result = self.blocked(f"[base] its directory '{self.root}/base' is no directory; "
                              f"[app] its directory '{self.root}/app' is no directory")
        self.assertEqual([found["id"] for found in result["blocking"]], ["directory-none", "directory-none"])
        self.assertEqual((self.root / "app").read_text(), "kept")

    @unittest.skipIf(os.geteuid() == 0, "the superuser reads everything")
    def test_an_archive_that_cannot_be_read_is_named(self):
        (self.dist / "app.tar").chmod(0)
        self.blocked("[app] app.tar: the archive cannot be opened: Permission denied; "
                     "[app] there is no install/Makefile, which is to make part 'program'")

    def test_what_is_wrong_with_an_archive_is_told_before_its_directory_is_made(self):
        archive(self.dist / "app.tar", {"../astray": ""})
        for check_mode in (True, False):
            result = self.install(_ansible_check_mode=check_mode)
            self.assertIn("member-outside", [found["id"] for found in result["blocking"]])
            self.assertFalse((self.root / "opt").exists())

    def test_what_lies_in_the_way_is_told(self):
        (self.root / "opt/base").mkdir(parents=True)
        (self.root / "opt/base/install").symlink_to("/etc")
        result = self.install(_ansible_check_mode=True)
        self.assertIn(f"[base] '{self.root}/opt/base/install' is ", result["msg"])

    def test_a_missing_command_is_named(self):
        self.assertIn("no-such-command", self.install(make="no-such-command")["msg"])
        commands = self.root / "commands"
        commands.mkdir()
        for name in ("morvane-answers", "morvane-install"):
            self.assertIn(f'"{name}"', self.install(commands=str(commands))["msg"])
            (commands / name).symlink_to(BUILD / name)

    def test_a_command_that_is_another_is_told(self):
        commands = self.root / "commands"
        commands.mkdir()
        for name in ("morvane-install", "morvane-answers"):
            shutil.copy(BUILD / "morvane-answers", commands)
            (commands / name).unlink(missing_ok=True)
            (commands / name).symlink_to("/bin/false")
            self.refused(f"{name} ended with status 1: ", commands=str(commands))

    def test_answers_have_one_form(self):
        self.assertIn("one of the following is required: products, answers",
                      self.run_module("installation", distribution=str(self.dist))["msg"])
        self.assertIn("missing: distribution", self.run_module("installation", products=[])["msg"])
        self.assertIn("missing: products", self.run_module("installation", state="absent", answers="x")["msg"])
        self.assertIn("mutually exclusive", self.install(answers="x", products=[])["msg"])
        self.assertIn("missing parameter(s) required by 'variables'", self.install(variables={"a": 1})["msg"])


class Telling(ModuleTest):
    def setUp(self):
        super().setUp()
        (self.root / "opt").mkdir()

    def test_what_is_installed_is_found(self):
        self.assertEqual(self.find(), {})
        self.install()
        found = self.find()
        self.assertEqual(list(found), ["app", "base"])
        app = found["app"]
        self.assertEqual((app["directory"], app["settings"]["STORE_PATH"]),
                         (f"{self.root}/opt/app", f"{self.root}/opt/base"))
        receipt = app["receipt"]
        self.assertEqual((receipt["product"], receipt["version"], receipt["group"], receipt["complete"],
                          receipt["parts"]), ("app", "1.0", GROUP, "yes", ["program"]))
        self.assertEqual(receipt["needs"], [{"category": "STORE", "directory": f"{self.root}/opt/base",
                                             "name": "Base", "version": "1.3"}])
        self.assertNotIn("differing", app)

    def test_a_product_is_found_without_its_receipt_and_without_a_description(self):
        archive(self.dist / "plain.tar", {"plain.txt": ""})
        self.products.append(self.product("plain"))
        self.install()
        self.installed("app/install/app.receipt").unlink()
        found = self.find(verify=True)
        self.assertEqual([(each["receipt"] is None, each["differing"]) for each in found.values()],
                         [(True, None), (False, []), (False, [])])
        self.assertEqual(found["plain"]["settings"], {})

    def test_names_in_a_receipt_may_hold_any_byte(self):
        self.install()
        receipt = self.installed("base/install/base.receipt")
        receipt.write_text(receipt.read_text().replace("name = Base", "name = 100%25 %C3%BC, ä%0A"))
        self.assertEqual(self.find()["base"]["receipt"]["name"], "100% ü, ä\n")

    def test_a_receipt_that_is_not_the_product_s_counts_as_none(self):
        self.install()
        shutil.copytree(self.root / "opt/base", self.root / "opt/copy")
        result = self.run_module("installation_info", directories=[f"{self.root}/opt/copy"], verify=True,
                                 **self.commands())
        copy, = result["products"]
        self.assertEqual((copy["id"], copy["receipt"], copy["differing"]), ("base", None, None))
        receipt = self.installed("base/install/base.receipt")
        receipt.write_text(receipt.read_text().replace("name = Base", "name = %00"))
        self.assertIsNone(self.find()["base"]["receipt"])

    def test_what_differs_is_told(self):
        self.install()
        self.assertEqual([each["differing"] for each in self.find(verify=True).values()], [[], []])
        self.installed("app/app.txt").write_text("changed")
        self.installed("base/base.txt").unlink()
        self.installed("base/more").write_text("")
        found = self.find(verify=True)
        changed, = found["app"]["differing"]
        self.assertEqual((changed["path"], changed["state"], changed["size"]),
                         (f"{self.root}/opt/app/app.txt", "differs", {"expected": "0", "found": "7"}))
        self.assertEqual([(each["path"].rpartition("/")[2], each["state"]) for each in found["base"]["differing"]],
                         [("base.txt", "missing"), ("more", "additional")])

    def test_what_is_said_besides_is_a_warning(self):
        self.install()
        (self.root / "broken-base").touch()
        self.products[1]["access"] = False
        self.assertTrue(self.install()["failed"])
        result = self.run_module("installation_info", directories=[f"{self.root}/opt/base"], verify=True,
                                 **self.commands())
        self.assertEqual(result["warnings"], [f"'base' in {self.root}/opt/base: an installation began since, and "
                                              "did not end well: install it again"])

    def test_only_verifying_needs_the_command(self):
        commands = self.root / "commands"
        commands.mkdir()
        self.assertEqual(self.find(commands=str(commands)), {})
        result = self.run_module("installation_info", verify=True, commands=str(commands))
        self.assertIn('"morvane-verify"', result["msg"])


if __name__ == "__main__":
    main()
