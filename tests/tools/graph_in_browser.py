#!/usr/bin/env python3
"""Measures pictures of morvane-graph in a browser, as readers see them: of the sample distribution
and of one with 50 products.

    graph_in_browser.py BUILD_DIRECTORY

Every text lies inside its node, no two texts overlap, and in a window of 1600 pixels all can be
read. Meanings differ in shape and in colour, for people who do not tell red from green, too.
"""

import itertools
import json
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.parse

BUILD = pathlib.Path(sys.argv[1]).resolve()
PROJECT = pathlib.Path(__file__).resolve().parents[2]
GRAPH = BUILD / "morvane-graph"
BROWSER = "chromium"
SKIPPED = 77
TIMEOUT = 60
WIDTH = 1600        # pixels of the window
LEGIBLE = 9         # pixels of the smallest letters
TOLERANCE = 0.5     # of a pixel: boxes are rounded
COLOUR_DISTANCE = 10  # of CIE Lab: what is told apart at a glance

# Opens local files only: no sandbox, which the superuser could not have, and no network.
OPTIONS = ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           f"--window-size={WIDTH},1200")

# Of each node and line: its name, its shapes with their colours and boxes, its texts with theirs.
MEASURING = """<script>
const box = element => {
  const seen = element.getBoundingClientRect();
  return [seen.left, seen.top, seen.right, seen.bottom];
};
const groups = Array.from(document.querySelectorAll("g.node, g.edge, g.cluster"), group => ({
  kind: group.getAttribute("class"),
  name: group.querySelector("title").textContent,
  shapes: Array.from(group.querySelectorAll("polygon, ellipse, path, polyline"), shape => {
    const style = getComputedStyle(shape);
    return {box: box(shape), tag: shape.tagName, fill: style.fill, stroke: style.stroke,
            dashes: style.strokeDasharray, width: parseFloat(style.strokeWidth),
            points: shape.points ? shape.points.length : 0};
  }),
  texts: Array.from(group.querySelectorAll("text"), text => ({
    box: box(text), text: text.textContent,
    size: parseFloat(getComputedStyle(text).fontSize) *
          text.getScreenCTM().a}))}));
document.documentElement.setAttribute("data-measured", encodeURIComponent(JSON.stringify(groups)));
</script>
"""

# What people see who lack the receptors for red, or those for green, of linear red, green and blue.
EYES = {
    "all colours": ((1, 0, 0), (0, 1, 0), (0, 0, 1)),
    "no red": ((0.152286, 1.052583, -0.204868), (0.114503, 0.786281, 0.099216),
               (-0.003882, -0.048116, 1.051998)),
    "no green": ((0.367322, 0.860646, -0.227968), (0.280085, 0.672501, 0.047413),
                 (-0.011820, 0.042940, 0.968881)),
}


def draw(directory):
    done = subprocess.run([GRAPH, "--format=svg", directory], check=True, capture_output=True,
                          text=True)
    return done.stdout


def measure(picture, scratch):
    """Returns what the browser shows of a picture that fills the width of its window."""
    page = pathlib.Path(scratch) / "page.html"
    picture = picture[picture.index("<svg"):]
    picture = re.sub(r'^<svg width="\d+pt" height="\d+pt"', f'<svg width="{WIDTH}"', picture)
    page.write_text('<!DOCTYPE html><meta charset="utf-8"><body style="margin: 0">' + picture +
                    MEASURING)
    shown = subprocess.run([BROWSER, *OPTIONS, f"--user-data-dir={scratch}/profile", "--dump-dom",
                            page.as_uri()], check=True, text=True, stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, timeout=TIMEOUT,
                           env={"PATH": "/usr/bin:/bin", "HOME": str(scratch)}).stdout
    return json.loads(urllib.parse.unquote(re.search(r'data-measured="([^"]*)"', shown)[1]))


def is_inside(inner, outer):
    return (inner[0] >= outer[0] - TOLERANCE and inner[1] >= outer[1] - TOLERANCE and
            inner[2] <= outer[2] + TOLERANCE and inner[3] <= outer[3] + TOLERANCE)


def overlap(one, other):
    return (min(one[2], other[2]) - max(one[0], other[0]) > TOLERANCE and
            min(one[3], other[3]) - max(one[1], other[1]) > TOLERANCE)


def layout_faults(groups, name):
    texts = [(text, group) for group in groups for text in group["texts"]]
    for text, group in texts:
        boxes = [shape["box"] for shape in group["shapes"]]
        if group["kind"] == "node" and boxes and not any(is_inside(text["box"], box)
                                                         for box in boxes):
            yield f"{name}: outside of its node: {text['text']}"
        if text["size"] < LEGIBLE:
            yield f"{name}: {text['size']} pixels high: {text['text']}"
    # The letters of one label may touch those above; its lines are not compared.
    for (one, of), (other, of_other) in itertools.combinations(texts, 2):
        if of is not of_other and overlap(one["box"], other["box"]):
            yield f"{name}: {one['text']} and {other['text']} overlap"
    nodes = [group for group in groups if group["kind"] == "node" and group["shapes"]]
    for one, other in itertools.combinations(nodes, 2):
        if overlap(one["shapes"][0]["box"], other["shapes"][0]["box"]):
            yield f"{name}: {one['name']} and {other['name']} overlap"


def seen(colour, eyes):
    """Returns the CIE Lab coordinates of a colour as such eyes see it."""
    found = re.match(r"rgb\((\d+), (\d+), (\d+)\)", colour)
    if not found:
        return None
    linear = [value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4
              for value in (int(part) / 255 for part in found.groups())]
    red, green, blue = (min(1, max(0, sum(factor * part for factor, part in
                                          zip(row, linear, strict=True)))) for row in EYES[eyes])
    x = (0.4124 * red + 0.3576 * green + 0.1805 * blue) / 0.9505
    y = 0.2126 * red + 0.7152 * green + 0.0722 * blue
    z = (0.0193 * red + 0.1192 * green + 0.9505 * blue) / 1.089
    f = [part ** (1 / 3) if part > 0.008856 else 7.787 * part + 16 / 116 for part in (x, y, z)]
    return 116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])


def shape_of(group):
    # Parts of one line, such as the tip of an arrow, do not tell it from another.
    shapes = group["shapes"] if group["kind"] == "node" else group["shapes"][:1]
    return [(shape["tag"], shape["points"], shape["dashes"], shape["width"] > 3)
            for shape in shapes]


def difference(one, other, eyes):
    """Returns how far the colours of two meanings are apart, filling or line."""
    distances = [0]
    for what in ("fill", "stroke"):
        a, b = (seen(group["shapes"][0][what], eyes) for group in (one, other))
        if a and b:
            distances.append(sum((p - q) ** 2 for p, q in zip(a, b, strict=True)) ** 0.5)
    return max(distances)


def meaning_faults(groups):
    legend = [group for group in groups if group["name"].startswith("legend_") and
              (group["kind"] == "edge" or group["shapes"] and group["texts"])]
    if len(legend) != 8:
        yield f"the legend has {len(legend)} meanings"
    for one, other in itertools.combinations(legend, 2):
        if one["kind"] != other["kind"]:
            continue
        names = f"{one['name']} and {other['name']}"
        if shape_of(one) == shape_of(other):
            yield f"{names} have the same shape"
        for eyes in EYES:
            if difference(one, other, eyes) < COLOUR_DISTANCE:
                yield f"{names} have nearly the same colour, seen with {eyes}"


def make_sample(directory):
    """The sample distribution, as far as a picture shows it."""
    for tree in (PROJECT / "examples").iterdir():
        if tree.is_dir():
            (directory / f"{tree.name}.tar").touch()
    for description in (PROJECT / "examples").glob("*.descr"):
        shutil.copy(description, directory)


def make_large(directory):
    """50 products with needs of every kind."""
    chance = random.Random(12)
    category = lambda number: f"CATEGORY_{number // 2 if number < 20 else number}"
    for number in range(50):
        version = f"{chance.randint(1, 12)}.{chance.randint(0, 30)}"
        text = (f"Name = Product{number}\nVersion = {version}\n"
                f"Category = {category(number)}\nType = type{number % 2}\n"
                "Target = program\nAskAgain = Again?\n")
        for other in chance.sample(range(number), min(number, chance.randint(0, 2))):
            text += f"NeedsCategory = {category(other)}\n"
            if chance.random() < 0.5:
                text += f"NeedsType = type{other % 2}\n"
                text += f"NeedsVersion = {chance.choice(('1.0', '1.0', '1.0', '99.1'))}\n"
        if number % 10 == 3:
            text += "NeedsCategory = LIBRARY_OF_THE_HOST\nNeedsType = shared\n"
        if number % 10 == 5:
            text += "Patch = 1\nRequiredPatches = 0\n"
        (directory / f"product-{number}.descr").write_text(text)
        (directory / f"product-{number}.tar").touch()
    # What it needs needs it.
    (directory / "product-20.descr").open("a").write(f"NeedsCategory = {category(40)}\n")
    (directory / "product-40.descr").open("a").write(f"NeedsCategory = {category(20)}\n")


def main():
    for program in (BROWSER, "dot"):
        if shutil.which(program) is None:
            print(f"skipped: there is no {program}")
            sys.exit(SKIPPED)
    faults = []
    with tempfile.TemporaryDirectory(prefix="morvane-graph-", dir="/tmp") as scratch:
        for make in (make_sample, make_large):
            directory = pathlib.Path(scratch) / make.__name__
            directory.mkdir()
            make(directory)
            groups = measure(draw(directory), scratch)
            faults += layout_faults(groups, make.__name__)
            faults += meaning_faults(groups)
            sizes = [text["size"] for group in groups for text in group["texts"]]
            print(f"{make.__name__}: {len(groups)} nodes and lines, {len(sizes)} texts of at least "
                  f"{min(sizes):.1f} pixels")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
