"""Opening a large inventory costs next to nothing."""

import os
import subprocess
import unittest

from inventories import FOLDER, INV, InventoryTestCase, file_of_text

APPLICATIONS = 5000
MOST_SECONDS = 0.050  # of CPU


def large_file():
    lines = ["\ufeff?zxml", "+Snapshot=", "timestamp=20120118153045.000000+120", "+Software="]
    for i in range(APPLICATIONS):
        lines += [f"*Soft:{i + 1}=Application {i}", f"version={i % 9}.{i % 7}", "inst-date=20110102", "runtime-environment=universal",
                  f"info={i % 9}.{i % 7}, Copyright 2011 Maker {i % 50}", "64bit-app=1", f"location=/Applications/Folder {i % 40}/Application {i}.app"]
    path = FOLDER / "large.inv"
    path.write_bytes(file_of_text("\n".join([*lines, "-", "-", ""]).encode()))
    return path


def cpu_seconds(*arguments):
    process = subprocess.Popen([INV, *arguments], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    return usage.ru_utime + usage.ru_stime


@unittest.skipIf(INV.parent.name == "sanitize", "the sanitizers take their time")
class Speed(InventoryTestCase):
    def test_summing_up_5000_applications_takes_less_than_50_ms(self):
        path = large_file()
        self.assertIn("5000 applications", self.check(0, "summary", path))
        # The best of a few runs, since other tests run at the same time.
        self.assertLess(min(cpu_seconds("summary", path) for _ in range(5)), MOST_SECONDS)


if __name__ == "__main__":
    unittest.main()
