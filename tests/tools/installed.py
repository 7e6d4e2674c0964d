"""Made-up distributions that are installed below a directory of their own, for the tests of the
commands that deal with what is installed."""

import concurrent.futures
import grp
import io
import json
import os
import pathlib
import pwd
import shutil
import stat
import subprocess
import sys
import tarfile
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv[1]).resolve()
USER = pwd.getpwuid(os.geteuid()).pw_name
GROUP = grp.getgrgid(os.getegid()).gr_name
SUPERUSER = os.geteuid() == 0
OWNERS = [("nobody", "nogroup"), ("bin", "bin"), (USER, GROUP)] if SUPERUSER else [(USER, GROUP)]
TIMEOUT = 120
ENVIRONMENT = {"PATH": f"{BUILD}:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C"}


class Member:
    """What an archive holds under a name."""

    def __init__(self, content=None, mode=0o644, link=None, hard_link=None):
        self.content, self.mode, self.link, self.hard_link = content, mode, link, hard_link

    def header(self, name):
        header = tarfile.TarInfo(name)
        header.mode = self.mode
        header.mtime = 1_700_000_000
        if self.link is not None:
            header.type, header.linkname = tarfile.SYMTYPE, self.link
        elif self.hard_link is not None:
            header.type, header.linkname = tarfile.LNKTYPE, self.hard_link
        elif self.content is None:
            header.type = tarfile.DIRTYPE
        else:
            header.size = len(self.content)
        return header


class Product:
    """A product of a distribution: its description, its archive, and the answers for it."""

    def __init__(self, identifier, directory, members, entries="", owner=None, access=True,
                 parts=None):
        self.identifier, self.directory, self.members = identifier, directory, members
        self.entries, self.access, self.parts = entries, access, parts or {}
        self.owner = owner or OWNERS[-1]
        self.asks_directory = True  # its patch, which comes first, tells it
        self.more_answers = ""
        if self.parts:
            rules = "".join(f"{part}:\n\t{commands}\n" for part, commands in self.parts.items())
            self.members.setdefault("install", Member(mode=0o755))
            self.members["install/Makefile"] = Member(
                f".PHONY: {' '.join(self.parts)}\n{rules}".encode())

    def pack(self, distribution):
        with tarfile.open(distribution / f"{self.identifier}.tar", "w") as archive:
            for name, member in self.members.items():
                archive.addfile(member.header(name), io.BytesIO(member.content or b""))
        (distribution / f"{self.identifier}.descr").write_text(
            (f"Name = {self.identifier}\n" if "Name =" not in self.entries else "") + self.entries +
            ("Version = 1.0\n" if "Version =" not in self.entries else "") +
            "".join(f"Target = {part}\n" for part in self.parts if "Target" not in self.entries))

    def answers(self):
        directory = f"directory = {self.directory}\ncreate-directory = yes\n"
        return (f"[{self.identifier}]\n{directory if self.asks_directory else ''}"
                f"owner = {self.owner[0]}\ngroup = {self.owner[1]}\n"
                f"access = {'yes' if self.access else 'no'}\n{self.more_answers}")


class Host:
    """A directory with a distribution, installed products and a registry, which goes in the end."""

    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="morvane-installed-", dir="/tmp"))
        self.root.chmod(0o755)
        self.distribution, self.opt = self.root / "dist", self.root / "opt"
        self.registry = self.root / "registry"
        self.distribution.mkdir()
        self.opt.mkdir()
        system = os.uname()
        messages = (PROJECT / "tests/runs/common/morvane.rsc").read_text()
        (self.distribution / "morvane.rsc").write_text(
            messages.replace("@SYSTEM@", system.sysname).replace("@MACHINE@", system.machine))
        shutil.copy(PROJECT / "resources/Makefile", self.distribution)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        subprocess.run(["chmod", "-R", "u+rwX", self.root], check=False)
        shutil.rmtree(self.root)

    def run(self, command, *arguments, check=None, **more):
        """Runs a command of the build directory; ends the test where its status is not `check`."""
        done = subprocess.run([BUILD / command, *arguments], text=True, capture_output=True,
                              timeout=TIMEOUT, check=False, cwd=self.root, env=ENVIRONMENT,
                              **{"stdin": subprocess.DEVNULL, **more})
        if check is not None and done.returncode != check:
            raise AssertionError(f"{command} {arguments}: status {done.returncode}\n{done.stdout}"
                                 f"{done.stderr}")
        return done

    def verify(self, *arguments, **more):
        return self.run("morvane-verify", "--registry", self.registry, *arguments, **more)

    def remove(self, *arguments, **more):
        return self.run("morvane-remove", "--registry", self.registry, *arguments, **more)

    def configure(self, products):
        """Configures the products, in this order, as an operator would."""
        for product in products:
            product.pack(self.distribution)
        answers = self.root / "answers"
        answers.write_text("morvane answers 1\nproducts = "
                           + " ".join(product.identifier for product in products) + "\n"
                           + "".join(product.answers() for product in products))
        self.run("tests/morvane_answers_without_pauses", "-C", self.distribution, "play", answers,
                 check=0)

    def make(self):
        done = subprocess.run(["make", "-f", "install.mk"], cwd=self.distribution, check=False,
                              text=True, capture_output=True, env=ENVIRONMENT, timeout=TIMEOUT)
        if done.returncode != 0:
            raise AssertionError(f"make: {done.stdout}{done.stderr}")

    def make_and_save_receipts(self):
        """Installs what is configured by make alone, and makes receipts afterwards."""
        self.make()
        self.verify("-C", self.distribution, "--save", check=0)

    def install_with_receipts(self):
        """Installs what is configured with the command that leaves receipts."""
        self.run("morvane-install", "--registry", self.registry, "-C", self.distribution, check=0)

    def install(self, products):
        """Configures, installs by make alone, and makes receipts afterwards."""
        self.configure(products)
        self.make_and_save_receipts()

    def differing(self, *arguments):
        """Returns what verify says: the state of each path that differs, by its absolute path."""
        done = self.verify("--format=json", *arguments)
        if done.returncode not in (0, 1) or done.stderr:
            raise AssertionError(f"verify: status {done.returncode}: {done.stderr}")
        return {each["path"]: each["state"] for product in json.loads(done.stdout)["products"]
                for each in product["differing"]}

    def entries(self):
        """Returns the lines of all receipts in the registry, by absolute paths without blanks; of
        several for a path, that of a product that made it."""
        found = {}
        for file in sorted(self.registry.iterdir()):
            text = file.read_text()
            directory = text.split("\ndirectory = ")[1].split("\n")[0]
            for line in text[text.index("\nentries = "):].splitlines()[2:]:
                path = line.split(" ")[6].replace("%20", " ")
                path = os.path.normpath(f"{directory}/{path}")
                if path not in found or found[path][4] != "new":
                    found[path] = line.split(" ")
        return found


def state(path):
    """Returns what lies at a path, as far as a removal is to leave or bring it back."""
    found = os.lstat(path)
    kind = stat.S_IFMT(found.st_mode)
    content = None
    if stat.S_ISREG(found.st_mode):
        content = pathlib.Path(path).read_bytes()
    elif stat.S_ISLNK(found.st_mode):
        content = os.readlink(path)
    return kind, stat.S_IMODE(found.st_mode), found.st_uid, found.st_gid, content


def snapshot(directory):
    """Returns the state of all that lies in a directory, by its absolute path."""
    paths = [os.path.join(above, name) for above, directories, files in os.walk(directory)
             for name in directories + files]
    return {path: state(path) for path in paths}


def end_after(sweeps, at_a_time):
    """Plays sweeps, which yield None for each run and a text for what is wrong, so many at a time; says
    what came of them, and ends the program."""
    failures = runs = 0
    with concurrent.futures.ThreadPoolExecutor(at_a_time) as pool:
        for found in pool.map(lambda sweep: list(sweep()), sweeps):
            runs += found.count(None)
            for problem in filter(None, found):
                failures += 1
                print("FAILED", problem)
    print(f"{runs} runs, {failures} failures")
    sys.exit(1 if failures else 0)
