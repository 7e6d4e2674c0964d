#!/usr/bin/env python3
"""The Nth allocation fails, for each N: once, or from then on.

    allocations.py BUILD_DIRECTORY [--all]
"""

import session

STRIDE = 25


def sweep(build, every):
    results = session.Sweep()
    stride = 1 if every else STRIDE
    program = build / "tests/morvane_with_faults"
    last = {}

    def go_through(first_and_lasting):
        step, lasting = first_and_lasting
        while True:
            with session.Stage(program) as stage:
                stage.set(MORVANE_FAULT_ALLOCATION=step, MORVANE_FAULT_LASTING=int(lasting),
                          MORVANE_FAULT_REPORT=stage.report)
                ended = stage.play()
                what = f"allocation {step}{' and all further ones' if lasting else ''}"
                if not stage.struck():
                    results.note(what, session.untouched(stage, ended))
                    last[first_and_lasting] = step - stride
                    return
                found = stage.problems(ended, scratch_may_stay=True)
                if session.NO_MEMORY not in stage.errors:
                    found.append(f"standard error does not say so: {stage.errors!r}")
                if lasting and stage.status == 0:
                    found.append("status 0 without memory")
                results.note(what, found)
                step += stride

    if every:
        # Side by side: each worker takes every eighth.
        stride = 8
        results.all(go_through, [(1 + n, lasting) for n in range(8) for lasting in (0, 1)])
    else:
        results.all(go_through, [(1, 0), (1 + STRIDE // 3, 0), (1 + STRIDE * 2 // 3, 1)])
    tried = "every allocation" if every else f"every {STRIDE}th allocation, from two starts,"
    results.finish(f"{tried} up to number {max(last.values())} failed once; "
                   f"{'every' if every else f'every {STRIDE}th'} with all further ones")


if __name__ == "__main__":
    session.main(sweep)
