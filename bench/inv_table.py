#!/usr/bin/env python3
"""Prints what the reader takes for files of machines of 500 to 20,000 applications: own processor time per command,
medians over the rounds, and the growth from the smallest file to the largest. Then what a fleet takes to load into a database.

    bench/inv_table.py BUILD [--rounds N] [--fleet FILES]
"""

import argparse
import statistics
import subprocess
import tempfile
from pathlib import Path

import generate_machine
from scan_table import NAMESPACE, ROOT, Bench

SIZES = [500, 1000, 5000, 20000]
COMMANDS = {
    "open (summary)": ["summary", "new.inv"],
    "verify": ["verify", "new.inv"],
    "export as CSV": ["export", "--format", "csv", "new.inv"],
    "export as JSON": ["export", "--format", "json", "new.inv"],
    "diff": ["diff", "old.inv", "new.inv"],
}
FLEET_APPLICATIONS = 150  # per machine, as many as a recorded Mac has


def scan(bench, applications, same_date, name):
    """Saves the file of a machine under this name."""
    machine = bench.folder / f"{name}-{applications}"
    generate_machine.generate(machine, applications, same_date)
    bench.measure([bench.build / "velkaro-scanner", "/silent"], [*NAMESPACE, ROOT / "simulator/run", machine])
    (saved,) = bench.folder.glob("STUDIO-*.inv")
    saved.rename(bench.folder / name)


def times(bench, applications, rounds):
    """Milliseconds per command."""
    scan(bench, applications, generate_machine.SAME_DATE, "old.inv")
    scan(bench, applications, 0, "new.inv")
    reader = bench.build / "inv"
    return [
        statistics.median(bench.measure([reader, *command], statuses=(0, 1))[0] for _ in range(rounds))
        for command in COMMANDS.values()
    ]


def fleet(bench, count):
    """The files of this many machines, each with its own names, serials and addresses."""
    scan(bench, FLEET_APPLICATIONS, generate_machine.SAME_DATE, "one.inv")
    for number in range(count):
        name = f"mac-{number}.inv"
        redact = [bench.build / "inv", "redact", "one.inv", "-o", name]
        subprocess.run(redact, cwd=bench.folder, stdout=subprocess.DEVNULL, check=True)
        yield name


def load(bench, count, rounds):
    """One line: the medians of loading a fleet into an empty database."""
    files = list(fleet(bench, count))
    taken = []
    for number in range(rounds):
        database = bench.folder / f"macs-{number}.db"
        milliseconds, peak = bench.measure([bench.build / "inv", "load", database, *files])
        taken.append((milliseconds, peak, database.stat().st_size))
        database.unlink()
    milliseconds, peak, size = map(statistics.median, zip(*taken))
    return (
        f"load of {count} files of {FLEET_APPLICATIONS} applications: {milliseconds / 1000:.1f} s, {milliseconds / count:.1f} ms a file, "
        f"peak {peak / 1e6:.1f} MB, database {size / 1e6:.0f} MB"
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--fleet", type=int, default=1000)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options.build.resolve(), Path(folder))
        columns = {size: times(bench, size, options.rounds) for size in SIZES}
        loaded = load(bench, options.fleet, options.rounds)
    print("| command |", *(f"{size} |" for size in SIZES), f"{SIZES[-1]} over {SIZES[0]} |")
    print("|---|" + "---:|" * (len(SIZES) + 1))
    for row, command in enumerate(COMMANDS):
        figures = [columns[size][row] for size in SIZES]
        print(f"| {command} |", *(f"{figure:.1f} ms |" for figure in figures), f"{figures[-1] / figures[0]:.1f} |")
    print(f"\n{loaded}")


if __name__ == "__main__":
    main()
