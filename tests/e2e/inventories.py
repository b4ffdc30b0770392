"""Files of the simulated Macs, and the reader `inv` to run on them."""

import functools
import os
import struct
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

import inv_decoder

ROOT = Path(__file__).resolve().parents[2]
SIMULATOR = ROOT / "simulator"
MACHINES = sorted(folder for folder in (SIMULATOR / "machines").iterdir() if folder.is_dir())
# Those with full lists; the newer Macs have a few of everything.
FULL_MACHINES = ("imac-10.6", "mac-pro-10.5", "macbook-10.7")
SCANNER = os.environ["VELKARO_SCANNER"]
INV = Path(os.environ["VELKARO_BUILD"]) / "inv"

_folder = tempfile.TemporaryDirectory()
FOLDER = Path(_folder.name)

# A simulated Mac has the processes and the environment of the machine that runs the tests. Their command lines and values may
# hold anything, secrets among them, so these tools come before the machine's own.
HOST_TOOLS = {
    "ps": "echo 'root /Applications/Render.app/Contents/MacOS/Render --queue /Volumes/Projects'",
    "env": "echo HOME=/Users/robin; echo LANG=de_DE.UTF-8; echo SSH_CLIENT=198.51.100.9 50022 22; echo SHELL=/bin/bash",
}


@functools.lru_cache(maxsize=None)
def host_tools():
    """The folder of these tools, to be put first on PATH."""
    folder = FOLDER / "host"
    folder.mkdir()
    for name, script in HOST_TOOLS.items():
        (folder / name).write_text(f"#!/bin/sh\n{script}\n")
        (folder / name).chmod(0o755)
    return folder


def scan(machine, *arguments, prefix=()):
    """The path of the file that a silent scan of a machine's folder saves, in a folder of its own."""
    out = Path(tempfile.mkdtemp(dir=FOLDER))
    command = [*prefix, SIMULATOR / "run", machine, SCANNER, "/silent", *arguments]
    environment = {**os.environ, "PATH": f"{host_tools()}:{os.environ['PATH']}"}
    subprocess.run(command, cwd=out, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True, timeout=300)
    (path,) = out.iterdir()
    return path


@functools.lru_cache(maxsize=None)
def scanned(name):
    """The same for one of the simulator's machines, scanned once for all tests."""
    return scan(SIMULATOR / "machines" / name)


@functools.lru_cache(maxsize=None)
def debug_scanned(name):
    return scan(SIMULATOR / "machines" / name, "/debug")


def file_of_text(text):
    """The bytes of a file whose one section is a snapshot of this text."""
    section = zlib.compress(text, 9) + b"\0\1ZXML"
    header = (f"[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength={len(section)}\ntype=snapshot\n"
              "timestamp=20120118153045.000000+120\nsnaptype=mac:1\n")
    return section + header.encode() + struct.pack(">Q", len(section)) + b"\3\0INV!"


def inv(*arguments, **options):
    """The finished process of one command, its output as bytes."""
    return subprocess.run([INV, *arguments], capture_output=True, timeout=300, **options)


def facts(path):
    """What the independent decoder finds in a file, as (path, name, value, stated unit, base value), in order."""
    found = []

    def walk(tag, path):
        if tag.value:
            found.append((path or "/", tag.name, tag.value, "", ""))
        for attribute in tag.attributes:
            if attribute.annotation("complex") is not None and not attribute.value:
                continue
            unit = attribute.annotation("units") or ""
            base_value = attribute.annotation("base-value") or ""
            found.append((f"{path}/{attribute.name}", attribute.name, attribute.value, unit, base_value))
        for child in tag.children:
            walk(child, f"{path}/{child.name}")

    for section in inv_decoder.read_file(path).sections:
        if section.tree:
            top = section.tree.top
            walk(top, "" if top.name == "Snapshot" else top.name)
    return found


@unittest.skipUnless(INV.is_file(), "inv is not built here: its libraries are missing")
class InventoryTestCase(unittest.TestCase):
    def check(self, status, *arguments, **options):
        """The output of a command that ends with this status, as text; its messages are in self.messages."""
        result = inv(*arguments, **options)
        self.messages = result.stderr.decode()
        self.assertEqual(result.returncode, status, (arguments, self.messages))
        return result.stdout.decode()
