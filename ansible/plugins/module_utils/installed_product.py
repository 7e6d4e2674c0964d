# Copyright: the morvane authors
"""What lies in the directory of an installed product, and what its receipt tells."""

import glob
import hashlib
import os
import re

BLOCK = 1 << 20

RECEIPT_HEAD = b"morvane receipt 1\n"
NEED = ("need", "need-directory", "need-name", "need-version")
ESCAPED = re.compile(rb"%([0-9A-F]{2})")


def installed_file(directory, identifier, kind):
    """Returns the path of a file that belongs to an installed product, as ID.dat does."""
    return os.path.join(directory, "install", "%s.%s" % (identifier, kind))


def read_text(path):
    """Returns the text of a regular file, or None where there is none that can be read."""
    try:
        if not os.path.isfile(path):
            return None
        with open(path, encoding="utf-8", errors="surrogateescape") as file:
            return file.read()
    except OSError:
        return None


def digest(path):
    """Returns the SHA-256 of a regular file, or None where there is none that can be read."""
    try:
        if not os.path.isfile(path):
            return None
        with open(path, "rb") as file:
            seen = hashlib.sha256()
            for block in iter(lambda: file.read(BLOCK), b""):
                seen.update(block)
            return seen.hexdigest()
    except OSError:
        return None


def settings_lines(text):
    """Returns what a settings file says, without its comments, which name the version of the program."""
    if text is None:
        return None
    return [line for line in text.splitlines() if line and not line.startswith("#")]


def unescaped(value):
    value = ESCAPED.sub(lambda found: bytes((int(found.group(1), 16),)), value)
    return value.decode("utf-8", "surrogateescape")


def head_of(lines):
    """Returns what a receipt says of the product before its entries begin, or None where it is none."""
    receipt = dict(parts=[], patch_of=[], needs=[])
    if next(lines, b"") != RECEIPT_HEAD:
        return None
    for line in lines:
        name, _equals, value = line.rstrip(b"\n").partition(b" =")
        name, value = name.decode("ascii", "replace"), unescaped(value[1:])
        if "\0" in value:
            return None
        if name == "entries":
            return receipt
        if name == "part":
            receipt["parts"].append(value)
        elif name == "patch-of":
            receipt["patch_of"].append(value)
        elif name == "need":
            receipt["needs"].append(dict(category=value))
        elif name in NEED and receipt["needs"]:
            receipt["needs"][-1][name.partition("-")[2]] = value
        else:
            receipt[name] = value
    return None


def read_receipt_file(path):
    try:
        if not os.path.isfile(path):
            return None
        with open(path, "rb") as file:
            return head_of(iter(file.readline, b""))
    except OSError:
        return None


def receipt_file(directory, identifier):
    return installed_file(directory, identifier, "receipt")


def read_receipt(directory, identifier):
    """Returns what the receipt beside a product says of it, by the names in morvane.receipt(5), or None.

    One that came with a copy of another directory is not the product's.
    """
    receipt = read_receipt_file(receipt_file(directory, identifier))
    if receipt is None or receipt.get("product") != identifier:
        return None
    is_here = os.path.realpath(receipt.get("directory", "/")) == os.path.realpath(directory)
    return receipt if is_here else None


def registered(registry, identifier):
    """Returns the directories in which a product is installed, as the registry tells.

    Of a receipt that cannot be read, it is None.
    """
    receipts = glob.glob(os.path.join(glob.escape(registry), glob.escape(identifier) + ".*.receipt"))
    form = re.compile(re.escape(identifier) + r"\.[0-9a-f]{16}\.receipt")
    return [(read_receipt_file(path) or {}).get("directory")
            for path in receipts if form.fullmatch(os.path.basename(path))]


def found(directory, identifier):
    """Returns the state in which a product is installed, to be compared with that which is wanted; or None.

    Settings and description are those that lie there now: somebody may have changed them since.
    """
    receipt = read_receipt(directory, identifier)
    if receipt is None:
        return None
    state = {name: receipt.get(name) for name in ("owner", "group", "access", "parts", "archive", "complete")}
    state["settings"] = settings_lines(read_text(installed_file(directory, identifier, "dat")))
    state["description"] = digest(installed_file(directory, identifier, "descr"))
    return state
