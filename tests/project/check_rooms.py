#!/usr/bin/env python3
"""Checks that every source file includes only what its room may know, as CMake is told, and that
nothing is allowed to a room that it does not use.

    check_rooms.py SOURCE_DIRECTORY...

Rooms of a later directory may include those of an earlier one.
"""

import pathlib
import re
import sys


def main():
    sources = [pathlib.Path(argument) for argument in sys.argv[1:]]
    rules = [rule for source in sources
             for rule in re.findall(r"^add_room\((\w+)([\w ]*)\)$",
                                    (source / "CMakeLists.txt").read_text(), re.MULTILINE)]
    allowed = {room: needed.split() for room, needed in rules}
    used = {room: set() for room in allowed}
    faults = []
    for path in sorted(path for source in sources for path in source.glob("*/*")):
        room = path.parent.name
        for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
            other = name.split("/")[0]
            if other != room:
                used[room].add(other)
            if other not in [room, *allowed[room]]:
                faults.append(f"{path} includes {name}")
            if not any((source / name).exists() for source in sources):
                faults.append(f"{path}: there is no {name}")
        if path.suffix == ".h":
            guard = f"MORVANE_{room}_{path.stem}_H".upper()
            if f"#ifndef {guard}\n#define {guard}\n" not in path.read_text():
                faults.append(f"{path}: the guard is not {guard}")
    before = set()
    for room, needed in allowed.items():
        faults += [f"{room} may include {other}, and does not" for other in needed
                   if other not in used[room]]
        faults += [f"{room} is built on {other}, which comes behind it" for other in needed
                   if other not in before]
        before.add(room)
    rooms = [path.name for source in sources for path in source.iterdir() if path.is_dir()]
    if sorted(rooms) != sorted(allowed):
        faults.append(f"rooms: {sorted(rooms)}")
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
