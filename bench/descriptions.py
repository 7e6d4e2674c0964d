"""The description parser on long descriptions, against tools that read as much text."""

import itertools
import shutil
import statistics

from measure import alternately, print_table, run

MEGABYTE = 1 << 20
SIZES = (1, 4, 16, 64)
REPETITIONS = 9
WORDS = """the installation of a product puts its programs into one directory and leaves all other
files of this host alone, so that whoever keeps an older version can go on using it; settings are
asked once and kept""".split()
TEXTS = 4 * ["Abstract"] + ["Hardware", "PathInfo", "OwnerInfo", "GroupInfo", "AccessInfo"]
TEXTS_OF_PART = 3 * TEXTS


def free_text():
    """Returns an endless supply of lines of text, of 60 to 72 bytes."""
    words = itertools.cycle(WORDS)
    while True:
        line = next(words)
        while len(line) < 60:
            line += " " + next(words)
        yield line


def description_part(number, text):
    """Returns entries that may stand in a description as often as one likes."""
    lines = [f"# Part {number}: what is told and what is proposed.",
             f"Name         = Product{number}",
             f'FullName     = "The product of part {number}"',
             f"Version      = {number % 10}.{number % 7}.{number % 3}  # as released",
             "Category     = STORE",
             "Type         = hashed",
             "",
             *(f'{keyword:12} = "{next(text)}"' for keyword in TEXTS_OF_PART),
             "",
             f"Path         = /opt/product{number}",
             "Owner        = root",
             "Group        = root",
             'NeededTools  = "cc sed awk"']
    return "\n".join(lines) + "\n"


def control_part(number, text):
    """Returns what a part says as a paragraph of a Debian control file."""
    lines = [f"Package: product{number}",
             f"Title: The product of part {number}",
             f"Version: {number % 10}.{number % 7}.{number % 3}",
             "Section: STORE",
             "Kind: hashed",
             "Description:",
             *(f" {next(text)}" for _ in TEXTS_OF_PART),
             f"Path: /opt/product{number}",
             "Owner: root",
             "Group: root",
             "Tools: cc sed awk"]
    return "\n".join(lines) + "\n\n"


def repeated_to(size, part):
    """Returns a text of `size` bytes or a little more, of whole parts."""
    text = free_text()
    parts = []
    length = 0
    while length < size:
        parts.append(part(len(parts), text))
        length += len(parts[-1])
    return "".join(parts).encode()


def write_texts(directory):
    description = repeated_to(MEGABYTE, description_part)
    control = repeated_to(MEGABYTE, control_part)
    for size in SIZES:
        (directory / f"{size}.descr").write_bytes(size * description)
        (directory / f"{size}.control").write_bytes(size * control)


def rate(path, costs):
    """Returns the megabytes a second of CPU time; unlike wall time it leaves others out."""
    return path.stat().st_size / MEGABYTE / statistics.median(cost.own_cpu for cost in costs)


def row(directory, build, size):
    """Measures the texts of `size` megabytes."""
    description = directory / f"{size}.descr"
    control = directory / f"{size}.control"
    commands = {"morvane": [build / "bench/read_description", ".", size],
                "cat": ["cat", description],
                "grep": ["grep", "-c", "Abstract", description],
                "grep-dctrl": ["grep-dctrl", "-c", "-P", "-X", "product7", control]}
    commands = {name: [str(word) for word in command] for name, command in commands.items()}
    costs = alternately(REPETITIONS, {
        name: lambda command=command: run(command, directory, keep_output=True,
                                          environment={"PATH": "/usr/bin:/bin", "LC_ALL": "C"})
        for name, command in commands.items()})
    rates = {name: rate(control if name == "grep-dctrl" else description, each)
             for name, each in costs.items()}
    peak = int(costs["morvane"][0].output)
    return (size, *(f"{value:.0f}" for value in rates.values()),
            f"{rates['morvane'] / rates['grep-dctrl']:.2f}", f"{peak / 1024:.1f}",
            f"{peak * 1024 / description.stat().st_size:.2f}")


def measure(build, scratch):
    directory = scratch / "descriptions"
    directory.mkdir()
    shutil.copy(build / "morvane.rsc", directory)
    write_texts(directory)
    print_table(f"Reading descriptions; MB a second of CPU time, medians of {REPETITIONS}",
                ("file, MB", "morvane", "cat", "grep -c", "grep-dctrl", "morvane to grep-dctrl",
                 "morvane's peak memory, MB", "peak to file"),
                [row(directory, build, size) for size in SIZES])
