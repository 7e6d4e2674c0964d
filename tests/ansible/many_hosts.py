#!/usr/bin/env python3
"""Installs on several hosts at a time, through the role of the collection.

    many_hosts.py BUILD_DIRECTORY [COUNT]

By default on five hosts, in a handful of plays in which one host refuses, one fails, and one goes away; in
the end all is taken away again.
With COUNT, the plays for as many hosts are measured.
"""

import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import hosts as many
import needs

BUILD = pathlib.Path(sys.argv[1]).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[2]
COUNT = int(sys.argv[2]) if len(sys.argv) > 2 else 5
FORKS = 25
COMMANDS = ("morvane-answers", "morvane-install", "morvane-remove", "morvane-verify")

DESCRIPTIONS = {
    "base": """\
Name = Base
Version = 1.3
Category = STORE
Type = plain
Target = program
""",
    "app": """\
Name = App
Version = 1.0
Target = program
NeedsCategory = STORE
NeedsText = "a store of data"
NeedsType = plain
NeedsVersion = 1.0
Target = pages
Ask = "Install the pages?"
""",
}
# Each part is counted on its host; what is in the way there is run, too.
MAKEFILE = """\
program pages:
\techo {0} $@ >>/opt/made
\ttest ! -e /opt/in-the-way-of-{0} || sh /opt/in-the-way-of-{0}
"""
PRODUCTS = [
    {"id": "base", "directory": "/opt/base", "create_directory": True, "owner": "root", "group": "root",
     "access": True},
    {"id": "app", "directory": "/opt/app", "create_directory": True, "owner": "root", "group": "root",
     "access": True, "parts": {"pages": "{{ pages | default(false) }}"},
     "needs": [{"part": "program", "category": "STORE", "supplier": "base"}]},
]
PLAYBOOK = [{"name": "Install", "hosts": "all", "gather_facts": False,
             "roles": ["morvane.distribution.install"],
             "vars": {"install_distribution": "/srv/distribution", "install_products": PRODUCTS}}]


def taking_away(*identifiers):
    """Returns a playbook that takes products away."""
    return [{**PLAYBOOK[0], "vars": {"install_state": "absent",
                                     "install_products": [{"id": identifier} for identifier in identifiers]}}]


def make_distribution(root):
    for identifier, description in DESCRIPTIONS.items():
        (root / identifier / "install").mkdir(parents=True)
        (root / identifier / "install/Makefile").write_text(MAKEFILE.format(identifier))
        (root / f"{identifier}.descr").write_text(description)
    subprocess.run([PROJECT / "scripts/make-distribution", "--build", BUILD, root / "srv/distribution",
                    *(root / identifier for identifier in DESCRIPTIONS)], check=True)


def set_up(root, count):
    """Returns the hosts host1, host2, ... with all that they need."""
    hosts = many.Hosts(root, [f"host{number}" for number in range(1, count + 1)], forks=FORKS)
    make_distribution(root)
    for command in COMMANDS:
        shutil.copy(BUILD / command, root / "bin")
    hosts.install_collection(PROJECT)
    return hosts


def outcomes(result):
    return {product["id"]: product["outcome"] for product in result.get("products", [])}


class ManyHosts(unittest.TestCase):
    """Plays that build on each other."""

    def made(self, host):
        """Returns what was made on a host since the last call."""
        path = self.hosts.disk(host) / "opt/made"
        lines = path.read_text().splitlines() if path.exists() else []
        path.unlink(missing_ok=True)
        return lines

    def expect(self, results, host, changed, made, **outcome):
        self.assertEqual((results[host]["changed"], outcomes(results[host]), self.made(host)),
                         (changed, outcome, made), (host, results[host]))

    def test_five_hosts(self):
        with tempfile.TemporaryDirectory(prefix="morvane-hosts-", dir="/tmp") as scratch:
            self.root = pathlib.Path(scratch)
            self.root.chmod(0o755)
            with set_up(self.root, 5) as self.hosts:
                self.one_refuses()
                self.two_do_not_come_to_an_end()
                self.all_go_on()
                self.nothing_is_left_to_do()
                self.one_still_needs_it()
                self.all_is_taken_away()

    def one_refuses(self):
        """A file is in the way of a directory on host2: no host is touched."""
        (self.hosts.disk("host2") / "opt/base").write_text("")
        status, results, printed = self.hosts.play(PLAYBOOK)
        self.assertEqual(status, 2, printed)
        self.assertEqual(results["host2"]["msg"], "The installation is blocked, and nothing was touched: "
                         "[base] its directory '/opt/base' is no directory")
        for host in self.hosts.names:
            found = [path.name for path in (self.hosts.disk(host) / "opt").iterdir()]
            self.assertEqual(found, ["base"] if host == "host2" else [], host)
        (self.hosts.disk("host2") / "opt/base").unlink()

    def two_do_not_come_to_an_end(self):
        """On host3 make fails, and host4 goes away while it works; the others are not kept from it."""
        (self.hosts.disk("host3") / "opt/in-the-way-of-app").write_text("echo no room >&2; exit 1\n")
        (self.hosts.disk("host4") / "opt/in-the-way-of-app").write_text("touch /opt/reached; sleep 600\n")
        status, results, printed = self.hosts.play(PLAYBOOK, during=self.host4_goes_away)
        self.assertEqual(status & ~6, 0, printed)
        self.assertIn("Failed to connect to the host", results["host4"]["msg"])
        self.assertEqual(self.made("host4"), ["base program", "app program"])
        self.expect(results, "host3", True, ["base program", "app program"], base="installed", app="failed")
        self.assertIn("app could not be installed, ", results["host3"]["msg"])
        self.assertIn("no room", results["host3"]["output"])
        for host in ("host1", "host2", "host5"):
            self.expect(results, host, True, ["base program", "app program"], base="installed", app="installed")

    def host4_goes_away(self):
        reached = self.hosts.disk("host4") / "opt/reached"
        deadline = time.monotonic() + many.DEADLINE
        while not reached.exists() and time.monotonic() < deadline:
            time.sleep(0.05)
        self.hosts.stop("host4")

    def all_go_on(self):
        """What was in the way is gone, and host5 gets another answer; host1 and host2 have it all."""
        self.hosts.start("host4")
        for host in ("host3", "host4"):
            (self.hosts.disk(host) / "opt/in-the-way-of-app").unlink()
        variables = self.root / "host_vars"
        variables.mkdir()
        (variables / "host5").write_text("pages: true\n")
        status, results, printed = self.hosts.play(PLAYBOOK)
        self.assertEqual(status, 0, printed)
        for host in ("host3", "host4"):
            self.expect(results, host, True, ["app program"], base="unchanged", app="installed")
        for host in ("host1", "host2"):
            self.expect(results, host, False, [], base="unchanged", app="unchanged")
        self.expect(results, "host5", True, ["app program", "app pages"], base="unchanged", app="installed")

    def nothing_is_left_to_do(self):
        """In check mode, all hosts have what they should, but for one whose settings were edited."""
        settings = self.hosts.disk("host1") / "opt/app/install/app.dat"
        settings.write_text(settings.read_text().replace("STORE_PATH = /opt/base", "STORE_PATH = /opt/bose"))
        status, results, printed = self.hosts.play(PLAYBOOK, "--check", "--diff")
        self.assertEqual(status, 0, printed)
        self.expect(results, "host1", True, [], base="unchanged", app="to be installed")
        self.assertIn("--- before: app in /opt/app\n", printed)
        self.assertIn('-    "STORE_PATH = /opt/bose"', printed)
        self.assertIn('+    "STORE_PATH = /opt/base"', printed)
        self.assertIn("bose", settings.read_text())
        for host in self.hosts.names[1:]:
            self.expect(results, host, False, [], base="unchanged", app="unchanged")


    def one_still_needs_it(self):
        """On host2 there still is an app that needs its base: no host loses its own."""
        status, results, printed = self.hosts.play(taking_away("app"), "--limit", "all:!host2")
        self.assertEqual(status, 0, printed)
        for host in ("host1", "host3", "host4", "host5"):
            self.expect(results, host, True, [], app="removed")
        kept, = results["host1"]["products"][0]["kept"]
        self.assertEqual(kept["path"], "/opt/app/install/app.dat")  # which was edited
        before = {host: self.receipts(host) for host in self.hosts.names}
        self.assertEqual([len(receipts) for receipts in before.values()], [1, 2, 1, 1, 1])
        status, results, printed = self.hosts.play(taking_away("base"))
        self.assertEqual(status, 2, printed)
        self.assertEqual(results["host2"]["msg"], "The removal was refused: 'app' in /opt/app needs 'base' in "
                         "/opt/base; nothing was removed")
        self.assertEqual({host: self.receipts(host) for host in self.hosts.names}, before)

    def receipts(self, host):
        """Returns the receipts in the registry of a host."""
        return {path.name: path.read_text() for path in (self.hosts.disk(host) / "lib/morvane").iterdir()}

    def all_is_taken_away(self):
        for changed, outcome in ((True, "removed"), (False, "unchanged")):
            status, results, printed = self.hosts.play(taking_away("app", "base"))
            self.assertEqual(status, 0, printed)
            self.expect(results, "host2", changed, [], app=outcome, base=outcome)
            for host in ("host1", "host3", "host4", "host5"):
                self.expect(results, host, changed, [], app="unchanged", base=outcome)
        for host in self.hosts.names:
            self.assertEqual(self.receipts(host), {})
            self.assertEqual(list((self.hosts.disk(host) / "opt/base").iterdir()), [])


def cpu_seconds(hosts):
    """Returns what Ansible and the hosts have used."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime, hosts.cpu_seconds()


def measure(count):
    """Installs on many hosts, and a second time, and prints what that took. Returns what is wrong."""
    with tempfile.TemporaryDirectory(prefix="morvane-hosts-", dir="/tmp") as scratch:
        root = pathlib.Path(scratch)
        root.chmod(0o755)
        begin = time.monotonic()
        with set_up(root, count) as hosts:
            print(f"{count} hosts started in {time.monotonic() - begin:.1f} s")
            for what, options, changed, outcome in (
                    ("check", ["--check"], True, "to be installed"),
                    ("installation", [], True, "installed"),
                    ("second installation", [], False, "unchanged")):
                begin, (here, there) = time.monotonic(), cpu_seconds(hosts)
                status, results, printed = hosts.play(PLAYBOOK, *options)
                here, there = (after - before for after, before in zip(cpu_seconds(hosts), (here, there)))
                print(f"{what}: {time.monotonic() - begin:.1f} s; CPU: {here:.1f} s for Ansible, {there:.1f} s "
                      "on the hosts", flush=True)
                if status != 0:
                    return printed
                for host in hosts.names:
                    if (results[host]["changed"], set(outcomes(results[host]).values())) != (changed, {outcome}):
                        return f"{host}: {results[host]}"
    return None


def main():
    why = many.missing()
    if why is not None:
        print(f"skipped: {why}")
        sys.exit(needs.SKIPPED)
    if len(sys.argv) > 2:
        sys.exit(measure(COUNT))
    unittest.main(argv=sys.argv[:1])


if __name__ == "__main__":
    main()
