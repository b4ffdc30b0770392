"""A host that is the same everywhere. A simulated Mac takes its processes and its environment from the machine that runs the
tests, and with them whatever identifies its owner."""

import functools

import inventories
import namespaces

TOOLS = {
    "ps": "echo 'root /Applications/Render.app/Contents/MacOS/Render --queue /Volumes/Projects'",
    "env": "echo HOME=/Users/robin; echo LANG=de_DE.UTF-8; echo SSH_CLIENT=198.51.100.9 50022 22; echo SHELL=/bin/bash",
}

# The command to put before a scan, so that it sees itself as the only process, where this machine allows it.
ALONE = namespaces.own_processes()


@functools.lru_cache(maxsize=None)
def tools():
    """The folder of these tools, to be put before the machine's own on PATH."""
    folder = inventories.FOLDER / "host"
    folder.mkdir()
    for name, script in TOOLS.items():
        (folder / name).write_text(f"#!/bin/sh\n{script}\n")
        (folder / name).chmod(0o755)
    return folder


def scan(machine, *arguments):
    """The path of the file that a silent scan of a machine's folder saves."""
    return inventories.scan(machine, *arguments, prefix=ALONE, tools=tools())
