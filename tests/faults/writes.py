#!/usr/bin/env python3
"""The Nth write fails, for each N: a screen without room, files that may not grow, directories that
may not be written.

    writes.py BUILD_DIRECTORY [--all]
"""

import os
import shutil

import session

SIZE_STEP = 600  # bytes by which a size limit grows from run to run
SCREEN_LOST = b"standard output could not be written in full"


def limited(size):
    return ["prlimit", f"--fsize={size}"]


def sweep(build, every):
    results = session.Sweep()
    program = build / "tests/morvane_with_faults"
    step = 100 if every else SIZE_STEP

    def files_may_not_grow(with_screen):
        """The size limit holds for the files alone, or for the screen too, which is a file then."""
        size = 0
        while True:
            with session.Stage(program) as stage, open(stage.root / "screen", "wb+") as screen:
                if with_screen:
                    ended = stage.play(before=limited(size), stdout=screen)
                    screen.seek(0)
                    stage.output = screen.read()
                else:
                    ended = stage.play(before=limited(size))
                what = f"no file longer than {size}{', the screen neither' if with_screen else ''}"
                if stage.status == 0 and not stage.errors and len(stage.products()) == 4:
                    results.note(what, session.untouched(stage, ended))
                    return
                cut = with_screen and len(stage.output) >= size
                found = stage.problems(ended, farewell=not cut)
                if cut and SCREEN_LOST not in stage.errors:
                    found.append("standard error does not tell of the screen")
                # A listing that failed counts as one of nothing: then nothing is told, or written.
                told = stage.errors or b"<95 file not opened>" in stage.output
                if not told and not cut and stage.read("install.mk"):
                    found.append("the operator is not told")
                if stage.status != 0 and stage.read("install.mk"):
                    found.append("install.mk is left although it is not complete")
                results.note(what, found)
            size += 1 if size < 30 and every else step if size >= 30 else 10

    def screen_is_full(_):
        with session.Stage(program) as stage, open("/dev/full", "wb") as full:
            ended = stage.play(stdout=full)
            found = stage.problems(ended, farewell=False)
            if SCREEN_LOST not in stage.errors:
                found.append("standard error does not tell")
            if stage.products() != session.PRODUCTS:
                found.append("install.mk is not written")
            results.note("standard output on /dev/full", found)

    def diagnostics_are_full(_):
        with session.Stage(program) as stage, open("/dev/full", "wb") as full:
            (stage.distribution / "morvane.SunOS4").unlink()
            ended = stage.play(stderr=full)
            results.note("standard error on /dev/full",
                         stage.problems(ended) + ([] if stage.status == 0 else ["status 1"]))

    def no_streams(descriptors):
        with session.Stage(program) as stage:
            closing = " ".join(f"{number}{'<' if number == 0 else '>'}&-" for number in descriptors)
            ended = stage.play(before=["sh", "-c", f'exec "$0" "$@" {closing}'])
            found = stage.problems(ended, farewell=1 not in descriptors)
            wanted = 1 if 0 in descriptors else 0
            if stage.status != wanted:
                found.append(f"status {stage.status}")
            if wanted == 0 and stage.products() != session.PRODUCTS:
                found.append("install.mk is not written")
            results.note(f"closed descriptors {descriptors}", found)

    def reader_gone(_):
        """Whoever reads the screen goes away: the program dies of it, or goes on to its end."""
        for ignored in (False, True):
            with session.Stage(program) as stage:
                reader, writer = os.pipe()
                os.close(reader)
                before = ["sh", "-c", "trap '' PIPE; exec \"$0\" \"$@\""] if ignored else []
                with os.fdopen(writer, "wb") as gone:
                    ended = stage.play(before=before, stdout=gone)
                found = stage.problems(ended, signals=[session.signal.SIGPIPE], farewell=False)
                if ignored and SCREEN_LOST not in stage.errors:
                    found.append("standard error does not tell")
                results.note("standard output into a pipe that nobody reads", found)

    def directories_are_closed(directory):
        """An ordinary user may write to neither of them."""
        with session.Stage(program, user="ordinary") as stage:
            closed = stage.root / directory
            closed.chmod(0o555)
            ended = stage.play()
            found = stage.problems(ended)
            if stage.status == 0 and directory == "dist":
                found.append("status 0, and no install.mk")
            if not stage.errors and b"<131 path failed>" not in stage.output:
                found.append("the operator is not told")
            results.note(f"an ordinary user may not write to {directory}", found)

    def result_is_in_the_way(name):
        """What is to be written cannot be opened: the message says so, and the run ends."""
        with session.Stage(program) as stage:
            (stage.distribution / name).mkdir()
            ended = stage.play()
            found = stage.problems(ended)
            told = b"<95 file not opened>" + name.encode() + b"<96 file not opened end>"
            if told not in stage.output and b"<101 probe not created>" not in stage.errors:
                found.append("the operator is not told")
            if stage.status != 1:
                found.append(f"status {stage.status}")
            results.note(f"a directory at {name}", found)

    def results_on_a_full_device(name):
        with session.Stage(program) as stage:
            (stage.distribution / name).symlink_to("/dev/full")
            typed = stage.typed
            refused = name == "install.mk" and os.geteuid() != 0
            if refused:  # nobody else may change a device's group: the question comes once more
                typed = typed.replace(b"\n\n", b"\n\n\n", 1)
            ended = stage.play(typed)
            found = stage.problems(ended)
            if refused and b"<97 no rights>" not in stage.output:
                found.append("the operator is not told that the group cannot be changed")
            if name == "install.mk":  # replaced by the probe, so that it is a file in the end
                found += session.untouched(stage, ended)
            elif f"'{name}' could not be written in full".encode() not in stage.errors:
                found.append("standard error does not tell")
            if not os.path.exists("/dev/full"):
                found.append("/dev/full is gone")
            results.note(f"{name} on /dev/full", found)

    results.all(files_may_not_grow, [False, True])
    results.all(screen_is_full, [0])
    results.all(diagnostics_are_full, [0])
    results.all(no_streams, [[1], [2], [1, 2], [0], [0, 1, 2]])
    results.all(reader_gone, [0])
    results.all(result_is_in_the_way, ["install.mk", "app.dat", "kept.dat"])
    results.all(results_on_a_full_device, ["install.mk", "app.dat", "fix.dat"])
    if os.geteuid() == 0 and shutil.which("setpriv") is None:
        results.skipped.append("directories that an ordinary user may not write: no setpriv here")
    else:
        results.all(directories_are_closed, ["dist", "opt"])
    results.finish(f"size limits of files in steps of {step} bytes")


if __name__ == "__main__":
    session.main(sweep)
