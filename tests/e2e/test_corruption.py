"""Damaged outputs of the profiler and the tools: a sample of what corruption_sweep.py does, the same in every run."""

import os
import random
import unittest

from corruption_sweep import Sweep, corruptions, median_loss, summary, truncations
from scans import MACHINES

TRUNCATIONS = 19
CORRUPTIONS = 48
# What only an extended scan asks.
ADDITIONAL = ("SPStorageDataType", "SPNVMeDataType", "SPUSBHostDataType", "SPThunderboltDataType", "SPInstallHistoryDataType",
              "SPiBridgeDataType")
TOOLS = ("sw_vers", "sysctl", "fdesetup", "csrutil", "spctl", "profiles", "ls")


def is_additional(recording):
    folder, _, name = recording.partition("/")
    return folder == "tools" or name.partition(".")[0] in ADDITIONAL


class DamagedOutputs(unittest.TestCase):
    def check(self, name, only=lambda recording: True, cuts=TRUNCATIONS):
        with Sweep(MACHINES / name, os.cpu_count()) as sweep:
            outputs = {recording: output for recording, output in sweep.outputs.items() if only(recording)}
            cut = sweep.losses(truncations(outputs, cuts))
            corrupted = sweep.losses(corruptions(outputs, CORRUPTIONS, random.Random(name)))
            self.assertEqual(sweep.failures, [])
            self.assertEqual((len(cut), len(corrupted)), (cuts, CORRUPTIONS))
            self.assertLessEqual(median_loss(corrupted), 1, summary(corrupted))

    def test_of_the_imac(self):
        self.check("imac-10.6")

    def test_of_the_mac_pro(self):
        self.check("mac-pro-10.5")

    def test_of_the_macbook(self):
        self.check("macbook-10.7")

    def test_of_what_an_extended_scan_asks_besides(self):
        self.check("macbook-pro-26", is_additional, cuts=len(ADDITIONAL) + len(TOOLS))

    def test_of_the_extended_scan_of_a_mac_of_2019(self):
        self.check("macbook-pro-10.15")


if __name__ == "__main__":
    unittest.main()
