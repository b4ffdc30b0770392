#!/usr/bin/env python3
"""Damages the profiler's outputs of the simulated Macs byte by byte, and counts the facts that the inventories lose.
Macs that have recordings of the small tools are scanned with /extended, and those recordings are damaged too.

    VELKARO_SCANNER=build/release/velkaro-scanner python3 tests/e2e/corruption_sweep.py

Every scan has to end with status 0 and a valid file, and the median of the facts lost by one corrupted byte may be 1
at most: otherwise the exit status is 1. How much a truncation costs depends on where it cuts, so that is only reported.
"""

import argparse
import concurrent.futures
import os
import queue
import random
import statistics
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

from inv_decoder import FormatError
from quick_scans import QuickMac, facts, own_namespace
from scans import ALL_MACHINES

# A machine's folders with files to damage. Only newer Macs have the second.
OUTPUTS = ("profiler", "tools")
BYTES = (0x00, 0x80, 0xFF, ord("<"), ord("&"))


@dataclass
class Damage:
    recording: str  # "profiler/SPSoftwareDataType.plist"
    offset: int
    byte: int = None  # None: the output ends at the offset

    def apply(self, output):
        if self.byte is None:
            return output[: self.offset]
        return output[: self.offset] + bytes([self.byte]) + output[self.offset + 1 :]

    def __str__(self):
        what = "cut" if self.byte is None else f"{self.byte:#04x}"
        return f"{self.recording} at {self.offset}: {what}"


def truncations(outputs, count):
    """Cuts spread over all outputs. Each leaves something: a profiler that prints nothing is run again and again."""
    for i in range(count):
        recording = sorted(outputs)[i % len(outputs)]
        share = (i // len(outputs) + 0.5) / -(-count // len(outputs))
        yield Damage(recording, 1 + int((len(outputs[recording]) - 1) * share))


def corruptions(outputs, count, source):
    """Single bytes, at positions chosen evenly over all outputs together."""
    recordings = sorted(outputs)
    for _ in range(count):
        (recording,) = source.choices(recordings, [len(outputs[name]) for name in recordings])
        offset = source.randrange(len(outputs[recording]))
        yield Damage(recording, offset, source.choice([byte for byte in BYTES if byte != outputs[recording][offset]]))


class Sweep:
    """Damages several copies of one machine at the same time. To be used in a with statement."""

    def __init__(self, machine, jobs):
        self.jobs = jobs
        paths = [path for folder in OUTPUTS if (machine / folder).is_dir() for path in (machine / folder).iterdir()]
        self.outputs = {str(path.relative_to(machine)): path.read_bytes() for path in paths}
        options = ["/extended"] if (machine / "tools").is_dir() else []
        self.failures = []
        prefix = own_namespace()
        self.copies = [QuickMac(machine, prefix, options) for _ in range(jobs)]
        self.idle = queue.SimpleQueue()
        for copy in self.copies:
            self.idle.put(copy)
        self.whole = facts(self.copies[0].scan())

    def __enter__(self):
        return self

    def __exit__(self, *error):
        for copy in self.copies:
            copy.close()

    def lost(self, damage):
        """The facts that a scan of the damaged machine does not report; None when the scan fails."""
        copy = self.idle.get()
        output = self.outputs[damage.recording]
        (copy.machine / damage.recording).write_bytes(damage.apply(output))
        try:
            return self.whole - facts(copy.scan())
        except (AssertionError, FormatError, ValueError, subprocess.TimeoutExpired) as error:
            self.failures.append(f"{damage}: {error}")
            return None
        finally:
            (copy.machine / damage.recording).write_bytes(output)
            self.idle.put(copy)

    def losses(self, damages):
        """(damage, lost facts) of every scan that does not fail."""
        damages = list(damages)
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            return [(damage, lost) for damage, lost in zip(damages, pool.map(self.lost, damages)) if lost is not None]


def median_loss(losses):
    return statistics.median(lost.total() for _, lost in losses)


def summary(losses):
    """One line about how many facts were lost, and what cost the most."""
    counts = sorted(lost.total() for _, lost in losses)
    worst, _ = max(losses, key=lambda loss: loss[1].total())
    return (
        f"{len(counts)} scans: median {median_loss(losses):g}, mean {statistics.mean(counts):.2f}, "
        f"nothing lost in {counts.count(0)}, at most one fact in {sum(count <= 1 for count in counts)}, "
        f"95% at most {counts[len(counts) * 95 // 100]}, most {counts[-1]} ({worst})"
    )


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("machines", nargs="*", type=Path, default=ALL_MACHINES, help="recordings to damage")
    parser.add_argument("--truncations", type=int, default=400, help="of each machine")
    parser.add_argument("--corruptions", type=int, default=1000, help="of each machine")
    parser.add_argument("--seed", type=int, default=0)
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="scans at the same time")
    parser.add_argument("--worst", type=int, default=0, help="show what this many of the worst corruptions cost")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    passed = True
    for machine in arguments.machines:
        with Sweep(machine, arguments.jobs) as sweep:
            print(f"{machine.name}: {len(sweep.outputs)} outputs, {sweep.whole.total()} facts", flush=True)
            print("  truncations", summary(sweep.losses(truncations(sweep.outputs, arguments.truncations))), flush=True)
            source = random.Random(f"{arguments.seed} {machine.name}")
            losses = sweep.losses(corruptions(sweep.outputs, arguments.corruptions, source))
            print("  corruptions", summary(losses), flush=True)
            for damage, lost in sorted(losses, key=lambda loss: -loss[1].total())[: arguments.worst]:
                print(f"    {damage}: {lost.total()} facts, for example {sorted(lost)[:3]}")
            for failure in sweep.failures:
                print(f"  FAILED {failure}")
            passed = passed and not sweep.failures and median_loss(losses) <= 1
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
