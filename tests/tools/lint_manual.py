#!/usr/bin/env python3
"""Compares the checks of morvane-lint with the rows of its manual page and with those that its
sources name, and its options with the page.

    lint_manual.py BUILD_DIRECTORY
"""

import json
import pathlib
import re
import subprocess
import sys

LINT = pathlib.Path(sys.argv[1]).resolve() / "morvane-lint"
PROJECT = pathlib.Path(__file__).resolve().parents[2]
PAGE = (PROJECT / "man/morvane-lint.1").read_text()
ROW = re.compile(r"^\.It Ic (\S+) , (\w+)\n((?:[^.].*\n)+)", re.MULTILINE)


def output(*arguments):
    return subprocess.run([LINT, *arguments], capture_output=True, text=True, check=True,
                          cwd=PROJECT / "examples").stdout


def checks():
    log = json.loads(output("--format=sarif"))
    for rule in log["runs"][0]["tool"]["driver"]["rules"]:
        yield (rule["id"], rule["defaultConfiguration"]["level"],
               rule["shortDescription"]["text"])


def main():
    rows = [(check, severity, " ".join(text.split())) for check, severity, text in
            ROW.findall(PAGE)]
    faults = [f"not in the page, or otherwise: {check}" for check in checks() if check not in rows]
    faults += [f"not a check, or otherwise: {row}" for row in rows if row not in list(checks())]
    if rows != list(checks()) and not faults:
        faults.append("the rows are in another order than the checks")
    known = {check for check, _, _ in rows}
    named = set()
    for source in (PROJECT / "tools/lint").glob("*.cc"):
        named |= set(re.findall(r'\b(?:add|check_id)\(\s*"([^"]*)"', source.read_text()))
    faults += [f"the sources name no check: {check}" for check in sorted(named - known)]
    faults += [f"nothing finds {check}" for check in sorted(known - named)]
    for option in re.findall(r"^  (--[a-z-]+|-C)", output("--help"), re.MULTILINE):
        name = option.removeprefix("-")
        if not re.search(rf"^\.(?:It|Op) .*(?<!\w){name}\b", PAGE, re.MULTILINE):
            faults.append(f"the page does not have {option}")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
