#!/usr/bin/env python3
"""Other people's files and links, another run in the same directory, and what somebody changes while
the program is at work: each function is a test.

    races.py BUILD_DIRECTORY [NAME ...]
"""

import os
import pathlib
import shutil
import signal
import subprocess

import session

FOREIGN_ID = 65534
BUSY = b"morvane : error : another configurator is at work in this directory\n"

# Makes the stage "$0" the root directory, with the host's programs in it, and enters "$1" there. The
# stage keeps its own name too.
ENTER = ('for name in usr etc dev proc; do mount --rbind "/$name" "$0/$name"; done; '
         'mount --bind "$0" "$0/$0"; '
         'exec chroot "$0" sh -c \'cd "$0" && exec "$@"\' "$@"')


class Root(session.Stage):
    """A stage that is the root directory of its own, so that the program runs below any names."""

    def __init__(self, program, directory):
        if os.geteuid() != 0 or subprocess.run(["unshare", "--mount", "true"], check=False,
                                               stderr=subprocess.DEVNULL).returncode != 0:
            raise session.Skipped("needs the superuser, and mounts of its own")
        super().__init__("/program")
        shutil.copy(program, self.root / "program")
        for name in ("usr", "etc", "dev", "proc", "tmp", str(self.root)[1:]):
            (self.root / name).mkdir(parents=True, exist_ok=True)
        (self.root / "tmp").chmod(0o1777)
        for name in ("bin", "sbin", "lib", "lib64"):
            if os.path.islink(f"/{name}"):
                (self.root / name).symlink_to(os.readlink(f"/{name}"))
        self.scratch_directory = self.root / "tmp"
        self.directory = directory
        self.inside(directory).parent.mkdir(parents=True)
        self.distribution = self.distribution.rename(self.inside(directory))
        (self.root / "dist").mkdir()  # where the run starts from

    def inside(self, path):
        return self.root / path.removeprefix("/")

    def archives(self):
        """Plays the session. Returns the name of the current directory in install.mk, and problems."""
        enter = ["unshare", "--mount", "sh", "-c", ENTER, str(self.root), self.directory]
        ended = self.play(before=enter)
        self.scratch.clear()  # the comparison of the two names leaves both files
        named = [line.partition(b"= ")[2].decode() for line in self.read("install.mk").splitlines()
                 if line.startswith(b"TAR_PATH")]
        return named, session.untouched(self, ended)


def name_in_makefile(program, prepare, directory, wanted):
    """Returns what is wrong where the run in `directory` is not to name it `wanted`."""
    with Root(program, directory) as stage:
        prepare(stage)
        named, found = stage.archives()
        return found + ([] if named == [wanted] else [f"{directory} is named {named}"])


@session.test
def somebody_elses_link_to_the_current_directory(program):
    def link_in_directory(stage):
        stage.inside("/tmp/a").mkdir()
        stage.inside("/tmp/a/dist").symlink_to("/srv/tmp/a/dist")
        for name in ("/tmp/a/dist", "/tmp/a"):
            os.lchown(stage.inside(name), FOREIGN_ID, FOREIGN_ID)

    def link_to_directory(stage):
        stage.inside("/tmp/a").symlink_to("/srv/tmp/a")
        os.lchown(stage.inside("/tmp/a"), FOREIGN_ID, FOREIGN_ID)

    def link_in_own_directory(stage):
        stage.inside("/tmp/a").mkdir()
        stage.inside("/tmp/a/dist").symlink_to("/srv/tmp/a/dist")
        os.lchown(stage.inside("/tmp/a/dist"), FOREIGN_ID, FOREIGN_ID)

    def own_link_in_their_directory(stage):
        link_in_own_directory(stage)
        os.lchown(stage.inside("/tmp/a/dist"), 0, 0)
        os.chown(stage.inside("/tmp/a"), FOREIGN_ID, FOREIGN_ID)

    def their_link_behind_an_own_one(stage):
        stage.inside("/tmp/a").symlink_to("/tmp/b")
        stage.inside("/tmp/b").symlink_to("/srv/tmp/a")
        os.lchown(stage.inside("/tmp/b"), FOREIGN_ID, FOREIGN_ID)

    for prepare in (link_in_directory, link_to_directory, link_in_own_directory,
                    own_link_in_their_directory, their_link_behind_an_own_one):
        found = name_in_makefile(program, prepare, "/srv/tmp/a/dist", "/srv/tmp/a/dist")
        yield [f"{prepare.__name__}: {problem}" for problem in found]


@session.test
def own_link_to_the_current_directory(program):
    def link(stage):
        stage.inside("/export").symlink_to("/mnt/export")

    yield name_in_makefile(program, link, "/mnt/export/dist", "/export/dist")


@session.test
def directories_that_others_may_write_on_the_way(program):
    for mode, shortened in ((0o755, True), (0o1777, True), (0o1775, True), (0o775, False),
                            (0o777, False), (0o757, False)):
        def link(stage, mode=mode):
            stage.inside("/pub").mkdir()
            os.chown(stage.inside("/pub"), 0, FOREIGN_ID)
            stage.inside("/pub").chmod(mode)
            stage.inside("/pub/export").symlink_to("/mnt/pub/export")

        wanted = "/pub/export/dist" if shortened else "/mnt/pub/export/dist"
        found = name_in_makefile(program, link, "/mnt/pub/export/dist", wanted)
        yield [f"mode {mode:o}: {problem}" for problem in found]


def start_until(stage, shown, **streams):
    """Starts the session and types until the screen shows `shown`. Returns what is left to type."""
    stage.screen = stage.root / "screen"
    with open(stage.screen, "wb") as screen:
        child = stage.start(stdin=subprocess.PIPE, stdout=screen, stderr=subprocess.PIPE, **streams)
    answers = stage.typed.splitlines(keepends=True)
    while session.wait_for_question(child) and shown not in stage.screen.read_bytes():
        child.stdin.write(answers.pop(0))
        child.stdin.flush()
    return b"".join(answers)


def finish(stage, typed):
    """Types the rest and collects what the program wrote. Returns whether it ended in time."""
    deadline = session.threading.Timer(session.TIMEOUT, stage.child.kill)
    deadline.start()
    _, stage.errors = stage.child.communicate(typed)
    in_time = deadline.is_alive()
    deadline.cancel()
    stage.output = stage.screen.read_bytes()
    stage.ended()
    return in_time


def problems_beside(stage):
    """Returns what is wrong with a run beside the one that is at work."""
    output, errors, status = session.run_case.run(stage.program, stage.host, stage.settings, "dist",
                                                  stage.typed, subprocess.PIPE)
    found = []
    if (status, errors) != (1, BUSY):
        found.append(f"beside it: status {status}, on standard error {errors!r}")
    if b"<35 " in output or b"<18 " in output:
        found.append("beside it: the operator is asked all the same")
    if not output.endswith(session.FAREWELL):
        found.append("beside it: no farewell")
    return found


def problems_afterwards(stage):
    """Returns what is wrong with a run after another one, without what that one left."""
    stage.scratch.clear()
    for name in ("app", "base"):
        shutil.rmtree(stage.root / "opt" / name, ignore_errors=True)
    return session.untouched(stage, stage.play())


@session.test
def second_run_in_the_directory(program):
    for shown in (b"<18 ", b"<132", b"<100 "):
        with session.Stage(program) as first:
            rest = start_until(first, shown)
            yield problems_beside(first)
            yield session.untouched(first, finish(first, rest))
            yield problems_afterwards(first)


@session.test
def run_after_one_that_was_killed(program):
    for which in (signal.SIGKILL, signal.SIGTERM):
        with session.Stage(program) as first:
            start_until(first, b"<132")
            first.child.send_signal(which)
            finish(first, b"")
            yield problems_afterwards(first)


def put_on_path(stage, name, script):
    """Puts a command in front of the host's; in it, "$real" is that one, "$root" the stage."""
    directory = stage.root / "bin"
    directory.mkdir(exist_ok=True)
    (directory / name).write_text(f"#!/bin/sh\nroot={stage.root} real={shutil.which(name)}\n{script}")
    (directory / name).chmod(0o755)
    stage.set(PATH=f"{directory}:/usr/sbin:/usr/bin:/sbin:/bin")


@session.test
def run_after_one_that_was_killed_but_not_its_command(program):
    with session.Stage(program) as first:
        put_on_path(first, "mkdir", 'touch "$root/working"\n'
                                    'while test -e "$root/working"; do sleep 0.02; done\n')
        rest = start_until(first, b"<132")
        first.child.stdin.write(rest)
        first.child.stdin.flush()
        deadline = session.time.time() + session.TIMEOUT
        while not (first.root / "working").exists() and session.time.time() < deadline:
            session.time.sleep(0.01)
        first.child.kill()
        first.child.wait()
        shutil.rmtree(first.root / "bin")
        yield problems_afterwards(first)
        yield [] if (first.root / "working").exists() else ["the command had ended before"]


# What somebody who may write to /tmp does with the scratch file "$file" while it is filled.
REPLACEMENTS = {
    "removed": "rm -f $file",
    "another file": "rm -f $file; echo evil.tar >$file",
    "somebody else's file": f"rm -f $file; echo evil.tar >$file; chown {FOREIGN_ID} $file",
    "a link": "rm -f $file; echo evil.tar >$root/evil; ln -s $root/evil $file",
    "a second name": "rm -f $file; echo evil.tar >$root/evil; ln $root/evil $file",
    "a directory": "rm -f $file; mkdir $file",
    "a pipe": "rm -f $file; mkfifo $file",
    "a device": "rm -f $file; ln -s /dev/zero $file",
}


@session.test
def listing_that_is_replaced_before_it_is_read(program):
    for pattern, listed in (("*.tar", "."), ("*.descr", "install")):
        for name, replacement in REPLACEMENTS.items():
            with session.Stage(program) as stage:
                (stage.distribution / "evil.descr").write_text("Name = Evil\nVersion = 6.6\n")
                stage.laid_out.add("evil.descr")
                put_on_path(stage, "ls", f'"$real" "$@" || exit\n'
                                         f'case $* in {pattern}) ;; *) exit ;; esac\n'
                                         f'file=$(readlink /proc/$$/fd/1)\n{replacement}\n')
                ended = stage.play()
                found = stage.problems(ended, scratch_may_stay=name == "a directory")
                wanted = f"morvane : error : directory '{listed}' cannot be listed\n".encode()
                if stage.status != 1 or not stage.errors.endswith(wanted):
                    found.append(f"status {stage.status}, on standard error {stage.errors!r}")
                if b"vil" in stage.output + stage.read("install.mk"):
                    found.append("it goes by what somebody else wrote")
                yield [f"{pattern}, {name}: {problem}" for problem in found]


@session.test
def directory_created_while_the_program_asks_for_it(program):
    with session.Stage(program) as stage:
        for command in ("mkdir", "chmod"):
            put_on_path(stage, command, f'echo {command} "$@" >>"$root/ran"\nexec "$real" "$@"\n')
        rest = start_until(stage, b"<132")
        taken = stage.root / "opt/app"
        taken.mkdir(mode=0o711)
        (taken / "theirs").write_text("theirs")
        yield session.untouched(stage, finish(stage, rest))
        ran = pathlib.Path(stage.root / "ran").read_text().splitlines()
        if any(str(taken) in line for line in ran):
            yield [f"it ran {ran}"]
        if taken.stat().st_mode & 0o7777 != 0o711 or not (taken / "theirs").exists():
            yield ["it changed the directory"]


if __name__ == "__main__":
    session.play_tests()
