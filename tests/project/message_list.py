"""The program's list of its messages, and the texts of a message file."""

import collections
import pathlib
import re

SOURCE = pathlib.Path(__file__).resolve().parents[2] / "src"

ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "f": "\f", "v": "\v", "b": "\b", "e": "\033",
           "?": "\177"}

Description = collections.namedtuple("Description", "number name kind texts")


def described_messages():
    """Returns the program's list of its messages."""
    rows = re.findall(r"^(MESSAGE|FORMAT)\((\d+), (\w+), (\w+)\)",
                      (SOURCE / "messages/messages.def").read_text(), re.MULTILINE)
    return [Description(int(number), name, *((last, 0) if macro == "MESSAGE" else
                                             (macro, int(last))))
            for macro, number, name, last in rows]


DESCRIBED = described_messages()
USED = {each.number for each in DESCRIBED}
NUMBERS = {each.name: each.number for each in DESCRIBED}


def of_kind(*kinds):
    return [each.number for each in DESCRIBED if each.kind in kinds]


def stored(raw):
    text = re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape[1], escape[1]), raw)
    return text.removesuffix("|")


def read_messages(path):
    """Returns the texts of a message file by their numbers."""
    return {int(line[:3]): stored(line[4:])
            for line in path.read_text(encoding="ascii").splitlines()
            if re.match(r"\d{3} ", line)}
