#!/usr/bin/python
# Copyright: the morvane authors
"""Installs products of a distribution as their answers say, or takes them away."""

DOCUMENTATION = r"""
---
module: installation
short_description: Install products of a morvane distribution, or take them away
description:
  - Configures products of a distribution with given answers, as C(morvane-answers play) does, and
    has C(morvane-install) install them, which leaves a receipt of each.
  - Everything is rehearsed first. Where an answer is missing, is left over or is refused, or something
    else would keep make from its work, the module fails with all the reasons at once, and nothing was
    touched.
  - A product is installed where something differs from what its receipt and the files beside that
    tell, that is, an answer, the archive, the description, or the settings that lie on the host; where
    it has no receipt; and where its last installation failed. So is what gets something from it, or
    shares its directory. All other products are left alone.
  - The distribution is only read. It may be closed to writing, and serve many hosts at a time.
  - With I(state=absent), the products are taken away, as C(morvane-remove) does.
options:
  state:
    description:
      - Whether the products are to be there.
      - With C(absent), only C(id) and C(directory) of I(products) count. A product that is not
        installed is no change. What somebody changed stays, and is returned.
      - Where another product, which is not listed, needs one of them, the module fails, and nothing was
        touched.
    type: str
    choices: [present, absent]
    default: present
  distribution:
    description:
      - The directory of the distribution on the host, an absolute path.
      - Required with I(state=present).
    type: path
  products:
    description:
      - The products to install, with their answers, or to take away. The order does not count.
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
          - With I(state=absent) it may be left out where the product is installed in one directory
            alone, and the receipts in I(registry) tell of it.
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
  make:
    description: The command make, a name or an absolute path; any make will do.
    type: str
    default: make
  commands:
    description:
      - A directory in which the commands C(morvane-answers), C(morvane-install) and C(morvane-remove)
        are looked for before the C(PATH).
    type: path
  registry:
    description:
      - Where the receipts of the host are, as for these commands. An ordinary user cannot write the
        default, and has receipts beside the products alone.
    type: path
    default: /var/lib/morvane
requirements:
  - morvane-answers, morvane-install
  - morvane-remove with I(state=absent)
  - make
  - python >= 3.6
notes:
  - Where an installation failed or the host went away, the next run goes on with the products that
    are not complete.
  - Files of a product that were changed or deleted are not looked at;
    M(morvane.distribution.installation_info) with I(verify=true) does that. To have a product installed
    once more, take it away first, or remove C(install/ID.receipt) in its directory.
  - A product that was installed without this module is left alone where its receipt tells the same. One
    without a receipt is installed once more; C(morvane-verify --save) makes one before.
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

- name: Take the notice board away
  morvane.distribution.installation:
    state: absent
    products:
      - id: marlpost
"""

RETURN = r"""
products:
  description:
    - The products, in the order of work.
    - Of one that was taken away, only C(id), C(version), C(directory), C(outcome), C(kept) and
      C(remarks); of one that was not there, only C(id), C(directory) as it was given, and C(outcome).
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
      returned: of a product that is or was installed
      sample: "1.0"
    directory:
      description: Where it goes.
      type: str
      returned: always
      sample: /opt/marlpost
    owner:
      description: Who owns its files.
      type: str
      returned: with I(state=present)
      sample: root
    group:
      description: The group of its files.
      type: str
      returned: with I(state=present)
      sample: root
    access:
      description: Whether other users keep access, C(yes) or C(no).
      type: str
      returned: with I(state=present)
      sample: "yes"
    parts:
      description: The parts, each with what it gets from whom.
      type: list
      elements: dict
      returned: with I(state=present)
      sample: [{"name": "board", "needs": [{"category": "STORE", "supplier": "kelstone"}]}]
    outcome:
      description:
        - C(unchanged), or C(installed); in check mode C(to be installed).
        - Where make failed, C(failed), and behind that C(to be installed).
        - With I(state=absent), C(unchanged), or C(removed); in check mode C(to be removed). Where it is not
          finished, C(failed).
      type: str
      returned: always
      sample: installed
    kept:
      description: What stays of the product, such as files that somebody changed, and why.
      type: list
      elements: dict
      returned: of a product that is taken away
      sample: [{"path": "/opt/marlpost/motd", "text": "content changed"}]
    remarks:
      description: What else C(morvane-remove) says, such as which files lie there that are of nobody.
      type: list
      elements: str
      returned: of a product that is taken away
      sample: ["leaves lib/notes: it is not of the product"]
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
blocking:
  description: What keeps make from its work, as C(morvane-install --plan --format=json) says it.
  returned: when the installation is blocked
  type: list
  elements: dict
  sample:
    - severity: error
      id: space-short
      product: ""
      text: "'/opt/kelstone' needs 61440 bytes, and has 4096"
output:
  description: The last lines that make and C(morvane-install) printed.
  returned: when make failed
  type: list
  elements: str
  sample: ["cc: not found", "morvane-install: marlpost: the installation failed, see above"]
"""

import os
import tempfile

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.morvane.distribution.plugins.module_utils import answer_file, commands
from ansible_collections.morvane.distribution.plugins.module_utils.installing import Installation
from ansible_collections.morvane.distribution.plugins.module_utils.removing import Removal


def install(module):
    os.umask(0o022)  # What others are to have access to is not closed to them on the way.
    # In /tmp: make cannot deal with every name that a home has.
    with tempfile.TemporaryDirectory(prefix="morvane-", dir="/tmp") as work:
        installation = Installation(module, work)
        installation.rehearse()
        difference = installation.difference()
        if installation.stale and not module.check_mode:
            installation.install()
        module.exit_json(changed=bool(installation.stale), products=installation.products, diff=difference)


def remove(module):
    removal = Removal(module)
    removal.run()
    module.exit_json(changed=bool(removal.operands), products=removal.products, diff=removal.difference)


def main():
    module = AnsibleModule(
        argument_spec=dict(
            state=dict(type="str", choices=["present", "absent"], default="present"),
            distribution=dict(type="path"),
            products=dict(type="list", elements="dict", options=answer_file.PRODUCT),
            answers=dict(type="str"),
            variables=dict(type="dict"),
            make=dict(type="str", default="make"),
            **answer_file.RUN,
            **commands.OPTIONS
        ),
        mutually_exclusive=[("products", "answers")] + [("answers", name) for name in answer_file.RUN],
        required_one_of=[("products", "answers")],
        required_by=dict(variables="answers"),
        required_if=[("state", "present", ("distribution",)), ("state", "absent", ("products",))],
        supports_check_mode=True,
    )
    if module.params["state"] == "absent":
        remove(module)
    install(module)


if __name__ == "__main__":
    main()
