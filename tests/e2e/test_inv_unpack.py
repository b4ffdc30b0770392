"""A debug file becomes a machine for the simulator, and scanning that machine gives the same inventory."""

import tempfile
import unittest
from pathlib import Path

import inv_decoder
from inventories import FOLDER, FULL_MACHINES, MACHINES, SIMULATOR, InventoryTestCase, debug_scanned, scan, scanned

# What does not come from the profiler, and so is not in a debug file.
ELSEWHERE = {"User-accounts", "Environment", "Processes", "Scan"}


def lines(tag, path=""):
    """The lines of a tree with their paths, except for what is not in a debug file and the times of the scan."""
    for attribute in tag.attributes:
        if path == "" and attribute.name in ("timestamp", "scan-time"):
            continue
        # The media name and the UUID come from other tools; without the UUID the user's name differs.
        if path.startswith("/Storage/Physical-disks/Removable") and attribute.name == "model":
            continue
        if attribute.name in ("uuid", "user-name"):
            continue
        yield f"{path}/{attribute.name}", attribute.value, attribute.annotations
    for child in tag.children:
        if child.name not in ELSEWHERE:
            yield f"{path}/{child.name}", child.value, child.annotations
            yield from lines(child, f"{path}/{child.name}")


class Unpack(InventoryTestCase):
    def unpacked(self, machine):
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        output = self.check(0, "unpack", debug_scanned(machine.name), folder)
        self.assertEqual(set(output.splitlines()), {str(path) for path in folder.rglob("*") if path.is_file()})
        return folder

    def test_the_profilers_recordings_come_back_byte_for_byte(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                folder = self.unpacked(machine)
                recordings = sorted(path for path in (machine / "profiler").iterdir() if b"_dataType" in path.read_bytes())
                self.assertGreater(len(recordings), 10)
                for recording in recordings:
                    self.assertEqual((folder / "profiler" / recording.name).read_bytes(), recording.read_bytes())

    def test_scanning_it_again_gives_the_same_snapshot(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                again = inv_decoder.read_file(scan(self.unpacked(machine))).snapshot
                original = inv_decoder.read_file(scanned(machine.name)).snapshot
                self.assertGreater(len(list(lines(original))), 100 if machine.name in FULL_MACHINES else 50)
                self.assertEqual(list(lines(again)), list(lines(original)))

    def test_an_extended_one_gives_the_further_outputs_too(self):
        for name in ["macbook-pro-26", "imac-11"]:
            with self.subTest(machine=name):
                machine = SIMULATOR / "machines" / name
                folder = Path(tempfile.mkdtemp(dir=FOLDER))
                self.check(0, "unpack", scan(machine, "/debug", "/extended"), folder)
                for recording in [*(machine / "tools").iterdir(), *(machine / "profiler").iterdir()]:
                    self.assertEqual((folder / recording.relative_to(machine)).read_bytes(), recording.read_bytes())
                again = inv_decoder.read_file(scan(folder, "/extended")).snapshot
                original = inv_decoder.read_file(scan(machine, "/extended")).snapshot
                self.assertIn("Battery" if name == "macbook-pro-26" else "Packages", [child.name for child in again.children])
                self.assertEqual(list(lines(again)), list(lines(original)))

    def test_an_ordinary_file_gives_its_texts(self):
        path = scanned("imac-10.6")
        folder = FOLDER / "ordinary"
        self.check(0, "unpack", path, folder)
        sections = inv_decoder.read_file(path).sections
        self.assertEqual((folder / "section-0-snapshot.zxml").read_bytes(), sections[0].text)
        self.assertEqual((folder / "section-1-asset.zxml").read_bytes(), sections[1].text)
        self.check(2, "unpack", path, folder)
        self.assertEqual(self.messages, f"inv: {folder}: is not an empty folder\n")


if __name__ == "__main__":
    unittest.main()
