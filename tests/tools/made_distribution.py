"""A distribution that a test makes and configures, and what lies in the directories of its products.

Everything lies below one directory: the distribution in `dist`, each product in `opt/ID` unless it is
said otherwise, receipts of the host in `registry`.
"""

import grp
import io
import os
import pathlib
import pwd
import shutil
import stat
import subprocess
import tarfile

USER = pwd.getpwuid(os.geteuid()).pw_name
GROUP = grp.getgrgid(os.getegid()).gr_name
PATH = "/usr/sbin:/usr/bin:/sbin:/bin"


class Distribution:
    def __init__(self, build, root):
        self.build = pathlib.Path(build)
        self.root = pathlib.Path(root)
        self.dist = self.root / "dist"
        self.registry = self.root / "registry"
        self.answers = []
        self.identifiers = []
        self.dist.mkdir(parents=True)
        shutil.copy(self.build / "morvane.rsc", self.dist)
        for name in ("Makefile", "morvane.SunOS4", "morvane.SunOS5"):
            (self.dist / name).write_text(f"{name}\n")

    def add(self, identifier, members=None, makefile=None, parts=(), text="", *, described=True,
            directory=None, owner=USER, group=GROUP, access="yes", answers=()):
        """Adds a product. `members` are names with contents; a name that ends in a slash is a
        directory, a content that is a tuple holds a mode and a content, "-> TARGET" is a link."""
        directory = pathlib.Path(directory or self.root / "opt" / identifier)
        directory.mkdir(parents=True, exist_ok=True)
        members = dict(members or {"data": f"{identifier}\n"})
        if makefile is not None:
            members["install/Makefile"] = makefile
        self.pack(identifier, members)
        if described:
            targets = "".join(f"Target = {part}\n" for part in parts)
            (self.dist / f"{identifier}.descr").write_text(
                f"Name = {identifier}\nVersion = 1.0\n{targets}{text}")
        self.identifiers.append(identifier)
        lines = [f"[{identifier}]", f"directory = {directory}", f"owner = {owner}",
                 f"group = {group}", f"access = {access}"]
        self.answers += [*lines, *answers, ""]
        return directory

    def pack(self, identifier, members):
        with tarfile.open(self.dist / f"{identifier}.tar", "w", format=tarfile.GNU_FORMAT) as tar:
            for name, content in members.items():
                mode, content = content if isinstance(content, tuple) else (None, content)
                entry = tarfile.TarInfo(name.rstrip("/"))
                entry.uid, entry.gid, entry.mtime = os.geteuid(), os.getegid(), 1_000_000_000
                if name.endswith("/"):
                    entry.type, entry.mode = tarfile.DIRTYPE, mode or 0o755
                elif content.startswith("-> "):
                    entry.type, entry.linkname = tarfile.SYMTYPE, content[3:]
                else:
                    entry.mode, entry.size = mode or 0o644, len(content.encode())
                tar.addfile(entry, io.BytesIO(content.encode()))

    def configure(self):
        """Has the configurator write what the answers say."""
        file = self.root / "answers"
        file.write_text("\n".join(["morvane answers 1", f"products = {' '.join(self.identifiers)}",
                                   "", *self.answers]))
        done = self.run("tests/morvane_answers_without_pauses", "play", file)
        if done.returncode != 0:
            raise AssertionError(f"not configured: {done.stdout}{done.stderr}")

    def run(self, program, *arguments, env=None, **options):
        environment = {"PATH": PATH, "LC_ALL": "C", **(env or {})}
        options = {"stdin": subprocess.DEVNULL, "capture_output": True, "text": True,
                   "timeout": 120, "umask": 0o022, **options}
        return subprocess.run([self.build / program, "-C", self.dist, *arguments], check=False,
                              env=environment, **options)

    def install(self, *arguments, **options):
        return self.run("morvane-install", f"--registry={self.registry}", *arguments, **options)

    def make(self):
        return subprocess.run(["make", "-f", "install.mk"], cwd=self.dist, check=False, text=True,
                              capture_output=True, umask=0o022, env={"PATH": PATH, "LC_ALL": "C"})

    def install_mk(self):
        return self.dist / "install.mk"

    def clear(self):
        """Empties the directories of the products."""
        directories = {pathlib.Path(line.split(" = ", 1)[1]) for line in self.answers
                       if line.startswith("directory = ")}
        for directory in directories:
            shutil.rmtree(directory, ignore_errors=True)  # with one that lies in it
        for directory in directories:
            directory.mkdir(parents=True, exist_ok=True)


def is_for_receipts(path, status):
    if not stat.S_ISDIR(status.st_mode):
        return path.suffix == ".receipt"
    return {below.suffix for below in path.iterdir()} == {".receipt"}


def tree(*tops, receipts=False):
    """Returns what lies below directories: paths with kind, mode, owner, group, and content or
    target. Receipts, which hold times, are left out unless they are wanted, and so are directories
    that hold nothing else."""
    seen = {}
    for top in tops:
        for path in sorted(pathlib.Path(top).rglob("*")):
            status = path.lstat()
            if not receipts and is_for_receipts(path, status):
                continue
            content = None
            if stat.S_ISLNK(status.st_mode):
                content = os.readlink(path)
            elif stat.S_ISREG(status.st_mode):
                content = path.read_bytes()
            seen[str(path)] = (oct(status.st_mode), status.st_uid, status.st_gid, content)
    return seen
