# Copyright: the morvane authors
"""What the module installation does to take products away."""

import json
import os

from ansible_collections.morvane.distribution.plugins.module_utils import commands, installed_product

KEPT = 1
REFUSED = 3
FAILED = 4


class Removal:
    """One run of morvane-remove on those of the products that are installed."""

    def __init__(self, module):
        self.module = module
        self.registry = module.params["registry"]
        self.command = commands.find(module, "morvane-remove")
        self.operands = []
        self.products = []  # that are told of
        self.difference = []
        for product in module.params["products"]:
            self.find(product["id"], product["directory"])

    def find(self, identifier, directory):
        """Notes how morvane-remove knows a product, or that it is not installed."""
        directories = installed_product.registered(self.registry, identifier)
        if directory is None:
            operand, is_installed = identifier, bool(directories)
        else:
            directory = os.path.abspath(os.path.expanduser(directory))
            operand = installed_product.receipt_file(directory, identifier)
            is_installed = os.path.lexists(operand) or directory in directories or None in directories
        if is_installed:
            self.operands.append(operand)
        else:
            self.products.append(dict(id=identifier, directory=directory, outcome="unchanged"))

    def run(self):
        """Takes them away, or in check mode finds out what would go. Fails where that is refused."""
        if not self.operands:
            return
        planning = self.module.check_mode
        status, output, errors = self.module.run_command(
            [self.command, "--format=json", "--registry=" + self.registry, "--plan" if planning else "--yes",
             "--", *self.operands], cwd="/", expand_user_and_vars=False)
        if status == REFUSED:
            self.module.fail_json(msg="The removal was refused: "
                                  + "; ".join(commands.complaints("morvane-remove", errors)))
        if status not in (0, KEPT, FAILED) or not output:
            commands.fail(self.module, "morvane-remove", status, errors)
        for told in commands.real_text(json.loads(output))["products"]:
            self.note(told, "to be removed" if planning else "removed")
        if status == FAILED:
            self.module.fail_json(msg="The removal is not finished: "
                                  + "; ".join(commands.complaints("morvane-remove", errors)),
                                  products=self.products, changed=True)

    def note(self, told, outcome):
        """Takes over what became of one product."""
        kept = "".join("%s\n" % path["path"] for path in told["kept"])
        header = "%s in %s" % (told["product"], told["directory"])
        self.products.append(dict(
            id=told["product"], version=told["version"], directory=told["directory"],
            outcome="failed" if told["faults"] else outcome, kept=told["kept"], remarks=told["remarks"]))
        self.difference.append(dict(
            before_header=header, before="".join("%s\n" % path for path in told["removed"]) + kept,
            after_header=header, after=kept))
