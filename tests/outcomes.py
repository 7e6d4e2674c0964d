#!/usr/bin/env python3
"""Prints a line for each test of JUnit files, as ctest and the unit tests write them.

    outcomes.py PHASE FILE ...

The line says "passed", "failed" or "skipped", then the phase and the name of the test, and why it was
skipped. A file that does not exist holds no tests; the first has to exist, and to hold some.
"""

import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree


def outcome(test):
    """Returns the outcome of a test, and the reason where it was skipped."""
    skipped = test.find("skipped")
    if test.find("failure") is not None or test.find("error") is not None:
        return "failed", ""
    if skipped is None:
        return "passed", ""
    message = skipped.get("message", "")
    if test.get("result") == "skipped":  # a unit test: the place in the source, the reason
        return "skipped", ": " + message.splitlines()[-1]
    if not message.startswith("SKIP_RETURN_CODE"):  # its program is not there
        return "failed", ""
    reasons = re.findall(r"^skipped: (.*)", test.findtext("system-out", ""), re.MULTILINE)
    return "skipped", ": " + ", ".join(reasons)


def main():
    phase, first, *others = sys.argv[1:]
    for path in [first, *filter(pathlib.Path.exists, map(pathlib.Path, others))]:
        tests = list(ElementTree.parse(path).iter("testcase"))
        for test in tests:
            name = test.get("name")
            if test.get("classname") != name:  # as ctest says it
                name = f"{test.get('classname')}.{name}"
            result, reason = outcome(test)
            print(f"{result} {phase}: {name}{reason}")
        if not tests:
            sys.exit(f"{path} holds no tests")


if __name__ == "__main__":
    main()
