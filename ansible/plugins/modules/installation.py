#!/usr/bin/python
# Copyright: the morvane authors
"""Installs products of a distribution as their answers say."""

DOCUMENTATION = r"""
---
module: installation
short_description: Install products of a morvane distribution
description:
  - Configures products of a distribution with given answers, as C(morvane-answers play) does, and
    runs make on what was configured.
  - Everything is rehearsed first. Where an answer is missing, is left over or is refused, the module
    fails with all the reasons at once, and nothing was touched.
  - A product is installed where something differs from what an earlier run of this module left
    behind, that is, an answer, the archive, the description, or the settings that lie on the host.
    So is what gets something from it, or shares its directory. All other products are left alone.
  - The distribution is only read. It may be closed to writing, and serve many hosts at a time.
options:
  distribution:
    description:
      - The directory of the distribution on the host, an absolute path.
    type: path
    required: true
  products:
    description:
      - The products to install, with their answers. The order does not count.
      - A product that is not listed is left alone. It is not removed.
      - Values are taken as they stand, C(${name}) too.
    type: list
    elements: dict
    suboptions:
      id:
        description: The identifier of the product, the name of its archive without C(.tar).
        type: str
        required: true
      directory:
        description:
          - Where it goes, an absolute path, or one that begins with C(~).
          - A patch has none where its original is known.
        type: str
      create_directory:
        description:
          - Whether the directory may be created where it is missing.
          - It may be said where the directory is there.
        type: bool
      owner:
        description: The user who will own the files.
        type: str
      group:
        description: The group of the files.
        type: str
      access:
        description: Whether all other users keep access to the files.
        type: bool
      keep_without_tools:
        description: Whether the product is installed although the host lacks tools that it needs.
        type: bool
      parts:
        description:
          - Whether a part is installed, by the name of the part. Only for parts that the dialogue
            asks about.
        type: dict
      needs:
        description: What parts need from other products, a dictionary for each need.
        type: list
        elements: dict
        suboptions:
          part:
            description: The part of the product.
            type: str
            required: true
          category:
            description: The category that it needs.
            type: str
            required: true
          type:
            description: Which of several types is taken.
            type: str
          supplier:
            description:
              - Who supplies it, namely the identifier of a listed product, C(ID in /path) for a
                product that is described there, C(/path) for one without a description, or
                C(/path anyway) for one that does not meet the need.
            type: str
      patches:
        description: What supplies a patch level that the product needs, by the level.
        type: dict
  answers:
    description:
      - The text of an answer file, as C(morvane-answers record) keeps it, in place of I(products).
    type: str
  variables:
    description: Other values for variables of I(answers).
    type: dict
  go_on_all_the_same:
    description: The run goes on although the host is not suitable.
    type: bool
  go_on_without_tools:
    description: The run goes on although the host lacks tools.
    type: bool
  links_file:
    description: The configuration file of the links tool.
    type: str
  executable:
    description: The command C(morvane-answers), a name or an absolute path.
    type: str
    default: morvane-answers
  make:
    description: The command make, a name or an absolute path; any make will do.
    type: str
    default: make
requirements:
  - morvane-answers
  - make
  - python >= 3.6
notes:
  - Where an installation failed or the host went away, the next run goes on with the products that
    are not complete.
  - What was deleted from a product, and files that its parts made, are not looked at. To have a
    product installed once more, remove C(install/ID.ansible) in its directory, which is the record
    that the module leaves there.
  - A product that was installed without this module has no such record, and is installed once more.
  - A product that gets another directory is installed there, and stays where it was, too.
  - To configure an installed product again in its own directory is not served. Give it another
    answer, and it is installed with that.
  - Supports C(check_mode) and C(diff). In check mode all of that is rehearsed, also where nothing is
    installed yet.
seealso:
  - module: morvane.distribution.installation_info
author:
  - The morvane authors (@morvane)
"""

EXAMPLES = r"""
- name: Install the key store and the notice board
  morvane.distribution.installation:
    distribution: /srv/distribution
    products:
      - id: kelstone
        directory: /opt/kelstone
        create_directory: true
        owner: root
        group: root
        access: true
        parts:
          selftest: false
      - id: marlpost
        directory: /opt/marlpost
        create_directory: true
        owner: root
        group: root
        access: true
        parts:
          digest: false
        needs:
          - part: board
            category: STORE
            type: hashed
            supplier: kelstone

- name: Give the answers of another host, which morvane-answers recorded, with another directory
  morvane.distribution.installation:
    distribution: /srv/distribution
    answers: "{{ lookup('ansible.builtin.file', 'board.answers') }}"
    variables:
      root: /srv
"""

RETURN = r"""
products:
  description: The products, in the order of work.
  returned: when the answers were not refused
  type: list
  elements: dict
  contains:
    id:
      description: The identifier.
      type: str
      returned: always
      sample: marlpost
    version:
      description: The version.
      type: str
      returned: always
      sample: "1.0"
    directory:
      description: Where it goes.
      type: str
      returned: always
      sample: /opt/marlpost
    owner:
      description: Who owns its files.
      type: str
      returned: always
      sample: root
    group:
      description: The group of its files.
      type: str
      returned: always
      sample: root
    access:
      description: Whether other users keep access, C(yes) or C(no).
      type: str
      returned: always
      sample: "yes"
    parts:
      description: The parts, each with what it gets from whom.
      type: list
      elements: dict
      returned: always
      sample: [{"name": "board", "needs": [{"category": "STORE", "supplier": "kelstone"}]}]
    outcome:
      description:
        - C(unchanged), or C(installed); in check mode C(to be installed).
        - Where make failed, C(failed), and behind that C(to be installed).
      type: str
      returned: always
      sample: installed
findings:
  description: Why the answers were refused, as C(morvane-answers check --format=json) says it.
  returned: when the answers were refused
  type: list
  elements: dict
  sample:
    - line: 5
      trouble: missing
      section: kelstone
      name: owner
      text: there is no answer
      proposal: bin
output:
  description: The last lines that make printed.
  returned: when make failed
  type: list
  elements: str
  sample: ["** making 'board' for 'Marlpost'", "cc: not found"]
"""

import fcntl
import fnmatch
import json
import os
import re
import tempfile

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.morvane.distribution.plugins.module_utils import answer_file, installed_product

# What earlier runs left in the distribution.
GENERATED = ("install.mk", "*.dat", "*.tar-contence")

REFUSED = 3
PARTED = 4
LAST_LINES = 30


def real_text(said):
    """Returns what the command said with its bytes as this host reads them.

    It writes each byte beyond ASCII as the character of that number, whatever encoding it is of.
    """
    if isinstance(said, dict):
        return {key: real_text(value) for key, value in said.items()}
    if isinstance(said, list):
        return [real_text(value) for value in said]
    if isinstance(said, str):
        return said.encode("latin-1").decode("utf-8", "surrogateescape")
    return said


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
        self.executable = module.get_bin_path(module.params["executable"], required=True)
        self.make = module.get_bin_path(module.params["make"], required=True)
        self.products = []
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

    def run(self, command):
        """Checks or plays the answers, and notes what they result in. Fails where they are refused."""
        arguments = [self.executable, "-C", self.work, command, "--format=json"]
        for name, value in (self.module.params["variables"] or {}).items():
            arguments.append("--set=%s=%s" % (name, value))
        status, output, errors = self.module.run_command(
            arguments + [self.answers], expand_user_and_vars=False)
        if status not in (0, REFUSED, PARTED):
            self.module.fail_json(msg="morvane-answers ended with status %d: %s" % (status, errors.strip()))
        said = real_text(json.loads(output))
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
        files = {file["name"]: file["content"] for file in said["files"]}
        kept = ("id", "version", "directory", "owner", "group", "access", "parts")
        planned = {product["id"]: {key: product[key] for key in kept} for product in said["products"]}
        self.products = [planned[identifier] for identifier in order_of_work(files["install.mk"])]
        self.wanted = {product["id"]: self.wanted_state(product, files) for product in self.products}
        self.compare()
        self.refuse_unusable()

    def refuse_unusable(self):
        """Refuses what the dialogue does not ask: make would extract elsewhere, or find no archive."""
        reasons = []
        for product in self.products:
            directory, identifier = product["directory"], product["id"]
            if os.path.lexists(directory) and not os.path.isdir(directory):
                reasons.append("[%s] directory: %s is no directory" % (identifier, directory))
            if self.wanted[identifier]["archive"] is None:
                reasons.append("[%s] %s.tar cannot be read" % (identifier, identifier))
        if reasons:
            self.refuse(REFUSED, dict(why="; ".join(reasons), findings=[]))

    def wanted_state(self, product, files):
        """Returns what is to be found on the host: the record of the product, see installed_product."""
        state = {key: product[key] for key in ("version", "owner", "group", "access", "parts")}
        original = os.path.join(self.distribution, product["id"])
        state["settings"] = installed_product.settings_lines(files.get(product["id"] + ".dat"))
        state["archive"] = installed_product.digest(original + ".tar")
        state["description"] = installed_product.digest(original + ".descr")
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
        """Installs what is stale, product by product, and leaves a record of each."""
        self.run("play")
        for directory in sorted(set(product["directory"] for product in self.products)):
            self.lock(directory)
        self.compare()
        for product in self.stale:
            directory, identifier = product["directory"], product["id"]
            installed_product.remove_record(directory, identifier)
            self.make_product(product)
            installed_product.write_record(directory, identifier, self.wanted[identifier])
            product["outcome"] = "installed"

    def make_product(self, product):
        """Has make install a product, one job at a time. Fails where make does."""
        status, output, errors = self.module.run_command(
            [self.make, "-f", "install.mk", product["id"]], cwd=self.work,
            environ_update=dict(MAKEFLAGS="", MFLAGS=""), expand_user_and_vars=False)
        if status != 0:
            product["outcome"] = "failed"
            self.module.fail_json(
                msg="make ended with status %d at %s: %s. When that is mended, run this again."
                % (status, product["id"], (errors.strip().splitlines() or [""])[0]),
                output=(output + errors).splitlines()[-LAST_LINES:], products=self.products, changed=True)


def main():
    module = AnsibleModule(
        argument_spec=dict(
            distribution=dict(type="path", required=True),
            products=dict(type="list", elements="dict", options=answer_file.PRODUCT),
            answers=dict(type="str"),
            variables=dict(type="dict"),
            executable=dict(type="str", default="morvane-answers"),
            make=dict(type="str", default="make"),
            **answer_file.RUN
        ),
        mutually_exclusive=[("products", "answers")] + [("answers", name) for name in answer_file.RUN],
        required_one_of=[("products", "answers")],
        required_by=dict(variables="answers"),
        supports_check_mode=True,
    )
    os.umask(0o022)  # What others are to have access to is not closed to them on the way.
    # In /tmp: make cannot deal with every name that a home has.
    with tempfile.TemporaryDirectory(prefix="morvane-", dir="/tmp") as work:
        installation = Installation(module, work)
        installation.run("check")
        difference = installation.difference()
        if installation.stale and not module.check_mode:
            installation.install()
        module.exit_json(changed=bool(installation.stale), products=installation.products, diff=difference)


if __name__ == "__main__":
    main()
