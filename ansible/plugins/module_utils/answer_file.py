# Copyright: the morvane authors
"""The answers of a run as options of a module, and as the text of an answer file."""

import re

from ansible.module_utils.parsing.convert_bool import boolean

NEED = dict(
    part=dict(type="str", required=True),
    category=dict(type="str", required=True),
    type=dict(type="str"),
    supplier=dict(type="str"),
)
PRODUCT = dict(
    id=dict(type="str", required=True),
    directory=dict(type="str"),
    create_directory=dict(type="bool"),
    owner=dict(type="str"),
    group=dict(type="str"),
    access=dict(type="bool"),
    keep_without_tools=dict(type="bool"),
    parts=dict(type="dict"),
    needs=dict(type="list", elements="dict", options=NEED),
    patches=dict(type="dict"),
)
RUN = dict(
    go_on_all_the_same=dict(type="bool"),
    go_on_without_tools=dict(type="bool"),
    links_file=dict(type="str"),
)

# In an answer file these bytes mean something else, in a value and in a name or a word.
MEANINGFUL = re.compile(r"[%$\x00-\x1f\x7f]|^ | $")
MEANINGFUL_IN_NAMES = re.compile(r"[%$ \[\]=#.\x00-\x1f\x7f]")
MEANINGFUL_IN_WORDS = re.compile(r"[%$ \[\]=#\x00-\x1f\x7f]")


def escape(text, meaningful):
    return meaningful.sub(lambda found: "%%%02X" % ord(found.group()), text)


def yes_or_no(value):
    """Returns what may be said in many ways as an answer; what says neither, as it is: it is refused."""
    try:
        return "yes" if boolean(value) else "no"
    except TypeError:
        return value


def answer(name, value):
    """Returns a line of an answer file, as a list; an empty one where nothing was said."""
    if value is None:
        return []
    if isinstance(value, bool):
        value = yes_or_no(value)
    return ["%s = %s" % (name, escape(str(value), MEANINGFUL))]


def named(*pieces):
    """Returns the name of an answer."""
    return ".".join(escape(piece, MEANINGFUL_IN_NAMES) for piece in pieces)


def same_names(options, product):
    """Returns the answers that are called as their options are."""
    lines = []
    for option in options:
        if options[option]["type"] in ("str", "bool") and option != "id":
            lines += answer(option.replace("_", "-"), product[option])
    return lines


def section(product):
    lines = ["", "[%s]" % escape(product["id"], MEANINGFUL_IN_WORDS)]
    lines += same_names(PRODUCT, product)
    for part, wanted in (product["parts"] or {}).items():
        lines += answer(named("part", part), yes_or_no(wanted))
    for need in product["needs"] or []:
        for kind in ("type", "supplier"):
            lines += answer(named(kind, need["part"], need["category"]), need[kind])
    for level, supplier in (product["patches"] or {}).items():
        lines += answer(named("patch", str(level)), supplier)
    return lines


def written(parameters):
    """Returns the answers of a run as the text of an answer file."""
    identifiers = [escape(product["id"], MEANINGFUL_IN_WORDS) for product in parameters["products"]]
    lines = ["morvane answers 1", "products = " + " ".join(identifiers)]
    lines += same_names(RUN, parameters)
    for product in parameters["products"]:
        lines += section(product)
    return "\n".join(lines) + "\n"
