"""A whole run over 50 products, against the shell commands in it and against debconf."""

import sys

import distribution
import questions
from measure import alternately, peak_before_last_answer, print_table, ratios, run, spread

INSTALLED = 10
REPETITIONS = 15
LOOP = "its shell commands in a bare loop"
PATH = "/usr/sbin:/usr/bin:/sbin:/bin"


def play(program, root, **environment):
    """Plays the run and returns its Cost."""
    distribution.forget_run(root)
    cost = run([program], root / "dist", distribution.answers(INSTALLED),
               {"PATH": PATH, **environment})
    if distribution.ordered_products(root) != distribution.COUNT - INSTALLED:
        sys.exit("the run did not order all products")
    return cost


def repeat_commands(program, record, root):
    distribution.forget_run(root)
    return run([program, record], root / "dist", environment={"PATH": PATH})


def measure(build, scratch):
    root = scratch / "whole-run"
    root.mkdir()
    distribution.lay_out(root, build, INSTALLED)
    record = root / "commands"
    play(build / "bench/morvane_recording", root, MORVANE_RECORD=str(record))
    commands = record.read_bytes().count(b"\0")
    typed = distribution.answers(INSTALLED)
    asked = typed.count(b"\n")

    costs = alternately(REPETITIONS, {
        "morvane": lambda: play(build / "morvane", root),
        LOOP: lambda: repeat_commands(build / "bench/command_loop", record, root),
        **questions.front_ends(scratch / "questions", asked),
    })
    print_table(
        f"A run over {distribution.COUNT} products: {asked} answers, {commands} shell commands",
        ("what", "wall, ms", "morvane to this"),
        [(name, spread(1000 * cost.wall for cost in each),
          spread(ratios(costs["morvane"], each), digits=2))
         for name, each in costs.items()])
    print("\nCPU time of the process itself, shells and other children left out, ms:")
    for name in ("morvane", LOOP):
        print(f"{name}: {spread((1000 * cost.own_cpu for cost in costs[name]), digits=1)}")

    distribution.forget_run(root)
    peak = peak_before_last_answer([build / "morvane"], root / "dist", typed)
    print(f"\nPeak memory of morvane (VmHWM): {peak} KiB")
