#!/usr/bin/env python3
"""Checks a message file against the numbers that the program names, and its translations as well.

    check_messages.py MESSAGE_NUMBERS_HEADER MESSAGE_FILE [TRANSLATION ...]
"""

import pathlib
import re
import sys

ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "f": "\f", "v": "\v", "b": "\b", "e": "\033",
           "?": "\177"}
LONGEST_TEXT = 149
LONGEST_LINE = 154
WIDEST_RULER = 79  # a terminal of 80 columns, without its last one
FORMATS = {53: 3, 75: 1, 117: 3, 118: 1, 119: 1, 121: 1, 123: 0, 133: 1}
TITLES = (11, 19)
PARAGRAPH = range(12, 17)  # joined, and broken into lines by the program
JOINED = ((97, 98), (97, 99))  # with a blank between them
COMMENTS = range(141, 144)  # each becomes a comment line of the files written
TYPES = (256, 257)  # take the place of a product's type
LONGEST_TYPE = 49
SCREEN_ROWS = 24
SELECTION_TEXTS = (17, 18, 24, 29)
SELECTION_ROWS = 5  # three empty lines, the column headings, and the answer
SAMPLE_PRODUCTS = 11  # as many as the list of the sample distribution has
COMMANDS = (37, 111, 112, 113, 122)
KEYWORDS = range(200, 234)

# What is no word of a language, and why.
TECHNICAL = [
    (range(3, 6), "names of files and directories on the host"),
    (COMMANDS, "commands that the shell runs"),
    (range(62, 71), "names of boards and buses that hosts report"),
    ((115, 116, 120), "names of systems and machines that hosts report"),
    (KEYWORDS, "existing descriptions are read with them"),
    (range(240, 256), "categories and types that existing descriptions name"),
]


def stored(raw):
    text = re.sub(r"\\(.)", lambda escape: ESCAPES.get(escape[1], escape[1]), raw)
    return text.removesuffix("|")


def read_messages(path):
    messages, faults = {}, []
    for line in path.read_text(encoding="latin-1").splitlines():
        if not line.isascii():
            faults.append(f"no plain ASCII: {line!a}")
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


def number_faults(messages, used):
    yield from (f"{number} is missing" for number in sorted(used - set(messages)))
    yield from (f"{number} is not used" for number in sorted(set(messages) - used))


def width_faults(messages):
    ruler = len(messages[10])
    if ruler > WIDEST_RULER:
        yield f"10 is wider than {WIDEST_RULER}"
    joined = {f"{first} and {second}": messages[first] + " " + messages[second]
              for first, second in JOINED}
    for number, text in [*messages.items(), *joined.items()]:
        if number in PARAGRAPH or number in COMMANDS:
            continue
        if any(len(line) > ruler for line in text.expandtabs().split("\n")):
            yield f"{number} has a line wider than the ruler"
    for number in TITLES:
        title = messages[number]
        if len(title) != ruler:
            yield f"{number} is not as wide as the ruler"
        if not (title.startswith(messages[8]) and title.endswith(messages[9])):
            yield f"{number} is not in the frames 8 and 9"
    for number in PARAGRAPH[:-1]:
        if not messages[number].endswith(" "):
            yield f"{number} runs into the text that is joined to it"


def height_faults(messages):
    rows = SELECTION_ROWS + SAMPLE_PRODUCTS
    rows += sum(1 + messages[number].count("\n") for number in SELECTION_TEXTS)
    if rows > SCREEN_ROWS:
        yield f"{SELECTION_TEXTS} and the list need {rows} rows"


def letters_named(text, letters):
    """Returns which of the answers, counted from 0, a text names by their letters."""
    return {letters.index(word) for word in re.findall(r"\b\w\b", text) if word in letters}


def use_faults(messages):
    for number, count in FORMATS.items():
        text = messages[number].replace("%%", "")
        if not text.count("%") == text.count("%s") == count:
            yield f"{number} does not hold {count} conversions, all of them %s"
    for number in COMMENTS:
        if "\n" in messages[number]:
            yield f"{number} is more than one line"
    for number in TYPES:
        if len(messages[number]) > LONGEST_TYPE:
            yield f"{number} is longer than {LONGEST_TYPE}"
    letters = messages[1]
    if not re.fullmatch(r"[a-z]{3}", letters) or len(set(letters)) != 3:
        yield "1 is not three different letters"
    elif letters_named(messages[35].lower(), letters) != {0, 1, 2}:
        yield "35 does not name the three letters"
    for number in KEYWORDS:
        if not re.fullmatch(r"[A-Za-z_]+", messages[number]):
            yield f"keyword {number} is no word"


def new_lines_around(text):
    return text.startswith("\n"), text.endswith("\n")


def translation_faults(original, translation):
    if list(original) != list(translation):
        yield "the numbers stand in another order than in the original"
    for numbers, reason in TECHNICAL:
        for number in sorted(set(numbers) & set(original)):
            if translation[number] != original[number]:
                yield f"{number} is translated ({reason})"
    for number, text in original.items():
        translated = translation[number]
        if new_lines_around(translated) != new_lines_around(text):
            yield f"{number} begins or ends otherwise than the original, as to new lines"
        if number in COMMANDS:
            continue
        if letters_named(translated, translation[1]) != letters_named(text, original[1]):
            yield f"{number} names other answers than the original"


def main():
    header, *paths = (pathlib.Path(name) for name in sys.argv[1:])
    used = {int(n) for n in re.findall(r"^  [A-Z_0-9]+ = (\d+),", header.read_text(), re.MULTILINE)}
    failed, original = False, None
    for path in paths:
        messages, faults = read_messages(path)
        faults += number_faults(messages, used)
        if used == set(messages):
            faults += [*width_faults(messages), *height_faults(messages),
                       *use_faults(messages)]
            if original:
                faults += translation_faults(original, messages)
            original = original or messages
        for fault in faults:
            print(f"{path.name}: {fault}")
        failed = failed or bool(faults)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
