"""No command takes more than four times the limit of memory, whatever small file inflates to that limit.

The whole table, at the usual limit, is bench/memory.py's; its shapes and commands are tried here at a small one."""

import importlib.util
import unittest
from pathlib import Path

from inventories import INV

LIMIT = 16 << 20
MOST_TIMES = 4

# The commands that build most of each shape.
CASES = {
    "different applications": ["diff", "report", "redact", "query of all"],
    "attributes with names": ["diff --json", "get --json"],
    "annotations": ["json"],
}
# What asks for more than a result may be, which ends with a complaint.
REFUSED = {"query of all"}


def bench():
    source = Path(__file__).resolve().parents[2] / "bench" / "memory.py"
    description = importlib.util.spec_from_file_location("memory", source)
    module = importlib.util.module_from_spec(description)
    description.loader.exec_module(module)
    return module


@unittest.skipIf(INV.parent.name == "sanitize", "the sanitizers take memory of their own")
class Memory(unittest.TestCase):
    def test_no_command_takes_more_than_four_times_the_limit(self):
        memory = bench()
        for shape, commands in CASES.items():
            for name, times, status in memory.measure(str(INV), shape, commands, LIMIT):
                with self.subTest(shape=shape, command=name):
                    self.assertIsNotNone(times, "ended by a signal")
                    self.assertLess(times, MOST_TIMES)
                    self.assertIn(status, (0, 1) if name not in REFUSED else (2,))


if __name__ == "__main__":
    unittest.main()
