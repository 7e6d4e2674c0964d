# Copyright: the morvane authors
"""What lies in the directory of an installed product, and the record that its installation leaves there."""

import hashlib
import json
import os
import tempfile

BLOCK = 1 << 20


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


def read_record(directory, identifier):
    """Returns the record of an installation that ended well, or None."""
    try:
        record = json.loads(read_text(installed_file(directory, identifier, "ansible")) or "null")
    except ValueError:
        return None
    return record if isinstance(record, dict) else None


def found(directory, identifier):
    """Returns what is installed, or None where no installation ended well.

    Settings and description are those that lie there now: somebody may have changed them since.
    """
    record = read_record(directory, identifier)
    if record is not None:
        record["settings"] = settings_lines(read_text(installed_file(directory, identifier, "dat")))
        record["description"] = digest(installed_file(directory, identifier, "descr"))
    return record


def remove_record(directory, identifier):
    """Forgets that an installation ended well."""
    path = installed_file(directory, identifier, "ansible")
    if os.path.lexists(path):
        os.remove(path)


def write_record(directory, identifier, record):
    """Writes that an installation ended well.

    The directory may be the product owner's: a new file takes the place of whatever has the name.
    """
    path = installed_file(directory, identifier, "ansible")
    if not os.path.isdir(os.path.dirname(path)):
        os.mkdir(os.path.dirname(path), 0o755)
    descriptor, new = tempfile.mkstemp(dir=os.path.dirname(path))
    with os.fdopen(descriptor, "w") as file:
        json.dump(record, file, indent=2, sort_keys=True)
        file.write("\n")
        os.fchmod(descriptor, 0o644 if record["access"] == "yes" else 0o600)
    os.rename(new, path)
