"""Damaged outputs of the profiler: a sample of what corruption_sweep.py does, the same in every run."""

import os
import random
import unittest

from corruption_sweep import Sweep, corruptions, median_loss, summary, truncations
from scans import MACHINES

TRUNCATIONS = 19
CORRUPTIONS = 48


class DamagedOutputs(unittest.TestCase):
    def check(self, name):
        with Sweep(MACHINES / name, os.cpu_count()) as sweep:
            cut = sweep.losses(truncations(sweep.outputs, TRUNCATIONS))
            corrupted = sweep.losses(corruptions(sweep.outputs, CORRUPTIONS, random.Random(name)))
            self.assertEqual(sweep.failures, [])
            self.assertEqual((len(cut), len(corrupted)), (TRUNCATIONS, CORRUPTIONS))
            self.assertLessEqual(median_loss(corrupted), 1, summary(corrupted))

    def test_of_the_imac(self):
        self.check("imac-10.6")

    def test_of_the_mac_pro(self):
        self.check("mac-pro-10.5")

    def test_of_the_macbook(self):
        self.check("macbook-10.7")


if __name__ == "__main__":
    unittest.main()
