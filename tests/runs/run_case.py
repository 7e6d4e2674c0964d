#!/usr/bin/env python3
"""Plays one golden run and compares everything that came of it.

    run_case.py [--accept] BUILD_DIRECTORY CASE_DIRECTORY

A case is a directory:

    why            one sentence
    case           "key: value" lines, all optional:
                     user      root (the default), ordinary, or either
                     archives  identifiers that get an empty archive
                     without   common files that the distribution lacks
                     env       NAME=VALUE, may stand several times
                     arguments what the program is started with
                     program   real: with its pauses (else they are substituted)
                     status    expected exit status of every run (1 is the default)
                     make      yes: install.mk is then executed with GNU make and with bmake
                     again     a directory of DIR where program and make then run once more
    distribution/  its files, beside those of ../common; a directory ID.tree is packed into ID.tar
    beside/        what lies beside the distribution, optional
    session        the screen: what the program wrote to standard output and standard error, in that
                   order, and what was typed, in double brackets at its place
    typed          what is typed, byte for byte, where the session does not show it
    session-again, typed-again
                   the same of the second run
    errors         standard error alone, of every run; no such file: nothing
    tree           mode, owner, group and path of everything that is new or has changed; behind that,
                   where another file of the case or of ../common has the same content, "= FILE"; or
                   "= sha256:DIGEST" for an install.mk whose rules other cases show (user root only)
    left/          the contents of the other files
    making         what make printed in every run

The program runs in DIR/dist of a directory DIR that is made for it. These differ from host to host
and are replaced in the files of a case: @DIR@, @USER@, @GROUP@ (who runs the program), @HOST_OS@,
and in the message file @SYSTEM@ and @MACHINE@.

Where MORVANE_RUN_UNDER is set, its words are put before a copy of the program that everybody can
read: a checker that watches it, or an emulator of another machine, which MORVANE_MACHINE names.

--accept writes what came of the run into the case, for review, but for the exit status. A new case
needs "typed" for that: the answers are moved into its session.
"""

import array
import fcntl
import grp
import hashlib
import os
import pathlib
import pwd
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time

RUNS = pathlib.Path(__file__).resolve().parent
SKIPPED = 77
TIMEOUT = 60
CHECKER = os.environ.get("MORVANE_RUN_UNDER", "").split()
ORDINARY_ID = 65534
DIGEST = b"sha256:"
ANSWER = re.compile(rb"\[\[(.*?)\]\]\n", re.DOTALL)


def read_settings(case):
    settings = {"user": "root", "archives": "", "without": "", "program": "", "status": "1",
                "make": "", "again": "", "arguments": "", "env": []}
    path = case / "case"
    for line in path.read_text().splitlines() if path.exists() else []:
        key, value = (part.strip() for part in line.split(":", 1))
        if key not in settings:
            sys.exit(f"{path}: unknown key {key}")
        if key == "env":
            settings["env"].append(value)
        else:
            settings[key] = value
    return settings


class Host:
    """What differs from host to host, and its names in the files of a case."""

    def __init__(self, settings, root):
        self.drops_rights = settings["user"] == "ordinary" and os.geteuid() == 0
        uid = ORDINARY_ID if self.drops_rights else os.geteuid()
        gid = ORDINARY_ID if self.drops_rights else os.getegid()
        self.root = str(root)
        self.user = pwd.getpwuid(uid).pw_name
        self.group = grp.getgrgid(gid).gr_name
        self.ids = (uid, gid)
        system = os.uname()
        self.system = system.sysname
        self.machine = os.environ.get("MORVANE_MACHINE", system.machine)
        self.host_os = system.sysname + system.release.split(".")[0]

    def to_host(self, content):
        for name, value in (("@DIR@", self.root), ("@USER@", self.user), ("@GROUP@", self.group),
                            ("@HOST_OS@", self.host_os), ("@SYSTEM@", self.system),
                            ("@MACHINE@", self.machine)):
            content = content.replace(name.encode(), value.encode())
        return content

    def to_case(self, content):
        content = content.replace(self.root.encode(), b"@DIR@")
        for lead, value, name in (("HOST_OS = ", self.host_os, "@HOST_OS@"),
                                  ("\n115 ", self.system, "@SYSTEM@"),
                                  ("\n120 ", self.machine, "@MACHINE@")):
            content = content.replace((lead + value).encode(), (lead + name).encode())
        for name, value in (("@USER@", self.user), ("@GROUP@", self.group)):
            if value != "root":
                content = re.sub(rb"\b%s\b" % re.escape(value.encode()), name.encode(), content)
        return content


def copy_tree(source, target, host):
    """Copies files, with the host's names in them, and packs directories ID.tree. A link to a file of
    another case stands for that file; any other is copied as a link."""
    for path in sorted(source.iterdir()):
        of_a_case = path.exists() and RUNS in path.resolve().parents
        if path.is_symlink() and not of_a_case:
            (target / path.name).symlink_to(os.readlink(path))
        elif path.is_dir() and path.suffix == ".tree":
            pack(path, target / (path.stem + ".tar"), host)
        elif path.is_dir():
            (target / path.name).mkdir(exist_ok=True)
            copy_tree(path, target / path.name, host)
        else:
            (target / path.name).write_bytes(host.to_host(path.read_bytes()))
            shutil.copymode(path, target / path.name)


def pack(tree, archive, host):
    with tempfile.TemporaryDirectory() as unpacked:
        copy_tree(tree, pathlib.Path(unpacked), host)
        subprocess.run(["tar", "--create", "--file", archive, "--sort=name", "--owner=0",
                        "--group=0", "--numeric-owner", "--mode=u+rwX,go+rX,go-w", "--mtime=@0",
                        *sorted(os.listdir(unpacked))], cwd=unpacked, check=True)


def lay_out(case, settings, host):
    """Makes the distribution and what lies beside it."""
    root = pathlib.Path(host.root)
    distribution = root / "dist"
    distribution.mkdir()
    copy_tree(RUNS / "common", distribution, host)
    for name in settings["without"].split():
        (distribution / name).unlink()
    for name in settings["archives"].split():
        (distribution / (name + ".tar")).write_bytes(b"")
    if (case / "distribution").exists():
        copy_tree(case / "distribution", distribution, host)
    if (case / "beside").exists():
        copy_tree(case / "beside", root, host)
    if host.drops_rights:
        for path in [root, *root.rglob("*")]:
            os.chown(path, *host.ids, follow_symlinks=False)


def snapshot(root):
    seen = {}
    for path in root.rglob("*"):
        status = path.lstat()
        content = path.read_bytes() if path.is_file() and not path.is_symlink() else None
        seen[path] = (status.st_mode, status.st_uid, status.st_gid, content)
    return seen


def start(command, host, settings, directory="dist", **streams):
    environment = {"PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
                   "LC_ALL": "C"}
    for setting in settings["env"]:
        name, value = host.to_host(setting.encode()).decode().split("=", 1)
        environment[name] = value
    if host.drops_rights:
        command = ["setpriv", f"--reuid={host.ids[0]}", f"--regid={host.ids[1]}",
                   "--clear-groups", *command]
    return subprocess.Popen(command, cwd=pathlib.Path(host.root) / directory, env=environment,
                            umask=0o022, **streams)


def run(command, host, settings, directory, typed=b"", errors=subprocess.STDOUT):
    """Returns output and status of the program, and its standard error where that is a pipe."""
    child = start(command, host, settings, directory, stdin=subprocess.PIPE,
                  stdout=subprocess.PIPE, stderr=errors)
    try:
        output, error = child.communicate(typed, timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        child.kill()
        child.communicate()
        sys.exit("the program did not end")
    for name in (f"/tmp/{child.pid}.tmp", f"/tmp/{child.pid}.tmp1"):
        if os.path.exists(name):  # what the comparison of current directories leaves
            os.unlink(name)
    return output, error, child.returncode


def waits_for_answer(child):
    """Tells whether the program has read all that was typed and reads on, as the kernel says."""
    unread = array.array("i", [0])
    fcntl.ioctl(child.stdin.fileno(), termios.FIONREAD, unread)
    if unread[0] > 0:
        return False
    try:
        call = pathlib.Path(f"/proc/{child.pid}/syscall").read_text().split()
    except OSError:
        return False
    return call[:2] in (["0", "0x0"], ["63", "0x0"])  # read on x86-64 and on arm64


def record_session(command, host, settings, directory, typed):
    """Types one answer at a time, and returns the screen with each at its place."""
    child = start(command, host, settings, directory, stdin=subprocess.PIPE,
                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    os.set_blocking(child.stdout.fileno(), False)
    screen = b""
    for answer in typed.splitlines(keepends=True):
        while child.poll() is None and not waits_for_answer(child):
            time.sleep(0.002)
        screen += child.stdout.read() or b""
        if child.poll() is not None:
            break
        screen += b"[[" + answer.removesuffix(b"\n") + b"]]\n"
        child.stdin.write(answer)
        child.stdin.flush()
    child.stdin.close()
    os.set_blocking(child.stdout.fileno(), True)
    screen += child.stdout.read()
    child.wait()
    return screen


def describe(path, root, state):
    mode, uid, gid, _ = state
    try:
        owner = pwd.getpwuid(uid).pw_name
        group = grp.getgrgid(gid).gr_name
    except KeyError:
        owner, group = str(uid), str(gid)
    return (f"{mode & 0o7777:04o} {owner} {group} {path.relative_to(root)}"
            f"{'/' if path.is_dir() else ''}\n".encode())


def changes(before, after, root):
    """Returns the listing of what is new or has changed, and the contents of its files."""
    tree, left = b"", {}
    for path in sorted(after):
        if after[path] == before.get(path):
            continue
        tree += describe(path, root, after[path])
        if after[path][3] is not None:
            left[str(path.relative_to(root))] = after[path][3]
    for path in sorted(set(before) - set(after)):
        tree += f"gone {path.relative_to(root)}\n".encode()
    return tree, left


def make_output(output):
    """Returns what the recipes printed, without what either make says in its own words: the
    directories that it enters, and the rules of a product that stands twice."""
    own_words = re.compile(rb"make(\[\d+\])?: (Entering|Leaving) directory"
                           rb"|.*warning: (overriding|ignoring old) recipe"
                           rb"|.*warning: duplicate script|.*warning: using previous script")
    return b"".join(line for line in output.splitlines(keepends=True)
                    if not own_words.match(line))


def runs(settings):
    """Returns the directory of each run, and what the names of its own files end in."""
    return [("dist", "")] + ([(settings["again"], "-again")] if settings["again"] else [])


def play(case, settings, make, play_run):
    """Plays each run, and make on its result, on a fresh distribution; returns what they left."""
    root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-run-", dir="/tmp"))
    try:
        root.chmod(0o755)
        host = Host(settings, root)
        lay_out(case, settings, host)
        before = snapshot(root)
        got = {"host": host, "making": b""}
        for directory, suffix in runs(settings):
            play_run(host, directory, suffix, host.to_host(expected_typed(case, suffix)))
            if make:
                made, _, result = run([make, "-f", "install.mk"], host, settings, directory)
                got["making"] += make_output(made) + f"status {result}\n".encode()
        got["tree"], got["left"] = changes(before, snapshot(root), root)
        return got
    finally:
        shutil.rmtree(root)


def observe(case, settings, program, make, error_stream):
    """Plays a case with all answers at hand, and returns all that came of it."""
    seen = {"status": [], "screen": b"", "errors": b""}

    def play_run(host, directory, _, typed):
        output, errors, status = run([*CHECKER, program, *settings["arguments"].split()], host,
                                     settings, directory, typed, error_stream)
        seen["status"].append(status)
        seen["screen"] += output
        seen["errors"] += errors or b""

    return play(case, settings, make, play_run) | seen


def record(case, settings, program, make):
    """Plays a case one answer at a time, and returns the session of each run."""
    sessions = {}

    def play_run(host, directory, suffix, typed):
        session = record_session([program, *settings["arguments"].split()], host, settings,
                                 directory, typed)
        sessions[suffix] = host.to_case(session)

    play(case, settings, make, play_run)
    return sessions


def read(path):
    return path.read_bytes() if path.exists() else b""


def expected_typed(case, suffix):
    if (case / f"typed{suffix}").exists():
        return read(case / f"typed{suffix}")
    return b"".join(answer + b"\n" for answer in ANSWER.findall(read(case / f"session{suffix}")))


def digest(content):
    return DIGEST + hashlib.sha256(content).hexdigest().encode()


def expected_tree(case):
    """Returns the listing of the tree, and by path what stands behind "=" in it."""
    tree, behind = b"", {}
    for line in read(case / "tree").splitlines():
        entry, sign, same = line.partition(b" = ")
        tree += entry + b"\n"
        if sign:
            behind[entry.split(b" ", 3)[-1].decode()] = same
    return tree, behind


def expectations(case, settings):
    tree, behind = expected_tree(case)
    left = {}
    for name, same in behind.items():
        is_digest = same.startswith(DIGEST)
        if is_digest and settings["user"] != "root":
            sys.exit(f"{case}: {name}: a digest needs a user who is the same on every host")
        left[name] = same if is_digest else (case / same.decode()).read_bytes()
    for path in (case / "left").rglob("*"):
        name = str(path.relative_to(case / "left"))
        if name in left:
            sys.exit(f"{case}: {name}: its content stands in the tree, too")
        if path.is_file():
            left[name] = path.read_bytes()
    screens = [ANSWER.sub(b"", read(case / f"session{suffix}")) for _, suffix in runs(settings)]
    return {"status": [int(settings["status"])] * len(screens), "screen": b"".join(screens),
            "errors": read(case / "errors"), "making": read(case / "making"),
            "tree": tree, "left": left}


def show_difference(name, wanted, got):
    print(f"--- {name}: expected and got")
    if not isinstance(wanted, bytes):
        print(wanted, got, sep="\n")
        return
    with tempfile.TemporaryDirectory() as scratch:
        paths = [pathlib.Path(scratch) / side for side in ("expected", "got")]
        paths[0].write_bytes(wanted)
        paths[1].write_bytes(got)
        sys.stdout.flush()
        subprocess.run(["diff", "-a", "-u", *paths], check=False)


def compare_left(wanted, got, host):
    """Returns path, expected and real content of each file that is wanted or came."""
    for path in sorted(set(wanted) | set(got)):
        content, came = wanted.get(path, b""), got.get(path, b"")
        if content == digest(host.to_case(came)):
            content = came
        yield path, host.to_host(content), came


def compare(wanted, got, names):
    """Compares what a case wants, in this host's names, with what came."""
    to_host = got["host"].to_host
    pairs = []
    for name in names:
        if name == "left":
            pairs += compare_left(wanted[name], got[name], got["host"])
        elif name == "status":
            pairs.append((name, wanted[name], got[name]))
        else:
            pairs.append((name, to_host(wanted[name]), got[name]))
    differing = [pair for pair in pairs if pair[1] != pair[2]]
    for pair in differing:
        show_difference(*pair)
    return not differing


def file_with(case, name, content):
    """Returns a file of the case, or a common one, that has this name and content; None without."""
    for place in ("distribution", "beside", "../common", "left"):
        for directory, _, files in sorted(os.walk(case / place, followlinks=True)):
            path = pathlib.Path(directory) / name
            if name in files and path.is_file() and path.read_bytes() == content:
                return os.path.relpath(path, case).encode()
    return None


def accept_left(case, listing, contents):
    """Writes the contents that stand nowhere else in the case, and returns the listing with where the
    others stand. What was a digest stays one."""
    behind_before = expected_tree(case)[1]
    shutil.rmtree(case / "left", ignore_errors=True)
    tree = b""
    for entry in listing.splitlines():
        name = entry.split(b" ", 3)[-1].decode()
        content = contents.get(name, b"")
        behind = content and file_with(case, pathlib.Path(name).name, content)
        if behind_before.get(name, b"").startswith(DIGEST):
            behind = digest(content)
        tree += entry + (b" = " + behind if behind else b"") + b"\n"
        if content and not behind:
            path = case / "left" / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
    return tree


def accept(case, settings, program, make):
    for suffix, session in record(case, settings, program, make).items():
        typed = expected_typed(case, suffix)
        (case / f"session{suffix}").write_bytes(session)
        (case / f"typed{suffix}").unlink(missing_ok=True)
        if expected_typed(case, suffix) != typed:  # the session cannot show it
            (case / f"session{suffix}").write_bytes(ANSWER.sub(b"", session))
            (case / f"typed{suffix}").write_bytes(typed)
    got = observe(case, settings, program, make, subprocess.STDOUT)
    to_case = got["host"].to_case
    split = observe(case, settings, program, make, subprocess.PIPE)
    left = {name: to_case(content) for name, content in got["left"].items()}
    tree = accept_left(case, to_case(got["tree"]), left)
    for name, content in (("errors", split["host"].to_case(split["errors"])),
                          ("making", to_case(got["making"])), ("tree", tree)):
        if content:
            (case / name).write_bytes(content)
        else:
            (case / name).unlink(missing_ok=True)
    print(f"{case.name}: review the difference")
    if set(got["status"]) != {int(settings["status"])}:
        print(f"status {got['status']}: write it into {case / 'case'}")


def check(case, settings, program, makes):
    """Plays a case and returns whether everything that came of it is as it should be."""
    wanted = expectations(case, settings)
    same = True
    if settings["program"] != "real":
        split = observe(case, settings, program, makes[0], subprocess.PIPE)
        same = compare(wanted, split, ["status", "errors"])
    for make in makes:
        got = observe(case, settings, program, make, subprocess.STDOUT)
        same = compare(wanted, got, ["status", "screen", "tree", "left", "making"]) and same
    return same


def main():
    arguments = sys.argv[1:]
    accepting = arguments[:1] == ["--accept"]
    if len(arguments) != 2 + accepting:
        sys.exit(__doc__)
    build, case = (pathlib.Path(name).resolve() for name in arguments[accepting:])
    if not (case / "typed").exists() and not (case / "session").exists():
        sys.exit(f"{case}: what is typed is missing")
    settings = read_settings(case)
    signal.signal(signal.SIGPIPE, signal.SIG_IGN)
    if settings["user"] == "root" and os.geteuid() != 0:
        print(f"skipped: {case.name} needs the superuser")
        sys.exit(SKIPPED)
    program = build / ("morvane" if settings["program"] == "real"
                       else "tests/morvane_without_pauses")
    makes = ("make", "bmake") if settings["make"] else ("",)
    if accepting:
        accept(case, settings, program, makes[0])
        return
    with tempfile.TemporaryDirectory(prefix="morvane-run-", dir="/tmp") as readable:
        if CHECKER:
            os.chmod(readable, 0o755)
            program = shutil.copy(program, readable)
        same = check(case, settings, program, makes)
    sys.exit(0 if same else 1)


if __name__ == "__main__":
    main()
