"""What `inv diff` says about two scans of a simulated Mac that was changed in between."""

import json
import re
import shutil
import unittest

import same_host
from inventories import FOLDER, SIMULATOR, InventoryTestCase, debug_scanned, scanned

IMAC = SIMULATOR / "machines" / "imac-10.6"


def empty_slot(plist, bank):
    """The profiler's list of memory with nothing in one of the banks."""
    start = plist.rindex("<dict>", 0, plist.index(bank))
    end = plist.index("</dict>", start)
    slot = plist[start:end].replace("<string>ok</string>", "<string>empty</string>")
    slot = re.sub(r"(<key>dimm_size</key>\s*<string>)[^<]*", r"\1empty", slot)
    return plist[:start] + slot + plist[end:]


def without_item(plist, name):
    """The list without the item of this name."""
    items = re.split(r"(?=^\t\t\t<dict>\n)", plist, flags=re.M)
    return "".join(item for item in items if f"<string>{name}</string>" not in item)


def scan_of_changed(name, data_type, change, *options):
    """A scan of the iMac after one of the profiler's data types was changed."""
    machine = FOLDER / name
    shutil.copytree(IMAC, machine)
    path = machine / "profiler" / f"{data_type}.plist"
    path.write_text(change(path.read_text(encoding="utf-8")), encoding="utf-8")
    return same_host.scan(machine, *options)


class Diff(InventoryTestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.before = same_host.scan(IMAC)
        cls.new_disk = scan_of_changed("new-disk", "SPSerialATADataType", lambda text: text.replace("SIM0000HD01", "SIM0000HD77"))

    def test_two_scans_of_one_day_do_not_differ(self):
        again = same_host.scan(IMAC)
        self.assertEqual(self.check(0, "diff", self.before, again), "")
        self.assertEqual(self.check(0, "diff", "--json", self.before, again), "[]\n")

    def test_a_replaced_disk_is_one_line(self):
        self.assertEqual(self.check(1, "diff", self.before, self.new_disk),
                         "Disk replaced: SIMDISK S1TB-7200 1 TB (SIM0000HD01) by SIMDISK S1TB-7200 1 TB (SIM0000HD77)\n")

    def test_removed_memory_is_one_line(self):
        after = scan_of_changed("less-memory", "SPMemoryDataType", lambda text: empty_slot(text, "BANK 1/DIMM0"))
        self.assertEqual(self.check(1, "diff", self.before, after), "Memory removed: slot 3, 1 GB DDR3\n")
        self.assertEqual(self.check(1, "diff", after, self.before), "Memory added: slot 3, 1 GB DDR3\n")

    def test_a_removed_application_is_one_line_in_an_extended_scan_too(self):
        before = same_host.scan(IMAC, "/extended")
        after = scan_of_changed("no-chess", "SPApplicationsDataType", lambda text: without_item(text, "Chess"), "/extended")
        self.assertEqual(self.check(1, "diff", before, after), "Application removed: Chess 2.4.2 (/Applications/Chess.app)\n")

    def test_json_has_the_single_changes(self):
        removed, added = json.loads(self.check(1, "diff", "--json", self.before, self.new_disk))
        self.assertEqual((removed["change"], added["change"]), ("removed", "added"))
        self.assertEqual((removed["old_members"]["serial"], added["new_members"]["serial"]), ("SIM0000HD01", "SIM0000HD77"))
        self.assertEqual(removed["sentence"], added["sentence"])
        self.assertEqual(self.output("--json"), self.output("--format", "json"))

    def test_markdown_is_for_a_ticket(self):
        lines = self.output("-f", "markdown").splitlines()
        self.assertEqual(lines[0], "## What changed on Studio iMac")
        self.assertEqual(lines[-1][:17], "- Disk replaced: ")

    def output(self, *options):
        return self.check(1, "diff", *options, self.before, self.new_disk)

    def test_two_machines_are_reported_as_two(self):
        other = same_host.scan(SIMULATOR / "machines" / "mac-pro-10.5")
        self.check(1, "diff", self.before, other)
        self.assertEqual(self.messages, "inv: diff: these are two different machines: SIM0IMAC106 and SIM0MACPRO5\n")
        self.assertIn("**Note:** these are two", self.check(1, "diff", "-f", "markdown", self.before, other))

    def test_a_debug_file_is_said_to_be_one(self):
        debug = debug_scanned("imac-10.6")
        self.check(1, "diff", scanned("imac-10.6"), debug)
        self.assertIn(f"inv: {debug}: this is a debug file; ", self.messages)
        self.assertEqual(self.messages.count("debug file"), 1)

    def test_forms_are_known(self):
        self.check(2, "diff", "-f", "xml", self.before, self.before)
        self.assertIn("markdown", self.messages)


if __name__ == "__main__":
    unittest.main()
