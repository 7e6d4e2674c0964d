#!/usr/bin/python
# Copyright: the morvane authors
"""Tells what is installed."""

DOCUMENTATION = r"""
---
module: installation_info
short_description: Tell which products of morvane distributions are installed
description:
  - Looks for installed products in directories, and returns their settings, what their receipts tell,
    and, if wanted, what is not as it was installed.
options:
  directories:
    description:
      - Directories of products on the host. Each may be a pattern, as for a shell.
    type: list
    elements: path
    default: ["/opt/*"]
  verify:
    description:
      - Whether each product that has a receipt is compared with it, as C(morvane-verify) does. That reads
        all of its files.
    type: bool
    default: false
  commands:
    description: A directory in which the command C(morvane-verify) is looked for before the C(PATH).
    type: path
  registry:
    description: Where the receipts of the host are, as for C(morvane-verify).
    type: path
    default: /var/lib/morvane
requirements:
  - morvane-verify with I(verify=true)
  - python >= 3.6
notes:
  - Only products that have a description or a receipt are found.
  - What C(morvane-verify) says on standard error, such as who else can have written a receipt, are
    warnings.
  - Supports C(check_mode).
seealso:
  - module: morvane.distribution.installation
author:
  - The morvane authors (@morvane)
"""

EXAMPLES = r"""
- name: Find out what is installed
  morvane.distribution.installation_info:
    directories:
      - /opt/*
      - /srv/marlpost
  register: found

- name: Say on which release of the key store this host is
  ansible.builtin.debug:
    msg: "{{ item.settings.PRODUCT_VERSION }}"
  loop: "{{ found.products | selectattr('id', 'equalto', 'kelstone') }}"

- name: Find out what somebody changed
  morvane.distribution.installation_info:
    verify: true
  register: found

- name: Say which files these are
  ansible.builtin.debug:
    msg: "{{ found.products | map(attribute='differing') | select | flatten | map(attribute='path') }}"
"""

RETURN = r"""
products:
  description: The installed products, in the order of their directories and identifiers.
  returned: always
  type: list
  elements: dict
  contains:
    id:
      description: The identifier.
      type: str
      returned: always
      sample: marlpost
    directory:
      description: Where it is installed.
      type: str
      returned: always
      sample: /opt/marlpost
    settings:
      description: The settings of the product, see install.mk(5). Empty where they cannot be read.
      type: dict
      returned: always
      sample: {"PRODUCT_PATH": "/opt/marlpost", "PRODUCT_VERSION": "1.0", "STORE_PATH": "/opt/kelstone"}
    receipt:
      description:
        - What the receipt beside the product tells of it, see morvane.receipt(5), but for its paths.
          C(complete) is C(no) where its last installation failed.
        - None where there is no receipt that can be read, or one that came with a copy of another directory.
      type: dict
      returned: always
      sample: {"product": "marlpost", "version": "1.0", "complete": "yes", "parts": ["board"],
               "needs": [{"category": "STORE", "directory": "/opt/kelstone", "name": "Kelstone",
                          "version": "1.4"}]}
    differing:
      description:
        - What is not as it was installed, as C(morvane-verify --format=json) says it; empty where all is.
        - None where there is no receipt.
      type: list
      elements: dict
      returned: with I(verify=true)
      sample:
        - path: /opt/marlpost/motd
          state: differs
          text: mode 600 instead of 644
          certain: true
          mode: {"expected": "644", "found": "600"}
"""

import glob
import json
import os

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.morvane.distribution.plugins.module_utils import commands, installed_product

KINDS = (".descr", ".receipt")


def settings(directory, identifier):
    """Returns the settings by their names; of those that stand there twice, the later ones count."""
    text = installed_product.read_text(installed_product.installed_file(directory, identifier, "dat"))
    lines = installed_product.settings_lines(text) or []
    return dict(line.split(" = ", 1) for line in lines if " = " in line)


def products(directory):
    """Returns the products that are installed in a directory."""
    paths = glob.glob(os.path.join(glob.escape(directory), "install", "*.*"))
    names = [os.path.splitext(os.path.basename(path)) for path in paths]
    identifiers = sorted(set(identifier for identifier, kind in names if kind in KINDS))
    return [dict(id=identifier, directory=directory, settings=settings(directory, identifier),
                 receipt=installed_product.read_receipt(directory, identifier))
            for identifier in identifiers]


def verify(module, installed):
    """Adds what differs to each of the installed products."""
    command = commands.find(module, "morvane-verify")
    receipts = [installed_product.receipt_file(product["directory"], product["id"])
                for product in installed if product["receipt"]]
    differing = {}
    if receipts:
        status, output, errors = module.run_command(
            [command, "--format=json", "--registry=" + module.params["registry"], "--", *receipts],
            cwd="/", expand_user_and_vars=False)
        if not output:
            commands.fail(module, "morvane-verify", status, errors)
        for complaint in commands.complaints("morvane-verify", errors):
            module.warn(complaint)
        for told in commands.real_text(json.loads(output))["products"]:
            differing[os.path.realpath(told["directory"]), told["product"]] = told["differing"]
    for product in installed:
        product["differing"] = differing.get((os.path.realpath(product["directory"]), product["id"]))


def main():
    module = AnsibleModule(
        argument_spec=dict(
            directories=dict(type="list", elements="path", default=["/opt/*"]),
            verify=dict(type="bool", default=False),
            **commands.OPTIONS
        ),
        supports_check_mode=True,
    )
    directories = set()
    for pattern in module.params["directories"]:
        directories.update(path.rstrip("/") for path in glob.glob(pattern))
    installed = [product for directory in sorted(directories) for product in products(directory)]
    if module.params["verify"]:
        verify(module, installed)
    module.exit_json(changed=False, products=installed)


if __name__ == "__main__":
    main()
