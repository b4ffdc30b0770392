"""Invented Macs: whatever they are made of, a scan of each ends with a whole file."""

import concurrent.futures
import os
import unittest

import random_machines
from quick_scans import QuickMac, own_namespace

MACHINES = 50


def scan(machine):
    """The container of a scan of a machine that random_machines made, or the error."""
    mac = QuickMac(prefix=own_namespace())
    try:
        machine.write(mac.machine)
        return mac.scan()
    except Exception as error:  # Whatever fails, report the machine's seed with it.
        return error
    finally:
        mac.close()


class RandomMachines(unittest.TestCase):
    def scan_each(self, make):
        machines = [make(seed) for seed in range(MACHINES)]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for seed, (machine, container) in enumerate(zip(machines, pool.map(scan, machines))):
                with self.subTest(seed=seed):
                    self.assertNotIsInstance(container, Exception)
                    yield machine, container

    def test_plausible_ones_are_found_as_they_are(self):
        for machine, container in self.scan_each(random_machines.plausible):
            for (path, prefix), count in machine.lists.items():
                tag = container.snapshot.find(path)
                names = [child.name for child in tag.children] if tag else []
                self.assertEqual(sum(name.startswith(prefix) for name in names), count, (path, prefix))
            for path, value in machine.values.items():
                self.assertEqual(container.snapshot.get(path), value, path)

    def test_wild_ones_give_a_whole_file(self):
        for _, container in self.scan_each(random_machines.wild):
            self.assertEqual((container.snapshot.name, container.asset_info.name), ("Snapshot", "AssetInfo"))

    def test_are_the_same_for_the_same_seed(self):
        for make in (random_machines.plausible, random_machines.wild):
            # Dates and NaN included: compared as they are written.
            self.assertEqual(repr(make(3)), repr(make(3)))
            self.assertNotEqual(repr(make(3)), repr(make(4)))


if __name__ == "__main__":
    unittest.main()
