#!/usr/bin/python
# Copyright: the morvane authors
"""Tells what is installed."""

DOCUMENTATION = r"""
---
module: installation_info
short_description: Tell which products of morvane distributions are installed
description:
  - Looks for installed products in directories, and returns their settings.
options:
  directories:
    description:
      - Directories of products on the host. Each may be a pattern, as for a shell.
    type: list
    elements: path
    default: ["/opt/*"]
requirements:
  - python >= 3.6
notes:
  - Only products that have a description are found.
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
    record:
      description:
        - What M(morvane.distribution.installation) noted when it had installed the product, with the
          digests of archive and description.
        - None where it was installed otherwise, or make failed at it.
      type: dict
      returned: always
"""

import glob
import os

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.morvane.distribution.plugins.module_utils import installed_product


def settings(directory, identifier):
    """Returns the settings by their names; of those that stand there twice, the later ones count."""
    text = installed_product.read_text(installed_product.installed_file(directory, identifier, "dat"))
    lines = installed_product.settings_lines(text) or []
    return dict(line.split(" = ", 1) for line in lines if " = " in line)


def products(directory):
    """Returns the products that are installed in a directory."""
    descriptions = glob.glob(os.path.join(glob.escape(directory), "install", "*.descr"))
    identifiers = sorted(os.path.basename(path)[:-len(".descr")] for path in descriptions)
    return [dict(id=identifier, directory=directory, settings=settings(directory, identifier),
                 record=installed_product.read_record(directory, identifier))
            for identifier in identifiers]


def main():
    module = AnsibleModule(
        argument_spec=dict(directories=dict(type="list", elements="path", default=["/opt/*"])),
        supports_check_mode=True,
    )
    directories = set()
    for pattern in module.params["directories"]:
        directories.update(path.rstrip("/") for path in glob.glob(pattern))
    module.exit_json(changed=False,
                     products=[product for directory in sorted(directories) for product in products(directory)])


if __name__ == "__main__":
    main()
