"""Every source is formatted by clang-format."""

import re
import shutil
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("src", "inv", "tests", "fuzz", "bench")

# Every version formats differently; this is Debian 12's.
VERSION = "14"


def installed_version():
    if not shutil.which("clang-format"):
        return None
    printed = subprocess.run(["clang-format", "--version"], check=True, capture_output=True, text=True).stdout
    return re.search(r"version (\d+)", printed).group(1)


class Format(unittest.TestCase):
    @unittest.skipUnless(installed_version() == VERSION, f"no clang-format {VERSION}")
    def test_of_every_source(self):
        files = [str(path) for folder in FOLDERS for path in sorted((ROOT / folder).rglob("*"))
                 if path.suffix in (".h", ".cpp") and "node_modules" not in path.parts]
        self.assertGreater(len(files), 300)
        run = subprocess.run(["clang-format", "--dry-run", "--Werror", *files], cwd=ROOT, capture_output=True, text=True)
        self.assertEqual((run.returncode, run.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
