"""A distribution of 50 made-up products, and the answers that install all its archives."""

import shutil
import subprocess
from pathlib import Path

COUNT = 50
RESOURCES = Path(__file__).resolve().parent.parent / "resources"


def name_of(number):
    return f"p{number:02}"


def description(number, root, supplier):
    """Returns a description; the product needs that of the number `supplier`, if that is one."""
    text = f"""Name     = P{number:02}
FullName = "Product {number:02}"
Version  = 1.{number}
Category = CATEGORY{number:02}
Type     = plain
Path     = {root}/opt/{name_of(number)}
Owner    = root
Group    = root
"""
    return text if supplier is None else text + f"""
Target        = program
NeedsCategory = CATEGORY{supplier:02}
NeedsText     = "what product {supplier:02} does"
NeedsType     = plain
NeedsVersion  = 1.0
"""


def write_tree(number, tree):
    """Puts the files of a small product below `tree`: a program, its manual and its data."""
    for name, size in (("bin/tool", 4000), ("man/tool.1", 3000), ("share/a", 2000),
                       ("share/b", 2000), ("README", 1000)):
        path = tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        line = f"{name} of product {number:02}\n".encode()
        path.write_bytes((line * (size // len(line) + 1))[:size])


def lay_out(root, build, installed):
    """Makes a distribution in `root`/dist, the first products of which, `installed` of them, are
    installed. Where there are such, each other product needs the one that many numbers before."""
    distribution = root / "dist"
    (distribution / "install").mkdir(parents=True)
    shutil.copy(build / "morvane.rsc", distribution)
    shutil.copy(RESOURCES / "Makefile", distribution)
    for system in ("SunOS4", "SunOS5"):
        shutil.copy(RESOURCES / "launcher", distribution / f"morvane.{system}")
    for number in range(COUNT):
        name = name_of(number)
        if number < installed:
            (distribution / "install" / f"{name}.descr").write_text(description(number, root, None))
            continue
        supplier = number - installed if installed else None
        (distribution / f"{name}.descr").write_text(description(number, root, supplier))
        write_tree(number, root / "trees" / name)
        subprocess.run(["tar", "-C", root / "trees" / name, "-cf", distribution / f"{name}.tar",
                        *sorted(path.name for path in (root / "trees" / name).iterdir())],
                       check=True)


def answers(installed):
    """Returns what the operator types: all archives, the proposed settings, no change of them."""
    archives = COUNT - installed
    everything = ",".join(str(number) for number in range(1, archives + 1))
    # Directory, its creation, owner, group, access; where there is a dependency, its supplier.
    settings = "\n" * (6 if installed else 5)
    return (everything + "\n\n" + archives * (settings + "n\n") + "\n").encode()


def forget_run(root):
    """Removes what a run and an installation left, but for the files that a run overwrites."""
    shutil.rmtree(root / "opt", ignore_errors=True)
    for pattern in ("install.mk", "*.tar-contence"):
        for path in (root / "dist").glob(pattern):
            path.unlink()


def ordered_products(root):
    """Returns how many products the makefile of a run installs."""
    for line in (root / "dist" / "install.mk").read_text().splitlines():
        if line.startswith("products:"):
            return len(line.split()) - 1
    return 0
