"""run.py BUILD_DIRECTORY: measures the programs of that build and prints tables. Nothing is judged.

As the superuser only: it installs, in a directory of its own, what belongs to root."""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True

import descriptions  # noqa: E402  (they would leave their byte code in the sources)
import installation  # noqa: E402
import lint  # noqa: E402
import verify  # noqa: E402
import whole_run  # noqa: E402
from measure import print_table  # noqa: E402


def measure_loops(build, scratch):
    """Runs the benchmarks of the inner loops, on the files that `descriptions` has made."""
    results = scratch / "loops.json"
    subprocess.run([build / "bench/micro_benchmarks", f"--benchmark_out={results}",
                    "--benchmark_out_format=json", "--benchmark_repetitions=5",
                    "--benchmark_report_aggregates_only=true"],
                   cwd=scratch / "descriptions", stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=True)
    rows = []
    for result in json.loads(results.read_text())["benchmarks"]:
        if result["aggregate_name"] == "median":
            items = result.get("items_per_second")
            rows.append((result["run_name"], f"{result['bytes_per_second'] / (1 << 20):.0f}",
                         f"{1e9 / items:.0f}" if items else ""))
    print_table("Inner loops, CPU time, medians of 5", ("loop", "MB/s", "ns a message"), rows)


def load():
    """Returns how many processes wanted to run in the last 1, 5 and 15 minutes."""
    return ", ".join(f"{average:.1f}" for average in os.getloadavg())


def main():
    if os.geteuid() != 0:
        sys.exit("run.py: needs the superuser")
    build = Path(sys.argv[1]).resolve()
    print("Load before:", load())
    with tempfile.TemporaryDirectory(prefix="morvane-bench-", dir="/tmp") as directory:
        scratch = Path(directory)
        whole_run.measure(build, scratch)
        descriptions.measure(build, scratch)
        measure_loops(build, scratch)
        installation.measure(build, scratch)
        lint.measure(build, scratch)
        verify.measure(build, scratch)
    print("\nLoad after:", load())


if __name__ == "__main__":
    main()
