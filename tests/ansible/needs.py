"""What the tests of the collection need of this host: the packages of Debian, and not what else is on the PATH."""

import shutil
import subprocess

PATH = "/usr/sbin:/usr/bin:/sbin:/bin"
PYTHON = "/usr/bin/python3"  # which Debian's Ansible is made for
SKIPPED = 77


def missing(*commands, modules=("ansible", "distlib")):
    """Returns which of the commands and of Python's modules is not there, or None."""
    for command in commands:
        if shutil.which(command, path=PATH) is None:
            return f"there is no {command}"
    for module in modules:
        if subprocess.run([PYTHON, "-c", f"import {module}"], capture_output=True, check=False).returncode != 0:
            return f"Python has no {module}"
    return None
