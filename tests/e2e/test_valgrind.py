"""A whole scan under valgrind: no memory error, and nothing of ours lost or still held at its end."""

import os
import re
import shutil
import subprocess
import unittest

from quick_scans import QuickMac, own_namespace
from scans import IMAC, SCANNER

FRAME = re.compile(r" (?:at|by) 0x[0-9A-F]+: .* \((.*)\)$", re.MULTILINE)


def is_ours(record):
    """Whether the block was allocated by our own code, which then is the caller of the allocator, templates from the
    language's headers included. Code of other libraries has no line numbers, but "in LIBRARY"."""
    callers = [place for place in FRAME.findall(record) if "vgpreload" not in place and "libstdc++" not in place]
    return bool(callers) and (not callers[0].startswith("in ") or callers[0].endswith("velkaro-scanner"))


@unittest.skipIf(os.environ["VELKARO_BUILD"].endswith("sanitize"), "the sanitizers watch that build themselves")
@unittest.skipUnless(shutil.which("valgrind"), "valgrind is not installed")
class WholeScan(unittest.TestCase):
    def test_leaves_nothing_behind(self):
        mac = QuickMac(IMAC, own_namespace())
        self.addCleanup(mac.close)
        path = mac.machine / "report"
        valgrind = [shutil.which("valgrind"), "--leak-check=full", "--show-leak-kinds=all", f"--log-file={path}"]
        command = [*mac.prefix, *valgrind, SCANNER, "/silent"]
        scan = subprocess.run(command, cwd=mac.out, env=mac.environment, capture_output=True, timeout=300)
        self.assertEqual((scan.returncode, len(list(mac.out.iterdir()))), (0, 1))
        report = path.read_text()
        self.assertIn("ERROR SUMMARY: 0 errors", report)
        self.assertEqual(set(re.findall(r"definitely lost: ([0-9,]+) bytes", report)) - {"0"}, set())
        records = [block for block in re.split(r"==[0-9]+== \n", report) if "in loss record" in block]
        self.assertEqual([record for record in records if is_ours(record)], [])


if __name__ == "__main__":
    unittest.main()
