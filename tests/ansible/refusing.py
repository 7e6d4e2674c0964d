#!/usr/bin/env python3
"""What the module installation refuses, and what installation_info finds.

    refusing.py BUILD_DIRECTORY
"""

import os
import unittest

from module_test import USER, ModuleTest, main


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


if __name__ == "__main__":
    main()
