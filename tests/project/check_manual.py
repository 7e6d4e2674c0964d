#!/usr/bin/env python3
"""Checks the manual pages against the program, and against the files that they show.

    check_manual.py BUILD_DIRECTORY     checks examples, messages and keywords
    check_manual.py --lint              has mandoc check the pages

Every literal display of a page is an example: a comment in front of it names the file in
man/examples that it shows.

    .\\" example: NAME
    .Bd -literal ...
"""

import collections
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import message_list

PROJECT = pathlib.Path(__file__).resolve().parents[2]
MANUAL = PROJECT / "man"
EXAMPLES = MANUAL / "examples"
DIAGNOSTIC_MESSAGES = ("095", "096", "101", "114", "146")
# Where morvane.rsc(5) lists the messages of some kinds.
LISTS = {
    r"^The formats are ([^.]*)\.": ("FORMAT",),
    r"^The commands are ([^.]*)\.": ("COMMAND",),
    r"^The title lines (.*) are ": ("TITLE",),
    r"^The texts (.*) are joined ": ("PARAGRAPH",),
    r"^(.*) hold no new line:": ("HEAD_LINE",),
    r"^The names and commands: ([^.]*)\.": ("NAME", "NUMBER", "COMMAND"),
    r"^The keywords ([^.]*)\.": ("KEYWORD",),
}
SKIPPED = 77
TIMEOUT = 60

# A line that begins with a full stop or an apostrophe would not be shown.
DISPLAY = re.compile(r"""^\.\\" example: (\S+)\n\.Bd -literal.*\n((?:(?![.']).*\n)*)\.Ed$""",
                     re.MULTILINE)
ESCAPES = {r"\e": "\\", r"\(rs": "\\", r"\-": "-", r"\(aq": "'", r"\(dq": '"', r"\(ga": "`",
           r"\(ha": "^", r"\(ti": "~", r"\&": ""}


def unescape(roff):
    return re.sub(r"\\(\(..|.)", lambda escape: ESCAPES.get(escape[0], escape[0]), roff)


def check_examples(page):
    text = page.read_text()
    displays = DISPLAY.findall(text)
    if len(displays) != len(re.findall(r"^\.Bd .*-literal", text, re.MULTILINE)):
        yield f"{page.name}: there is a literal display that is no example"
    for name, display in displays:
        example = EXAMPLES / name
        if not example.is_file() or unescape(display) != example.read_text():
            yield f"{page.name}: what is shown is not the example {name}"


def number_counts(numbers, wanted, what):
    counts = collections.Counter(numbers)
    for number in sorted(set(counts) | set(wanted)):
        if number not in wanted:
            yield f"{what} {number} does not exist"
        elif counts[number] != 1:
            yield f"{what} {number} is named {counts[number]} times"


def listed_numbers(text):
    """Returns the numbers in a text such as "037 and 111 to 113"."""
    return {number for first, last in re.findall(r"(\d{3})(?: to (\d{3}))?", text)
            for number in range(int(first), int(last or first) + 1)}


def check_kinds(page):
    """Compares what morvane.rsc(5) says of kinds of messages with the program's list."""
    for pattern, kinds in LISTS.items():
        listed = re.search(pattern, page, re.MULTILINE)
        if not listed or listed_numbers(listed[1]) != set(message_list.of_kind(*kinds)):
            yield f"morvane.rsc.5: does not name every {' and '.join(kinds)}, and no other message"
    entries = dict(re.findall(r"^\.It (\d+)\n((?:(?!\.It|\.El).*\n)*)", page, re.MULTILINE))
    for number, _, kind, texts in message_list.DESCRIBED:
        entry = entries.get(f"{number:03}", "")
        arguments = re.search(r"^Arguments?: (.*)\.$", entry, re.MULTILINE)
        if len(arguments[1].split(", ") if arguments else []) != texts:
            yield f"morvane.rsc.5: {number:03} does not have {texts} arguments"
        if bool(re.match(r"(question and )?format\b", entry)) != (kind == "FORMAT"):
            yield f"morvane.rsc.5: {number:03} is, or is not, a format"


def check_numbers(messages):
    used = [f"{number:03}" for number in message_list.USED]
    page = (MANUAL / "morvane.rsc.5").read_text()
    yield from number_counts(re.findall(r"^\.It (\d+)$", page, re.MULTILINE), used,
                             "morvane.rsc.5: number")
    yield from check_kinds(page)

    texts = dict(re.findall(r"^(\d{3}) (.*)$", messages, re.MULTILINE))
    keywords = {number: texts[number]
                for number in (f"{number:03}" for number in message_list.of_kind("KEYWORD"))}
    if dict(re.findall(r"^\.It (\d+)\n\.Ic (\w+)$", page, re.MULTILINE)) != keywords:
        yield "morvane.rsc.5: the keywords are not those of the message file"
    page = (MANUAL / "morvane.descr.5").read_text()
    yield from number_counts(re.findall(r"^\.It Ic (\w+) No =", page, re.MULTILINE),
                             keywords.values(), "morvane.descr.5: keyword")


def check_diagnostics(messages):
    """Compares the messages that morvane(1) explains with the message file."""
    page = (MANUAL / "morvane.1").read_text()
    shown = {number: diagnostic for diagnostic, numbers
             in re.findall(r'^\.It "(.*)"\nMessages? ([^:]*):', page, re.MULTILINE)
             for number in numbers.split(" and ")}
    texts = dict(re.findall(r"^(\d{3}) (.*)$", messages, re.MULTILINE))
    for number in DIAGNOSTIC_MESSAGES:
        if texts[number].replace(r"\n", " ") not in shown.get(number, ""):
            yield f"morvane.1: message {number} is not shown as it is"


def lay_out(scratch, build, descriptions, messages):
    """Makes a distribution without archives, and a directory for PATH with the program in it."""
    distribution, programs = scratch / "dist", scratch / "bin"
    distribution.mkdir()
    programs.mkdir()
    for description in descriptions:
        shutil.copy(description, distribution)
    (distribution / "morvane.rsc").write_text(messages)
    (programs / "morvane").symlink_to(build / "tests/morvane_without_pauses")
    return distribution, {"PATH": f"{programs}:/usr/bin:/bin", "LC_ALL": "C"}


def run(command, build, descriptions, messages, typed=""):
    """Returns what the command, run in such a distribution, writes, and its standard error."""
    with tempfile.TemporaryDirectory(prefix="morvane-manual-") as scratch:
        distribution, environment = lay_out(pathlib.Path(scratch), build, descriptions, messages)
        done = subprocess.run(command, cwd=distribution, env=environment, input=typed,
                              capture_output=True, text=True, check=False, timeout=TIMEOUT)
    return done.stdout, done.stderr


def listed_as(description):
    """Returns the words that stand behind the number where the product is listed."""
    entries = dict(re.findall(r'^(\w+)\s*=\s*"?([^"#\n]*)', description.read_text(), re.MULTILINE))
    patch = entries.get("Patch", "0").strip()
    return ["*", *entries["FullName"].split(), entries["Version"].strip(),
            *([patch] if patch != "0" else [])]


def check_descriptions(build, messages):
    """Tries the example descriptions as the manual tells how."""
    descriptions = sorted(EXAMPLES.glob("*.descr"))
    output, errors = run(["sh", "-e", EXAMPLES / "check-descriptions"], build, descriptions,
                         messages)
    if errors:
        yield f"the examples draw reports:\n{errors}"
    products = [line.partition(":")[2].rstrip() for line in output.splitlines()[1:] if line]
    if [product.split() for product in products] != [listed_as(path) for path in descriptions]:
        yield f"the examples are listed otherwise:\n{output}"
    for line in (EXAMPLES / "product-list").read_text().splitlines():
        if line.partition(":")[2] not in products:
            yield f"product-list: not listed so: {line}"


def check_translation(build, messages):
    """Quits with the letter of the translated messages; any other would draw a warning."""
    translation = (EXAMPLES / "german.rsc").read_text()
    texts = dict(re.findall(r"^(\d{3}) (.*)$", translation, re.MULTILINE))
    output, errors = run(["morvane"], build, [EXAMPLES / "harrow.descr"], messages + translation,
                         texts["001"][2] + "\n")
    if errors or not output.endswith(texts["299"].replace(r"\n", "\n")):
        yield f"german.rsc is not followed:\n{output}{errors}"


def check(build):
    messages = (build / "morvane.rsc").read_text()
    for page in sorted(MANUAL.glob("*.[0-9]")):
        yield from check_examples(page)
    yield from check_numbers(messages)
    yield from check_diagnostics(messages)
    yield from check_descriptions(build, messages)
    yield from check_translation(build, messages)


def lint():
    if shutil.which("mandoc") is None:
        print("skipped: there is no mandoc")
        return SKIPPED
    pages = sorted(page.name for page in MANUAL.glob("*.[0-9]"))
    return subprocess.run(["mandoc", "-T", "lint", "-W", "warning", *pages], cwd=MANUAL,
                          check=False).returncode


def main():
    if sys.argv[1] == "--lint":
        sys.exit(lint())
    faults = list(check(pathlib.Path(sys.argv[1]).resolve()))
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
