"""Includes point one way: from the program's top towards the platform, never back."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SOURCES = [path for folder in ("src", "inv") for path in sorted((ROOT / folder).rglob("*")) if path.suffix in (".h", ".cpp")]

# The folders that each folder may include from; what these may include comes with them.
BELOW = {
    "src": ["src/driver"],
    "src/driver": ["src/extended"],
    "src/extended": ["src/collectors"],
    "src/collectors": ["src/profiler"],
    "src/profiler": ["src/zxml", "src/plist"],
    "src/zxml": ["src/driver/base"],
    "src/driver/base": ["src/platform"],
    "src/plist": [],
    "src/platform": [],
    "src/platform/darwin": ["src/platform"],
    "src/platform/linux": ["src/platform"],
    "src/platform/corefoundation": ["src/platform", "src/plist"],
    "src/platform/corefoundation/include/CoreFoundation": [],
    "src/platform/corefoundation/include/SystemConfiguration": [],
    # The reader uses the tree and the scanner of property lists, and nothing above them.
    "inv/base": ["src/driver/base", "src/plist"],
    "inv/file": ["inv/base", "src/zxml"],
    "inv/signature": ["inv/base"],
    "inv/facts": ["inv/file"],
    "inv/secrets": ["inv/facts"],
    "inv/show": ["inv/facts"],
    "inv/export": ["inv/facts"],
    "inv/compare": ["inv/show"],
    "inv/report": ["inv/compare"],
    "inv/redact": ["inv/facts"],
    "inv/commands": ["inv/signature", "inv/secrets", "inv/show", "inv/export", "inv/compare", "inv/report", "inv/redact"],
    "inv": ["inv/commands"],
}


def reachable(folder):
    """The folder and all below it; a cycle would recurse without end, and so fails."""
    return {folder}.union(*(reachable(below) for below in BELOW[folder]))


def includes(path):
    for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
        beside = path.parent / name
        target = beside if beside.exists() else ROOT / name if (ROOT / name).exists() else ROOT / "src" / name
        yield target.relative_to(ROOT).as_posix() if target.exists() else None, name


class Includes(unittest.TestCase):
    def test_point_downwards_only(self):
        wrong = []
        for path in SOURCES:
            allowed = reachable(path.parent.relative_to(ROOT).as_posix())
            for target, name in includes(path):
                if target is None or Path(target).parent.as_posix() not in allowed:
                    wrong.append(f"{path.relative_to(ROOT)} includes {name}")
        self.assertEqual(wrong, [])

    def test_only_the_platform_asks_which_platform_it_is(self):
        pattern = re.compile(r"__APPLE__|__linux__|__MACH__")
        wrong = [str(path) for path in SOURCES if "src/platform/" not in path.as_posix() and pattern.search(path.read_text())]
        self.assertEqual(wrong, [])


if __name__ == "__main__":
    unittest.main()
