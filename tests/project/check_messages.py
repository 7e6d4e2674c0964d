#!/usr/bin/env python3
"""Checks a message file against the program's list of messages, and its translations as well.

    check_messages.py MESSAGE_FILE [TRANSLATION ...]
"""

import collections
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2] / "src"

ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "f": "\f", "v": "\v", "b": "\b", "e": "\033",
           "?": "\177"}
LONGEST_TEXT = 149
LONGEST_LINE = 154
WIDEST_RULER = 79  # a terminal of 80 columns, without its last one
JOINED = (("NO_RIGHTS", "NO_RIGHTS_OWNER"), ("NO_RIGHTS", "NO_RIGHTS_GROUP"))  # by a blank
LONGEST_TYPE = 49
SCREEN_ROWS = 24
SELECTION_TEXTS = ("PRODUCT_LIST_HEADING", "HOW_TO_SELECT_1", "HOW_TO_SELECT_2", "HOW_TO_SELECT_3")
SELECTION_ROWS = 5  # three empty lines, the column headings, and the answer
SAMPLE_PRODUCTS = 11  # as many as the list of the sample distribution has

# Kinds of messages that hold no words of a language, and why.
TECHNICAL = {
    "NAME": "hosts or existing descriptions have these names",
    "NUMBER": "as many characters of a name",
    "COMMAND": "the shell runs it",
    "KEYWORD": "existing descriptions are read with it",
}

Description = collections.namedtuple("Description", "number name kind texts")


def described_messages():
    """Returns the program's list of its messages."""
    rows = re.findall(r"^(MESSAGE|FORMAT)\((\d+), (\w+), (\w+)\)",
                      (SOURCE / "messages/messages.def").read_text(), re.MULTILINE)
    return [Description(int(number), name, *((last, 0) if macro == "MESSAGE" else
                                             (macro, int(last))))
            for macro, number, name, last in rows]


DESCRIBED = described_messages()
USED = {each.number for each in DESCRIBED}
NUMBERS = {each.name: each.number for each in DESCRIBED}


def of_kind(*kinds):
    return [each.number for each in DESCRIBED if each.kind in kinds]


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


def number_faults(messages):
    yield from (f"{number} is missing" for number in sorted(USED - set(messages)))
    yield from (f"{number} is not used" for number in sorted(set(messages) - USED))


def width_faults(messages):
    ruler = len(messages[NUMBERS["RULER"]])
    if ruler > WIDEST_RULER:
        yield f"the ruler is wider than {WIDEST_RULER}"
    joined = {f"{first} and {second}": messages[NUMBERS[first]] + " " + messages[NUMBERS[second]]
              for first, second in JOINED}
    not_shown_as_they_are = of_kind("PARAGRAPH", "COMMAND")
    for number, text in [*messages.items(), *joined.items()]:
        if number in not_shown_as_they_are:
            continue
        if any(len(line) > ruler for line in text.expandtabs().split("\n")):
            yield f"{number} has a line wider than the ruler"
    left, right = (messages[NUMBERS[name]] for name in ("LEFT_FRAME", "RIGHT_FRAME"))
    for number in of_kind("TITLE"):
        title = messages[number]
        if len(title) != ruler:
            yield f"{number} is not as wide as the ruler"
        if not (title.startswith(left) and title.endswith(right)):
            yield f"{number} is not in the frames"
    for number in of_kind("PARAGRAPH")[:-1]:
        if not messages[number].endswith(" "):
            yield f"{number} runs into the text that is joined to it"


def height_faults(messages):
    rows = SELECTION_ROWS + SAMPLE_PRODUCTS
    rows += sum(1 + messages[NUMBERS[name]].count("\n") for name in SELECTION_TEXTS)
    if rows > SCREEN_ROWS:
        yield f"{SELECTION_TEXTS} and the list need {rows} rows"


def letters_named(text, letters):
    """Returns which of the answers, counted from 0, a text names by their letters."""
    return {letters.index(word) for word in re.findall(r"\b\w\b", text) if word in letters}


def use_faults(messages):
    for number, _, kind, texts in DESCRIBED:
        text = messages[number].replace("%%", "")
        if kind == "FORMAT" and not text.count("%") == text.count("%s") == texts:
            yield f"{number} does not hold {texts} conversions, all of them %s"
    for number in of_kind("HEAD_LINE"):
        if "\n" in messages[number]:
            yield f"{number} is more than one line"
    for number in of_kind("NUMBER"):
        if not messages[number].isdecimal():
            yield f"{number} is no number"
    for number in of_kind("PRODUCT_TYPE"):
        if len(messages[number]) > LONGEST_TYPE:
            yield f"{number} is longer than {LONGEST_TYPE}"
    letters = messages[NUMBERS["ANSWER_LETTERS"]]
    if not re.fullmatch(r"[a-z]{3}", letters) or len(set(letters)) != 3:
        yield "the answer letters are not three different letters"
    elif letters_named(messages[NUMBERS["ANSWER_HINT"]].lower(), letters) != {0, 1, 2}:
        yield "the answer hint does not name the three letters"
    for number in of_kind("KEYWORD"):
        if not re.fullmatch(r"[A-Za-z_]+", messages[number]):
            yield f"keyword {number} is no word"


def new_lines_around(text):
    return text.startswith("\n"), text.endswith("\n")


def translation_faults(original, translation):
    if list(original) != list(translation):
        yield "the numbers stand in another order than in the original"
    for number, _, kind, _ in DESCRIBED:
        if kind in TECHNICAL and translation[number] != original[number]:
            yield f"{number} is translated ({TECHNICAL[kind]})"
    letters = NUMBERS["ANSWER_LETTERS"]
    commands = of_kind("COMMAND")
    for number, text in original.items():
        translated = translation[number]
        if new_lines_around(translated) != new_lines_around(text):
            yield f"{number} begins or ends otherwise than the original, as to new lines"
        if number in commands:
            continue
        if letters_named(translated, translation[letters]) != letters_named(text,
                                                                            original[letters]):
            yield f"{number} names other answers than the original"


def source_faults():
    for path in sorted(SOURCE.glob("*/*.cc")):
        if re.search(r"\bfill\(\s*r\[", path.read_text()):
            yield f"{path.name} fills a message that is no format"


def main():
    failed, original = False, None
    for fault in source_faults():
        print(fault)
        failed = True
    for path in map(pathlib.Path, sys.argv[1:]):
        messages, faults = read_messages(path)
        faults += number_faults(messages)
        if USED == set(messages):
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
