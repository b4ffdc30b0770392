"""The formula is filled in from a release's archive, and meets the demands of `brew audit`."""

import hashlib
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import release

SCRIPT = release.ROOT / "packaging" / "homebrew" / "formula"
URL = "https://example.org/velkaro/archive/v12.1.18.tar.gz"


class Formula(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            cls.archive = Path(folder) / "archive.tar.gz"
            cls.archive.write_bytes(b"sources")
            cls.text = release.output_of(SCRIPT, "https://example.org/velkaro", URL, cls.archive)

    def test_fetches_the_archive_by_its_checksum(self):
        self.assertIn(f'  homepage "https://example.org/velkaro"\n  url "{URL}"\n  sha256 "{hashlib.sha256(b"sources").hexdigest()}"\n', self.text)
        self.assertNotIn("@", self.text)

    def test_names_no_licence(self):
        self.assertIn("  license :cannot_represent\n", self.text)

    def test_has_its_parts_in_the_usual_order(self):
        parts = re.findall(r"^  (desc|homepage|url|sha256|license|depends_on|uses_from_macos|def|test)\b", self.text, re.M)
        order = ["desc", "homepage", "url", "sha256", "license", "depends_on", "uses_from_macos", "def", "test"]
        self.assertEqual(parts, sorted(parts, key=order.index))
        self.assertEqual(set(parts), set(order))
        for pattern in (r'depends_on "([\w-]+)" => :build', r'depends_on "([\w-]+)"$', r'uses_from_macos "(\w+)"'):
            names = re.findall(pattern, self.text, re.M)
            self.assertEqual(names, sorted(names))

    def test_is_described_in_one_short_line_without_its_name(self):
        description = re.search(r'desc "(.*)"', self.text)[1]
        self.assertLess(len(f"velkaro-scanner: {description}"), 80)
        self.assertNotRegex(description, r"(?i)^(an?|the) |velkaro|\.$")

    def test_takes_all_that_the_build_needs(self):
        lists = (release.ROOT / "inv" / "CMakeLists.txt").read_text()
        needed = set(re.findall(r"velkaro_needs\(\w+ [\w-]+ ([\w-]+)\)", lists))
        self.assertEqual(needed | {"cmake", "python", "zlib"}, set(re.findall(r'(?:depends_on|uses_from_macos) "([\w-]+)"', self.text)))

    @unittest.skipUnless(shutil.which("ruby"), "ruby is not installed")
    def test_is_sound_ruby(self):
        subprocess.run(["ruby", "-c"], input=self.text, text=True, check=True, capture_output=True, timeout=60)


if __name__ == "__main__":
    unittest.main()
