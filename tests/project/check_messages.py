#!/usr/bin/env python3
"""Checks a message file against the numbers that the program names.

    check_messages.py MESSAGE_NUMBERS_HEADER MESSAGE_FILE
"""

import pathlib
import re
import sys

ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "f": "\f", "v": "\v", "b": "\b", "e": "\033",
           "?": "\177"}
LONGEST_TEXT = 149
LONGEST_LINE = 154
FORMATS = {53: 3, 75: 1, 117: 3, 118: 1, 119: 1, 121: 1, 123: 0, 133: 1}
AS_WIDE_AS_THE_RULER = (11, 19)


def stored(raw):
    text = re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape[1], escape[1]), raw)
    return text.removesuffix("|")


def read_messages(path):
    messages, faults = {}, []
    for line in path.read_text(encoding="ascii").splitlines():
        number = re.match(r"\s*[+-]?\d+", line)
        if not number or not 1 <= int(number[0]) <= 499:
            continue
        number = int(number[0])
        if not re.match(r"\d{3} ", line):
            faults.append(f"{number}: the text does not begin in column 5")
        if len(line) > LONGEST_LINE:
            faults.append(f"{number}: the line is longer than {LONGEST_LINE}")
        if number in messages:
            faults.append(f"{number} stands twice")
        messages[number] = stored(line[4:])
        if len(messages[number]) > LONGEST_TEXT:
            faults.append(f"{number} is longer than {LONGEST_TEXT}")
    return messages, faults


def main():
    header, path = (pathlib.Path(name) for name in sys.argv[1:])
    used = {int(n) for n in re.findall(r"^  [A-Z_0-9]+ = (\d+),", header.read_text(), re.MULTILINE)}
    messages, faults = read_messages(path)
    faults += [f"{number} is missing" for number in sorted(used - set(messages))]
    faults += [f"{number} is not used" for number in sorted(set(messages) - used)]
    width = len(messages[10])
    faults += [f"{number} is not as wide as the ruler" for number in AS_WIDE_AS_THE_RULER
               if len(messages[number]) != width]
    for number, count in FORMATS.items():
        if messages[number].replace("%%", "").count("%s") != count:
            faults.append(f"{number} does not hold {count} conversions")
    faults += [f"keyword {number} is no word" for number in range(200, 234)
               if not re.fullmatch(r"[A-Za-z_]+", messages[number])]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
