#!/usr/bin/env python3
"""Prints the table of bench/scan: one row per number of applications, medians over the rounds.

    bench/scan [--rounds N] [--distinct-dates] [APPLICATIONS...]

own CPU    user and system time of the scanner itself, its children not counted
peak       the most memory that it held
floor      processor time of one expat pass over the same document and one zlib stream at level 9 of each of the two texts
ratio      own CPU over floor, in the same round
stand-in   what of the own CPU the stand-in for CoreFoundation takes, which is no part of what runs on a Mac: making objects, and
           formatting dates
script     own CPU of plain_scan.py, which reads the same document with plistlib, and how many times the scan's that is

Below the table stands what an extended scan of a Mac of today costs beside an ordinary one of the same Mac: its own CPU and
how many times that of the ordinary one it is, in the same round.

Every scan runs in a process namespace of its own, so that the start of one ps per process of this machine stays out. What
these starts cost is told there too: the own CPU of a scan that finds 500 processes besides.
Ends with status 1 when a figure is beyond its limit.
"""

import argparse
import platform
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests/e2e"))

import generate_machine  # noqa: E402
import inv_decoder  # noqa: E402
import namespaces  # noqa: E402

SIZES = [50, 500, 1000, 2000, 5000, 10000, 20000]
PROLOGUE, EPILOGUE = 172, 18  # bytes of the profiler's frame around what it found
NAMESPACE = namespaces.own_processes()
BUSY_APPLICATIONS, BUSY_PROCESSES = 1000, 500
EXTENDED_APPLICATIONS = 5000
COLUMNS = "applications | document | own CPU | peak | floor | ratio | stand-in | script"


class Bench:
    """Runs the programs of one build in a separate folder."""

    def __init__(self, build, folder):
        self.build = build
        self.folder = folder

    def measure(self, command, prefix=(), statuses=(0,)):
        """Milliseconds of processor time and bytes of memory that the command itself used."""
        command = [*prefix, self.build / "bench/measure", *command]
        result = subprocess.run(command, cwd=self.folder, capture_output=True, text=True)
        if result.returncode not in statuses:
            sys.exit(f"status {result.returncode}: {command}\n{result.stderr}")
        nanoseconds, kilobytes = result.stderr.splitlines()[-1].split()
        return int(nanoseconds) / 1e6, int(kilobytes) * 1024

    def scan(self, machine, processes=0, options=()):
        """The same for a scan that also finds this many processes; what it found is left in the folder, one file per text."""
        others = ["sh", "-c", f'for i in $(seq {processes}); do sleep 600 & done; exec "$@"', "sh"]
        inside = [*NAMESPACE, *(others if processes else []), ROOT / "simulator/run", machine]
        own, peak = self.measure([self.build / "velkaro-scanner", "/silent", *options], inside)
        (saved,) = self.folder.glob("*.inv")
        for section in inv_decoder.read_file(saved).sections:
            (self.folder / section.kind).write_bytes(section.text)
        saved.unlink()
        return own, peak

    def floor(self, document):
        command = [self.build / "bench/floor", document, "snapshot", "assetinfo"]
        return int(subprocess.run(command, cwd=self.folder, capture_output=True, check=True).stdout) / 1e6

    def stand_in(self, document):
        """Milliseconds for the objects and for the dates of a document."""
        command = [self.build / "bench/stand_in", document]
        figures = subprocess.run(command, cwd=self.folder, capture_output=True, check=True).stdout.split()
        return [int(figure) / 1e6 for figure in figures]

    def round(self, machine, document):
        own, peak = self.scan(machine)
        floor = self.floor(document)
        objects, dates = self.stand_in(document)
        script, _ = self.measure([sys.executable, ROOT / "bench/plain_scan.py", document])
        return {
            "own": own, "peak": peak, "floor": floor, "ratio": own / floor, "objects": objects, "dates": dates,
            "script": script, "times": script / own, "times of the product": script / (own - objects - dates),
        }

    def size(self, applications, rounds, same_date):
        """The medians for one number of applications, and the document's bytes."""
        machine = self.folder / f"machine-{applications}"
        generate_machine.generate(machine, applications, same_date)
        document = self.folder / "document"
        document.write_bytes(splice(machine))
        taken = [self.round(machine, document) for _ in range(rounds)]
        medians = {figure: statistics.median(one[figure] for one in taken) for figure in taken[0]}
        return {"document": document.stat().st_size, **medians}

    def busy(self, rounds):
        """The median of the own CPU on a machine with many processes."""
        machine = self.folder / "busy-machine"
        generate_machine.generate(machine, BUSY_APPLICATIONS, generate_machine.SAME_DATE)
        return statistics.median(self.scan(machine, BUSY_PROCESSES)[0] for _ in range(rounds))

    def extended(self, rounds):
        """The medians of an ordinary and of an extended scan of a current Mac, and of their ratio."""
        machine = self.folder / "mac-of-today"
        generate_machine.generate(machine, EXTENDED_APPLICATIONS, model=generate_machine.MAC_OF_TODAY)
        pairs = [(self.scan(machine)[0], self.scan(machine, options=["/extended"])[0]) for _ in range(rounds)]
        ordinary, extended = (statistics.median(figures) for figures in zip(*pairs))
        return {"ordinary": ordinary, "extended": extended, "times": statistics.median(more / less for less, more in pairs)}


def splice(machine):
    """One document with everything that the profiler prints on this machine."""
    outputs = [path.read_bytes() for path in sorted((machine / "profiler").iterdir())]
    return outputs[0][:PROLOGUE] + b"".join(output[PROLOGUE:-EPILOGUE] for output in outputs) + outputs[0][-EPILOGUE:]


def row(applications, result):
    return (
        f"| {applications} | {result['document'] / 1e6:.2f} MB | {result['own']:.1f} ms | {result['peak'] / 1e6:.1f} MB "
        f"| {result['floor']:.1f} ms | {result['ratio']:.2f} "
        f"| {result['objects']:.1f} + {result['dates']:.1f} ms | {result['script']:.0f} ms, {result['times']:.1f} x |"
    )


def limits(results, extended):
    """What must hold: a sentence, the figure, and whether it does."""
    sentence = f"an extended scan at {EXTENDED_APPLICATIONS} at most 1.5 x the ordinary one"
    yield sentence, extended["times"], extended["times"] <= 1.5
    for size, result in results.items():
        allowed = 8 * result["document"] / 1e6 + 24
        yield f"peak at {size} at most {allowed:.0f} MB", result["peak"] / 1e6, result["peak"] / 1e6 <= allowed
    if 50 in results:
        yield "own CPU at 50 at most 25 ms", results[50]["own"], results[50]["own"] <= 25
    if 5000 in results:
        yield "ratio at 5000 at most 2.0", results[5000]["ratio"], results[5000]["ratio"] <= 2
        # The script does not use the stand-in, which no Mac runs.
        times = results[5000]["times of the product"]
        yield "script at 5000 at least 3 x the scan without the stand-in", times, times >= 3
    if 5000 in results and 20000 in results:
        growth = results[20000]["own"] / results[5000]["own"]
        yield "own CPU at 20000 over 5000 at most 6", growth, growth <= 6


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("applications", type=int, nargs="*", default=SIZES)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--distinct-dates", action="store_true")
    options = parser.parse_intermixed_args()
    same_date = 0 if options.distinct_dates else generate_machine.SAME_DATE

    print(f"| {COLUMNS} |", "|" + "---:|" * COLUMNS.count("|") + "---:|", sep="\n")
    results = {}
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options.build.resolve(), Path(folder))
        for applications in options.applications:
            results[applications] = bench.size(applications, options.rounds, same_date)
            print(row(applications, results[applications]), flush=True)
        # Without a namespace they would outlive the scan.
        busy = bench.busy(options.rounds) if NAMESPACE else None
        extended = bench.extended(options.rounds)
    if busy:
        print(f"\n{BUSY_APPLICATIONS} applications and {BUSY_PROCESSES} processes: own CPU {busy:.1f} ms")
    print(f"\n{EXTENDED_APPLICATIONS} applications on a Mac of today: own CPU {extended['ordinary']:.1f} ms, "
          f"of an extended scan {extended['extended']:.1f} ms, {extended['times']:.2f} x")
    print(f"\nscript: Python {platform.python_version()} ({sys.executable})")
    held = True
    for sentence, figure, holds in limits(results, extended):
        held = held and holds
        print(f"{'holds' if holds else 'FAILS'}: {sentence}: {figure:.2f}")
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
