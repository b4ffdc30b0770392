#!/usr/bin/env python3
"""Prints how much memory each command of the reader takes for files at its limit, as multiples of that limit: small files that
inflate to as much as may be read, in the shapes that cost most.

    bench/memory.py BUILD [--limit MB] [--most TIMES] [--shapes WORD...] [--commands NAME...]

A shape is as many lines as are read, or as many bytes. Commands that have several files in memory at once are measured by the
limits of all of them. Ends with status 1 when a command takes more than so many times the limit (4), or is ended by a signal.
"""

import argparse
import os
import resource
import sys
import tempfile
import zlib
from pathlib import Path

BYTES_OF_LINE = 128  # as inv/file/zxml_parser.h has it: what a line counts of the limit, however short it is
HEAD = "\ufeff?zxml\n+Snapshot=\ntimestamp=20120118153045.000000+120\n"
PLAIN_END = b"\0\0"
GUARD = 12 << 30  # of address space, for a command that takes far too much

# What a shape repeats, with its number where it says so, and the element around it.
SHAPES = {
    "applications without anything": ("*Soft:1=\n", "Software"),
    "applications with names": ("*Soft:1=Application\n", "Software"),
    "different applications": ("*Soft:{0}=Application {0}\nversion=1.{0}\nlocation=/Applications/{0}.app\n", "Software"),
    "values that grow in a page": ("*Soft:1=" + "&" * 900 + "\n", "Software"),
    "attributes": ("a=b\n", "Software"),
    "attributes with names": ("a{0}=b\n", "Software"),
    "annotations": ("~a=b\n", "Software"),
    "long values": ("a=" + "x" * 120 + "\n", "Software"),
    "paths of a person": ("*Soft:1=/Users/jane/a/b/c/d/e/f/g/h/i/j/k\n", "Software"),
    "accounts": ("*user:{0}=person{0}\n", "User-accounts"),
    "long values, not compressed": ("a=" + "x" * 120 + "\n", "Software", True),
    "volumes": ("*partition:1=a\nsize=5\n~base-value=7\nfree=3\n", "Storage"),
}
RULES = '{"rules": [{"name": "all", "severity": "low", "message": "{path}", "sql": "SELECT path FROM facts"}]}'

# Commands with the number of files that they have in memory at once.
COMMANDS = {
    "summary": (1, ["summary", "file.inv"]),
    "summary --json": (1, ["summary", "--json", "file.inv"]),
    "show": (1, ["show", "file.inv"]),
    "get": (1, ["get", "file.inv", "/*/*"]),
    "get --json": (1, ["get", "--json", "file.inv", "/*/*", "/*/*/*"]),
    "list": (1, ["list", "file.inv"]),
    "verify": (1, ["verify", "--strict", "file.inv"]),
    "verify --jobs 2": (2, ["verify", "--jobs", "2", "file.inv", "other.inv", "file.inv", "other.inv"]),
    "json": (1, ["export", "-f", "json", "file.inv", "-o", "/dev/null"]),
    "ndjson": (1, ["export", "-f", "ndjson", "file.inv", "-o", "/dev/null"]),
    "csv": (1, ["export", "-f", "csv", "file.inv", "-o", "/dev/null"]),
    "csv --jobs 2": (2, ["export", "-f", "csv", "--jobs", "2", "file.inv", "other.inv", "small.inv", "-o", "/dev/null"]),
    "zxml": (1, ["export", "-f", "zxml", "file.inv", "-o", "/dev/null"]),
    "diff": (1, ["diff", "small.inv", "file.inv"]),
    "diff of two": (2, ["diff", "other.inv", "file.inv"]),
    "diff --json": (1, ["diff", "--json", "small.inv", "file.inv"]),
    "diff markdown": (1, ["diff", "-f", "markdown", "file.inv", "small.inv"]),
    "unpack": (1, ["unpack", "file.inv", "folder"]),
    "report": (1, ["report", "file.inv", "-o", "page.html"]),
    "report --compare": (1, ["report", "--compare", "small.inv", "file.inv", "-o", "page.html"]),
    "report of a folder": (1, ["report", ".", "-o", "fleet.html"]),
    "load": (1, ["load", "macs.db", "file.inv"]),
    "load --jobs 2": (2, ["load", "--jobs", "2", "fleet.db", "file.inv", "other.inv"]),
    "query": (1, ["query", "SELECT count(*) FROM facts", "file.inv"]),
    "query of all": (1, ["query", "-f", "json", "SELECT * FROM facts", "file.inv"]),
    "policy": (1, ["policy", "rules.json", "file.inv"]),
    "redact": (1, ["redact", "file.inv", "-o", "shared.inv"]),
}


def text_of(unit, element, limit):
    """This unit repeated until the text is as large as may be read."""
    begin, end = f"{HEAD}+{element}=\n".encode(), b"-\n-\n"
    room, lines = limit - len(begin) - len(end), limit // BYTES_OF_LINE - 10
    pieces = [begin]
    for number in range(lines // unit.count("\n")):
        piece = unit.format(number).encode()
        room -= len(piece)
        if room < 0:
            break
        pieces.append(piece)
    return b"".join(pieces) + end


def file_of_text(text, plain):
    """Like inventories.file_of_text, which needs its own build."""
    section = text + PLAIN_END if plain else zlib.compress(text, 1) + b"\0\1ZXML"
    header = (f"[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength={len(section)}\ntype=snapshot\n"
              "timestamp=20120118153045.000000+120\nsnaptype=mac:1\n")
    return section + header.encode() + len(section).to_bytes(8, "big") + b"\3\0INV!"


def write_file(path, unit, element, limit, plain=False):
    """In a separate process: what a process held before it became another program would count as that program's."""
    child = os.fork()
    if child == 0:
        path.write_bytes(file_of_text(text_of(unit, element, limit), plain))
        os._exit(0)
    if os.waitpid(child, 0)[1] != 0:
        sys.exit(f"{path} cannot be written")


def peak(command, folder):
    """Bytes of memory, or None if a signal ended the command; and its exit status."""
    child = os.fork()
    if child == 0:
        os.chdir(folder)
        resource.setrlimit(resource.RLIMIT_AS, (GUARD, GUARD))
        null = os.open(os.devnull, os.O_RDWR)
        os.dup2(null, 1)
        os.dup2(null, 2)
        os.execv(command[0], command)
    _, status, usage = os.wait4(child, 0)
    return usage.ru_maxrss * 1024 if os.WIFEXITED(status) else None, os.waitstatus_to_exitcode(status)


def measure(reader, shape, names, limit):
    """Command after command with its peak for files of a shape, as a multiple of the limit, and its exit status."""
    with tempfile.TemporaryDirectory() as folder:
        files = Path(folder)
        unit, element, *rest = SHAPES[shape]
        write_file(files / "file.inv", unit, element, limit, *rest)
        write_file(files / "other.inv", unit.replace("=", "=x"), element, limit, *rest)
        write_file(files / "small.inv", "*a=\n", "Software", 1000)
        (files / "rules.json").write_text(RULES)
        for name in names:
            at_once, arguments = COMMANDS[name]
            taken, status = peak([reader, *arguments, "--max-size", str(limit)], folder)
            yield name, None if taken is None else taken / limit / at_once, status


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("--limit", type=int, default=256, help="in MB")
    parser.add_argument("--most", type=float, default=4)
    parser.add_argument("--shapes", nargs="+", choices=SHAPES, default=SHAPES, metavar="SHAPE")
    parser.add_argument("--commands", nargs="+", choices=COMMANDS, default=COMMANDS, metavar="COMMAND")
    options = parser.parse_args()
    limit, reader, beyond = options.limit << 20, str(options.build.resolve() / "inv"), []
    print("| command |", *(f"{shape} |" for shape in options.shapes))
    print("|---" * (len(options.shapes) + 1) + "|", flush=True)
    rows = {name: [] for name in options.commands}
    for shape in options.shapes:
        for name, times, status in measure(reader, shape, options.commands, limit):
            refused = " (refused)" if status == 2 else ""
            rows[name].append("ended" if times is None else f"{times:.1f}{refused}")
            if times is None or times > options.most:
                beyond.append(f"{name} of {shape}")
            print(f"{shape}: {name}: {rows[name][-1]}", file=sys.stderr, flush=True)
    for name, cells in rows.items():
        print(f"| {name} |", *(f"{cell} |" for cell in cells))
    if beyond:
        sys.exit(f"more than {options.most} times the limit: {', '.join(beyond)}")


if __name__ == "__main__":
    main()
