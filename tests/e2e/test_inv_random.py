"""Files of random machines: whatever a scan contains, the reader finds it valid and returns its text byte for byte."""

import tempfile
import unittest
from pathlib import Path

import inv_decoder
import random_machines
from inventories import InventoryTestCase, inv, scan
from quick_scans import own_namespace

MACHINES = 25  # plausible ones, and as many wild ones


class RandomMachines(InventoryTestCase):
    def check_each(self, make):
        namespace = own_namespace()
        for seed in range(MACHINES):
            with self.subTest(seed=seed), tempfile.TemporaryDirectory() as folder:
                machine = Path(folder) / "machine"
                make(seed).write(machine)
                path = scan(machine, prefix=namespace)
                self.check(0, "verify", "--quiet", path)
                texts = b"".join(section.text for section in inv_decoder.read_file(path).sections)
                self.assertEqual(inv("export", "--format", "zxml", path).stdout, texts)

    def test_plausible_ones(self):
        self.check_each(random_machines.plausible)

    def test_wild_ones(self):
        self.check_each(random_machines.wild)


if __name__ == "__main__":
    unittest.main()
