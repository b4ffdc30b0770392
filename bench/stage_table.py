#!/usr/bin/env python3
"""Prints where the time of a scan goes: per stage the processor time of the scanner itself and what it allocates,
medians over the rounds.

    bench/stage_table.py BUILD [APPLICATIONS] [--rounds N]
"""

import argparse
import statistics
import subprocess
import tempfile
from pathlib import Path

import generate_machine
from scan_table import NAMESPACE, ROOT


def stages(build, machine, folder):
    """One scan's stages in order: name to (milliseconds, allocations, bytes allocated)."""
    command = [*NAMESPACE, ROOT / "simulator/run", machine, build / "bench/stages"]
    lines = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=True).stdout.splitlines()
    rows = [line.split("\t") for line in lines]
    return {name: (int(nanoseconds) / 1e6, int(count), int(size)) for name, nanoseconds, count, size in rows}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("applications", type=int, nargs="?", default=5000)
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        machine = Path(folder) / "machine"
        generate_machine.generate(machine, options.applications)
        rounds = [stages(options.build.resolve(), machine, folder) for _ in range(options.rounds)]
    print("| stage | time | allocations | allocated |", "|---|---:|---:|---:|", sep="\n")
    for stage in rounds[0]:
        time, count, size = (statistics.median(figures) for figures in zip(*(one[stage] for one in rounds)))
        print(f"| {stage} | {time:.2f} ms | {count:.0f} | {size / 1e6:.2f} MB |")


if __name__ == "__main__":
    main()
