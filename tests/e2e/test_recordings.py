#!/usr/bin/env python3
"""The recordings of real Macs, where these are present, pass through the whole scanner, and their facts arrive."""

import unittest

import recorded_facts
from scans import SAMPLES, ScanTestCase


@unittest.skipUnless(SAMPLES.is_dir(), "the recordings (../shared/samples/machines) are not beside the repository")
class Recordings(ScanTestCase):
    def scan_machine(self, name):
        self.container = self.scan_silently(SAMPLES / name)
        self.check(self.container.snapshot, {"": recorded_facts.NAMELESS})

    def check(self, top, table):
        for path, facts in table.items():
            with self.subTest(element=path):
                element = top.find(path) if path else top
                if facts is None:
                    self.assertIsNone(element)
                    continue
                self.assertIsNotNone(element)
                for fact, expected in facts.items():
                    with self.subTest(fact=fact):
                        self.assertEqual(self.fact(element, fact), expected)

    def fact(self, element, fact):
        if fact == recorded_facts.VALUE:
            return element.value
        name, _, annotation = fact.partition("~")
        attribute = element.attribute(name)
        return attribute and (attribute.annotation(annotation) if annotation else attribute.value)

    def check_counts(self, path, **counts):
        """How many children of each name ("Soft:1", "Soft:2": Soft) an element has."""
        found = {}
        for child in self.container.snapshot.find(path).children:
            prefix = child.name.partition(":")[0].replace("-", "_")
            found[prefix] = found.get(prefix, 0) + 1
        self.assertEqual(found, counts)

    def count_unknown(self, fact):
        applications = self.container.snapshot.find("Software").children
        return sum(1 for element in applications if self.fact(element, f"{fact}~type") == "unknown")

    def test_macbook_pro_10_7(self):
        self.scan_machine("macbook-pro-10.7")
        self.check(self.container.snapshot, recorded_facts.MACBOOK_PRO_10_7)
        self.check(self.container.asset_info, recorded_facts.MACBOOK_PRO_10_7_ASSET)
        self.check_counts("Software", Soft=596)
        self.check_counts("Network/Adapters", net_adapter=5)
        self.check_counts("Peripherals/USB", Device=4)
        self.check_counts("Storage/Physical-disks", HDD=1, CD=1)
        unknown = {fact: self.count_unknown(fact) for fact in ("version", "runtime-environment", "64bit-app", "inst-date")}
        self.assertEqual(unknown, {"version": 316, "runtime-environment": 5, "64bit-app": 307, "inst-date": 0})

    def test_macbook_10_4(self):
        self.scan_machine("macbook-10.4")
        self.check(self.container.snapshot, recorded_facts.MACBOOK_10_4)
        self.check(self.container.asset_info, recorded_facts.MACBOOK_10_4_ASSET)
        self.check_counts("Network/Adapters", net_adapter=6)
        self.check_counts("Peripherals/USB", Device=5)
        self.check_counts("Storage/Physical-disks", HDD=1, CD=1)
        self.check_counts("Video/Monitors", Monitor=2)

    def test_usb_10_5(self):
        self.scan_machine("usb-10.5")
        self.check(self.container.snapshot, recorded_facts.USB_10_5)
        self.check(self.container.asset_info, recorded_facts.USB_10_5_ASSET)
        self.check_counts("Peripherals/USB", Device=5)
        self.check_counts("Storage/Physical-disks", Removable=3)

    def test_sata_10_10(self):
        self.scan_machine("sata-10.10")
        self.check(self.container.snapshot, recorded_facts.SATA_10_10)
        self.check(self.container.asset_info, recorded_facts.SATA_10_10_ASSET)

    def test_virtual_machine(self):
        self.scan_machine("virtual-machine")
        self.check(self.container.snapshot, recorded_facts.VIRTUAL_MACHINE)
        self.check(self.container.asset_info, recorded_facts.VIRTUAL_MACHINE_ASSET)

    def test_applications_10_6_8(self):
        self.scan_machine("apps-10.6.8")
        self.check(self.container.snapshot, recorded_facts.APPLICATIONS_10_6_8)
        self.check_counts("Software", Soft=291)
        self.assertEqual((self.count_unknown("version"), self.count_unknown("64bit-app")), (12, 1))

    def test_applications_14_4(self):
        self.scan_machine("apps-14.4")
        self.check(self.container.snapshot, recorded_facts.APPLICATIONS_14_4)
        self.check_counts("Software", Soft=362)
        unknown = {fact: self.count_unknown(fact) for fact in ("version", "runtime-environment", "64bit-app")}
        self.assertEqual(unknown, {"version": 8, "runtime-environment": 362, "64bit-app": 362})

    def test_apple_silicon(self):
        self.scan_machine("apple-silicon-14.4")
        self.check(self.container.snapshot, recorded_facts.APPLE_SILICON)
        self.check(self.container.asset_info, recorded_facts.APPLE_SILICON_ASSET)
        # The recording has no I/O registry, so the profiler's UUID replaces the user's name.
        uuid = self.container.snapshot.get("System/Computer-system/uuid")
        self.assertRegex(uuid, r"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")
        self.assertEqual(self.container.asset_info.get("user-name"), uuid)


if __name__ == "__main__":
    unittest.main()
