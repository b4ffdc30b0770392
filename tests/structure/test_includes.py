"""Includes point one way: from the program's top towards the platform, never back."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SOURCES = [path for folder in ("src", "inv") for path in sorted((ROOT / folder).rglob("*")) if path.suffix in (".h", ".cpp")]

# From the top down: a file includes only from its own layer and those below. The first pattern that matches a path names its layer.
LAYERS = [
    ("main", r"src/main\."),
    ("scan_driver", r"src/driver/scan_driver\."),
    ("asset_info", r"src/zxml/asset_info\."),
    ("collectors", r"src/collectors/"),
    ("profiler", r"src/profiler/"),
    # The reader stands on the tree and the scanner of property lists, beside everything above.
    ("inv", r"inv/"),
    ("corefoundation", r"src/platform/corefoundation/"),
    ("zxml", r"src/zxml/"),
    ("plist", r"src/plist/"),
    ("ground", r"src/driver/"),
    ("platform", r"src/platform/"),
]
ORDER = [name for name, _ in LAYERS]
# Neighbours in the order that know nothing of each other.
STRANGERS = {("zxml", "plist"), ("corefoundation", "zxml"), ("inv", "corefoundation"), ("profiler", "inv")}


def layer(path):
    return next(name for name, pattern in LAYERS if re.match(pattern, path))


def includes(path):
    for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
        beside = path.parent / name
        target = beside if beside.exists() else ROOT / name if (ROOT / name).exists() else ROOT / "src" / name
        yield target.relative_to(ROOT).as_posix() if target.exists() else None, name


class Includes(unittest.TestCase):
    def test_point_downwards_only(self):
        wrong = []
        for path in SOURCES:
            own = layer(path.relative_to(ROOT).as_posix())
            for target, name in includes(path):
                other = layer(target) if target else None
                down = other and ORDER.index(own) <= ORDER.index(other) and (own, other) not in STRANGERS
                if not down:
                    wrong.append(f"{path.relative_to(ROOT)} includes {name}")
        self.assertEqual(wrong, [])

    def test_only_the_platform_asks_which_platform_it_is(self):
        pattern = re.compile(r"__APPLE__|__linux__|__MACH__")
        wrong = [str(path) for path in SOURCES if "src/platform/" not in path.as_posix() and pattern.search(path.read_text())]
        self.assertEqual(wrong, [])


if __name__ == "__main__":
    unittest.main()
