#!/usr/bin/env python3
"""What the module installation takes away, and what it leaves.

    removing.py BUILD_DIRECTORY
"""

import os
import shutil
import unittest

from module_test import GROUP, USER, ModuleTest, main


class Removing(ModuleTest):
    BOTH = {"app": "removed", "base": "removed"}
    NEITHER = {"app": "unchanged", "base": "unchanged"}

    def setUp(self):
        super().setUp()
        (self.root / "opt").mkdir()
        self.assertNotIn("failed", self.install())
        self.made()

    def left(self):
        """Returns what lies in the directories of the products, and in the registry."""
        tops = [self.root / "opt", self.root / "registry"]
        return sorted(str(path.relative_to(top)) for top in tops for path in top.rglob("*"))

    def refused(self, reason, *products, **options):
        before = self.left()
        result = self.remove(*products, **options)
        self.assertTrue(result["failed"])
        self.assertEqual(result["msg"], reason)
        self.assertEqual(self.left(), before)

    def test_a_second_time_changes_nothing(self):
        self.expect(self.remove("base", "app"), True, self.BOTH, [])
        self.assertEqual(self.left(), ["app", "base"])
        self.expect(self.remove("base", "app"), False, self.NEITHER, [])

    def test_of_the_products_that_install_only_names_and_directories_count(self):
        self.expect(self.remove(*self.products), True, self.BOTH, [])
        result = self.remove(*self.products)
        self.expect(result, False, self.NEITHER, [])
        self.assertEqual([each["directory"] for each in result["products"]],
                         [f"{self.root}/opt/app", f"{self.root}/opt/base"])

    def test_check_mode_touches_nothing(self):
        before = self.left()
        result = self.remove("app", _ansible_check_mode=True, _ansible_diff=True)
        self.expect(result, True, {"app": "to be removed"}, [])
        self.assertEqual(self.left(), before)
        difference, = result["diff"]
        self.assertEqual(difference["before_header"], f"app in {self.root}/opt/app")
        self.assertIn(f"{self.root}/opt/app/app.txt\n", difference["before"])
        self.assertEqual(difference["after"], "")

    def test_a_product_that_another_needs_is_refused(self):
        for check_mode in (True, False):
            self.refused(f"The removal was refused: 'app' in {self.root}/opt/app needs 'base' in "
                         f"{self.root}/opt/base; nothing was removed", "base", _ansible_check_mode=check_mode)

    def test_the_chain_of_those_who_need_it_is_told(self):
        self.products.append({"id": "app1", "owner": USER, "group": GROUP, "access": True})
        self.install()
        self.made()
        self.refused(f"The removal was refused: 'app' in {self.root}/opt/app needs 'base' in "
                     f"{self.root}/opt/base; 'app1' in {self.root}/opt/app is a patch of 'app' in "
                     f"{self.root}/opt/app; nothing was removed", "base")
        self.expect(self.remove("app1", "base", "app"), True, {"app1": "removed", **self.BOTH}, [])
        self.assertEqual(self.left(), ["app", "base"])

    def test_what_was_changed_is_kept_and_returned(self):
        changed = self.installed("app/app.txt")
        changed.write_text("changed")
        self.installed("app/install/notes").write_text("mine")
        result = self.remove("app", _ansible_diff=True)
        self.expect(result, True, {"app": "removed"}, [])
        product, = result["products"]
        self.assertEqual((product["version"], product["directory"]), ("1.0", f"{self.root}/opt/app"))
        self.assertEqual(product["kept"], [{"path": str(changed), "text": "content changed, size 7 instead of 0"}])
        self.assertEqual(product["remarks"], ["leaves install/notes: it is not of the product"])
        self.assertEqual(changed.read_text(), "changed")
        self.assertEqual(result["diff"][0]["after"], f"{changed}\n")
        self.expect(self.remove("app"), False, {"app": "unchanged"}, [])

    def test_a_directory_tells_which_one_is_meant(self):
        second = self.root / "opt/second"
        self.products = [{**self.products[1], "directory": str(second)}]
        self.expect(self.install(), True, {"base": "installed"}, ["base program"])
        self.refused("morvane-remove ended with status 2: base: installed in several directories, name one of "
                     f"them: {' '.join(self.in_order_of_the_registry())}", "base")
        self.expect(self.remove({"id": "base", "directory": str(self.root / "opt/app")}), False,
                    {"base": "unchanged"}, [])
        self.expect(self.remove({"id": "base", "directory": f"{second}/"}), True, {"base": "removed"}, [])
        self.assertEqual(list(second.iterdir()), [])
        self.assertTrue(self.installed("base/base.txt").exists())

    def in_order_of_the_registry(self):
        names = sorted(path.name for path in (self.root / "registry").glob("base.*"))
        return [(self.root / "registry" / name).read_text().split("\ndirectory = ")[1].split("\n")[0]
                for name in names]

    def test_a_product_whose_directory_is_gone_is_forgotten(self):
        for number, product in enumerate(("app", {"id": "base", "directory": f"{self.root}/opt/base"})):
            shutil.rmtree(self.installed(["app", "base"][number]))
            self.assertTrue(self.remove(product)["changed"])
        self.assertEqual(self.left(), [])

    def test_without_a_registry_the_directories_are_enough(self):
        shutil.rmtree(self.root / "registry")
        self.expect(self.remove("app"), False, {"app": "unchanged"}, [])
        self.expect(self.remove(*self.products), True, self.BOTH, [])
        self.assertEqual(self.left(), ["app", "base"])

    def test_a_receipt_that_cannot_be_read_is_told(self):
        receipt, = (self.root / "registry").glob("app.*")
        receipt.write_text("morvane receipt 1\n")
        for product in ("app", self.products[0]):
            result = self.remove(product)
            self.assertTrue(result["failed"])
            self.assertIn(f"{receipt}: line 2: ", result["msg"])

    def test_no_product_is_no_change(self):
        self.expect(self.remove(), False, {}, [])

    def test_what_was_taken_away_can_be_installed_again(self):
        self.remove("app", "base")
        self.expect(self.install(), True, {"base": "installed", "app": "installed"}, ["base program", "app program"])

    @unittest.skipIf(os.geteuid() == 0, "the superuser removes everything")
    def test_what_cannot_be_finished_is_told(self):
        self.installed("app").chmod(0o555)
        self.addCleanup(self.installed("app").chmod, 0o755)
        result = self.remove("app")
        self.assertEqual((result["failed"], result["changed"], self.outcomes(result)), (True, True, {"app": "failed"}))
        self.assertIn("The removal is not finished: app: ", result["msg"])


if __name__ == "__main__":
    main()
