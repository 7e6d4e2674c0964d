#!/usr/bin/env python3
"""Plays the sessions that docs/sessions shows, and compares the screens.

    recorded_sessions.py [--accept] BUILD_DIRECTORY

The sample distribution is configured and installed in three sessions that build on each other, with
the answers of scripts/sessions. --accept writes text and picture of each session instead.
"""

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

# The distribution lies in a directory of its own, shown under a name of the same length: the lines
# break at the same places.
DIRECTORY_PREFIX = "/tmp/morvane-"
SHOWN_DIRECTORY = b"/srv/products/sample2"

LINE_HEIGHT = 17
COLUMN_WIDTH = 8.4
COLUMNS = 80
MARGIN = 12


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
    same = True
    distribution = pathlib.Path(tempfile.mkdtemp(prefix=DIRECTORY_PREFIX))
    try:
        distribution.rmdir()
        subprocess.run([PROJECT / "scripts/distribution", build, distribution], check=True)
        for name, answers, directory in SESSIONS:
            screen = play(build, distribution, answers, directory)
            for path, shown in ((SHOWN / f"{name}.txt", as_text(screen)),
                                (SHOWN / f"{name}.svg", as_picture(screen))):
                if accepting:
                    path.write_text(shown)
                elif path.read_text() != shown:
                    run_case.show_difference(path.name, path.read_bytes(), shown.encode())
                    same = False
    finally:
        shutil.rmtree(distribution, ignore_errors=True)
    sys.exit(0 if same else 1)


if __name__ == "__main__":
    main()
