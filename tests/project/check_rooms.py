#!/usr/bin/env python3
"""Checks that every source file includes only what its room may know: the rooms above its own.

    check_rooms.py SOURCE_DIRECTORY
"""

import pathlib
import re
import sys

ROOMS = ["version", "platform", "console", "catalogue", "host", "settings", "depend", "output",
         "driver"]


def main():
    source = pathlib.Path(sys.argv[1])
    faults = []
    for path in sorted(source.glob("*/*")):
        room = path.parent.name
        for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
            if ROOMS.index(name.split("/")[0]) > ROOMS.index(room):
                faults.append(f"{path.relative_to(source)} includes {name}")
            if not (source / name).exists():
                faults.append(f"{path.relative_to(source)}: there is no {name} below {source}")
        if path.suffix == ".h":
            guard = f"MORVANE_{room}_{path.stem}_H".upper()
            if f"#ifndef {guard}\n#define {guard}\n" not in path.read_text():
                faults.append(f"{path.relative_to(source)}: the guard is not {guard}")
    rooms = {path.name for path in source.iterdir()}
    if rooms != set(ROOMS):
        faults.append(f"rooms: {sorted(rooms)}")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
