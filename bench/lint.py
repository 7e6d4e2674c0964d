"""morvane-lint, against tar listing the same archives."""

import io
import random
import shutil
import tarfile

from measure import alternately, print_table, ratios, run, spread

PRODUCTS = 50
FILES = 200
FILE_SIZE = 10 * 1024  # 100 MB in all
REPETITIONS = 9


def write_products(directory):
    bytes_of = random.Random(1)
    for number in range(PRODUCTS):
        name = f"p{number:02}"
        with tarfile.open(directory / f"{name}.tar", "w", format=tarfile.GNU_FORMAT) as archive:
            for file in range(FILES):
                member = tarfile.TarInfo(f"lib/d{file % 7}/file-{file}")
                member.size = FILE_SIZE
                archive.addfile(member, io.BytesIO(bytes_of.randbytes(FILE_SIZE)))
        (directory / f"{name}.descr").write_text(
            f"Name = P{number}\nFullName = \"Product {number}\"\nVersion = 1.{number}\n"
            f"Category = C{number}\nType = plain\nPath = /opt/{name}\n")


def measure(build, scratch):
    directory = scratch / "lint"
    directory.mkdir()
    shutil.copy(build / "morvane.rsc", directory)
    write_products(directory)
    examples = build.parent / "examples"
    environment = {"PATH": "/usr/bin:/bin"}
    lint = str(build / "morvane-lint")
    costs = alternately(REPETITIONS, {
        "morvane-lint": lambda: run([lint], directory, environment=environment, keep_output=True),
        "tar -tf, each": lambda: run(["sh", "-c", "for f in *.tar; do tar -tf $f; done"],
                                     directory, environment=environment),
        "morvane-lint on the sample distribution":
            lambda: run([lint], examples, environment=environment, keep_output=True)})
    print_table(f"Lint: {PRODUCTS} products, archives of {PRODUCTS * FILES} files, 100 MB",
                ("what", "wall, ms", "morvane-lint to this"),
                [(name, spread(1000 * cost.wall for cost in each),
                  spread(ratios(costs["morvane-lint"], each), digits=2))
                 for name, each in costs.items()])
