"""morvane-verify against `sha256sum -c` on the same files."""

import hashlib
import os
import random

from measure import alternately, print_table, ratios, run, spread

SHAPES = [(4000, 2 * 1024), (2000, 50 * 1024), (20, 5 * 1024 * 1024)]  # files, bytes in each
REPETITIONS = 9


def write_product(directory, registry, files, size):
    """Writes files, the receipt of a product that they are, and the list that sha256sum checks."""
    bytes_of = random.Random(1)
    uid, gid = os.geteuid(), os.getegid()
    entries, digests = {}, []
    for number in range(files):
        path = f"d{number % 40:02}/file-{number}"
        above = directory / path.partition("/")[0]
        if not above.exists():
            above.mkdir(parents=True)
            above.chmod(0o755)
            entries[above.name] = f"directory 755 {uid} {gid} new archive {above.name}"
        content = bytes_of.randbytes(size)
        (directory / path).write_bytes(content)
        (directory / path).chmod(0o644)
        digest = hashlib.sha256(content).hexdigest()
        entries[path] = f"file 644 {uid} {gid} new archive {path} {size} 0 {digest}"
        digests.append(f"{digest}  {path}\n")
    (directory.parent / "digests").write_text("".join(digests))
    registry.mkdir()
    place = hashlib.sha256(str(directory).encode()).hexdigest()[:16]
    (registry / f"app.{place}.receipt").write_text(
        f"morvane receipt 1\nproduct = app\nname = app\nversion = 1.0\ndirectory = {directory}\n"
        "owner =\ngroup = root\naccess = yes\nmade = with the installation\n"
        "complete = yes\n"
        "installed = 1.000000000\nconfigured = 1.000000000\narchive =\ndescription =\n"
        f"entries = {len(entries)}\n" + "".join(f"{entries[path]}\n" for path in sorted(entries)))


def measure(build, scratch):
    rows = []
    for files, size in SHAPES:
        top = scratch / f"verify-{files}"
        registry = top / "registry"
        (top / "app").mkdir(parents=True)
        write_product(top / "app", registry, files, size)
        environment = {"PATH": "/usr/bin:/bin"}
        verify = [str(build / "morvane-verify"), f"--registry={registry}"]
        costs = alternately(REPETITIONS, {
            "verify": lambda: run(verify, top, environment=environment),
            "sha256sum": lambda: run(["sha256sum", "--quiet", "-c", "../digests"], top / "app",
                                     environment=environment)})
        rows.append((f"{files} of {size >> 10} KiB",
                     *(spread(1000 * cost.wall for cost in costs[name])
                       for name in ("verify", "sha256sum")),
                     spread(ratios(costs["verify"], costs["sha256sum"]), digits=2)))
    print_table("Verifying installed files",
                ("files", "morvane-verify, wall, ms", "sha256sum -c, wall, ms", "ratio"), rows)
