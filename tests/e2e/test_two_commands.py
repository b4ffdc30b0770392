"""The two commands in a clean clone: ./scan builds and scans, a second run installs and rebuilds nothing, and the result is, byte for byte, that of a build in
another folder."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import inv_decoder

ROOT = Path(__file__).resolve().parents[2]
RELEASE = ROOT / "build" / "release"


def uncommitted_changes():
    return subprocess.run(["git", "status", "--porcelain"], cwd=ROOT, capture_output=True, check=True).stdout


class CleanClone(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.clone, cls.out = cls.folder / "clone", cls.folder / "out"
        cls.out.mkdir()
        subprocess.run(["git", "clone", "-q", ROOT, cls.clone], check=True)
        cls.scans = [
            subprocess.run([cls.clone / "scan", "/silent"], cwd=cls.out, capture_output=True, text=True) for _ in range(2)
        ]

    def test_scan_builds_runs_in_the_callers_folder_and_builds_only_once(self):
        for scan in self.scans:
            self.assertEqual(scan.returncode, 0, scan.stderr)
        names = [scan.stdout.splitlines()[-1].removeprefix(">>>") for scan in self.scans]
        self.assertEqual(sorted(names), sorted(path.name for path in self.out.iterdir()))
        for name in names:
            container = inv_decoder.read_file(self.out / name)
            self.assertEqual((container.snapshot.name, container.asset_info.name), ("Snapshot", "AssetInfo"))
        self.assertEqual(self.scans[1].stderr, "")
        self.assertNotRegex((self.clone / "build" / "release.log").read_text(), r"Building|Linking")

    def other_build(self):
        """The same sources built here, at another time."""
        if not RELEASE.exists():
            self.skipTest("the preset release is not built")
        if uncommitted_changes():
            self.skipTest("the sources here are not those of the clone")
        subprocess.run(["cmake", "--build", RELEASE], check=True, capture_output=True)
        return RELEASE

    def test_two_builds_have_the_same_bytes(self):
        other = self.other_build()
        for name in ("velkaro-scanner", "inv", "velkaro-scanner.cdx.json", "inv.cdx.json"):
            self.assertTrue((self.clone / "build/release" / name).read_bytes() == (other / name).read_bytes(), name)

    def test_two_builds_give_the_same_packages(self):
        ours, theirs = self.folder / "ours", self.folder / "theirs"
        self.pack(self.other_build(), ours, umask=0o022, TZ="Asia/Tokyo", LC_ALL="C")
        self.pack(self.clone / "build/release", theirs, umask=0o077, TZ="America/Lima", LC_ALL="C.UTF-8")
        packages = [path for path in ours.iterdir() if path.is_file()]
        self.assertEqual(len(packages), 3)
        for package in packages:
            self.assertTrue(package.read_bytes() == (theirs / package.name).read_bytes(), package.name)

    def pack(self, build, out, umask, **variables):
        script = build.parents[1] / "packaging" / "linux" / "package"
        subprocess.run([script, build, out], check=True, capture_output=True, umask=umask, env={**os.environ, **variables})


if __name__ == "__main__":
    unittest.main()
