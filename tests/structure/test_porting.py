"""The page about what only a Mac can show names tests that exist."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs" / "porting.md").read_text()
TESTS = {
    f"{suite}.{name}"
    for path in (ROOT / "tests").rglob("*_test.cpp")
    for suite, name in re.findall(r"^TEST(?:_[FP])?\((\w+), (\w+)\)", path.read_text(), re.M)
}


class Porting(unittest.TestCase):
    def test_every_test_it_names_is_there(self):
        named = set(re.findall(r"`([A-Z]\w+\.[A-Z]\w+)`", PAGE))
        self.assertGreater(len(named), 25)
        self.assertEqual(named - TESTS, set())

    def test_every_file_it_names_is_there(self):
        for name in re.findall(r"`((?:src|tests|packaging|simulator|\.ci)/[\w/]*)", PAGE):
            self.assertTrue((ROOT / name).exists(), name)

    def test_every_difference_on_purpose_has_a_test_of_the_stand_in(self):
        stand_in = (ROOT / "tests" / "platform" / "stand_in_test.cpp").read_text()
        for suite in re.findall(r"^TEST(?:_F)?\((\w+),", stand_in, re.M):
            if suite not in ("TimeZone", "PropertyListErrors"):
                self.assertIn(f"`{suite}.", PAGE)


if __name__ == "__main__":
    unittest.main()
