"""Installing 50 small products by what morvane wrote, with make and with morvane-install, against dpkg
and the same files."""

import shutil
import subprocess
import sys

import distribution
from measure import alternately, print_table, processes_of, ratios, run, spread

REPETITIONS = 7
MAKE = ["make", "-s", "-f", "install.mk"]


def pack(root):
    """Packs the trees of all products, as uncompressed as the archives; returns the packages."""
    for number in range(distribution.COUNT):
        name = distribution.name_of(number)
        package = root / "packages" / name
        shutil.copytree(root / "trees" / name, package / "opt" / name)
        (package / "DEBIAN").mkdir()
        (package / "DEBIAN/control").write_text(
            f"Package: {name}\nVersion: 1.{number}\nArchitecture: all\n"
            f"Maintainer: nobody <nobody@localhost>\nDescription: product {number:02}\n")
        subprocess.run(["dpkg-deb", "-Znone", "--root-owner-group", "--build", package],
                       stdout=subprocess.DEVNULL, check=True)
    return sorted(str(path) for path in (root / "packages").glob("*.deb"))


def empty_host(host):
    """Makes a directory that dpkg takes for a host without any package."""
    shutil.rmtree(host, ignore_errors=True)
    for name in ("info", "updates", "triggers"):
        (host / "var/lib/dpkg" / name).mkdir(parents=True)
    for name in ("status", "available"):
        (host / "var/lib/dpkg" / name).touch()


def checked(result, opt):
    """Returns `result`; ends the program where not all products were installed below `opt`."""
    installed = sum(1 for _ in opt.glob("*/share/b"))
    if installed != distribution.COUNT:
        sys.exit(f"only {installed} products are installed in {opt}")
    return result


def measure(build, scratch):
    root = scratch / "installation"
    root.mkdir()
    host = root / "host"
    distribution.lay_out(root, build, installed=0)
    packages = pack(root)
    typed = distribution.answers(0)

    def dpkg(safety):
        return ["dpkg", f"--root={host}", f"--log={root}/dpkg.log", safety, "--install", *packages]

    def configure(start=run):
        distribution.forget_run(root)
        return start([build / "morvane"], root / "dist", typed)

    def install(start=run):
        configure()
        return checked(start(MAKE, root / "dist"), root / "opt")

    def install_planned(jobs, start=run):
        configure()
        command = [build / "morvane-install", f"--registry={root}/registry", f"--jobs={jobs}"]
        return checked(start(command, root / "dist"), root / "opt")

    def install_packages(safety, start=run):
        empty_host(host)
        return checked(start(dpkg(safety), root), host / "opt")

    subjects = {
        "morvane": configure,
        "make -f install.mk": install,
        "morvane-install": lambda start=run: install_planned(1, start),
        "morvane-install --jobs=2": lambda start=run: install_planned(2, start),
        "dpkg, not synchronising": lambda start=run: install_packages("--force-unsafe-io", start),
        "dpkg": lambda start=run: install_packages("--no-force-unsafe-io", start),
    }
    costs = alternately(REPETITIONS, subjects)
    print_table(f"Installing {distribution.COUNT} products of 5 files",
                ("what", "wall, ms", "make to this", "processes"),
                [(name, spread(1000 * cost.wall for cost in costs[name]),
                  spread(ratios(costs["make -f install.mk"], costs[name]), digits=2),
                  subject(processes_of))
                 for name, subject in subjects.items()])
