"""The two commands in a clean clone: ./scan builds and scans, and a second run installs and rebuilds nothing."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import inv_decoder

ROOT = Path(__file__).resolve().parents[2]


class CleanClone(unittest.TestCase):
    def test_scan_builds_runs_in_the_callers_folder_and_builds_only_once(self):
        with tempfile.TemporaryDirectory() as folder:
            clone, out = Path(folder) / "clone", Path(folder) / "out"
            out.mkdir()
            subprocess.run(["git", "clone", "-q", ROOT, clone], check=True)
            scans = [subprocess.run([clone / "scan", "/silent"], cwd=out, capture_output=True, text=True) for _ in range(2)]
            for scan in scans:
                self.assertEqual(scan.returncode, 0, scan.stderr)
            names = [scan.stdout.splitlines()[-1].removeprefix(">>>") for scan in scans]
            self.assertEqual(sorted(names), sorted(path.name for path in out.iterdir()))
            for name in names:
                container = inv_decoder.read_file(out / name)
                self.assertEqual((container.snapshot.name, container.asset_info.name), ("Snapshot", "AssetInfo"))
            self.assertEqual(scans[1].stderr, "")
            self.assertNotRegex((clone / "build" / "release.log").read_text(), r"Building|Linking")


if __name__ == "__main__":
    unittest.main()
