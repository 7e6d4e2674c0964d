#!/usr/bin/env python3
"""Compares the picture of the sample distribution, examples/needs.svg, with what is drawn now.

    sample_picture.py [--accept] BUILD_DIRECTORY

Fonts differ from host to host, and so do the pictures that dot draws: the text that it draws them
from is compared, by a digest in the picture's last line. --accept draws the picture anew.
"""

import hashlib
import pathlib
import shutil
import subprocess
import sys
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = PROJECT / "examples"
PICTURE = EXAMPLES / "needs.svg"


def graph(build, directory, form):
    return subprocess.run([build / "morvane-graph", f"--format={form}", directory], check=True,
                          capture_output=True, text=True).stdout


def main():
    accept = sys.argv[1] == "--accept"
    build = pathlib.Path(sys.argv[-1]).resolve()
    with tempfile.TemporaryDirectory(prefix="morvane-picture-") as scratch:
        directory = pathlib.Path(scratch)
        for path in EXAMPLES.iterdir():
            if path.is_dir():
                (directory / f"{path.name}.tar").touch()
            elif path.suffix == ".descr":
                shutil.copy(path, directory)
        drawn = graph(build, directory, "dot")
        last_line = f"<!-- drawn from {hashlib.sha256(drawn.encode()).hexdigest()} -->\n"
        if accept:
            PICTURE.write_text(graph(build, directory, "svg") + last_line)
    if not PICTURE.read_text().endswith("\n" + last_line):
        print(f"{PICTURE.name} is stale: {sys.argv[0]} --accept {sys.argv[-1]} draws it anew")
        sys.exit(1)


if __name__ == "__main__":
    main()
