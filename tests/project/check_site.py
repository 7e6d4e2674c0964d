#!/usr/bin/env python3
"""Makes the site of the documentation and follows every link in it.

    check_site.py

Links lead to a page, an anchor or a file of the site, or to Debian's manual pages; every page is
linked from another. No page needs a script.
"""

import html.parser
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import urllib.parse

PROJECT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("cmark-gfm", "mandoc")
OUTSIDE = "https://manpages.debian.org/bookworm/"
SKIPPED = 77


class Page(html.parser.HTMLParser):
    """What a page links, and what in it can be linked."""

    def __init__(self, path):
        super().__init__()
        self.links, self.anchors, self.tags = [], [], set()
        self.feed(path.read_text())
        self.close()

    def handle_starttag(self, tag, attrs):
        self.tags.add(tag)
        for name, value in attrs:
            if name in ("href", "src"):
                self.links.append(value)
            elif name == "id":
                self.anchors.append(value)


def link_fault(site, pages, path, link):
    """Returns what is wrong with a link in the page `path`, or None."""
    name, anchor = urllib.parse.urldefrag(link)
    target = pathlib.Path(os.path.normpath(path.parent / name)) if name else path
    if not target.is_relative_to(site) or not target.is_file():
        return "there is no such file"
    if anchor and (target not in pages or urllib.parse.unquote(anchor) not in pages[target].anchors):
        return "there is no such anchor"
    return None


def faults(site):
    pages = {path: Page(path) for path in site.rglob("*.html")}
    linked = {site / "index.html"}
    for path, page in sorted(pages.items()):
        name = path.relative_to(site)
        if "script" in page.tags:
            yield f"{name}: holds a script"
        if len(set(page.anchors)) < len(page.anchors):
            yield f"{name}: an anchor stands twice"
        for link in page.links:
            if link.startswith(OUTSIDE):
                continue
            fault = link_fault(site, pages, path, link)
            if fault:
                yield f"{name}: {link}: {fault}"
            linked.add(pathlib.Path(os.path.normpath(path.parent / urllib.parse.urldefrag(link)[0])))
    for path in sorted(set(pages) - linked):
        yield f"{path.relative_to(site)}: no page links it"


def main():
    missing = [tool for tool in TOOLS if shutil.which(tool) is None]
    if missing:
        print("skipped: there is no", *missing)
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory(prefix="morvane-site-", dir="/tmp") as scratch:
        site = pathlib.Path(scratch) / "site"
        subprocess.run([PROJECT / "scripts/site", site], check=True)
        found = list(faults(site))
    print("\n".join(found))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
