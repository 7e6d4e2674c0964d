#!/usr/bin/env python3
"""Draws each finding of morvane-lint with one distribution, and just does not with another.

    lint_checks.py BUILD_DIRECTORY

A distribution is a dictionary: names of files with their content, a text or, for an archive, a list
of members. GOOD is what all are made of: it draws nothing.
"""

import io
import json
import pathlib
import re
import subprocess
import sys
import tarfile
import tempfile

BUILD = pathlib.Path(sys.argv[1]).resolve()
LINT = BUILD / "morvane-lint"

HEAD = "Name = X\nFullName = \"Ex\"\nVersion = 1.0\nCategory = C\nType = t\n"  # five lines
PART = "Target = make-it\nAskAgain = Again?\n"
NEED = "NeedsCategory = NEED\n"
TYPE = NEED + "NeedsType = some\n"
NEED_OF_Y = "NeedsCategory = Y\nNeedsType = t\nNeedsFiles = bin/y\n"
OF_Y = "Category = Y\n"
NEEDS_Y = "NeedsCategory = Y\n"
NEEDS_C = "NeedsCategory = C\n"  # that of x
SINCE = "NeedsType = t\nNeedsVersion = "
FILE = {"name": "file"}
MAKEFILE = {"name": "install/Makefile", "content": "make-it:\n\ttrue\n"}
GOOD = {"x.descr": HEAD, "x.tar": [FILE]}

DIRECTORY, LINK, HARD, PIPE = (tarfile.DIRTYPE, tarfile.SYMTYPE, tarfile.LNKTYPE,
                               tarfile.FIFOTYPE)


def archive(members):
    packed = io.BytesIO()
    with tarfile.open(fileobj=packed, mode="w", format=tarfile.GNU_FORMAT) as tar:
        for member in members:
            info = tarfile.TarInfo(member["name"])
            info.type = member.get("type", tarfile.REGTYPE)
            info.linkname = member.get("to", "")
            info.mode = member.get("mode", 0o644)
            content = member.get("content", "").encode()
            info.size = len(content)
            tar.addfile(info, io.BytesIO(content))
    return packed.getvalue()


def two_names(name):
    """An archive with a file that GNU tar's way to write a long name calls "file", and the later
    one, a pax header, `name`."""
    def block(kind, content):
        info = tarfile.TarInfo("header")
        info.type, info.size = kind, len(content)
        return info.tobuf(tarfile.USTAR_FORMAT) + content.ljust(tarfile.BLOCKSIZE, b"\0")

    record = f" path={name}\n"
    length = len(record) + 2
    return (block(tarfile.GNUTYPE_LONGNAME, b"file\0") +
            block(tarfile.XHDTYPE, f"{length}{record}".encode()) +
            tarfile.TarInfo("file").tobuf(tarfile.USTAR_FORMAT) + bytes(2 * tarfile.BLOCKSIZE))


def described(lines, archived=None, **more):
    """A product x of HEAD and further lines."""
    return {"x.descr": HEAD + lines, "x.tar": archived or [FILE, MAKEFILE], **more}


def holding(*members):
    return {**GOOD, "x.tar": list(members)}


def other(lines="", name="y", **more):
    """Another product, beside x."""
    head = HEAD.replace("Name = X", "Name = Y").replace("Ex", "Why")
    return {f"{name}.descr": head + lines, f"{name}.tar": [FILE], **more}


def messages(number=None, line=None, name="morvane.rsc", more=""):
    """The message file that was built, with another line for a number, and more lines."""
    text = (BUILD / "morvane.rsc").read_text(encoding="ascii")
    if number:
        text, count = re.subn(rf"^{number} .*\n", lambda _: line, text, flags=re.MULTILINE)
        assert count == 1, number
    return {**GOOD, name: text + more}


def line_of(number):
    text = (BUILD / "morvane.rsc").read_text(encoding="ascii")
    return text[:text.index(f"\n{number} ")].count("\n") + 2


def at(number):
    return f"morvane.rsc:{line_of(number)}"


def behind():
    """The line behind the last one."""
    count = (BUILD / "morvane.rsc").read_text(encoding="ascii").count("\n")
    return f"morvane.rsc:{count + 1}"


# For each check: where the finding stands, what draws it, and what just does not.
CASES = {
    # Reading.
    "description-unreadable": ("x.descr:1", {**GOOD, "x.descr": "\n" * (1024 * 1024 + 1)},
                               {**GOOD, "x.descr": "\n" * (1024 * 1024)}),
    "keyword-unknown": ("x.descr:6", described("Nmae = X\n"), described("#Nmae = X\n")),
    "keyword-none": ("x.descr:6", described("= a\n"), described("# = a\n")),
    "keyword-misplaced": ("x.descr:6", described("Ask = Really?\n" + PART),
                          described(PART + "Ask = Really?\n")),
    "keyword-disabled": ("x.descr:7", described("DescriptionState = 1\nFixedOwners = bin\n"),
                         described("DescriptionState = 0\nFixedOwners = bin\n")),
    "equals-missing": ("x.descr:6", described("Owner root\n"), described("Owner=root\n")),
    "text-unquoted": ("x.descr:6", described("Abstract = two words\n"),
                      described("Abstract = one # word\n")),
    "text-behind-quote": ("x.descr:6", described('Abstract = "one" two\n'),
                          described('Abstract = "one" # two\n')),
    "quote-missing": ("x.descr:6", described('Abstract = "one\n'), described('Abstract = one"\n')),
    "tool-name": ("x.descr:6", described('NeededTools = "cc /usr/bin/sed"\n'),
                  described('NeededTools = "cc sed"\n')),
    "value-too-long": ("x.descr:6", described(f'Abstract = "{"a" * 1025}"\n'),
                       described(f'Abstract = "{"a" * 1022}"\n')),
    "value-cut": ("x.descr:6", described(f"Owner = {'a' * 50}\n"),
                  described(f"Owner = {'a' * 49}\n")),
    "value-empty": ("x.descr:6", described("Owner =\n"), described("Owner = o\n")),
    "list-too-long": ("x.descr:6", described(f'FixedOwners = "{"a " * 10}a"\n'),
                      described(f'FixedOwners = "{"a " * 9}a"\n')),
    "list-separator": ("x.descr:6", described("NeededTools = cc,sed\n"),
                       described('NeededTools = "cc sed"\n')),
    "list-repeated": ("x.descr:7", described("NeededTools = cc\nNeededTools = sed\n"),
                      described("NeededTools = cc\nAbstract = a\nAbstract = b\n")),
    "entry-repeated": ("x.descr:7", described("Owner = a\nOwner = b\n"),
                       described(PART + TYPE + "NeedsVersion = 1\n" + TYPE.replace("NEED", "TWO") +
                                 "NeedsVersion = 1\n")),
    "comment-too-long": ("x.descr:6", described("#" + "a" * 256 + "\n"),
                         described("#" + "a" * 255 + "\n")),
    "number-none": ("x.descr:6", described("Patch = yes\n"), described("Patch = 1\n")),
    "version-none": ("x.descr:10", described(PART + TYPE + "NeedsVersion = v2.1\n"),
                     described(PART + TYPE + "NeedsVersion = 2.1\n")),
    "version-rest": ("x.descr:10", described(PART + TYPE + "NeedsVersion = 2,10\n"),
                     described(PART + TYPE + "NeedsVersion = 2.10.3\n")),
    "parts-too-many": ("x.descr:18", described("".join(f"Target = t{n}\n" for n in range(13))),
                       described("".join(f"Target = t{n}\n" for n in range(12)))),
    "needs-too-many": ("x.descr:18",
                       described(PART + "".join(f"NeedsCategory = C{n}\n" for n in range(11))),
                       described(PART + "".join(f"NeedsCategory = C{n}\n" for n in range(10)))),
    "types-too-many": ("x.descr:19",
                       described(PART + NEED + "".join(f"NeedsType = t{n}\n" for n in range(11))),
                       described(PART + NEED + "".join(f"NeedsType = t{n}\n" for n in range(10)))),
    "not-ascii": ("x.descr:6", described("Abstract = caf\xe9\n"), described("Abstract = cafe\n")),
    "control-character": ("x.descr:6", described("Abstract = a\033[1m\n"),
                          described("Abstract =\ta\r\n")),
    "byte-order-mark": ("x.descr:1", {**GOOD, "x.descr": "\ufeff" + HEAD}, GOOD),

    # Names.
    "name-missing": ("x.descr:1", {**GOOD, "x.descr": HEAD.partition("\n")[2]}, GOOD),
    "name-characters": ("x.descr:9", described(PART + NEED + 'NeedsText = "for $5"\n'),
                        described(PART + NEED + 'NeedsText = "for 5!"\n')),
    "identifier-characters": ("a+b@.tar:1", {"a+b@.descr": HEAD, "a+b@.tar": [FILE]},
                              {"a+b_.descr": HEAD, "a+b_.tar": [FILE]}),
    "identifier-too-long": (f"{'a' * 50}.tar:1", {f"{'a' * 50}.tar": [FILE]},
                            {f"{'a' * 49}.tar": [FILE]}),
    "identifier-reserved": ("x-tar.tar:1", {**GOOD, **other(name="x-tar")},
                            {**GOOD, **other(name="x-tart")}),
    "identifier-made": ("x.c.tar:1", {**GOOD, **other(name="x.c")}, {**GOOD, **other(name="x.q")}),
    "category-characters": ("x.descr:8", described(PART + "NeedsCategory = a-b\n"),
                            described(PART + "NeedsCategory = a_b\n")),
    "category-reserved": ("x.descr:8", described(PART + "NeedsCategory = PRODUCT\n"),
                          described(PART + "NeedsCategory = PRODUCTS\n")),
    "category-repeated": ("x.descr:9", described(PART + NEED + NEED),
                          described(PART + NEED + "NeedsCategory = need\n")),
    "part-characters": ("x.descr:6", described("Target = a:b\n"), described("Target = a.b\n")),
    "part-reserved": ("x.descr:6", described("Target = owner\n"), described("Target = owners\n")),
    "part-repeated": ("x.descr:8", described(PART + PART), described(PART + "Target = other\n")),
    "part-collision": ("x.descr:6", {**described(PART), **other(name="x-make-it")},
                       {**described(PART), **other(name="x-made-it")}),
    "path-refused": ("x.descr:6", described("Path = opt/x\n"), described("Path = ~/x\n")),
    "owner-refused": ("x.descr:6", described('Owner = "a b"\n'), described("Owner = a.b\n")),
    "variable-name": ("x.descr:6", described("PathVariable = $HOME\n"),
                      described("PathVariable = HOME\n")),

    # Sense.
    "products-too-many": ("p50.tar:1", {f"p{n:02}.tar": [FILE] for n in range(51)},
                          {f"p{n:02}.tar": [FILE] for n in range(50)}),
    "archive-missing": ("x.descr:1", {"x.descr": HEAD}, {"x.descr": HEAD, "x/file": ""}),
    "description-missing": ("x.tar:1", {"x.tar": [FILE]}, GOOD),
    "description-misnamed": ("X.descr:1", {"X.descr": HEAD, "x.tar": [FILE]},
                             {"x.descr": HEAD, "x.tar": [FILE], "x.desc": ""}),
    "messages-misnamed": ("morvane.rsc.txt:1", {**GOOD, "morvane.rsc.txt": ""},
                          {**GOOD, "morvane.de.rsc": ""}),
    "version-missing": ("x.descr:3", {**GOOD, "x.descr": HEAD.replace("1.0", "0.0")},
                        {**GOOD, "x.descr": HEAD.replace("1.0", "0.1")}),
    "patch-of-itself": ("x.descr:7", described("Patch = 1\nRequiredPatches = 1\n"),
                        described("Patch = 1\nRequiredPatches = 0\n")),
    "patch-alone": ("x.descr:6", described("Patch = 1\n"), described("Patch = 0\n")),
    "patch-unmet": ("x.descr:7", described("Patch = 1\nRequiredPatches = 0\n"),
                    {**described("Patch = 1\nRequiredPatches = 0\n"), "w.descr": HEAD,
                     "w.tar": [FILE]}),
    "patch-first": ("x.descr:1", {**described("Patch = 1\nRequiredPatches = 0\n"), "y.descr": HEAD,
                                  "y.tar": [FILE]},
                    {**described("Patch = 1\nRequiredPatches = 0\n"), "w.descr": HEAD,
                     "w.tar": [FILE]}),
    "patch-path": ("x.descr:8", {**described("Patch = 1\nRequiredPatches = 0\nPath = /p\n"),
                                 "w.descr": HEAD + "Path = /q\n", "w.tar": [FILE]},
                   {**described("Patch = 1\nRequiredPatches = 0\nPath = /p\n"),
                    "w.descr": HEAD + "Path = /p\n", "w.tar": [FILE]}),
    "part-never-again": ("x.descr:6", described("Target = make-it\n"), described(PART)),
    "product-twice": ("y.descr:1", {**GOOD, "y.descr": HEAD, "y.tar": [FILE]},
                      {**GOOD, "y.descr": HEAD + "Patch = 1\n", "y.tar": [FILE]}),
    "full-name-twice": ("y.descr:2", {**GOOD, "y.descr": HEAD.replace("= X", "= Y"),
                                      "y.tar": [FILE]}, {**GOOD, **other()}),
    "path-twice": ("y.descr:6", {**described("Path = /p\n"), **other("Path = /p\n")},
                   {**described("Path = /p\n"), **other("Path = /p2\n")}),
    "file-like-rule": ("x-tar:1", {**GOOD, "x-tar": ""}, {**GOOD, "x-owner": ""}),

    # Archives.
    "archive-unreadable": ("x.tar:1", {**GOOD, "x.tar": archive([FILE])[:512]}, GOOD),
    "archive-ambiguous": ("x.tar:1", {**GOOD, "x.tar": two_names("install/Makefile")},
                          {**GOOD, "x.tar": two_names("file")}),
    "archive-compressed": ("x.tar:1", {**GOOD, "x.tar": b"\x1f\x8b\x08 and more"}, GOOD),
    "archive-empty": ("x.tar:1", {**GOOD, "x.tar": archive([])}, GOOD),
    "archive-names": ("x.tar:1",
                      holding(*({"name": f"{n}{'n' * 90}"} for n in range(22000))),
                      holding(*({"name": f"{n}{'n' * 90}"} for n in range(8000)))),
    "member-name": ("x.tar:1", holding({"name": "a b"}),
                    holding({"name": "a+b"}, {"name": "bin/["})),
    "member-absolute": ("x.tar:1", holding({"name": "/file"}), holding({"name": "./file"})),
    "member-outside": ("x.tar:1", holding({"name": "a/../file"}), holding({"name": "a/..file"})),
    "member-kind": ("x.tar:1", holding({"name": "pipe", "type": PIPE}), holding({"name": "pipe"})),
    "member-mode": ("x.tar:1", holding({"name": "file", "mode": 0o040}),
                    holding({"name": "file", "mode": 0o400})),
    "member-set-id": ("x.tar:1", holding({"name": "file", "mode": 0o4755}),
                      holding({"name": "directory", "type": DIRECTORY, "mode": 0o2755})),
    "member-below-file": ("x.tar:1", holding({"name": "a"}, {"name": "a/b"}),
                          holding({"name": "a", "type": DIRECTORY}, {"name": "a/b"})),
    "member-no-directory": ("x.tar:1", holding({"name": "install"}),
                            holding({"name": "install", "type": DIRECTORY})),
    "member-replaced": ("x.tar:1", holding({"name": "install/x.dat"}),
                        holding({"name": "install/y.dat"})),
    "member-twice": ("x.tar:1", holding(FILE, {"name": "file", "type": DIRECTORY}),
                     holding(FILE, FILE)),
    "link-astray": ("x.tar:1", holding({"name": "bin/link", "type": LINK, "to": "../../etc"}),
                    holding({"name": "bin/link", "type": LINK, "to": "../lib/../file"}, FILE,
                            {"name": "lib", "type": DIRECTORY})),
    "hard-link-astray": ("x.tar:1", holding({"name": "link", "type": HARD, "to": "file"}, FILE),
                         holding(FILE, {"name": "link", "type": HARD, "to": "file"})),
    "makefile-missing": ("x.descr:6", described(PART, [FILE]), described(PART, [FILE, MAKEFILE])),
    "makefile-misplaced": ("x.tar:1",
                           described(PART, [FILE, {**MAKEFILE, "name": "install/makefile"}]),
                           described(PART, [FILE, {**MAKEFILE, "name": "install/Makefile.in"}])),
    "makefile-blanks": ("x.tar:1",
                        described(PART, [{**MAKEFILE, "content": "make-it:\n        true\n"}]),
                        described(PART, [{**MAKEFILE, "content": "make-it:\n  A = b\n\ttrue\n"}])),
    "makefile-variable": ("x.tar:1",
                          described(PART, [{**MAKEFILE, "content": "make-it:\n\tls $HOME\n"}]),
                          described(PART, [{**MAKEFILE,
                                            "content": "make-it:\n\tls $$HOME $H $(HOME)\n"}])),
    "part-without-target": ("x.descr:6",
                            described(PART, [{**MAKEFILE, "content": ".PHONY: make-it\nall:\n"}]),
                            described(PART, [{**MAKEFILE, "content": "all \\\nmake-it:: all\n"}])),
    "part-is-file": ("x.descr:6", described(PART, [MAKEFILE, {"name": "install/make-it"}]),
                     described(PART, [{**MAKEFILE, "content": "make-it: file\n\ttrue\n"},
                                      {"name": "install/make-it"}])),
    "part-hidden": ("x.descr:6",
                    described(PART, [{**MAKEFILE, "content": "include rules.mk\n"}]),
                    described(PART, [{**MAKEFILE, "content": "include x\nmake-it:\n"}])),
    "needed-file-missing": ("x.descr:10", {**described(PART + NEED_OF_Y), **other(OF_Y)},
                            {**described(PART + NEED_OF_Y), **other(OF_Y),
                             "y.tar": [{"name": "./bin/y"}]}),
    "files-shared": ("y.tar:1", {**described("Path = /p\n"), **other("Path = /p\n")},
                     {**described("Path = /p\n"), **other("Path = /p\n"),
                      "y.tar": [{"name": "other"}]}),

    # Messages.
    "message-none": ("morvane.rsc:1", {**GOOD, "morvane.rsc": "\n"},
                     messages("040", "")),
    "message-line-end": ("morvane.rsc:1", {**GOOD, "morvane.rsc": "040 a\r\n"}, messages()),
    "message-skipped": (behind(), messages(more="goes on\n"), messages(more=" # goes on\n")),
    "message-missing": ("morvane.rsc:1", messages("040", ""), messages("040", "040 |\n")),
    "message-unused": (behind(), messages(more="499 more\n"), messages(more="#499 more\n")),
    "message-repeated": (behind(), messages(more="040 again\n"), messages()),
    "message-column": (behind(), messages(more="3 products\n"), messages(more="# 3 products\n")),
    "message-cut": (at("040"), messages("040", f"040 {'a' * 151}\n"),
                    messages("040", f"040 {'a' * 150}\n")),
    "message-too-long": (at("040"), messages("040", f"040 {'a' * 150}\n"),
                         messages("040", f"040 {'a' * 149}\n")),
    "message-not-ascii": (at("040"), messages("040", "040 caf\xe9\n"),
                          messages("040", "040 cafe\n")),
    "message-conversions": (at("075"), messages("075", "075 %s %s\n"),
                            messages("075", "075 100%% of %-9.9s\n")),
    "message-width": (at("040"), messages("040", f"040 {'a' * 80}\n"),
                      messages("040", f"040 {'a' * 79}\\na\n")),
    "message-title": (at("011"), messages("011", "011 =  short  =\n"), messages()),
    "message-letters": (at("001"), messages("001", "001 ynN\n"), messages("001", "001 jnQ\n")),
    "message-hint": (at("035"), messages("035", "035 (yes, no, q)\n"),
                     messages("035", "035 Y N Q\n")),
    "message-keyword": (at("202"), messages("202", "202 Name\n"), messages("202", "202 Title\n")),
    "message-number": (at("065"), messages("065", "065 three\n"), messages("065", "065 12\n")),
    "message-line": (at("141"), messages("141", "141 one\\ntwo\n"), messages("141", "141 one\n")),
    "message-type": (at("256"), messages("256", f"256 {'a' * 50}\n"),
                     messages("256", f"256 {'a' * 49}\n")),
    "message-command": (at("122"), messages("122", "122 if true; then\n"),
                        messages("122", "122 if true; then :; fi\n")),
    "message-joined": (at("013"), messages("013", "013 No blank.\n"),
                       messages("013", "013 A blank. |\n")),
    "message-height": (at("024"), messages("018", "018 " + r"line\n" * 12 + "\n"),
                       messages("018", "018 1\n")),
    "message-translated": ("other.rsc:" + at("240").partition(":")[2],
                           messages("240", "240 OTHER\n", name="other.rsc"),
                           messages("040", "040 Other\n", name="other.rsc")),
    "message-new-lines": ("other.rsc:" + at("040").partition(":")[2],
                          messages("040", "040 Other\\n\n", name="other.rsc"),
                          messages("040", "040 Other\n", name="other.rsc")),
    "message-answers": ("other.rsc:" + at("034").partition(":")[2],
                        messages("034", "034 y for yes.\n", name="other.rsc"),
                        messages("034", "034 N: no, Y: yes.\n", name="other.rsc")),

    # Needs.
    "need-unmet": ("x.descr:8", described(PART + NEEDS_Y), {**described(PART + NEEDS_Y),
                                                            **other(OF_Y)}),
    "need-on-host": ("x.descr:8", described(PART + NEEDS_Y + "NeedsType = t\nNeedsPath = /y\n"),
                     described(PART + NEEDS_Y + "NeedsType = t\n")),
    "need-path": ("x.descr:8",
                  {**described(PART + NEED + "NeedsType = t\nNeedsPath = /y\n"),
                   **other("Path = /y\n")},
                  {**described(PART + NEED + "NeedsType = t\nNeedsPath = /z\n"),
                   **other("Path = /y\n")}),
    "need-type": ("x.descr:9", {**described(PART + NEEDS_Y + "NeedsType = u\n"), **other(OF_Y)},
                  {**described(PART + NEEDS_Y + "NeedsType = t\n"), **other(OF_Y)}),
    "need-too-old": ("x.descr:10", {**described(PART + NEEDS_Y + SINCE + "1.0.1\n"),
                                    **other(OF_Y)},
                     {**described(PART + NEEDS_Y + SINCE + "1.0\n"), **other(OF_Y)}),
    "need-alternative": ("x.descr:10", {**described(PART + NEEDS_Y + "NeedsType = t\n" +
                                                    "NeedsType = u\n"), **other(OF_Y)},
                         {**described(PART + NEEDS_Y + "NeedsType = t\n"), **other(OF_Y)}),
    "need-ring": ("x.descr:8", {**described(PART + NEEDS_Y), **other(OF_Y + PART + NEEDS_C)},
                  {**described(PART + NEEDS_Y),
                   **other(OF_Y + PART + "SuppliersElsewhere = 1\n" + NEEDS_C)}),
    "need-ring-step": ("y.descr:9", {**described(PART + NEEDS_Y), **other(OF_Y + PART + NEEDS_C)},
                       {**described(PART + NEEDS_C), **other(OF_Y + PART + NEEDS_C)}),
    "need-ring-possible": ("x.descr:8", {**described(PART + NEEDS_Y), **other(OF_Y, "z"),
                                         **other(OF_Y + PART + NEEDS_C)},
                           {**described(PART + NEEDS_Y), **other(OF_Y + PART + NEEDS_C)}),
    "never-installable": ("x.descr:8", {**described(PART + NEEDS_Y), **other(OF_Y + PART + NEED)},
                          {**described(PART + NEEDS_Y),
                           **other(OF_Y + PART + "Ask = Really?\n" + NEED)}),

    # Suppressions.
    "allow-malformed": ("x.descr:6", described("# lint: allow value-empty:\nOwner =\n"),
                        described("# lint: allow value-empty: why\nOwner =\n")),
    "allow-unknown": ("x.descr:6", described("# lint: allow values-empty: why\nOwner = o\n"),
                      described("# allow values-empty: why\nOwner = o\n")),
    "allow-unused": ("x.descr:6", described("# lint: allow value-empty: why\nOwner = o\n"),
                     described("# lint: allow value-empty: why\nOwner =\n")),
    "findings-left-out": ("x.descr:206", described("q\n" * 201), described("q\n" * 200)),
}


def make(distribution, directory):
    for name, content in distribution.items():
        path = directory / name
        path.parent.mkdir(parents=True, exist_ok=True)
        if isinstance(content, list):
            content = archive(content)
        elif isinstance(content, str):
            content = content.encode("utf-8")
        path.write_bytes(content)


def lint(directory, *options):
    done = subprocess.run([LINT, "-C", directory, *options], capture_output=True, text=True,
                          timeout=60, check=False)
    return done


def findings_of(distribution):
    with tempfile.TemporaryDirectory(prefix="morvane-lint-") as directory:
        make(distribution, pathlib.Path(directory))
        translation = ["--translation=other.rsc"] if "other.rsc" in distribution else []
        done = lint(directory, "--format=json", *translation)
        assert done.stderr == "", done.stderr
        found = json.loads(done.stdout)["findings"]
        worst = {finding["severity"] for finding in found}
        assert done.returncode == (1 if worst - {"note"} else 0), (done.returncode, worst)
        return {(finding["id"], f"{finding['file']}:{finding['line']}") for finding in found}


def rules():
    with tempfile.TemporaryDirectory(prefix="morvane-lint-") as directory:
        log = json.loads(lint(directory, "--format=sarif").stdout)
        return log["runs"][0]["tool"]["driver"]["rules"]


def main():
    faults = []
    found = findings_of(GOOD)
    if found:
        faults.append(f"the distribution without mistakes: {sorted(found)}")
    known = [rule["id"] for rule in rules()]
    if known != list(CASES):
        faults.append(f"checks without a case, or in another order: {set(known) ^ set(CASES)}")
    for check, (place, wrong, right) in CASES.items():
        found = findings_of(wrong)
        if (check, place) not in found:
            faults.append(f"{check} is not found at {place}: {sorted(found)}")
        near = findings_of(right)
        if any(check == name for name, _ in near):
            faults.append(f"{check} is found where it should not: {sorted(near)}")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
