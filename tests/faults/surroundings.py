#!/usr/bin/env python3
"""Runs of the whole session in surroundings that mean ill: each function is a test.

    surroundings.py BUILD_DIRECTORY [--all] [NAME ...]
"""

import os
import random
import re
import shutil
import sys
import threading

import session

MEGABYTE = 1 << 20
CANNOT_CREATE = b"morvane : error : cannot create temporary file '/tmp/"

# What would give itself away if a shell ever read it.
SHELL_SYNTAX = ["$(touch pwned)", "`touch pwned`", "';touch pwned;'", ";touch pwned;",
                "&touch pwned&", "|touch pwned|", "x >pwned", '"$(touch pwned)"', "*?[a-z]~{a,b}"]

# Messages that the program itself goes by: letters, directories, commands, the ruler, keywords,
# what the host and the categories are called.
MEANT_FOR_THE_PROGRAM = {1, 3, 4, 5, 8, 9, 10, 37, 115, 116, *range(111, 114), 120, 122,
                         *range(200, 256)}
HOSTILE_MESSAGES = [
    b"%n %s %*d %ld %hhn %1$n %c %d %x %5.3s %-9s| %",
    b"\\e[2J\\e]0;title\\b\\b\\v\\f\\r\\177\\a %n%n%n%n%n%n%n%n",
    b"\x01\x02\x1b[31m\x7f\x80\x9b\xc3\x28\xff\xfe %s%s%s%s%s%s%s%s%s%s",
    b"%%%%%%n %0-+ #12.40s %.*s %S %ls %p %a %e %f %g %m \\",
    b"\xff" * 149,
]

def pwned(stage):
    """Tells what a shell has done that it should never have read."""
    found = [str(path) for path in stage.root.rglob("pwned*")]
    return [f"a shell ran it: {found}"] if found else []


def at_scratch_file(commands):
    """Returns what runs `commands` before the program, its scratch file being "$scratch"."""
    return ["sh", "-c", f'scratch=/tmp/$$.tmp; {commands}; exec "$0" "$@"']


@session.test
def link_at_the_scratch_file(program):
    for target, suffix in (("precious", ""), ("nowhere", ""), ("precious", "1")):
        with session.Stage(program) as stage:
            precious = stage.root / "precious"
            precious.write_text("precious")
            # With it, the current directory is compared with itself: the second file is used too.
            stage.set(PWD=f"/{stage.distribution}")
            ended = stage.play(before=at_scratch_file(
                f"ln -s {stage.root}/{target} ${{scratch}}{suffix}"))
            stage.scratch = [name for name in stage.scratch if not re.search("tmp1?$", name)]
            yield session.untouched(stage, ended)
            if precious.read_text() != "precious":
                yield ["it wrote through the link"]
            if (stage.root / "nowhere").exists():
                yield ["it created what the link named"]


@session.test
def directory_at_the_scratch_file(program):
    with session.Stage(program) as stage:
        ended = stage.play(before=at_scratch_file("mkdir $scratch"))
        yield stage.problems(ended, scratch_may_stay=True)
        if CANNOT_CREATE not in stage.errors:
            yield ["standard error does not tell"]
        if len(stage.scratch) != 1:
            yield ["the directory is gone"]


@session.test
def directory_at_the_second_scratch_file(program):
    with session.Stage(program) as stage:
        stage.set(PWD=f"/{stage.distribution}")
        ended = stage.play(before=at_scratch_file("mkdir ${scratch}1"))
        yield stage.problems(ended, scratch_may_stay=True)
        if CANNOT_CREATE not in stage.errors:
            yield ["standard error does not tell"]
        if stage.products() != session.PRODUCTS:
            yield [f"it installs {stage.products()}"]


@session.test
def foreign_file_at_the_scratch_file(program):
    if os.geteuid() != 0:
        raise session.Skipped("needs the superuser")
    with session.Stage(program) as stage:
        ended = stage.play(before=at_scratch_file(
            "echo evil.tar >$scratch; chown 65534 $scratch; chmod 666 $scratch"))
        yield session.untouched(stage, ended)


@session.test
def file_that_an_ordinary_user_cannot_remove(program):
    if os.geteuid() != 0 or shutil.which("setpriv") is None:
        raise session.Skipped("needs the superuser, and setpriv")
    with session.Stage(program, user="ordinary") as stage:
        stage.host.drops_rights = False  # here only after the file is there
        uid, gid = stage.host.ids
        before = [*at_scratch_file("echo app.tar >$scratch; chmod 666 $scratch"), "setpriv",
                  f"--reuid={uid}", f"--regid={gid}", "--clear-groups"]
        ended = stage.play(before=before)
        yield stage.problems(ended, scratch_may_stay=True)
        if CANNOT_CREATE not in stage.errors:
            yield ["standard error does not tell"]
        if b"The application" in stage.output:
            yield ["it read a listing that somebody else wrote"]


@session.test
def archives_named_in_shell_syntax(program):
    with session.Stage(program) as stage:
        names = SHELL_SYNTAX
        for name in ("app.tar", "base.tar", "fix.tar", "install/kept.descr"):
            (stage.distribution / name).unlink()
        stage.laid_out |= {name + ending for name in names for ending in (".tar", ".descr")}
        stage.laid_out |= {name + ".dat" for name in names}
        for name in names:
            (stage.distribution / (name + ".tar")).write_bytes(b"")
            (stage.distribution / (name + ".descr")).write_bytes(
                f"Name = X\nPath = {stage.root}/opt\nOwner = {stage.host.user}\n"
                f"Group = {stage.host.group}\n\nTarget = files\n".encode())
        typed = " ".join(str(1 + n) for n in range(len(names))).encode() + b"\n\n"
        typed += b"\n\n\n\nn\n" * len(names) + b"\n"
        (stage.root / "opt").mkdir(exist_ok=True)
        ended = stage.play(typed)
        yield stage.problems(ended) + pwned(stage)
        if stage.status != 0 or stage.errors:
            yield [f"status {stage.status}, on standard error {stage.errors!r}"]
        written = sum((stage.distribution / (name + ".dat")).exists() for name in names)
        if written != len(names):
            yield [f"{written} settings files for {len(names)} products"]


@session.test
def groups_and_tools_named_in_shell_syntax(program):
    for line in ("Owner", "Group", "TargetGroup", "TargetOwner", "FixedGroups", "NeededTools",
                 "NeedsFiles", "NeedsPath", "Path", "PathVariable"):
        with session.Stage(program) as stage:
            description = stage.distribution / "app.descr"
            text = description.read_text()
            value = " ".join(name.replace('"', "").replace(" ", "${IFS}") for name in SHELL_SYNTAX)
            if line.endswith("Path"):
                value = f"{stage.root}/{value}"
            entry = f'{line} = "{value}"\n'
            text = re.sub(rf"^{line} = .*\n", "", text, flags=re.MULTILINE)
            # A target's entry belongs to the target above it, a product's stands before those.
            in_target = line.startswith(("Target", "Needs"))
            text = text + entry if in_target else entry + text
            description.write_text(text)
            ended = stage.play()
            yield stage.problems(ended) + pwned(stage)


@session.test
def answers_in_shell_syntax(program):
    with session.Stage(program) as stage:
        count = stage.typed.count(b"\n")
    for number in range(count):
        with session.Stage(program) as stage:
            answers = stage.typed.splitlines(keepends=True)
            hostile = "".join(f"{stage.root}/{name}\n{name}\n" for name in SHELL_SYNTAX)
            answers.insert(number, hostile.encode())
            ended = stage.play(b"".join(answers))
            yield stage.problems(ended) + pwned(stage)


@session.test
def distribution_in_a_directory_named_in_shell_syntax(program):
    with session.Stage(program) as stage:
        hostile = stage.root / "d;touch pwned;$(touch pwned)`touch pwned` 'd\""
        stage.distribution.rename(hostile)
        stage.distribution.symlink_to(hostile)
        stage.set(PWD=hostile)
        ended = stage.play()
        yield session.untouched(stage, ended) + pwned(stage)
        if f"TAR_PATH\t= {hostile}\n".encode() not in stage.read("install.mk"):
            yield ["install.mk does not name the directory"]


def results_of(stage):
    return {name: stage.host.to_case(stage.read(name)) for name in
            ("install.mk", "app.dat", "base.dat", "fix.dat", "kept.dat")}


@session.test
def environment(program):
    with session.Stage(program) as stage:
        yield session.untouched(stage, stage.play())
        wanted = (results_of(stage), stage.host.to_case(stage.output))
    for name, value in (
            ("CDPATH", "@DIR@/decoy:/usr:."), ("IFS", "/.:; amtps-"), ("IFS", ""),
            ("ENV", "@DIR@/decoy/env"), ("BASH_ENV", "@DIR@/decoy/env"), ("TMPDIR", "/nonexistent"),
            ("TMPDIR", "@DIR@/decoy; touch pwned"), ("MAKEFLAGS", "-j4"), ("MAKEFLAGS", "%n%s -k"),
            ("LC_ALL", "C.UTF-8"), ("LC_ALL", "tr_TR.UTF-8"), ("LC_ALL", "ja_JP.SJIS"),
            ("LC_ALL", "xx_XX.nonsense"), ("LC_ALL", "../../../%n"), ("LC_ALL", ""),
            ("LANGUAGE", "de:fr"), ("COLUMNS", "1"), ("PS4", "$(touch pwned)"), ("HOME", ""),
            ("PWD", "/nonexistent"), ("OLDPWD", "$(touch pwned)"), ("SHELL", "/nonexistent"),
            ("TERM", "$(touch pwned)"), ("POSIXLY_CORRECT", "1"), ("QUOTING_STYLE", "c"),
            ("MALLOC_PERTURB_", "165")):
        with session.Stage(program) as stage:
            decoy = stage.root / "decoy"
            (decoy / "install").mkdir(parents=True)
            (decoy / "install/decoy.descr").write_text("Name = Decoy\nVersion = 9.9\n")
            (decoy / "env").write_text(f"touch {stage.root}/pwned\n")
            stage.set(**{name: value.replace("@DIR@", str(stage.root))})
            ended = stage.play()
            found = session.untouched(stage, ended) + pwned(stage)
            if not found and (results_of(stage), stage.host.to_case(stage.output)) != wanted:
                found = ["something comes out different"]
            yield [f"{name}={value}: {problem}" for problem in found]


@session.test
def no_tools_on_the_path(program):
    with session.Stage(program) as stage:
        stage.set(PATH="/nonexistent")
        ended = stage.play(before=["/usr/bin/env", "-u", "ENV"])
        yield stage.problems(ended)
        if b"directory '.' cannot be listed\n" not in stage.errors or stage.status != 1:
            yield ["it does not tell, or goes on"]


@session.test
def narrow_terminal(program):
    screens = []
    for columns in (80, 20, 1, 0):
        with session.Stage(program) as stage:
            terminal = stage.start_on_terminal(columns)
            os.write(terminal, stage.typed)
            ended = stage.end_on_terminal()
            yield session.untouched(stage, ended)
            # What is typed ahead is echoed before anything else, or in between.
            screens.append(re.sub(rb"\s+", b"", stage.host.to_case(stage.output))[-2000:])
    if len(set(screens)) != 1:
        yield ["the screen depends on the terminal's width"]


@session.test
def child_signals_ignored(program):
    with session.Stage(program) as stage:
        ended = stage.play(before=[sys.executable, "-c", (
            "import os, signal, sys; signal.signal(signal.SIGCHLD, signal.SIG_IGN); "
            "os.execv(sys.argv[1], sys.argv[1:])")])
        yield session.untouched(stage, ended)


@session.test
def shell_options(program):
    with session.Stage(program) as stage:
        stage.set(SHELLOPTS="noglob")
        with open(stage.distribution / "morvane.rsc", "a", encoding="ascii") as messages:
            messages.write('122 test -z "$SHELLOPTS" || test "$BASH_VERSION"\n')
        yield session.untouched(stage, stage.play())


@session.test
def answers_that_come_late_through_a_pipe_that_does_not_wait(program):
    with session.Stage(program) as stage:
        reading, writing = os.pipe()
        os.set_blocking(reading, False)
        late = threading.Timer(0.3, os.write, [writing, stage.typed])
        late.start()
        ended = stage.play(stdin=reading)
        late.join()
        os.close(reading)
        os.close(writing)
        yield session.untouched(stage, ended)


# Files in whose place something else waits, and whether the run can go on without them.
PLACES = {"morvane.rsc": False, "base.descr": True, "base.dat": False, "install.mk": False}


@session.test
def pipes_in_the_place_of_files(program):
    for name in PLACES:
        with session.Stage(program) as stage:
            (stage.distribution / name).unlink(missing_ok=True)
            os.mkfifo(stage.distribution / name)
            found = stage.problems(stage.play(), farewell=name != "morvane.rsc")
            yield [f"{name}: {problem}" for problem in found]


@session.test
def devices_in_the_place_of_files(program):
    for name, goes_on in PLACES.items():
        if name in ("base.dat", "install.mk"):
            continue
        with session.Stage(program) as stage:
            (stage.distribution / name).unlink()
            (stage.distribution / name).symlink_to("/dev/zero")
            found = stage.problems(stage.play())
            if not goes_on and (stage.status != 1 or b"Cannot find resource" not in stage.output):
                found.append(f"status {stage.status}")
            yield [f"{name}: {problem}" for problem in found]


@session.test
def makefile_removed_before_the_last_answer(program):
    with session.Stage(program) as stage:
        *answers, last = stage.typed.splitlines(keepends=True)
        with open(stage.root / "screen", "wb+") as screen:
            child = stage.start(stdin=session.subprocess.PIPE, stdout=screen, stderr=screen)
            child.stdin.write(b"".join(answers))
            child.stdin.flush()
            session.wait_for_question(child)
            (stage.distribution / "install.mk").unlink()
            child.stdin.write(last)
            child.stdin.close()
            stage.ended()
            screen.seek(0)
            stage.output = screen.read()
        yield stage.problems(True)
        if stage.status != 1 or b"install.mk" not in stage.output:
            yield [f"status {stage.status}, and it does not tell"]


def with_messages(stage, text):
    path = stage.distribution / "morvane.rsc"
    kept = [line for line in path.read_bytes().splitlines(keepends=True)
            if line[:3].isdigit() and int(line[:3]) in MEANT_FOR_THE_PROGRAM]
    replaced = [b"%03d %s\n" % (number, text) for number in range(1, 500)
                if number not in MEANT_FOR_THE_PROGRAM]
    path.write_bytes(b"".join(kept + replaced))


@session.test
def hostile_messages(program):
    for text in HOSTILE_MESSAGES:
        with session.Stage(program) as stage:
            with_messages(stage, text)
            ended = stage.play()
            yield stage.problems(ended, farewell=False)
            if stage.status != 0 or stage.products() != session.PRODUCTS:
                yield [f"messages {text!r}: status {stage.status}, installs {stage.products()}"]


@session.test
def message_file_without_sense(program):
    for content in (b"", b"\0" * 1000, b"1" * MEGABYTE, b"\n" * MEGABYTE, random.Random(1).randbytes(1 << 16),
                    b"".join(b"%03d %s\n" % (n, b"\\") for n in range(500)),
                    b"".join(b"%03d %s\n" % (n, b"x" * 400) for n in range(500)),
                    b"".join(b"%03d \n" % n for n in range(500))):
        with session.Stage(program) as stage:
            (stage.distribution / "morvane.rsc").write_bytes(content)
            ended = stage.play()
            # Its commands may be anything now, but for what ends the run.
            yield stage.problems(ended, farewell=False)


def huge_descriptions():
    """Returns what stands in front of a description, and whether it is then told of."""
    line = b"# " + b"c" * 100 + b"\n"
    text = b'Abstract = "' + b"a" * 1000 + b'"\n'
    return {
        "64 MB of comments": (line * (64 * MEGABYTE // len(line)), False),
        "64 MB of entries": (text * (64 * MEGABYTE // len(text)), False),
        "64 MB of blanks": (b" " * (64 * MEGABYTE) + b"\n", False),
        "a word of 1 MB": (b"Abstract = " + b"w" * MEGABYTE + b"\n", True),
        "a text of 1 MB": (b'Abstract = "' + b"t" * MEGABYTE + b'"\n', True),
        "a keyword of 1 MB": (b"K" * MEGABYTE + b" = value\n", True),
        "a comment of 1 MB": (b"#" + b"#" * MEGABYTE + b"\n", False),
        "NUL bytes in values": (b'Abstract = "a\0b"\nHardware = a\0b\nPathInfo = \0\n', True),
        "NUL bytes for keywords": (b"\0\0\0\nNa\0me = x\n\0\n", True),
        "nothing but NUL bytes": (b"\0" * MEGABYTE + b"\n", True),
        "every byte": (bytes(range(256)) * 4 + b"\n", True),
    }


@session.test
def huge_and_binary_descriptions(program):
    for name, (content, told) in huge_descriptions().items():
        with session.Stage(program) as stage:
            path = stage.distribution / "base.descr"
            path.write_bytes(content + path.read_bytes())
            ended = stage.play()
            found = stage.problems(ended)
            if stage.products() != session.PRODUCTS or stage.status != 0:
                found.append(f"status {stage.status}, installs {stage.products()}")
            if told != bool(stage.errors):
                found.append(f"on standard error: {stage.errors[:200]!r}")
            yield [f"{name}: {problem}" for problem in found]


if __name__ == "__main__":
    session.play_tests()
