#!/usr/bin/env python3
"""Prints how much memory each command of the reader takes for files at its limit, as multiples of that limit: small files that
inflate to as much as may be read, in the shapes that cost most.

    bench/memory.py BUILD [--limit MB] [--most TIMES]

A shape is as many lines as are read, or as many bytes. Ends with status 1 when a command takes more than so many times the limit
(4) or is ended by a signal; the limit of 256 MB is the one that counts, since that of the lines belongs to it.
"""

import argparse
import os
import sys
import tempfile
import zlib
from pathlib import Path

MOST_LINES = 2_000_000  # as inv/file/zxml_parser.h has it
HEAD = "\ufeff?zxml\n+Snapshot=\ntimestamp=20120118153045.000000+120\n"
# What a shape repeats, and the element around it.
SHAPES = {
    "applications without anything": ("*Soft:1=\n", "Software"),
    "applications with names": ("*Soft:1=Application\n", "Software"),
    "values that grow in a page": ("*Soft:1=" + "&" * 900 + "\n", "Software"),
    "attributes": ("a=b\n", "Software"),
    "annotations": ("~a=b\n", "Software"),
    "long values": ("a=" + "x" * 100 + "\n", "Software"),
    "paths of a person": ("*Soft:1=/Users/jane/a/b/c/d/e/f/g/h/i/j/k\n", "Software"),
    "volumes": ("*partition:1=a\nsize=5\n~base-value=7\nfree=3\n", "Storage"),
}
COMMANDS = {
    "summary": ["summary", "file.inv"],
    "show": ["show", "file.inv"],
    "get": ["get", "file.inv", "/*/*"],
    "list": ["list", "file.inv"],
    "verify": ["verify", "file.inv"],
    "json": ["export", "-f", "json", "file.inv", "-o", "/dev/null"],
    "csv": ["export", "-f", "csv", "file.inv", "-o", "/dev/null"],
    "zxml": ["export", "-f", "zxml", "file.inv", "-o", "/dev/null"],
    "diff": ["diff", "small.inv", "file.inv"],
    "unpack": ["unpack", "file.inv", "folder"],
    "report": ["report", "file.inv", "-o", "page.html"],
    "load": ["load", "macs.db", "file.inv"],
    "redact": ["redact", "file.inv", "-o", "shared.inv"],
}

def text_of(unit, element, limit):
    """A text of this unit, again and again, that is as large as may be read."""
    begin, end = f"{HEAD}+{element}=\n", "-\n-\n"
    room = limit - len(begin.encode()) - len(end)
    count = min(room // len(unit.encode()), (MOST_LINES - 10) // unit.count("\n"))
    return (begin + unit * count + end).encode()


def file_of_text(text):
    """As inventories.file_of_text, which wants a build of its own."""
    section = zlib.compress(text, 6) + b"\0\1ZXML"
    header = (f"[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength={len(section)}\ntype=snapshot\n"
              "timestamp=20120118153045.000000+120\nsnaptype=mac:1\n")
    return section + header.encode() + len(section).to_bytes(8, "big") + b"\3\0INV!"


def write_file(path, unit, element, limit):
    """In a process of its own: what a process held before it became another program would count as that one's."""
    child = os.fork()
    if child == 0:
        path.write_bytes(file_of_text(text_of(unit, element, limit)))
        os._exit(0)
    if os.waitpid(child, 0)[1] != 0:
        sys.exit(f"{path} cannot be written")


def peak(command, folder):
    """Bytes of memory, or none when a signal ended the command."""
    child = os.fork()
    if child == 0:
        os.chdir(folder)
        null = os.open(os.devnull, os.O_RDWR)
        os.dup2(null, 1)
        os.dup2(null, 2)
        os.execv(command[0], command)
    _, status, usage = os.wait4(child, 0)
    return usage.ru_maxrss * 1024 if os.WIFEXITED(status) else None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("--limit", type=int, default=256, help="in MB")
    parser.add_argument("--most", type=float, default=4)
    options = parser.parse_args()
    limit, reader, beyond = options.limit << 20, str(options.build.resolve() / "inv"), []
    print("| shape | file |", *(f"{name} |" for name in COMMANDS))
    print("|---" * (len(COMMANDS) + 2) + "|")
    for shape, (unit, element) in SHAPES.items():
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "file.inv"
            write_file(file, unit, element, limit)
            write_file(Path(folder) / "small.inv", "*a=\n", "Software", 1000)
            taken = {name: peak([reader, *command, "--max-size", str(limit)], folder) for name, command in COMMANDS.items()}
            size = file.stat().st_size
        cells = ["ended" if each is None else f"{each / limit:.1f}" for each in taken.values()]
        beyond += [f"{name} of {shape}" for name, each in taken.items() if each is None or each > options.most * limit]
        print(f"| {shape} | {size / 1000:.0f} KB |", *(f"{cell} |" for cell in cells), flush=True)
    if beyond:
        sys.exit(f"more than {options.most} times the limit: {', '.join(beyond)}")


if __name__ == "__main__":
    main()
