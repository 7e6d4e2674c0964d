# Copyright: the morvane authors
"""What the module installation does to install products."""

import fcntl
import fnmatch
import json
import os
import re

from ansible_collections.morvane.distribution.plugins.module_utils import answer_file, commands
from ansible_collections.morvane.distribution.plugins.module_utils import installed_product

# What earlier runs left in the distribution.
GENERATED = ("install.mk", "*.dat", "*.tar-contence")

REFUSED = 3
FAILED = 4
LAST_LINES = 30


def reason(finding, lines):
    """Returns what is wrong with one answer, or with one of the lines of the answer file."""
    text = finding["text"]
    if finding["trouble"] == "unreadable" and 0 < finding["line"] <= len(lines):
        text = "%s: %s" % (lines[finding["line"] - 1], text)
    if finding["name"]:
        text = "%s: %s" % (finding["name"], text)
    if finding["section"]:
        text = "[%s] %s" % (finding["section"], text)
    if finding["proposal"]:
        text += " (proposal: %s)" % finding["proposal"]
    return text


def order_of_work(makefile):
    """Returns the identifiers of the products as the rule 'products' lists them."""
    rule = re.search(r"^products:((?:.*\\\n)*.*)$", makefile, re.MULTILINE)
    return rule.group(1).replace("\\\n", " ").split()


class Installation:
    """One run, in a directory of its own that holds links to the files of the distribution."""

    def __init__(self, module, work):
        self.module = module
        self.distribution = os.path.abspath(module.params["distribution"])
        self.work = os.path.join(work, "distribution")
        self.answers = os.path.join(work, "answers")
        self.text = module.params["answers"]
        if self.text is None:
            self.text = answer_file.written(module.params)
        self.answers_command = commands.find(module, "morvane-answers")
        self.install_command = commands.find(module, "morvane-install")
        self.make = module.get_bin_path(module.params["make"], required=True)
        self.products = []
        self.files = {}  # that the run writes, by their names
        self.wanted = {}
        self.stale = []
        self.link_distribution()
        with open(self.answers, "w", encoding="utf-8") as file:
            file.write(self.text)

    def link_distribution(self):
        """The run writes beside the archives, where many hosts may read and none may write."""
        if not os.path.isfile(os.path.join(self.distribution, "morvane.rsc")):
            self.module.fail_json(msg="There is no distribution in %s: no file morvane.rsc that can be read."
                                  % self.distribution)
        os.mkdir(self.work)
        for name in os.listdir(self.distribution):
            path = os.path.join(self.distribution, name)
            generated = any(fnmatch.fnmatch(name, pattern) for pattern in GENERATED)
            if os.path.isfile(path) and not generated:
                os.symlink(path, os.path.join(self.work, name))

    def rehearse(self):
        """Checks the answers, and what make would meet. Fails where anything is refused."""
        self.run("check")
        if not self.stale:
            return
        for name, content in self.files.items():
            with open(os.path.join(self.work, name), "w", encoding="utf-8", errors="surrogateescape") as file:
                file.write(content)
        status, output, errors = self.run_install("--plan")
        self.refuse_blocked(status, output, errors, "nothing was touched")
        for name in self.files:
            os.remove(os.path.join(self.work, name))

    def run(self, command):
        """Checks or plays the answers, and notes what they result in. Fails where they are refused."""
        arguments = [self.answers_command, "-C", self.work, command, "--format=json"]
        for name, value in (self.module.params["variables"] or {}).items():
            arguments.append("--set=%s=%s" % (name, value))
        status, output, errors = self.module.run_command(
            arguments + [self.answers], expand_user_and_vars=False)
        if status not in (0, REFUSED, FAILED):
            commands.fail(self.module, "morvane-answers", status, errors)
        said = commands.real_text(json.loads(output))
        if status != 0:
            self.refuse(status, said)
        self.note(said)

    def refuse(self, status, said):
        what = ("The answers were refused, and nothing was touched" if status == REFUSED
                else "The run parted from its rehearsal, and was taken back")
        findings = sorted(said["findings"], key=lambda finding: finding["line"])
        reasons = [said["why"]] if said["why"] else []
        reasons += [reason(finding, self.text.splitlines()) for finding in findings]
        self.module.fail_json(msg="%s: %s" % (what, "; ".join(reasons)), findings=findings)

    def note(self, said):
        """Takes over what the run results in: the products, and what is to be found on the host then."""
        self.files = {file["name"]: file["content"] for file in said["files"]}
        kept = ("id", "version", "directory", "owner", "group", "access", "parts")
        planned = {product["id"]: {key: product[key] for key in kept} for product in said["products"]}
        self.products = [planned[identifier] for identifier in order_of_work(self.files["install.mk"])]
        self.wanted = {product["id"]: self.wanted_state(product) for product in self.products}
        self.compare()

    def wanted_state(self, product):
        """Returns what is to be found on the host, as installed_product.found tells it."""
        state = {key: product[key] for key in ("group", "access")}
        state["owner"] = product["owner"] if os.geteuid() == 0 else ""
        state["parts"] = [part["name"] for part in product["parts"]]
        original = os.path.join(self.distribution, product["id"])
        state["settings"] = installed_product.settings_lines(self.files.get(product["id"] + ".dat"))
        state["archive"] = installed_product.digest(original + ".tar")
        state["description"] = installed_product.digest(original + ".descr")
        state["complete"] = "yes"
        return state

    def compare(self):
        """Finds the products that have to be installed."""
        self.stale = []
        for product in self.products:
            suppliers = [need["supplier"] for part in product["parts"] for need in part["needs"]]
            is_stale = (self.found_state(product) != self.wanted[product["id"]]
                        or any(supplier["id"] in suppliers or supplier["directory"] == product["directory"]
                               for supplier in self.stale))
            product["outcome"] = "to be installed" if is_stale else "unchanged"
            if is_stale:
                self.stale.append(product)

    def found_state(self, product):
        return installed_product.found(product["directory"], product["id"])

    def difference(self):
        """Returns what changes, for the diff mode."""
        def text(state):
            return json.dumps(state, indent=2, sort_keys=True) + "\n" if state else ""

        differences = []
        for product in self.stale:
            header = "%s in %s" % (product["id"], product["directory"])
            differences.append(dict(
                before_header=header, before=text(self.found_state(product)),
                after_header=header, after=text(self.wanted[product["id"]])))
        return differences

    def lock(self, directory):
        """Keeps other runs away until this one ends. Goes on without a lock where there can be none."""
        try:
            descriptor = os.open(directory, os.O_RDONLY)
            fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            self.module.fail_json(msg="Another installation is at work in %s." % directory)
        except OSError:
            pass

    def install(self):
        """Installs what is stale. Fails where a product does."""
        self.run("play")
        for directory in sorted(set(product["directory"] for product in self.products)):
            self.lock(directory)
        self.compare()
        if not self.stale:
            return
        before = {product["id"]: self.receipt(product) for product in self.stale}
        status, output, errors = self.run_install()
        self.refuse_blocked(status, output, errors, "nothing was installed")
        self.note_outcomes(before)
        if status != 0:
            self.fail(errors)

    def run_install(self, *options):
        """Has morvane-install plan or install what is stale. Returns its status, output and errors."""
        identifiers = [product["id"] for product in self.stale]
        return self.module.run_command(
            [self.install_command, "-C", self.work, "--format=json",
             "--registry=" + self.module.params["registry"], *options, "--", *identifiers],
            environ_update=dict(MAKE=self.make), expand_user_and_vars=False)

    def refuse_blocked(self, status, output, errors, what):
        """Fails where make was not, or would not be run. The rehearsal answers for missing directories."""
        if status not in (0, REFUSED, FAILED) or not output:
            commands.fail(self.module, "morvane-install", status, errors)
        findings = commands.real_text(json.loads(output))["findings"]
        blocking = [finding for finding in findings
                    if finding["severity"] == "error" and finding["id"] != "directory-missing"]
        if status == REFUSED and blocking:
            reasons = [("[%s] " % finding["product"] if finding["product"] else "") + finding["text"]
                       for finding in blocking]
            self.module.fail_json(msg="The installation is blocked, and %s: %s" % (what, "; ".join(reasons)),
                                  blocking=blocking)

    def receipt(self, product):
        return installed_product.read_receipt(product["directory"], product["id"])

    def note_outcomes(self, before):
        """Tells what came of each product: the receipt of one that was installed is new and complete."""
        failed = False
        for product in self.stale:
            receipt = self.receipt(product)
            if receipt and receipt != before[product["id"]] and receipt.get("complete") == "yes":
                product["outcome"] = "installed"
            elif not failed:
                product["outcome"] = "failed"
                failed = True

    def fail(self, errors):
        failed = [product["id"] for product in self.stale if product["outcome"] == "failed"]
        self.module.fail_json(
            msg="%s could not be installed, see the output. When that is mended, run this again."
            % " ".join(failed),
            output=errors.splitlines()[-LAST_LINES:], products=self.products, changed=True)
