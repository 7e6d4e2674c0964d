# Copyright: the morvane authors
"""The commands beside the program, and what they say."""


OPTIONS = dict(
    commands=dict(type="path"),
    registry=dict(type="path", default="/var/lib/morvane"),
)


def find(module, name):
    """Returns the path of a command. Fails where there is none."""
    directory = module.params["commands"]
    return module.get_bin_path(name, required=True, opt_dirs=[directory] if directory else [])


def fail(module, name, status, errors):
    """Fails as a command did that did not do what it is for."""
    module.fail_json(msg="%s ended with status %d: %s" % (name, status, "; ".join(complaints(name, errors))))


def complaints(name, errors):
    """Returns what a command said on standard error, line by line, without its name."""
    return [line[len(name) + 2:] if line.startswith(name + ": ") else line for line in errors.splitlines()]


def real_text(said):
    """Returns what a command said as JSON with its bytes as this host reads them.

    It writes each byte beyond ASCII as the character of that number, whatever encoding it is of.
    """
    if isinstance(said, dict):
        return {key: real_text(value) for key, value in said.items()}
    if isinstance(said, list):
        return [real_text(value) for value in said]
    if isinstance(said, str):
        return said.encode("latin-1").decode("utf-8", "surrogateescape")
    return said
