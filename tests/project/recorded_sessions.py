#!/usr/bin/env python3
"""Plays the sessions that docs/sessions shows, and compares the screens.

    recorded_sessions.py [--accept] BUILD_DIRECTORY

The sample distribution is configured and installed in three sessions that build on each other, with
the answers of scripts/sessions. In further ones, commands beside the program are run in a
distribution of their own. --accept writes text and picture of each session instead.
"""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
from xml.sax.saxutils import escape

PROJECT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/runs"))
import run_case  # noqa: E402

SHOWN = PROJECT / "docs/sessions"
SESSIONS = (("first-installation", "first", ""),
            ("needed-product-elsewhere", "elsewhere", ""),
            ("reconfiguration", "again", "opt/kelstone"))

PROGRAMS = {"morvane-answers": "tests/morvane_answers_without_pauses",
            "morvane-install": "morvane-install", "morvane-verify": "morvane-verify",
            "morvane-remove": "morvane-remove"}

# What is typed at the shell's prompt.
COMMANDS = {
    "same-answers": (
        "morvane-answers template --products 'kelstone marlpost' my.answers",
        "tail -n 20 my.answers",
        "morvane-answers check my.answers",
        "sed -i 's/^part.digest =.*/part.digest = no/; /^supplier.digest/d' my.answers",
        "morvane-answers check --plan my.answers",
        "morvane-answers play my.answers && make -f install.mk",
    ),
    # The receipts lie beside what they are of, so that nobody's host is touched.
    "look-check-take-away": (
        "morvane-answers template --products 'kelstone marlpost' my.answers",
        "sed -i 's/^part.digest =.*/part.digest = no/; /^supplier.digest/d' my.answers",
        "morvane-answers play my.answers",
        "mkdir -p opt/kelstone/src && echo '/* older */' > opt/kelstone/src/kelstone.c",
        "morvane-install --plan --registry=receipts",
        "morvane-install --registry=receipts --keep-replaced=replaced | tail -n 2",
        "morvane-verify --registry=receipts",
        "echo '/* mine */' >> opt/kelstone/src/kelstone.c; chmod o+w opt/marlpost/bin/marlpost",
        "morvane-verify --registry=receipts",
        "morvane-remove --yes --registry=receipts kelstone",
        "chmod o-w opt/marlpost/bin/marlpost",
        "morvane-remove --yes --registry=receipts --keep-in=kept marlpost kelstone",
        "find opt replaced kept -type f | sort",
    ),
}

# The distribution lies in a directory of its own, shown under a name of the same length: the lines
# break at the same places.
DIRECTORY_PREFIX = "/tmp/morvane-"
SHOWN_DIRECTORY = b"/srv/products/sample2"

# Hosts differ in it.
FREE_SPACE = re.compile(rb"needs (.*), .* free")

LINE_HEIGHT = 17
COLUMN_WIDTH = 8.4
COLUMNS = 80
MARGIN = 12


@contextlib.contextmanager
def sample_distribution(build):
    """Makes the sample distribution in a new directory, for as long as it is worked in."""
    distribution = pathlib.Path(tempfile.mkdtemp(prefix=DIRECTORY_PREFIX))
    try:
        distribution.rmdir()
        subprocess.run([PROJECT / "scripts/distribution", build, distribution], check=True)
        yield distribution
    finally:
        shutil.rmtree(distribution, ignore_errors=True)


def play(build, distribution, answers, directory):
    """Returns the screen of a session: the answers stand in double brackets at their places."""
    where = distribution / directory
    settings = {"user": "", "env": []}
    host = run_case.Host(settings, distribution)
    typed = subprocess.run([PROJECT / "scripts/answers", answers, distribution], check=True,
                           capture_output=True).stdout
    screen = run_case.record_session([build / "tests/morvane_without_pauses"], host, settings, where,
                                     typed)
    made = subprocess.run(["make", "-f", "install.mk"], cwd=where, check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          env={"PATH": os.environ["PATH"], "LC_ALL": "C"}).stdout
    screen = b"$ [[make]]\n" + screen + run_case.make_output(made)
    return screen.replace(str(distribution).encode(), SHOWN_DIRECTORY).decode()


def run_commands(build, distribution, commands):
    """Returns the screen of commands that are typed in a distribution."""
    tools = distribution.with_name(f"{distribution.name}-commands")
    tools.mkdir()
    try:
        for name, program in PROGRAMS.items():
            (tools / name).symlink_to(build / program)
        screen = b""
        for command in commands:
            done = subprocess.run(["sh", "-c", command], cwd=distribution, check=False,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT,
                                  env={"PATH": f"{tools}:{os.environ['PATH']}", "LC_ALL": "C"})
            screen += f"$ [[{command}]]\n".encode() + run_case.make_output(done.stdout)
    finally:
        shutil.rmtree(tools)
    screen = FREE_SPACE.sub(rb"needs \1, 12 GiB free", screen)
    return screen.replace(str(distribution).encode(), SHOWN_DIRECTORY).decode()


def as_text(screen):
    return re.sub(r"\[\[(.*?)\]\]", r"\1", screen)


def rows(line):
    """Returns a line as a terminal shows it: what is longer than the terminal goes on below."""
    if len(as_text(line)) <= COLUMNS:
        return [line]
    return [line[start:start + COLUMNS] for start in range(0, len(line), COLUMNS)]


def as_picture(screen):
    """Returns the session as an SVG picture of a terminal, the answers in another colour."""
    lines = [row for line in screen.rstrip("\n").split("\n") for row in rows(line.expandtabs())]
    width = round(COLUMNS * COLUMN_WIDTH + 2 * MARGIN)
    height = len(lines) * LINE_HEIGHT + 2 * MARGIN
    picture = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}">',
               '<rect width="100%" height="100%" rx="6" fill="#1d1f21"/>',
               # Blanks count: browsers go by the style, other viewers by the attribute.
               "<style>text { white-space: pre }</style>",
               '<g font-family="monospace" font-size="14" fill="#c5c8c6" xml:space="preserve">']
    for number, line in enumerate(lines, 1):
        shown = re.sub(r"\[\[(.*?)\]\]", r'<tspan fill="#f0c674" font-weight="bold">\1</tspan>',
                       escape(line))
        picture.append(f'<text x="{MARGIN}" y="{MARGIN + number * LINE_HEIGHT - 4}">{shown}</text>')
    return "\n".join(picture + ["</g>", "</svg>", ""])


def is_shown(name, screen, accepting):
    """Compares a session with its text and its picture, or writes them. Returns whether they are the same."""
    same = True
    for path, shown in ((SHOWN / f"{name}.txt", as_text(screen)),
                        (SHOWN / f"{name}.svg", as_picture(screen))):
        if accepting:
            path.write_text(shown)
        elif path.read_text() != shown:
            run_case.show_difference(path.name, path.read_bytes(), shown.encode())
            same = False
    return same


def main():
    arguments = sys.argv[1:]
    accepting = arguments[:1] == ["--accept"]
    if len(arguments) != 1 + accepting:
        sys.exit(__doc__)
    build = pathlib.Path(arguments[accepting]).resolve()
    if os.geteuid() != 0:
        print("skipped: the sessions are those of the superuser")
        sys.exit(run_case.SKIPPED)
    os.environ.pop("KELSTONE_HOME", None)
    screens = {}
    with sample_distribution(build) as distribution:
        for name, answers, directory in SESSIONS:
            screens[name] = play(build, distribution, answers, directory)
    left_out = not all((build / program).exists() for program in PROGRAMS.values())
    for name, commands in ({} if left_out else COMMANDS).items():
        with sample_distribution(build) as distribution:
            screens[name] = run_commands(build, distribution, commands)
    same = all([is_shown(name, screen, accepting) for name, screen in screens.items()])
    if same and left_out:
        print("skipped: the commands beside the program were not built")
        sys.exit(run_case.SKIPPED)
    sys.exit(0 if same else 1)


if __name__ == "__main__":
    main()
