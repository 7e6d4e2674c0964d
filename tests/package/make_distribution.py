#!/usr/bin/env python3
"""Puts distributions together, and checks what is refused, and what is said about it.

    make_distribution.py BUILD_DIRECTORY
"""

import bz2
import contextlib
import grp
import gzip
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

# It is built only where libarchive's header is.
LINT = BUILD / "morvane-lint"
LOOKED = LINT.exists() or shutil.which(LINT.name)
NOBODY_LOOKED = ("warning: there is no morvane-lint, so that nobody looked for mistakes in "
                 "descriptions")
FOUND_ERRORS = "morvane-lint found errors: the distribution is only made with --force"


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


UNKNOWN_KIND = "neither a file, a directory nor a link"
NOT_AS_IT_IS = "a name that tar and the shell would not hand on as it is"
OUT = "a link that leads out of the tree"
NOWHERE = "a link that leads nowhere"
ABSOLUTE = "a link that is absolute, or leads to one that is"
CIRCLE = "a link that leads in a circle"
HARD_LINK = "a hard link to what is no file that stands before it in the archive"
TOO_LONG = "a name that is too long"
TWICE = "stands there twice, and not both times as a file or as a directory"
OWN_FILE = "the installation puts a file of its own there"

# Members of the archive probe.tar, and what is said about it.
REFUSED_MEMBERS = [
    ([member("/etc/motd")], ["'/etc/motd': an absolute name"]),
    ([member("../up")], ["'../up': a name that leads out of the tree"]),
    ([directory("a"), member("a/../b")], ["'a/../b': a name that leads out of the tree"]),
    ([member("a b")], [f"'a b': {NOT_AS_IT_IS}"]),
    ([member("a\tb")], [rf"'a\tb': {NOT_AS_IT_IS}"]),
    ([member("a\nb")], [rf"'a\nb': {NOT_AS_IT_IS}"]),
    ([member("a\177")], [rf"'a\x7f': {NOT_AS_IT_IS}"]),
    ([member("na\u00efve")], [f"'na\u00efve': {NOT_AS_IT_IS}"]),
    ([member("a\udcffb")], [rf"'a\udcffb': {NOT_AS_IT_IS}"]),
    ([member("a\\b")], [rf"'a\\b': {NOT_AS_IT_IS}"]),
    ([member("a*")], [f"'a*': {NOT_AS_IT_IS}"]),
    ([member("a?")], [f"'a?': {NOT_AS_IT_IS}"]),
    ([member("[a]")], [f"'[a]': {NOT_AS_IT_IS}"]),
    ([member("-R")], ["'-R': a name that chown would take for an option"]),
    ([member("pipe", tarfile.FIFOTYPE)], [f"'pipe': {UNKNOWN_KIND}"]),
    ([member("disk", tarfile.BLKTYPE)], [f"'disk': {UNKNOWN_KIND}"]),
    ([member("line", tarfile.CHRTYPE)], [f"'line': {UNKNOWN_KIND}"]),
    ([member("su", mode=0o4755)], ["'su': set-id bits, which a change of owner clears"]),
    ([member("write", mode=0o2755)], ["'write': set-id bits, which a change of owner clears"]),
    ([member("f"), member("f/g")], ["'f/g': lies below 'f', which is no directory"]),
    ([directory("d"), link("l", "d"), member("l/g")],
     ["'l/g': lies below 'l', which is no directory"]),
    ([member("install")], ["'install': must be a directory"]),
    ([directory("d"), link("install", "d")], ["'install': must be a directory"]),
    ([member("Makefile")], [f"'Makefile': {OWN_FILE}"]),
    ([member("./morvane.rsc")], [f"'./morvane.rsc': {OWN_FILE}"]),
    ([directory("morvane.SunOS4")], [f"'morvane.SunOS4/': {OWN_FILE}"]),
    ([member("morvane.SunOS5")], [f"'morvane.SunOS5': {OWN_FILE}"]),
    ([member("install/probe.descr")], [f"'install/probe.descr': {OWN_FILE}"]),
    ([member("install/probe.dat")], [f"'install/probe.dat': {OWN_FILE}"]),
    ([member("install/probe.make")], [f"'install/probe.make': {OWN_FILE}"]),
    ([link("l", "/etc/motd")], [f"'l': {ABSOLUTE}"]),
    ([link("l", "k"), link("k", "/")], [f"'l': {ABSOLUTE}", f"'k': {ABSOLUTE}"]),
    ([link("l", "../f"), member("f")], [f"'l': {OUT}"]),
    ([directory("a/b"), link("a/b/l", "../../../f"), member("f")], [f"'a/b/l': {OUT}"]),
    ([directory("a/b"), link("short", "a/b"), link("l", "short/../../../f"), member("f")],
     [f"'l': {OUT}"]),
    ([link("l", "missing")], [f"'l': {NOWHERE}"]),
    ([member("f"), link("l", "f/g")], [f"'l': {NOWHERE}"]),
    ([member("f"), link("l", "f/")], [f"'l': {NOWHERE}"]),
    ([link("l", "l")], [f"'l': {CIRCLE}"]),
    ([link("l", "k"), link("k", "l")], [f"'l': {CIRCLE}", f"'k': {CIRCLE}"]),
    ([hard_link("h", "missing")], [f"'h': {HARD_LINK}"]),
    ([hard_link("h", "f"), member("f")], [f"'h': {HARD_LINK}"]),
    ([directory("d"), hard_link("h", "d")], [f"'h': {HARD_LINK}"]),
    ([hard_link("h", "/f"), member("f")], [f"'h': {HARD_LINK}"]),
    ([member("f"), hard_link("h", "/f")], [f"'h': {HARD_LINK}"]),
    ([member("f"), hard_link("h", "")], [f"'h': {HARD_LINK}"]),
    ([directory("a"), link("a/l", "../f"), member("f"), hard_link("h", "a/l")],
     [f"'h': {HARD_LINK}"]),
    ([link("l", "")], [f"'l': {NOWHERE}"]),
    ([member("f"), link("l", "f"), member("l")], [f"'l': {TWICE}"]),
    ([member("f"), link("l", "f"), link("l", "f")], [f"'l': {TWICE}"]),
    ([directory("d"), link("l", "d"), directory("l")], [f"'l/': {TWICE}"]),
    ([member("f"), hard_link("h", "f"), member("h")], [f"'h': {TWICE}"]),
    ([member("f"), member("g"), link("f", "g")], [f"'f': {TWICE}"]),
    ([member("f"), directory("f")], [f"'f/': {TWICE}"]),
    ([directory("d"), member("d")], [f"'d': {TWICE}"]),
    ([member("")], ["'': must be a directory"]),
    ([member(".")], ["'.': must be a directory"]),
    ([member("f" * 256)], [f"'{'f' * 256}': {TOO_LONG}"]),
    ([member("d/" * 511 + "ff")], [f"'{'d/' * 511}ff': {TOO_LONG}"]),
    ([member("größe\33[2J\u202e")], [rf"'größe\x1b[2J\u202e': {NOT_AS_IT_IS}"]),
    ([member(" f")], [f"' f': {NOT_AS_IT_IS}"]),
    ([member("f\n-r-")], [rf"'f\n-r-': {NOT_AS_IT_IS}"]),
    ([member('a" -> "b')], [f"""'a" -> "b': {NOT_AS_IT_IS}"""]),
    ([member("a b"), member("f"), member("-x")],
     [f"'a b': {NOT_AS_IT_IS}", "'-x': a name that chown would take for an option"]),
]

MADE_OF = ("an identifier is made of letters, digits and _.+- and begins with a letter, a digit or "
           "_")

# Identifiers of products, and what is said about them.
REFUSED_IDENTIFIERS = [
    ([identifier], [f"{identifier!r}: {MADE_OF}"])
    for identifier in ["a b", "a\tb", "a\nb", "na\u00efve", "-a", "+a", ".a", "", "a\\b"]
    + [f"a{character}b" for character in "$#%:='\"`;&|<>()*?[]{}~!^@,\177"]
] + [
    (["a" * 50], [f"{'a' * 50}: an identifier has at most 49 bytes"]),
    (["install"], ["install: install.mk calls a rule of its own so"]),
    (["products"], ["products: install.mk calls a rule of its own so"]),
    (["install.mk"], ["install.mk: install.mk calls a rule of its own so"]),
    (["a-tar", "a"], ["a-tar: install.mk calls a rule for a so"]),
    (["a", "a.tar"], ["a.tar: install.mk calls a rule for a so"]),
    (["a", "a"], ["a: is given twice"]),
    (["a", "a.c"], ["a.c: make has a rule of its own between a.c and a"]),
    (["a.c", "a.o"], ["a.o: make has a rule of its own between a.o and a.c"]),
    (["a.y.c", "a"], ["a.y.c: make has a rule of its own between a.y.c and a"]),
    (["s.a", "a"], ["s.a: make has a rule of its own between s.a and a"]),
    (["s.c", "s"], ["s.c: make has a rule of its own between s.c and s"]),
    (["a-new.sh", "a"], ["a-new.sh: make has a rule of its own between a-new.sh and a-new"]),
    (["a.tar.c", "a"], ["a.tar.c: make has a rule of its own between a.tar.c and a.tar"]),
    (["install.sh"], ["install.sh: make has a rule of its own between install.sh and install"]),
    (["products.c"], ["products.c: make has a rule of its own between products.c and products"]),
    (["install.mk.f"],
     ["install.mk.f: make has a rule of its own between install.mk.f and install.mk"]),
    ([f"p{n}" for n in range(51)], ["51 products, and a distribution holds at most 50"]),
]

# Contents of the file probe.tar, and what is said about it.
NO_ARCHIVE = "probe.tar: no tar archive that can be read:"
REFUSED_CONTENTS = [
    (b"", f"{NO_ARCHIVE} This does not look like a tar archive"),
    (b"no archive" * 100, f"{NO_ARCHIVE} This does not look like a tar archive"),
    (bytes(10240), "probe.tar: holds nothing"),
    (gzip.compress(b"any"), "probe.tar: is compressed with gzip: unpack it first"),
    (bz2.compress(b"any"), "probe.tar: is compressed with bzip2: unpack it first"),
    (lzma.compress(b"any"), "probe.tar: is compressed with xz: unpack it first"),
    (b"\x28\xb5\x2f\xfd\x20\x03", "probe.tar: is compressed with zstd: unpack it first"),
]

# What precedes a member, which tar and another reader may take for different things: it is what
# tar makes of it that counts.
REFUSED_HEADERS = [
    ([long_name("f"), extended("path", "/opt/victim"), member("f")],
     ["'/opt/victim': an absolute name"]),
    ([extended("path", "/opt/victim"), long_name("f"), member("f")],
     ["'/opt/victim': an absolute name"]),
    ([extra(tarfile.XGLTYPE, record("path", "/opt/victim")), member("f")],
     ["'/opt/victim': an absolute name"]),
    ([member("f"), long_target("f"), extended("linkpath", "/opt/victim"), link("l", "f")],
     [f"'l': {ABSOLUTE}"]),
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

    def archive(self, identifier, members):
        path = self.products / f"{identifier}.tar"
        with tarfile.open(path, "w", format=tarfile.GNU_FORMAT, encoding="utf-8",
                          errors="surrogateescape") as archive:
            for entry in members:
                if isinstance(entry, bytes):
                    archive.fileobj.write(entry)
                else:
                    archive.addfile(entry)
        self.describe(identifier)
        return path

    def tree(self, identifier):
        path = self.products / identifier
        path.mkdir()
        self.describe(identifier)
        return path

    def describe(self, identifier):
        with contextlib.suppress(OSError):  # of a name that is too long
            (self.products / f"{identifier}.descr").write_text(f"Name = {identifier}\n")

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
        path = self.products / "path"
        path.mkdir()
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

    def accept(self, lines, *products, looked=LOOKED, **how):
        ended = self.run(*products, **how)
        lines = lines if looked else [*lines, NOBODY_LOOKED]
        expect("standard error", [f"make-distribution: {line}" for line in lines],
               ended.stderr.splitlines())
        expect("exit status", 0, ended.returncode)


def refused_members(members, lines):
    def check(workshop):
        archive = workshop.archive("probe", members)
        workshop.refuse([f"probe.tar: {line}" for line in lines], archive)
    return check


def refused_identifiers(identifiers, lines):
    def check(workshop):
        archives = [workshop.archive(name, [member("f")]) for name in identifiers]
        workshop.refuse(lines, *archives)
    return check


def refused_content(content, line):
    def check(workshop):
        archive = workshop.products / "probe.tar"
        archive.write_bytes(content)
        workshop.describe("probe")
        workshop.refuse([line], archive)
    return check


def damaged_archives(workshop):
    archive = workshop.archive("probe", [member("f"), member("g"), member("h")])
    whole = archive.read_bytes()
    tree = workshop.tree("full")
    (tree / "f").write_bytes(b"x" * 2000)
    with tarfile.open(archive, "w", format=tarfile.USTAR_FORMAT) as made:
        made.add(tree / "f", "f")
    full = archive.read_bytes()
    for content, reason in ((whole[:512] + b"x" * 512 + whole[1024:], "Skipping to next header"),
                            (whole[:700], "it has no end"),
                            (whole[:1024], "it has no end"),
                            (full[:1024], "Unexpected EOF in archive"),
                            (full[:2560], "it has no end")):
        archive.write_bytes(content)
        workshop.refuse([f"probe.tar: no tar archive that can be read: {reason}"], archive)


def names_without_an_end(workshop):
    """What is deep or long takes no longer than other archives of its size."""
    for members in ([member("d/" * 20_000 + "f")], [link("l", "d/" * 20_000)],
                    [extra(tarfile.XGLTYPE, record("path", "d/" * 20_000)), *[member("f")] * 2000]):
        before = time.monotonic()
        workshop.refuse(["probe.tar: holds a name that is too long"],
                        workshop.archive("probe", members))
        expect("took long", False, time.monotonic() - before > 20)


def two_names_for_a_member(workshop):
    """Where morvane-lint takes a member for something else than tar does, it need not be harmless
    for either."""
    archive = workshop.archive("probe", [long_name("/opt/victim"), extended("path", "f"),
                                         member("g")])
    listed = subprocess.run(["tar", "-tf", archive], capture_output=True, text=True, check=True)
    expect("what tar takes it for", "f\n", listed.stdout)
    if LINT.exists():
        workshop.refuse(["probe.tar:1:1: error: '/opt/victim': an absolute name: the file outside "
                         "would be given away; pack with 'tar -C TREE .' [member-absolute]",
                         FOUND_ERRORS], archive)
    else:
        workshop.accept([], archive, build=workshop.build_without_lint(),
                        env=workshop.path_of("python3", "tar"), looked=False)


def chains_of_links(workshop):
    links = [link(f"l{n}", f"l{n + 1}") for n in range(40)]
    workshop.accept([], workshop.archive("probe", [member("l40"), *links]))
    shutil.rmtree(workshop.result)
    links = [link(f"l{n}", f"l{n + 1}") for n in range(41)]
    workshop.refuse([f"probe.tar: 'l0': {CIRCLE}"],
                    workshop.archive("probe", [member("l41"), *reversed(links)]))
    # Each leads twice through the one before it, which thus is passed more often than once.
    links = [directory("l0"), *[link(f"l{n}", f"l{n - 1}/../l{n - 1}") for n in range(1, 8)]]
    workshop.refuse([f"probe.tar: 'l{n}': {CIRCLE}" for n in (6, 7)],
                    workshop.archive("probe", links))


def long_but_sound(workshop):
    members = [member("d/" * 511 + "f"), member("f" * 255)]
    workshop.accept([], workshop.archive("probe", members))


def mutated(content, chance):
    """Returns an archive with a few fields, bits or blocks of it changed, its checksums right."""
    made = bytearray(content)
    for _ in range(chance.randint(1, 3)):
        header = chance.randrange(0, len(made), tarfile.BLOCKSIZE)
        at = header + chance.randrange(345)
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
    """However an archive is damaged, the reasons are lines that begin with its name."""
    archive = workshop.archive("probe", [directory("d"), member("d/f"), link("l", "d/f"),
                                         hard_link("h", "d/f"), member("d/" + "n" * 120)])
    content = archive.read_bytes()[:8 * tarfile.BLOCKSIZE] + bytes(1024)
    endings = set()
    for seed in range(60):
        archive.write_bytes(mutated(content, random.Random(seed)))
        ended = workshop.run(archive)
        endings.add(ended.returncode)
        lines = ended.stderr.removesuffix(f"make-distribution: {FOUND_ERRORS}\n").splitlines()
        lines = [line for line in lines if not (line.endswith(NOBODY_LOOKED) and not LOOKED)]
        sound = all(re.match("make-distribution: probe.tar:( |1:1: error: )", line)
                    for line in lines)
        expect(f"reasons for {seed}: {ended.stderr}", (True, ended.returncode == 1),
               (sound, bool(lines)))
        shutil.rmtree(workshop.result, ignore_errors=True)
    expect("exit statuses", {0, 1}, endings)


def too_many_names(workshop):
    def with_short_commands():
        resource.setrlimit(resource.RLIMIT_STACK, (1 << 20, 1 << 20))
    names = [f"{n:090}" for n in range(1500)]
    archive = workshop.archive("probe", [member(name) for name in names])
    workshop.refuse(["probe.tar: holds more names than one command can take"], archive,
                    before=with_short_commands)
    workshop.accept([], archive)


def what_is_no_product(workshop):
    (workshop.products / "text").write_text("")
    for name in ("text", "missing", "missing.tar"):
        path = workshop.products / name
        workshop.refuse([f"{path}: there is neither an archive, ID.tar, nor a source tree, ID"],
                        path)


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
    workshop.refuse([f"probe: 'socket': {UNKNOWN_KIND}"], tree)


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
    workshop.refuse([f"probe.tar: 'a b': {NOT_AS_IT_IS}", f"probe.tar: 'l': {ABSOLUTE}",
                     f"probe.tar: 'pipe': {UNKNOWN_KIND}",
                     "probe.tar: 'su': set-id bits, which a change of owner clears"], tree)


def empty_tree(workshop):
    workshop.refuse(["probe.tar: holds nothing"], workshop.tree("probe"))


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
    workshop.accept([], archive, build=workshop.build_without_lint(),
                    env=workshop.path_of("python3", "tar"), looked=False)
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
    workshop.accept([], archive, build=workshop.build_without_lint(),
                    env=workshop.path_of("python3", "tar"), looked=False)


def errors_that_lint_finds(workshop):
    archive = workshop.archive("probe", [member("f")])
    found = workshop.describe_wrongly("probe")
    workshop.refuse([*found, FOUND_ERRORS], archive)
    workshop.accept(found, archive, options=["--force"])
    shutil.rmtree(workshop.result)
    workshop.refuse([*found, FOUND_ERRORS], archive, build=".", cwd=BUILD)
    workshop.refuse([*found, FOUND_ERRORS], archive, build=workshop.build_without_lint(),
                    env=workshop.path_of("python3", "tar", LINT))


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
    """A signal that comes while an archive is read by tar, or looked at by morvane-lint, which here
    is done by what never ends."""
    def check(workshop):
        archive = workshop.archive("probe", [member("f")])
        slow = workshop.products / program
        slow.write_text("#!/bin/sh\n: >reading\nexec sleep 60\n")
        slow.chmod(0o755)
        command = subprocess.Popen(
            [COMMAND, "--build", workshop.build_without_lint(), workshop.result, archive],
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
        workshop.refuse([f"{two}: make has a rule of its own between {two} and {one}"
                         for one, two in chosen],
                        *[workshop.archive(name, [member("f")])
                          for pair in chosen for name in pair])


def fifty_products(workshop):
    archives = [workshop.archive(f"p{n}", [member("f")]) for n in range(50)]
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
    [refused_members(*row) for row in REFUSED_MEMBERS]
    + [refused_identifiers(*row) for row in REFUSED_IDENTIFIERS]
    + [refused_content(*row) for row in REFUSED_CONTENTS]
    + [refused_members(*row) for row in REFUSED_HEADERS]
    + [stopped(number, program) for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM)
       for program in ("tar", "morvane-lint")]
    + [damaged_archives, names_without_an_end, two_names_for_a_member, chains_of_links,
       long_but_sound, mutated_archives,
       endings_that_make_knows, descriptions_that_are_no_files, control_characters_in_an_argument,
       no_python, too_many_names, what_is_no_product, result_that_exists,
       result_in_no_directory,
       build_without_a_program, no_products, socket_in_a_tree, long_name_in_a_tree,
       members_of_a_tree, empty_tree, same_archive_of_the_same_tree, what_a_distribution_holds,
       program_without_symbols, other_languages, unknown_language, own_messages,
       build_beside_the_command, nobody_looks, lint_that_fails, fifty_products, odd_but_sound])
WITH_LINT = [errors_that_lint_finds, errors_in_own_messages, warnings_that_lint_finds]


def main():
    failures = 0
    checks = CHECKS + (WITH_LINT if LINT.exists() else [])
    for number, check in enumerate(checks):
        with tempfile.TemporaryDirectory() as root:
            try:
                check(Workshop(root))
            except Failed as failure:
                failures += 1
                print(f"{check.__name__} ({number}): {failure}")
    print(f"{len(checks)} checks, {failures} failed")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
