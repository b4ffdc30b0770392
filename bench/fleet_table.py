#!/usr/bin/env python3
"""Prints how fast the reader goes through the files of a fleet, on one thread and on two: three scans of each Mac, which differ
in names, versions, disks, applications and processes.

    bench/fleet [--files N] [--rounds N]

files/s   the best of the rounds
CPU       user and system time of all threads
peak      the most memory that it held
out       bytes that it wrote per file

The last table is of a tenth of the files: memory must not grow with their number.
Ends with status 1 when a figure is beyond its limit.
"""

import argparse
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
MACHINES = ("imac-10.6", "mac-pro-10.5", "macbook-10.7")  # those with whole lists
MOST_MEMORY = 300e6
# Files a second on two threads, and how much faster loading is on two than on one. SQLite has a single writer, which takes three
# quarters of a load's time: docs/performance.md has its shares.
LEAST_EXPORTED, LEAST_LOADED, LEAST_GAIN = 1000, 200, 1.1


def scan(build, machine, folder):
    """The file of one of the simulator's Macs."""
    subprocess.run([ROOT / "simulator/run", ROOT / "simulator/machines" / machine, build / "velkaro-scanner", "/silent"],
                   cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
    (saved,) = folder.glob("*_*.inv")
    return saved.rename(folder / f"{machine}.inv")


def run(command):
    """Seconds, seconds of processor time, and the peak memory in bytes."""
    start = time.monotonic()
    with open(os.devnull, "wb") as nothing:
        process = subprocess.Popen(command, stdout=nothing, stderr=subprocess.PIPE)
        messages = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"status {process.returncode}: {command}\n{messages.decode()}")
    return time.monotonic() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def measure(inv, command, jobs, fleet, out, rounds):
    """The best of the rounds, with the bytes written."""
    arguments = {"load": ["load", out, fleet], "export as NDJSON": ["export", "-f", "ndjson", "-o", out, fleet],
                 "export as CSV": ["export", "-f", "csv", "-o", out, fleet], "verify": ["verify", "--quiet", fleet]}
    best = None
    for _ in range(rounds):
        out.unlink(missing_ok=True)
        result = run([inv, *arguments[command], "--jobs", str(jobs)])
        best = min(best or result, result)
    return (*best, out.stat().st_size if out.exists() else 0)


def table(inv, fleet, out, files, rounds):
    """A row for each command and number of jobs; the rates and the highest peak."""
    print("command | jobs | files/s | CPU per file | peak | out per file\n---|---|---|---|---|---")
    rates, peaks = {}, []
    for command in ("load", "export as NDJSON", "export as CSV", "verify"):
        for jobs in (1, 2):
            seconds, cpu, peak, size = measure(inv, command, jobs, fleet, out, rounds)
            rates[command, jobs] = files / seconds
            peaks.append(peak)
            print(f"{command} | {jobs} | {files / seconds:,.0f} | {cpu / files * 1e3:.2f} ms | {peak / 1e6:.0f} MB | {size / files:,.0f}", flush=True)
    return rates, max(peaks)


def beyond(rates, peak):
    """What is beyond its limit, one per line."""
    if peak > MOST_MEMORY:
        yield f"peak memory: {peak / 1e6:.0f} MB, {MOST_MEMORY / 1e6:.0f} allowed"
    if rates["export as NDJSON", 2] < LEAST_EXPORTED:
        yield f"export: fewer than {LEAST_EXPORTED} files a second on two threads"
    if rates["load", 2] < LEAST_LOADED:
        yield f"load: fewer than {LEAST_LOADED} files a second on two threads"
    if rates["load", 2] < LEAST_GAIN * rates["load", 1]:
        yield f"load: two threads are not {LEAST_GAIN} times as fast as one: {rates['load', 2] / rates['load', 1]:.2f}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=lambda name: Path(name).resolve())
    parser.add_argument("--files", type=int, default=10_000)
    parser.add_argument("--rounds", type=int, default=3)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / "scans").mkdir()
        scans = [scan(options.build, machine, folder / "scans") for machine in MACHINES]
        make_fleet = next(path for path in options.build.rglob("make_fleet") if path.is_file())
        fleets = {}
        for files in (options.files, options.files // 10):
            fleets[files] = folder / f"fleet-{files}"
            subprocess.run([make_fleet, fleets[files], str(files), *scans], check=True)
        size = sum(path.stat().st_size for path in fleets[options.files].rglob("*.inv"))
        print(f"{options.files:,} files of {size / options.files:,.0f} bytes\n")
        rates, peak = table(options.build / "inv", fleets[options.files], folder / "out", options.files, options.rounds)
        print(f"\n{options.files // 10:,} of them\n")
        table(options.build / "inv", fleets[options.files // 10], folder / "out", options.files // 10, 1)
    faults = list(beyond(rates, peak))
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
