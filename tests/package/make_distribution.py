#!/usr/bin/env python3
"""Puts distributions together, and checks what is refused, and what is said about it.

    make_distribution.py BUILD_DIRECTORY
"""

import bz2
import contextlib
import grp
import gzip
import io
import itertools
import lzma
import os
import pathlib
import pwd
import random
import re
import resource
import shutil
import signal
import socket
import stat
import subprocess
import sys
import tarfile
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1]).resolve()
LANGUAGES = sorted(path.name.split(".")[1] for path in BUILD.glob("morvane.*.rsc"))
COMMAND = pathlib.Path(__file__).resolve().parents[2] / "scripts/make-distribution"
SYSTEM = "{0.sysname}{1}".format(os.uname(), os.uname().release.split(".")[0])

LINT = BUILD / "morvane-lint"
NO_LINT = ("there is no morvane-lint, so that nobody looks for mistakes: install the package "
           "morvane-tools, or libarchive-dev and nettle-dev before the build")
NOT_WITHOUT = f"{NO_LINT}; without it the distribution is only made with --force"
FOUND_ERRORS = "morvane-lint found errors: the distribution is only made with --force"
FOUND = re.compile(r"make-distribution: (.*):1:1: error: (.*) \[(.*)\]")

MOST_PRODUCTS = 50


def member(name, kind=tarfile.REGTYPE, target="", mode=0o644):
    made = tarfile.TarInfo(name)
    made.type, made.linkname, made.mode = kind, target, mode
    return made


def directory(name, mode=0o755):
    return member(name, tarfile.DIRTYPE, mode=mode)


def link(name, target):
    return member(name, tarfile.SYMTYPE, target)


def hard_link(name, target):
    return member(name, tarfile.LNKTYPE, target)


def record(keyword, value):
    """Returns a record of an extended header, which begins with its own length."""
    rest = f" {keyword}={value}\n"
    length = len(rest)
    while len(f"{length}{rest}") != length:
        length += 1
    return f"{length}{rest}"


def extra(kind, text):
    """Returns a header that says more about the member behind it."""
    header = tarfile.TarInfo("extra")
    header.type, header.size = kind, len(text)
    content = text.encode()
    return header.tobuf(tarfile.USTAR_FORMAT) + content + bytes(-len(content) % tarfile.BLOCKSIZE)


def long_name(name):
    return extra(tarfile.GNUTYPE_LONGNAME, name + "\0")


def long_target(target):
    return extra(tarfile.GNUTYPE_LONGLINK, target + "\0")


def extended(keyword, value):
    return extra(tarfile.XHDTYPE, record(keyword, value))


def packed(members):
    """Returns an archive of members, and of headers as bytes."""
    content = io.BytesIO()
    with tarfile.open(fileobj=content, mode="w", format=tarfile.GNU_FORMAT, encoding="utf-8",
                      errors="surrogateescape") as archive:
        for entry in members:
            if isinstance(entry, bytes):
                content.write(entry)
            else:
                archive.addfile(entry)
    return content.getvalue()


def with_content():
    """Returns an archive with a file of 2000 bytes, which has no end but two blocks."""
    entry = member("f")
    entry.size = 2000
    return entry.tobuf(tarfile.USTAR_FORMAT) + b"x" * 2000 + bytes(48) + bytes(1024)


OUT = "that leads out of the tree"
NOWHERE = "that leads nowhere"
ABSOLUTE = "that is absolute, or leads to one that is"
CIRCLE = "that leads in a circle"
WHOLE = packed([member("f"), member("g"), member("h")])

# Members of an archive of product ID, or its content, and its findings in their order: the check,
# and how the text begins.
REFUSED_ARCHIVES = [
    ([member("/etc/motd")], ["member-absolute '/etc/motd': "]),
    ([member("../up")], ["member-outside '../up': "]),
    ([directory("a"), member("a/../b")], ["member-outside 'a/../b': "]),
    ([member("a b")], ["member-name 'a b': "]),
    ([member("a\tb")], [r"member-name 'a\tb': "]),
    ([member("a\nb")], [r"member-name 'a\nb': "]),
    ([member("a\177")], [r"member-name 'a\x7f': "]),
    ([member("na\u00efve")], ["member-name 'na\u00c3\u00afve': "]),
    ([member("a\udcffb")], ["member-name 'a\u00ffb': "]),
    ([member("a\\b")], [r"member-name 'a\b': "]),
    ([member("a*")], ["member-name 'a*': "]),
    ([member("a?")], ["member-name 'a?': "]),
    ([member("[a]")], ["member-name '[a]': "]),
    ([member("-R")], ["member-name '-R': a name that chown takes for an option"]),
    ([member("pipe", tarfile.FIFOTYPE)], ["member-kind 'pipe': "]),
    ([member("disk", tarfile.BLKTYPE)], ["member-kind 'disk': "]),
    ([member("line", tarfile.CHRTYPE)], ["member-kind 'line': "]),
    ([member("su", mode=0o4755)], ["member-set-id 'su': "]),
    ([member("write", mode=0o2755)], ["member-set-id 'write': "]),
    ([member("f"), member("f/g")], ["member-below-file 'f/g': lies below 'f'"]),
    ([directory("d"), link("l", "d"), member("l/g")],
     ["member-below-file 'l/g': lies below 'l'"]),
    ([member("install")], ["member-no-directory 'install': "]),
    ([directory("d"), link("install", "d")], ["member-no-directory 'install': "]),
    ([member("Makefile")], ["member-replaced 'Makefile': "]),
    ([member("./morvane.rsc")], ["member-replaced './morvane.rsc': "]),
    ([directory("morvane.SunOS4")], ["member-replaced 'morvane.SunOS4': "]),
    ([member("morvane.SunOS5")], ["member-replaced 'morvane.SunOS5': "]),
    ([member("install/ID.descr")], ["member-replaced 'install/ID.descr': "]),
    ([member("install/ID.dat")], ["member-replaced 'install/ID.dat': "]),
    ([member("install/ID.make")], ["member-replaced 'install/ID.make': "]),
    ([link("l", "/etc/motd")], [f"link-astray 'l': a link to '/etc/motd' {ABSOLUTE}"]),
    ([link("l", "k"), link("k", "/")], [f"link-astray 'k': a link to '/' {ABSOLUTE}",
                                        f"link-astray 'l': a link to 'k' {ABSOLUTE}"]),
    ([link("l", "../f"), member("f")], [f"link-astray 'l': a link to '../f' {OUT}"]),
    ([directory("a/b"), link("a/b/l", "../../../f"), member("f")],
     [f"link-astray 'a/b/l': a link to '../../../f' {OUT}"]),
    ([directory("a/b"), link("short", "a/b"), link("l", "short/../../../f"), member("f")],
     [f"link-astray 'l': a link to 'short/../../../f' {OUT}"]),
    ([link("l", "missing")], [f"link-astray 'l': a link to 'missing' {NOWHERE}"]),
    ([member("f"), link("l", "f/g")], [f"link-astray 'l': a link to 'f/g' {NOWHERE}"]),
    ([member("f"), link("l", "f/")], [f"link-astray 'l': a link to 'f/' {NOWHERE}"]),
    ([link("l", "l")], [f"link-astray 'l': a link to 'l' {CIRCLE}"]),
    ([link("l", "k"), link("k", "l")], [f"link-astray 'k': a link to 'l' {CIRCLE}",
                                        f"link-astray 'l': a link to 'k' {CIRCLE}"]),
    ([hard_link("h", "missing")], ["hard-link-astray 'h': a hard link to 'missing'"]),
    ([hard_link("h", "f"), member("f")], ["hard-link-astray 'h': a hard link to 'f'"]),
    ([directory("d"), hard_link("h", "d")], ["hard-link-astray 'h': a hard link to 'd'"]),
    ([hard_link("h", "/f"), member("f")], ["hard-link-astray 'h': a hard link to '/f'"]),
    ([member("f"), hard_link("h", "/f")], ["hard-link-astray 'h': a hard link to '/f'"]),
    ([member("f"), hard_link("h", "")], ["archive-ambiguous ", "member-kind 'h': "]),
    ([directory("a"), link("a/l", "../f"), member("f"), hard_link("h", "a/l")],
     ["hard-link-astray 'h': a hard link to 'a/l'"]),
    ([link("l", "")], [f"link-astray 'l': a link to '' {NOWHERE}"]),
    ([member("f"), link("l", "f"), member("l")], ["member-twice 'l': "]),
    ([member("f"), link("l", "f"), link("l", "f")], ["member-twice 'l': "]),
    ([directory("d"), link("l", "d"), directory("l")], ["member-twice 'l': "]),
    ([member("f"), hard_link("h", "f"), member("h")], ["member-twice 'h': "]),
    ([member("f"), member("g"), link("f", "g")], ["member-twice 'f': "]),
    ([member("f"), directory("f")], ["member-twice 'f': "]),
    ([directory("d"), member("d")], ["member-twice 'd': "]),
    ([member("")], ["member-name a member without a name"]),
    ([member(".")], ["member-no-directory '.': "]),
    ([member("f" * 256)], [f"member-name '{'f' * 160}...'...: a name that is too long"]),
    ([member("d/" * 511 + "ff")], [f"member-name '{'d/' * 80}...'...: a name that is too long"]),
    ([member("größe\33[2J\u202e")], ["member-name 'gr"]),
    ([member(" f")], ["member-name ' f': "]),
    ([member("f\n-r-")], [r"member-name 'f\n-r-': "]),
    ([member('a" -> "b')], ["""member-name 'a" -> "b': """]),
    ([member("a b"), member("f"), member("-x")], ["member-name '-x': ", "member-name 'a b': "]),
    # What precedes a member, which tar and another reader may take for different things.
    ([long_name("f"), extended("path", "/opt/victim"), member("f")],
     ["archive-ambiguous the archive can be read in two ways: tar lists '/opt/victim'"]),
    ([extended("path", "/opt/victim"), long_name("f"), member("f")],
     ["member-absolute '/opt/victim': "]),
    ([extra(tarfile.XGLTYPE, record("path", "/opt/victim")), member("f")],
     ["archive-ambiguous the archive can be read in two ways: tar lists '/opt/victim'"]),
    ([member("f"), long_target("f"), extended("linkpath", "/opt/victim"), link("l", "f")],
     ["archive-ambiguous the archive can be read in two ways: tar lists 'l'"]),
    ([long_name("/opt/victim"), extended("path", "f"), member("g")],
     ["archive-ambiguous the archive can be read in two ways: tar lists 'f'",
      "member-absolute '/opt/victim': "]),
    # What is no archive, and what is damaged.
    (b"", ["archive-empty "]),
    (b"no archive" * 100, ["archive-unreadable "]),
    (bytes(10240), ["archive-empty "]),
    (gzip.compress(b"any"), ["archive-compressed the archive is compressed with gzip: "]),
    (bz2.compress(b"any"), ["archive-compressed the archive is compressed with bzip2: "]),
    (lzma.compress(b"any"), ["archive-compressed the archive is compressed with xz: "]),
    (b"\x28\xb5\x2f\xfd\x20\x03", ["archive-compressed the archive is compressed with zstd: "]),
    (WHOLE[:512] + b"x" * 512 + WHOLE[1024:], ["archive-unreadable "]),
    (WHOLE[:700], ["archive-unreadable "]),
    (WHOLE[:1024], ["archive-unreadable "]),
    (with_content()[:1024], ["archive-unreadable "]),
    (with_content()[:2560], ["archive-unreadable "]),
    # What is deep or long takes no longer than other archives of its size.
    ([member("d/" * 20_000 + "f")], ["member-name "]),
    ([link("l", "d/" * 20_000)], [f"link-astray 'l': a link to '{'d/' * 80}...' {NOWHERE}"]),
    ([extra(tarfile.XGLTYPE, record("path", "d/" * 20_000)), *[member("f")] * 2000],
     [f"archive-ambiguous the archive can be read in two ways: tar lists '{'d/' * 80}...' "]),
]

# Identifiers of products, and the check that finds something in the archive of the last one.
REFUSED_IDENTIFIERS = [
    ([identifier], "identifier-characters")
    for identifier in ["a b", "a\tb", "a\nb", "na\u00efve", "-a", "+a", ".a", "", "a\\b"]
    + [f"a{character}b" for character in "$#%:='\"`;&|<>()*?[]{}~!^@,\177"]
] + [
    (["a" * 50], "identifier-too-long"),
    (["install"], "identifier-reserved"),
    (["products"], "identifier-reserved"),
    (["install.mk"], "identifier-reserved"),
    (["d", "d-tar"], "identifier-reserved"),
    (["e", "e.tar"], "identifier-reserved"),
    (["g", "g.c"], "identifier-made"),
    (["h.c", "h.o"], "identifier-made"),
    (["i", "i.y.c"], "identifier-made"),
    (["j", "s.j"], "identifier-made"),
    (["s", "s.c"], "identifier-made"),
    (["k", "k-new.sh"], "identifier-made"),
    (["n", "n.tar.c"], "identifier-made"),
    (["install.sh"], "identifier-made"),
    (["products.c"], "identifier-made"),
    (["install.mk.f"], "identifier-made"),
]


class Failed(Exception):
    pass


def expect(what, expected, actual):
    if actual != expected:
        raise Failed(f"{what}: expected {expected!a}, got {actual!a}")


class Workshop:
    """A directory to work in, with the command."""

    def __init__(self, root):
        self.root = pathlib.Path(root)
        self.products = self.root / "products"
        self.products.mkdir()
        self.result = self.root / "result"
        self.numbers = itertools.count()  # no two products are the same

    def archive(self, identifier, content):
        """Makes an archive of members, or of any bytes, with its description."""
        path = self.products / f"{identifier}.tar"
        path.write_bytes(content if isinstance(content, bytes) else packed(content))
        self.describe(identifier)
        return path

    def tree(self, identifier):
        path = self.products / identifier
        path.mkdir()
        self.describe(identifier)
        return path

    def describe(self, identifier):
        with contextlib.suppress(OSError):  # of a name that is too long
            (self.products / f"{identifier}.descr").write_text(
                f"Name = product{next(self.numbers)}\n")

    def describe_wrongly(self, identifier):
        """Makes a mistake in a description; returns what is said about it."""
        (self.products / f"{identifier}.descr").write_text("Name = a\nVresion = 1.0\n")
        return [f"{identifier}.descr:2:1: error: no such keyword: 'Vresion', did you mean "
                "'Version'? [keyword-unknown]"]

    def build_without_lint(self):
        build = self.products / "build"
        build.mkdir()
        for name in ("morvane", "morvane.rsc"):
            (build / name).symlink_to(BUILD / name)
        return build

    def path_of(self, *programs):
        """Returns an environment in whose PATH only these programs are."""
        path = pathlib.Path(tempfile.mkdtemp(dir=self.products))
        for program in programs:
            (path / pathlib.Path(program).name).symlink_to(shutil.which(program))
        return {**os.environ, "PATH": str(path)}

    def run(self, *products, build=BUILD, before=None, options=(), env=None, cwd=None):
        return subprocess.run([COMMAND, "--build", build, *options, self.result, *products],
                              capture_output=True, text=True, preexec_fn=before, env=env,
                              cwd=cwd, timeout=60)

    def refuse(self, lines, *products, **how):
        ended = self.run(*products, **how)
        expect("standard error", [f"make-distribution: {line}" for line in lines],
               ended.stderr.splitlines())
        expect("exit status", 1, ended.returncode)
        expect("what is left", ["products"], os.listdir(self.root))

    def refuse_found(self, findings, *products, **how):
        """Compares findings, which all are errors: the file, the check and how the text begins."""
        ended = self.run(*products, **how)
        *lines, last = ended.stderr.splitlines() or [""]
        found = [FOUND.sub(r"\1 \3 \2", line) for line in lines]
        for expected, actual in itertools.zip_longest(findings, found, fillvalue=""):
            if not expected or not actual.startswith(expected):
                raise Failed(f"expected {expected!a}, found {actual!a}")
        expect("the last line", f"make-distribution: {FOUND_ERRORS}", last)
        expect("exit status", 1, ended.returncode)
        expect("what is left", ["products"], os.listdir(self.root))

    def accept(self, lines, *products, **how):
        ended = self.run(*products, **how)
        expect("standard error", [f"make-distribution: {line}" for line in lines],
               ended.stderr.splitlines())
        expect("exit status", 0, ended.returncode)


def refused_archives(workshop):
    before = time.monotonic()
    for first in range(0, len(REFUSED_ARCHIVES), MOST_PRODUCTS):
        archives, findings = [], []
        for number, (content, expected) in enumerate(REFUSED_ARCHIVES[first:first + MOST_PRODUCTS]):
            identifier = f"p{number:02}"
            for entry in content:
                if isinstance(entry, tarfile.TarInfo):
                    entry.name = entry.name.replace("ID", identifier)
            archives.append(workshop.archive(identifier, content))
            findings += [f"{identifier}.tar {one.replace('ID', identifier)}" for one in expected]
        workshop.refuse_found(findings, *archives)
    expect("took long", False, time.monotonic() - before > 40)


def shown(name):
    """Returns a name as a finding shows it: a character a byte."""
    characters = os.fsencode(name).decode("latin-1")
    return "".join(c if c.isprintable() else repr(c)[1:-1] for c in characters)


def refused_identifiers(workshop):
    for number in (1, 2):
        rows = [row for row in REFUSED_IDENTIFIERS if len(row[0]) == number]
        found = sorted((os.fsencode(f"{names[-1]}.tar"), check) for names, check in rows)
        workshop.refuse_found([f"{shown(name)} {check} " for name, check in found],
                              *[workshop.archive(name, [member("f")])
                                for names, _ in rows for name in names])


def chains_of_links(workshop):
    links = [link(f"l{n}", f"l{n + 1}") for n in range(40)]
    workshop.accept([], workshop.archive("probe", [member("l40"), *links]))
    shutil.rmtree(workshop.result)
    links = [link(f"l{n}", f"l{n + 1}") for n in range(41)]
    workshop.refuse_found([f"probe.tar link-astray 'l0': a link to 'l1' {CIRCLE}"],
                          workshop.archive("probe", [member("l41"), *reversed(links)]))
    # Each leads twice through the one before it, which thus is passed more often than once.
    links = [directory("l0"), *[link(f"l{n}", f"l{n - 1}/../l{n - 1}") for n in range(1, 8)]]
    workshop.refuse_found(
        [f"probe.tar link-astray 'l{n}': a link to 'l{n - 1}/../l{n - 1}' {CIRCLE}"
         for n in (6, 7)],
        workshop.archive("probe", links))


def long_but_sound(workshop):
    members = [member("d/" * 511 + "f"), member("f" * 255)]
    workshop.accept([], workshop.archive("probe", members))


def mutated(content, chance):
    """Returns an archive with a few fields, bits or blocks of it changed, its checksums right."""
    made = bytearray(content)
    for _ in range(chance.randint(1, 3)):
        header = chance.randrange(0, len(made), tarfile.BLOCKSIZE)
        at = header + chance.randrange(min(345, len(made) - header))
        change = chance.randrange(4)
        if change == 0:
            made[at] ^= 1 << chance.randrange(8)
        elif change == 1:
            made[at:at + 4] = chance.choice((b"-001", b"\x80\0\0\1", b"\xff\xff\xff\xff", b"../\0"))
        elif change == 2:
            made[header:header] = chance.choice((
                extended(chance.choice(("path", "linkpath", "size", "GNU.sparse.map")),
                         chance.choice(("", "-1", "/opt/victim", "0,9", "9" * 30))),
                extra(tarfile.XHDTYPE, chance.choice(("0 path=a\n", "9 path=a", "\0", "99999"))),
                long_name("n" * 200), long_target("../up")))
        else:
            del made[header:header + chance.randrange(2 * tarfile.BLOCKSIZE)]
        for start in range(0, len(made) - 511, tarfile.BLOCKSIZE):
            if made[start + 257:start + 262] == b"ustar":
                made[start + 148:start + 156] = b" " * 8
                made[start + 148:start + 156] = b"%06o\0 " % sum(made[start:start + 512])
        if not made:
            break
    return bytes(made)


def mutated_archives(workshop):
    """However archives are damaged, the reasons are lines that begin with their names."""
    content = packed([directory("d"), member("d/f"), link("l", "d/f"), hard_link("h", "d/f"),
                      member("d/" + "n" * 120)])[:8 * tarfile.BLOCKSIZE] + bytes(1024)
    endings = set()
    for first in range(0, 150, MOST_PRODUCTS):
        archives = [workshop.archive(f"p{seed}", mutated(content, random.Random(seed)))
                    for seed in range(first, first + MOST_PRODUCTS)]
        *lines, last = workshop.run(*archives).stderr.splitlines()
        expect("the last line", f"make-distribution: {FOUND_ERRORS}", last)
        refused = {found[1] for found in map(FOUND.fullmatch, lines) if found}
        expect("other lines", [], [line for line in lines if not FOUND.fullmatch(line)
                                   and ": warning: " not in line])
        expect("other files", set(), refused - {archive.name for archive in archives})
        endings |= {archive.name in refused for archive in archives}
    expect("some are refused, and some are not", {False, True}, endings)


def too_many_names(workshop):
    def with_short_commands():
        resource.setrlimit(resource.RLIMIT_STACK, (1 << 20, 1 << 20))
    names = [f"{n:090}" for n in range(1500)]
    archive = workshop.archive("probe", [member(name) for name in names])
    workshop.refuse_found(["probe.tar archive-names "], archive, before=with_short_commands)
    workshop.accept([], archive)


def what_is_no_product(workshop):
    (workshop.products / "text").write_text("")
    for path in (*(workshop.products / name for name in ("text", "missing", "missing.tar")), "/"):
        workshop.refuse([f"{path}: there is neither an archive, ID.tar, nor a source tree, ID"],
                        path)


def product_given_twice(workshop):
    one, two = (workshop.archive(name, [member("f")]) for name in ("one", "two"))
    tree = workshop.products / "elsewhere/one"
    tree.mkdir(parents=True)
    workshop.refuse(["one: is given twice", "two: is given twice"], two, one, tree, two)


def too_many_products(workshop):
    archives = [workshop.archive(f"p{n:02}", [member("f")]) for n in range(MOST_PRODUCTS + 1)]
    workshop.refuse_found(["p50.tar products-too-many "], *archives)


def identifier_too_long_for_a_file(workshop):
    tree = workshop.tree("t" * 255)
    ended = workshop.run(tree)
    expect("standard error", ["make-distribution: ", "t.tar: File name too long\n"],
           [ended.stderr[:19], ended.stderr[-26:]])
    expect("exit status", 1, ended.returncode)
    expect("lines", 1, ended.stderr.count("\n"))
    expect("what is left", ["products"], os.listdir(workshop.root))


def result_that_exists(workshop):
    archive = workshop.archive("probe", [member("f")])
    workshop.accept([], archive)
    before = sorted(os.listdir(workshop.result))
    ended = workshop.run(archive)
    expect("standard error", f"make-distribution: {workshop.result}: exists already\n",
           ended.stderr)
    expect("exit status", 1, ended.returncode)
    expect("the result", before, sorted(os.listdir(workshop.result)))


def result_in_no_directory(workshop):
    archive = workshop.archive("probe", [member("f")])
    workshop.result = archive / "result"
    workshop.refuse([f"{archive}: is no directory"], archive)


def build_without_a_program(workshop):
    archive = workshop.archive("probe", [member("f")])
    ended = workshop.run(archive, build=workshop.products)
    missing = workshop.products / "morvane.rsc"
    expect("standard error", f"make-distribution: {missing}: No such file or directory\n",
           ended.stderr)
    expect("exit status", 1, ended.returncode)
    expect("what is left", ["products"], os.listdir(workshop.root))


def no_products(workshop):
    ended = workshop.run()
    expect("exit status", 2, ended.returncode)


def socket_in_a_tree(workshop):
    tree = workshop.tree("probe")
    here = os.open(".", os.O_RDONLY)
    os.chdir(tree)  # the path of a socket must be short
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind("socket")
    os.fchdir(here)
    os.close(here)
    workshop.refuse(["probe: 'socket': neither a file, a directory nor a link"], tree)


def long_name_in_a_tree(workshop):
    tree = workshop.tree("probe")
    (tree / ("f" * 101)).write_text("")
    workshop.refuse([f"probe: '{'f' * 101}': name is too long"], tree)


def members_of_a_tree(workshop):
    tree = workshop.tree("probe")
    (tree / "a b").write_text("")
    (tree / "l").symlink_to("/etc")
    (tree / "su").write_text("")
    (tree / "su").chmod(0o4755)
    os.mkfifo(tree / "pipe")
    workshop.refuse_found(["probe.tar link-astray 'l': ", "probe.tar member-kind 'pipe': ",
                           "probe.tar member-name 'a b': ", "probe.tar member-set-id 'su': "], tree)


def empty_tree(workshop):
    workshop.refuse_found(["probe.tar archive-empty "], workshop.tree("probe"))


def same_archive_of_the_same_tree(workshop):
    packed = []
    for mode, moment in ((0o700, 1), (0o775, 2_000_000_000)):
        tree = workshop.products / "probe"
        (tree / "bin").mkdir(parents=True)
        (tree / "bin/run").write_text("#!/bin/sh\n")
        (tree / ".profile").write_text("PATH=bin\n")
        (tree / "link").symlink_to("bin/run")
        (tree / "bin/run").chmod(mode)
        (tree / ".profile").chmod(mode & 0o666)
        for path in [*tree.rglob("*"), tree]:
            os.utime(path, (moment, moment), follow_symlinks=False)
        workshop.accept(["warning: probe has no description"], tree)
        archive = workshop.result / "probe.tar"
        packed.append(archive.read_bytes())
        with tarfile.open(archive) as opened:
            expect("members", [(".profile", 0o644, 0), ("bin", 0o755, 0), ("bin/run", 0o755, 0),
                               ("link", 0o755, 0)],
                   [(entry.name, entry.mode, entry.uid) for entry in opened])
        subprocess.run(["rm", "-r", tree, workshop.result], check=True)
    expect("the second archive", packed[0], packed[1])


def what_a_distribution_holds(workshop):
    archive = workshop.archive("a" * 49, [member("f")])
    tree = workshop.tree("source")
    (tree / "f").write_text("")
    bare = workshop.archive("bare", [member("f")])
    (workshop.products / "bare.descr").unlink()
    workshop.accept(["warning: bare has no description"], archive, f"{tree}/", bare)

    expected = {f"morvane.{name}": COMMAND.parents[1] / "resources/launcher"
                for name in ("SunOS4", "SunOS5")}
    expected |= {f"morvane.{SYSTEM}": None, "morvane.rsc": BUILD / "morvane.rsc",
                 "Makefile": COMMAND.parents[1] / "resources/Makefile", archive.name: archive,
                 f"{'a' * 49}.descr": workshop.products / f"{'a' * 49}.descr", "bare.tar": bare,
                 "source.descr": workshop.products / "source.descr", "source.tar": None}
    expect("files", sorted(expected), sorted(os.listdir(workshop.result)))
    for name, source in expected.items():
        made = workshop.result / name
        if source:
            expect(name, source.read_bytes(), made.read_bytes())
        runs = name.startswith("morvane.") and name != "morvane.rsc"
        expect(f"mode of {name}", runs, os.access(made, os.X_OK))


def program_without_symbols(workshop):
    stripped = workshop.products / "stripped"
    shutil.copyfile(BUILD / "morvane", stripped)
    subprocess.run(["strip", stripped], check=True)
    archive = workshop.archive("probe", [member("f")])
    workshop.accept([], archive)
    program = workshop.result / f"morvane.{SYSTEM}"
    expect("the program", True, program.read_bytes() == stripped.read_bytes())
    shutil.rmtree(workshop.result)
    # Where there is no strip, it is handed out with its symbols.
    workshop.accept([f"warning: {NO_LINT}"], archive, build=workshop.build_without_lint(),
                    env=workshop.path_of("python3"), options=["--force"])
    expect("the program", True, program.read_bytes() == (BUILD / "morvane").read_bytes())


def other_languages(workshop):
    archive = workshop.archive("a", [member("f")])
    expect("German", True, "de" in LANGUAGES)
    for language in LANGUAGES:
        ended = workshop.run(archive, options=["--language", language])
        expect("exit status", 0, ended.returncode)
        expect("messages", (BUILD / f"morvane.{language}.rsc").read_bytes(),
               (workshop.result / "morvane.rsc").read_bytes())
        shutil.rmtree(workshop.result)


def unknown_language(workshop):
    ended = workshop.run(workshop.archive("a", [member("f")]), options=["--language", "xx"])
    expect("standard error", "make-distribution: there are no messages in 'xx', only: "
           f"English (without --language), {', '.join(LANGUAGES)}\n", ended.stderr)
    expect("exit status", 1, ended.returncode)
    expect("what is left", ["products"], os.listdir(workshop.root))


def own_messages(workshop):
    archive = workshop.archive("probe", [member("f")])
    own = workshop.products / "own"
    own.write_bytes((BUILD / "morvane.rsc").read_bytes().replace(b"Goodbye", b"So long"))
    workshop.accept([], archive, options=["--messages", own])
    expect("messages", own.read_bytes(), (workshop.result / "morvane.rsc").read_bytes())
    shutil.rmtree(workshop.result)
    workshop.refuse([f"{own.parent}: is no file"], archive, options=["--messages", own.parent])
    missing = workshop.products / "missing"
    workshop.refuse([f"{missing}: No such file or directory"], archive,
                    options=["--messages", missing])
    ended = workshop.run(archive, options=["--messages", own, "--language", "de"])
    expect("exit status with two kinds of messages", 2, ended.returncode)


def build_beside_the_command(workshop):
    tree = workshop.products / "tree"
    (tree / "scripts").mkdir(parents=True)
    shutil.copy(COMMAND, tree / "scripts")
    (tree / "resources").symlink_to(COMMAND.parents[1] / "resources")
    command = [tree / "scripts" / COMMAND.name, workshop.result,
               workshop.archive("probe", [member("f")])]
    ended = subprocess.run(command, capture_output=True, text=True, timeout=60)
    expect("without a build", f"make-distribution: {tree}/build/morvane.rsc: No such file or "
           "directory\n", ended.stderr)
    (tree / "build").symlink_to(BUILD)
    ended = subprocess.run(command, stderr=subprocess.DEVNULL, timeout=60)
    expect("exit status", 0, ended.returncode)
    expect("messages", (BUILD / "morvane.rsc").read_bytes(),
           (workshop.result / "morvane.rsc").read_bytes())


def nobody_looks(workshop):
    archive = workshop.archive("probe", [member("f")])
    workshop.describe_wrongly("probe")
    how = {"build": workshop.build_without_lint(), "env": workshop.path_of("python3")}
    workshop.refuse([NOT_WITHOUT], archive, **how)
    workshop.accept([f"warning: {NO_LINT}"], archive, options=["--force"], **how)


def samples_without_lint(workshop):
    """The sample distribution is made all the same where there is no morvane-lint."""
    script = COMMAND.with_name("distribution")
    for build, warnings in ((workshop.build_without_lint(), [f"warning: {NO_LINT}"]), (BUILD, [])):
        ended = subprocess.run([script, build, workshop.result], capture_output=True, text=True,
                               env=workshop.path_of("python3", "dirname", "sed"), timeout=60)
        expect("standard error", [f"make-distribution: {line}" for line in
                                  [*warnings, "warning: undernote has no description"]],
               ended.stderr.splitlines())
        expect("exit status", 0, ended.returncode)
        shutil.rmtree(workshop.result)


def errors_that_lint_finds(workshop):
    archive = workshop.archive("probe", [member("f")])
    found = workshop.describe_wrongly("probe")
    workshop.refuse([*found, FOUND_ERRORS], archive)
    workshop.accept(found, archive, options=["--force"])
    shutil.rmtree(workshop.result)
    workshop.refuse([*found, FOUND_ERRORS], archive, build=".", cwd=BUILD)
    workshop.refuse([*found, FOUND_ERRORS], archive, build=workshop.build_without_lint(),
                    env=workshop.path_of("python3", LINT))


def errors_in_own_messages(workshop):
    archive = workshop.archive("probe", [member("f")])
    own = workshop.products / "own"
    lines = (BUILD / "morvane.rsc").read_bytes().splitlines(keepends=True)
    own.write_bytes(b"".join(line for line in lines if not line.startswith(b"001")))
    workshop.refuse(["morvane.rsc:1:1: error: message 001 is missing: where it is used, 'No "
                     "resource #1!' takes its place; add its line [message-missing]", FOUND_ERRORS],
                    archive, options=["--messages", own])


def warnings_that_lint_finds(workshop):
    """Warnings are shown; notes are not, such as that of a target which may be there."""
    tree = workshop.tree("probe")
    (tree / "install").mkdir()
    (tree / "install/Makefile").write_text("include more\n")
    (workshop.products / "probe.descr").write_text("Name = a\nTarget = b\nVersion = 1.2.3.4x\n")
    looked = subprocess.run([LINT, workshop.products], capture_output=True, text=True, timeout=60)
    expect("a note is there", True, ": note: " in looked.stdout)
    workshop.accept(["probe.descr:3:1: warning: of version '1.2.3.4x' the program takes 1.2.3 "
                      "and ignores the rest: write up to three numbers with full stops between "
                      "them [version-rest]"], tree)


def lint_that_fails(workshop):
    archive = workshop.archive("probe", [member("f")])
    build = workshop.build_without_lint()
    failing = build / "morvane-lint"
    failing.write_text("#!/bin/sh\necho 'morvane-lint: a reason' >&2\nexit 2\n")
    failing.chmod(0o755)
    for how, status, last in (
            ([], 1, [f"make-distribution: {failing} ended with status 2: the distribution is only "
                     "made with --force"]),
            (["--force"], 0, [])):
        ended = workshop.run(archive, build=build, options=how)
        expect("standard error", ["morvane-lint: a reason", *last], ended.stderr.splitlines())
        expect("exit status", status, ended.returncode)


def descriptions_that_are_no_files(workshop):
    archive = workshop.archive("probe", [member("f")])
    description = workshop.products / "probe.descr"
    for make in (os.mkfifo, os.mkdir, lambda path: os.symlink("missing", path)):
        description.unlink()
        make(description)
        workshop.refuse([f"{description}: is no file"], archive)
        if make is os.mkdir:
            description.rmdir()
            description.touch()


def control_characters_in_an_argument(workshop):
    path = workshop.products / "größe\33[2J"
    workshop.refuse([f"{workshop.products}/größe\\x1b[2J: there is neither an archive, ID.tar, "
                     "nor a source tree, ID"], path)


def no_python(workshop):
    ended = subprocess.run([COMMAND, workshop.result, "probe"], capture_output=True, text=True,
                           env={"PATH": str(workshop.products)}, timeout=60)
    expect("standard error", "make-distribution: python3 is missing: install it, as with "
           "'apt-get install python3'\n", ended.stderr)
    expect("exit status", 1, ended.returncode)


def stopped(number, program):
    """A signal that comes while morvane-lint, or the tar that it starts, looks at an archive, which
    here is done by what never ends."""
    def check(workshop):
        archive = workshop.archive("probe", [member("f")])
        slow = workshop.products / program
        slow.write_text(f"#!/bin/sh\n: >'{workshop.products}/reading'\nexec sleep 60\n")
        slow.chmod(0o755)
        command = subprocess.Popen(
            [COMMAND, "--build", BUILD if program == "tar" else workshop.build_without_lint(),
             workshop.result, archive],
            cwd=workshop.products,
            env={**os.environ, "PATH": f"{workshop.products}:{os.environ['PATH']}"},
            stderr=subprocess.PIPE, start_new_session=True,
            preexec_fn=lambda: signal.signal(number, signal.SIG_DFL))
        while not (workshop.products / "reading").exists() and command.poll() is None:
            time.sleep(0.01)
        os.killpg(command.pid, number)
        expect("standard error", b"", command.communicate(timeout=60)[1])
        expect("exit status", 128 + number, command.returncode)
        expect("what is left", ["products"], os.listdir(workshop.root))
    check.__name__ = f"stopped in {program} by {number.name}"
    return check


def endings_that_make_knows(workshop):
    """What make's own rules make from each other is refused, whatever rules this host's makes
    have."""
    rules = set()
    for command, rule in ((["make", "-pf", os.devnull], r"^%(\.[\w-]+)?: %(\.[\w-]+)?( |$)"),
                          (["bmake", "-dg1", "-f", os.devnull], r"^(\.\w+)(\.[\w-]+)? +: ()$")):
        with contextlib.suppress(FileNotFoundError):
            ended = subprocess.run([*command, "-n"], capture_output=True, text=True, timeout=60,
                                   env={**os.environ, "MAKEFLAGS": ""})
            rules |= {frozenset(found[:2]) for found
                      in re.findall(rule, ended.stdout + ended.stderr, re.MULTILINE)}
    expect("rules were found", True, {frozenset(("", ".c")), frozenset((".c", ".o"))} <= rules)
    pairs = [sorted(f"p{n:03}{ending}" for ending in rule) for n, rule in enumerate(rules)]
    for first in range(0, len(pairs), 25):
        chosen = sorted(pairs[first:first + 25])
        workshop.refuse_found(
            [f"{two}.tar identifier-made make has a rule of its own between '{two}' and '{one}': "
             for one, two in chosen],
            *[workshop.archive(name, [member("f")]) for pair in chosen for name in pair])


def fifty_products(workshop):
    archives = [workshop.archive(f"p{n}", [member("f")]) for n in range(MOST_PRODUCTS)]
    workshop.accept([], *archives)


def odd_but_sound(workshop):
    """What is not refused is installed as it is, by the program and the makefile that it writes."""
    names = [f"a{character}b" for character in "!\"#$%&'()+,-.:;<=>@]^_`{|}~"]
    names += ["~", "#", "a-", "@", "f" * 120, "deep/er/f", "install/Makefile"]
    members = [directory("./"), directory("own", 0o2755), *[member(f"./{name}") for name in names],
               hard_link("hard", "./a!b"), link("own/l", "../deep/er/../er/f"),
               link("up", "own/.."), link("d", "own"), link("further", "d/l"),
               directory("own", 0o2755)]
    workshop.accept([], workshop.archive("odd", members))
    installed = workshop.root / "installed"
    installed.mkdir()
    user = pwd.getpwuid(os.getuid()).pw_name
    group = grp.getgrgid(os.getgid()).gr_name
    answers = ["1", "", str(installed), user, group, "n", "n", ""]
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("MAKEFLAGS", "MFLAGS", "MAKELEVEL")}
    ended = subprocess.run(["make"], cwd=workshop.result, input="\n".join(answers) + "\n",
                           env=environment, capture_output=True, text=True, timeout=60)
    expect(f"exit status of {ended.stdout}{ended.stderr}", 0, ended.returncode)

    for name in names:
        if name == "install/Makefile":
            continue  # it has become the product's makefile
        mode = (installed / name).lstat().st_mode
        expect(f"kind and access of {name}", (True, 0o640), (stat.S_ISREG(mode), mode & 0o777))
    expect("mode of own", 0o2750, stat.S_IMODE((installed / "own").stat().st_mode))
    expect("own/l", "../deep/er/../er/f", os.readlink(installed / "own/l"))
    expect("hard", 2, (installed / "hard").stat().st_nlink)


CHECKS = (
    [stopped(number, program) for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)
     for program in ("tar", "morvane-lint")]
    + [refused_archives, refused_identifiers, chains_of_links, long_but_sound, mutated_archives,
       endings_that_make_knows, descriptions_that_are_no_files, control_characters_in_an_argument,
       no_python, too_many_names, what_is_no_product, product_given_twice, too_many_products,
       identifier_too_long_for_a_file, result_that_exists, result_in_no_directory,
       build_without_a_program, no_products, socket_in_a_tree, long_name_in_a_tree,
       members_of_a_tree, empty_tree, same_archive_of_the_same_tree, what_a_distribution_holds,
       program_without_symbols, other_languages, unknown_language, own_messages,
       build_beside_the_command, nobody_looks, samples_without_lint, errors_that_lint_finds,
       errors_in_own_messages, warnings_that_lint_finds, lint_that_fails, fifty_products,
       odd_but_sound])


def main():
    failures = 0
    for number, check in enumerate(CHECKS):
        with tempfile.TemporaryDirectory() as root:
            try:
                check(Workshop(root))
            except Failed as failure:
                failures += 1
                print(f"{check.__name__} ({number}): {failure}")
    print(f"{len(CHECKS)} checks, {failures} failed")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
