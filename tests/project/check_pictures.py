#!/usr/bin/env python3
"""Measures the pictures of docs/sessions in a browser, as readers see them.

    check_pictures.py

Every character of a session takes one column, blanks too: so frames close and columns stand below
each other. And no line runs over the edge of its picture.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PICTURES = PROJECT / "docs/sessions"
BROWSER = "chromium"
SKIPPED = 77
TIMEOUT = 60
TOLERANCE = 0.5  # of a pixel: widths are rounded

# Opens local files only: no sandbox, which the superuser could not have, and no network.
OPTIONS = ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync")
MEASURING = """<script>
document.documentElement.setAttribute("data-widths",
    Array.from(document.querySelectorAll("text"), line => line.getComputedTextLength()).join(" "));
</script>
"""


def measure(picture):
    """Returns the widths of the lines of a picture, in the order of its text elements."""
    with tempfile.TemporaryDirectory(prefix="morvane-pictures-", dir="/tmp") as scratch:
        page = pathlib.Path(scratch) / "page.svg"
        page.write_text(picture.replace("</svg>", MEASURING + "</svg>"))
        shown = subprocess.run([BROWSER, *OPTIONS, f"--user-data-dir={scratch}/profile",
                                "--dump-dom", page.as_uri()], check=True, text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                               env={"PATH": "/usr/bin:/bin", "HOME": scratch},
                               timeout=TIMEOUT).stdout
    return [float(width) for width in re.search(r'data-widths="([^"]*)"', shown)[1].split()]


def faults(path):
    picture = path.read_text()
    root = ElementTree.fromstring(picture)
    lines = list(root.iter("{http://www.w3.org/2000/svg}text"))
    widths = measure(picture)
    texts = ["".join(line.itertext()) for line in lines]
    column = max(widths) / max(map(len, texts))
    for line, text, width in zip(lines, texts, widths, strict=True):
        if abs(width - len(text) * column) > TOLERANCE:
            yield f"{path.name}: {width} instead of {len(text) * column} wide: {text}"
        if float(line.get("x")) + width > float(root.get("width")):
            yield f"{path.name}: over the edge: {text}"


def main():
    if shutil.which(BROWSER) is None:
        print(f"skipped: there is no {BROWSER}")
        sys.exit(SKIPPED)
    pictures = sorted(PICTURES.glob("*.svg"))
    found = [fault for path in pictures for fault in faults(path)]
    print("\n".join(found))
    sys.exit(1 if found or not pictures else 0)


if __name__ == "__main__":
    main()
