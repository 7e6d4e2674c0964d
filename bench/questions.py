"""As many questions as a run asks, put by debconf's front ends for 50 packages, a process each.

Their databases are made for it; those of the system are left alone. They know the questions before
the clock starts: only the asking is measured."""

import os
import sys
from pathlib import Path

import distribution
from measure import run

CDEBCONF = Path("/usr/lib/cdebconf")
SETTINGS = """Config: config
Templates: templates

Name: config
Driver: File
Filename: {root}/config.dat

Name: templates
Driver: File
Filename: {root}/templates.dat
"""
CDEBCONF_SETTINGS = """global {{
  module_path {{ frontend "{programs}/frontend"; database "{programs}/db"; }};
  default {{ frontend "screen"; template "templates"; config "config"; }};
}};
frontend {{ instance "screen" {{ driver "text"; }}; }};
template {{ instance "templates" {{ driver "rfc822db"; path "{root}/templates.dat"; }}; }};
config {{ instance "config" {{ driver "rfc822db"; path "{root}/config.dat"; }}; }};
"""


def write_package(root, name, count):
    """Writes the templates, the script and the answers of a package with `count` questions."""
    asked = [f"{name}/setting{number}" for number in range(count)]
    (root / f"{name}.templates").write_text("\n".join(
        f"Template: {question}\nType: string\nDefault: /opt/{name}\n"
        f"Description: Setting of {name}:\n Enter takes the default.\n" for question in asked))
    script = root / f"{name}.config"
    script.write_text("#!/bin/sh\nset -e\n. /usr/share/debconf/confmodule\n" + "".join(
        f"db_input critical {question} || true\ndb_go\ndb_get {question}\n" for question in asked))
    script.chmod(0o755)
    (root / f"{name}.answers").write_text("\n" * count)


def front_end(root, count, before, load, ask):
    """Returns a function that puts all questions, `count` of them, and returns the Cost.

    `load` and `ask` are shell commands that make the questions of $package known and ask them;
    `before` comes before all of them."""
    root.mkdir(parents=True)
    (root / "debconf.conf").write_text(SETTINGS.format(root=root))
    (root / "cdebconf.conf").write_text(CDEBCONF_SETTINGS.format(root=root, programs=CDEBCONF))
    packages = [distribution.name_of(number) for number in range(distribution.COUNT)]
    for number, name in enumerate(packages):
        more = number < count % distribution.COUNT
        write_package(root, name, count // distribution.COUNT + more)

    def for_all(command):
        loop = f"{before}; for package in {' '.join(packages)}; do {command}; done"
        return run(["unshare", "--mount", "sh", "-e", "-c", loop], root, environment={
            "PATH": os.environ["PATH"], "LC_ALL": "C",
            "DEBCONF_SYSTEMRC": str(root / "debconf.conf")})

    for_all(load)
    databases = {path: path.read_bytes() for path in root.glob("*.dat")}

    def ask_all():
        for path, content in databases.items():
            path.write_bytes(content)
        cost = for_all(ask)
        answered = (root / "config.dat").read_bytes().count(b"\nValue: /opt/")
        if answered != count:
            sys.exit(f"{root.name} got {answered} answers, not {count}")
        return cost

    return ask_all


def front_ends(root, count):
    """Returns the front ends that are installed, by name."""
    found = {"debconf, noninteractive": front_end(
        root / "debconf", count,
        before="export DEBIAN_FRONTEND=noninteractive",
        load='echo "X_LOADTEMPLATEFILE $PWD/$package.templates $package" | '
             'debconf-communicate "$package"',
        ask='debconf --owner="$package" "./$package.config"')}
    if CDEBCONF.exists():
        found["cdebconf, text"] = front_end(
            root / "cdebconf", count,
            # It reads no other settings than these; only its own processes see them there.
            before="mount --bind cdebconf.conf /etc/cdebconf.conf",
            load=f'{CDEBCONF}/debconf-loadtemplate "$package" "$package.templates"',
            ask=f'{CDEBCONF}/debconf -ftext -o"$package" "./$package.config" <"$package.answers"')
    return found
