"""Many scans of one simulated Mac with changing recordings: every scan starts as few processes as possible."""

import collections
import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

import inv_decoder
from scans import SCANNER, SIMULATOR

# Answers like the simulator's, without a process of its own for each recording.
QUICK_PROFILER = """#!/bin/sh
recording=$VELKARO_MACHINE/profiler/$4.plist
[ ! -f "$recording" ] || exec cat "$recording"
echo '<plist version="1.0"><array></array></plist>'
"""
QUICK_PS = "#!/bin/sh\necho root /sbin/launchd\n"

# In a namespace of its own a scan sees, and asks ps about, only its own processes.
NAMESPACE = (shutil.which("unshare") or "unshare", "--pid", "--fork", "--mount-proc")

# What differs from scan to scan: the branches and attributes that describe the run itself.
OWN_BRANCHES = {"Environment", "Processes", "Scan"}
OWN_ATTRIBUTES = {"timestamp", "scan-time", "first-scan", "last-scan", "snapshot-list"}


def own_namespace():
    """The beginning of a command line that gives a scan its own namespace; empty where the user may not have one."""
    allowed = shutil.which("unshare") and subprocess.run([*NAMESPACE, shutil.which("true")], capture_output=True).returncode == 0
    return NAMESPACE if allowed else ()


def facts(container):
    """How often the file has each fact, that is a path and its value, annotations included. Numbers of
    elements are left out of the paths: when one of a list is lost, the others still count."""
    counts = collections.Counter()

    def count(path, element):
        counts[path, element.value, tuple(element.annotations)] += 1

    def walk(path, tag):
        path += "/" + re.sub(r":[0-9]+$", "", tag.name)
        count(path, tag)
        for attribute in tag.attributes:
            if attribute.name not in OWN_ATTRIBUTES:
                count(f"{path}/@{re.sub(r':[0-9]+$', '', attribute.name)}", attribute)
        for child in tag.children:
            if child.name not in OWN_BRANCHES:
                walk(path, child)

    walk("", container.snapshot)
    walk("", container.asset_info)
    return counts


class QuickMac:
    """A folder of recordings that can be changed and scanned repeatedly, with these options; close() removes it."""

    def __init__(self, machine=None, prefix=(), options=()):
        self.prefix, self.options = prefix, options
        self.folder = tempfile.TemporaryDirectory()
        self.machine, self.tools, self.out = (Path(self.folder.name) / name for name in ("machine", "tools", "out"))
        self.tools.mkdir()
        self.out.mkdir()
        if machine:
            shutil.copytree(machine, self.machine)
        for name, script in (("system_profiler", QUICK_PROFILER), ("ps", QUICK_PS)):
            (self.tools / name).write_text(script)
            (self.tools / name).chmod(0o755)
        path = f"{self.tools}:{SIMULATOR / 'bin'}:{os.environ['PATH']}"
        self.environment = dict(os.environ, VELKARO_MACHINE=str(self.machine), TZ="UTC", PATH=path)

    def close(self):
        self.folder.cleanup()

    def scan(self):
        """The container that a scan saves. AssertionError, or the decoder's FormatError, when it fails in any way."""
        scan = subprocess.run(
            [*self.prefix, SCANNER, *self.options], cwd=self.out, env=self.environment, input=b"y\n", capture_output=True, timeout=120
        )
        if scan.returncode != 0:
            raise AssertionError(f"exit status {scan.returncode}\n{scan.stderr.decode(errors='replace')}")
        (path,) = self.out.iterdir()
        try:
            return inv_decoder.read_file(path)
        finally:
            path.unlink()
