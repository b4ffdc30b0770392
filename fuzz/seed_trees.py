#!/usr/bin/env python3
"""Describes recordings of the profiler for the target "trees": the first item of every list and a few of the rest.

    python3 fuzz/seed_trees.py RECORDING.plist... >SEED
"""

import datetime
import plistlib
import sys

MOST_ITEMS = 2


def lines(value):
    if isinstance(value, dict):
        yield "{"
        for key, element in value.items():
            # The titles of the keys are the same on every machine, and nothing reads them.
            if key != "_properties":
                yield f"k{key}"
                yield from lines(element)
        yield "}"
    elif isinstance(value, list):
        yield "["
        for element in value[:MOST_ITEMS]:
            yield from lines(element)
        yield "]"
    elif isinstance(value, bool):
        yield "t" if value else "f"
    elif isinstance(value, datetime.datetime):
        yield value.strftime("d%Y-%m-%dT%H:%M:%SZ")
    elif isinstance(value, (int, float)):
        yield f"{'i' if isinstance(value, int) else 'r'}{value}"
    elif isinstance(value, str):
        yield "s" + value.replace("\n", " ")


def main():
    for path in sys.argv[1:]:
        with open(path, "rb") as file:
            for data_type in plistlib.load(file):
                print("\n".join(lines(data_type)))


if __name__ == "__main__":
    main()
