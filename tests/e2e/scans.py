"""Running the real scanner on simulated Macs, for the end-to-end tests."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import inv_decoder

ROOT = Path(__file__).resolve().parents[2]
SIMULATOR = ROOT / "simulator"
MACHINES = SIMULATOR / "machines"
ALL_MACHINES = sorted(folder for folder in MACHINES.iterdir() if folder.is_dir())
IMAC = MACHINES / "imac-10.6"
SCANNER = os.path.abspath(os.environ["VELKARO_SCANNER"])
SAMPLES = ROOT.parent / "shared" / "samples" / "machines"

PERCENTAGES = "".join(f"{percent}%\n" for percent in range(10, 101, 10))
PROMPT = "Velkaro scanner for MacOS X\nDo you want to start the scan of local computer?(y/n)\n"


class ScanTestCase(unittest.TestCase):
    """Each test scans into a new folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.tools = self.folder / "tools"
        self.out = self.folder / "out"
        self.tools.mkdir()
        self.out.mkdir()

    def write_tool(self, name, script):
        """Writes a tool that takes precedence over the simulator's."""
        tool = self.tools / name
        # A link to one of the machine's own tools is replaced, not written through.
        tool.unlink(missing_ok=True)
        tool.write_text("#!/bin/sh\n" + script)
        tool.chmod(0o755)

    def environment(self, machine, **changes):
        environment = dict(os.environ, VELKARO_MACHINE=str(machine), TZ="UTC", **changes)
        environment.setdefault("PATH", "")
        environment["PATH"] = f"{self.tools}:{SIMULATOR / 'bin'}:{os.environ['PATH']}"
        return environment

    def scan(self, *arguments, machine=IMAC, answer=None, prefix=(), **changes):
        """The finished process of one scan, its output as text."""
        return subprocess.run(
            [*prefix, SCANNER, *arguments],
            cwd=self.out,
            env=self.environment(machine, **changes),
            input=answer,
            stdin=subprocess.DEVNULL if answer is None else None,
            capture_output=True,
            text=True,
            timeout=300,
        )

    def files(self):
        return sorted(path.name for path in self.out.iterdir())

    def decode(self, name=None):
        """The container of a saved file; of the only one when no name is given."""
        if name is None:
            (name,) = self.files()
        return inv_decoder.read_file(self.out / name)

    def scan_silently(self, machine=IMAC, *arguments, **changes):
        """The container that a silent scan saves."""
        before = set(self.files())
        result = self.scan("/silent", *arguments, machine=machine, **changes)
        self.assertEqual(result.returncode, 0, result.stderr)
        (name,) = set(self.files()) - before
        self.assertEqual(result.stdout, f"{PERCENTAGES}>>>{name}\n" if "/debug" not in arguments else f">>>{name}\n")
        return self.decode(name)
