#!/usr/bin/env python3
"""The whole of what a scan saves of each simulated Mac, line by line, as golden/MACHINE.KIND.txt has it: the snapshot, the
AssetInfo, the AssetInfo of a debug run, and the snapshot of an extended scan.

What differs from run to run is in these texts as a placeholder, or as an element without content, and is tested by
rule: the times, the process list, the environment, the record of the scan. If a recording or collector changes, run

    VELKARO_SCANNER=build/dev/velkaro-scanner python3 tests/e2e/test_golden.py --update

Each line of the difference must be read against the recordings before it is committed: these texts
are what the scanner should say, not what it says.
"""

import os
import re
import subprocess
import sys
import time
import unittest
from datetime import datetime, timezone

from scans import MACHINES, ROOT, SCANNER, SIMULATOR, ScanTestCase

NAMES = sorted(folder.name for folder in MACHINES.iterdir() if folder.is_dir())
GOLDEN = ROOT / "tests" / "e2e" / "golden"
# Which section of the file each kind of golden text is.
SECTIONS = {"snapshot": "snapshot", "asset": "assetinfo", "debug": "assetinfo", "extended": "snapshot"}
UPDATE = "--update" in sys.argv

# Everything that a scan here sees and records of the host's environment.
GIVEN = {"TZ": "UTC", "LC_ALL": "C", "EQUATION": "a=b=c", "PADDED": "  two words  ", "EMPTY": "", "FOLDED": "upper\nlower"}
ARRIVING = {**GIVEN, "PADDED": "two words", "FOLDED": "upper"}

# How far off the scanner's clock may be, in seconds: it counts whole ones, some milliseconds late.
CLOCK = 1.1


class GoldenScan(ScanTestCase):
    maxDiff = None

    def environment(self, machine):
        whole = super().environment(machine)
        return {**GIVEN, "PATH": whole["PATH"], "VELKARO_MACHINE": whole["VELKARO_MACHINE"]}

    def scan_by_hand(self, name, *options):
        """Scans the machine of this name, and keeps what the rules compare with in fields of this object."""
        machine = MACHINES / name
        self.given = self.environment(machine)
        self.start = time.time()
        command = [SCANNER, "/silent", *options]
        with subprocess.Popen(command, cwd=self.out, env=self.given, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as scanner:
            self.file_name = scanner.stdout.read().decode().splitlines()[-1].removeprefix(">>>")
        self.end = time.time()
        self.process, self.command = scanner.pid, command
        self.assertEqual(scanner.returncode, 0)
        self.container = self.decode(self.file_name)

    def text_of(self, kind):
        (section,) = (section for section in self.container.sections if section.kind == kind)
        return section.text.decode("utf-8", "backslashreplace")

    def with_placeholders(self, text):
        """The text without what the rules check."""
        text = text.replace(f"={self.timestamp()}\n", "=TIMESTAMP\n")
        text = re.sub(r"^scan-time=\d+$", "scan-time=MILLISECONDS", text, count=1, flags=re.M)
        return re.sub(r"^(\+Processes=|\+Environment=|\+Scan=)\n.*?^-$", r"\1\n-", text, flags=re.M | re.S)

    def timestamp(self):
        """The time of the scan, whatever the file calls it."""
        top = self.container.snapshot or self.container.asset_info
        return top.get("timestamp") or top.get("scan-attempt")

    def golden_text(self, name, kind):
        return (GOLDEN / f"{name}.{kind}.txt").read_bytes().decode()

    def compare(self, name, kind):
        text = self.with_placeholders(self.text_of(SECTIONS[kind]))
        if UPDATE:
            (GOLDEN / f"{name}.{kind}.txt").write_bytes(text.encode())
        golden = self.golden_text(name, kind)
        self.assertEqual(text.splitlines(), golden.splitlines())
        self.assertEqual(text, golden)


class Texts(GoldenScan):
    def test_every_machine_yields_its_snapshot_and_asset_info(self):
        for name in NAMES:
            with self.subTest(machine=name):
                self.scan_by_hand(name)
                self.compare(name, "snapshot")
                self.compare(name, "asset")

    def test_every_machine_yields_its_debug_asset_info(self):
        for name in NAMES:
            with self.subTest(machine=name):
                self.scan_by_hand(name, "/debug")
                self.compare(name, "debug")
                self.assertRegex(self.timestamp(), r"^\d{14}\.000000\+0$")

    def test_every_machine_yields_its_extended_snapshot(self):
        for name in NAMES:
            with self.subTest(machine=name):
                self.scan_by_hand(name, "/extended")
                self.compare(name, "extended")

    def test_a_debug_run_keeps_the_profilers_own_bytes(self):
        self.scan_by_hand("imac-10.6", "/debug")
        profiler = [SIMULATOR / "bin" / "system_profiler", "-detailLevel", "full", "-xml"]
        printed = subprocess.run(profiler, env=self.given, check=True, capture_output=True).stdout
        self.assertEqual([section.kind for section in self.container.sections], ["assetinfo", "customdata"])
        self.assertEqual(self.container.sections[1].content, printed)

    def test_the_address_option_moves_the_machine_to_another_adapter(self):
        self.scan_by_hand("mac-pro-10.5", "/ip:203.0.113.9", "/login:operator")
        self.assert_changed("mac-pro-10.5", "snapshot", ["ip-address=203.0.113.9"])
        self.assert_changed(
            "mac-pro-10.5", "asset", ["ip-address=203.0.113.9", "login=operator", "mac-address=00-00-5E-00-53-81"]
        )

    def test_an_address_that_no_adapter_has_is_kept(self):
        self.scan_by_hand("imac-10.6", "/ip:203.0.113.9")
        self.assertEqual(self.file_name, "STUDIO IMAC_.inv")
        self.assert_changed("imac-10.6", "snapshot", ["hostname=", "domain=", "ip-address=203.0.113.9"])
        self.assert_changed("imac-10.6", "asset", ["hostname=", "ip-address=203.0.113.9", "mac-address=", "domain="])

    def assert_changed(self, name, kind, expected):
        """Only these lines differ from the golden text."""
        lines = self.with_placeholders(self.text_of(SECTIONS[kind])).splitlines()
        golden = self.golden_text(name, kind).splitlines()
        self.assertEqual(len(lines), len(golden))
        self.assertEqual([line for line, usual in zip(lines, golden) if line != usual], expected)

    def test_no_golden_text_is_left_over(self):
        expected = {f"{name}.{kind}.txt" for name in NAMES for kind in SECTIONS}
        self.assertEqual({path.name for path in GOLDEN.glob("*.txt")}, expected)


class Rules(GoldenScan):
    """What the golden texts leave out."""

    def setUp(self):
        super().setUp()
        self.scan_by_hand("imac-10.6")
        self.snapshot = self.container.snapshot

    def test_the_timestamp_is_the_end_of_the_scan_in_utc(self):
        text = self.snapshot.get("timestamp")
        self.assertRegex(text, r"^\d{14}\.000000\+0$")
        moment = datetime.strptime(text[:14], "%Y%m%d%H%M%S").replace(tzinfo=timezone.utc).timestamp()
        self.assertTrue(self.start - CLOCK <= moment <= self.end, text)

    def test_the_scan_time_is_in_whole_seconds(self):
        milliseconds = int(self.snapshot.get("scan-time"))
        self.assertEqual(milliseconds % 1000, 0)
        self.assertTrue(0 <= milliseconds <= (self.end - self.start + CLOCK) * 1000, milliseconds)

    def test_every_process_has_its_four_facts_and_its_own_position(self):
        processes = self.snapshot.find("Processes")
        self.assertEqual((processes.kind, processes.value, processes.attributes), ("branch", "", []))
        positions = [int(re.fullmatch(r"process:([1-9]\d*)", process.name)[1]) for process in processes.children]
        self.assertEqual(positions, sorted(set(positions)))
        for process in processes.children:
            self.assertEqual((process.kind, process.annotations), ("leaf", []))
            self.assertEqual([attribute.name for attribute in process.attributes], ["pid", "ppid", "user", "cmd-line"])
            self.assertGreater(int(process.get("pid")), 0)
            self.assertGreaterEqual(int(process.get("ppid")), 0)
            self.assertRegex(process.get("user"), r"^[^ ]+$")
            self.assertNotEqual(process.get("cmd-line"), "")

    def test_the_scanner_is_among_the_processes(self):
        processes = self.snapshot.find("Processes").children
        (scanner,) = (process for process in processes if process.get("pid") == str(self.process))
        self.assertEqual(scanner.value, os.path.basename(SCANNER)[:15])
        self.assertEqual(scanner.get("ppid"), str(os.getpid()))
        self.assertEqual(scanner.get("cmd-line"), " ".join(map(str, self.command)))

    def test_every_variable_is_a_compound_with_its_value(self):
        environment = self.snapshot.find("Environment")
        names = [variable.name for variable in environment.children]
        self.assertEqual((environment.kind, environment.value), ("branch", ""))
        self.assertEqual([attribute.name for attribute in environment.attributes], names)
        for attribute in environment.attributes:
            self.assertEqual((attribute.value, attribute.annotations), ("", [("complex", "")]))
        for variable in environment.children:
            self.assertEqual((variable.kind, variable.annotations), ("leaf", []))
            self.assertEqual(variable.name, f"env-var:{variable.value}")
            (value,) = variable.attributes
            self.assertEqual(value.name, "value")
            self.assertEqual(value.annotations, [("split", ":")] if variable.value == "PATH" else [])

    def test_every_given_variable_arrives(self):
        """The shell that runs `env` may add some of its own."""
        arrived = {variable.value: variable.get("value") for variable in self.snapshot.find("Environment").children}
        expected = {**self.given, **ARRIVING}
        self.assertEqual({name: arrived.get(name) for name in expected}, expected)


if __name__ == "__main__":
    if UPDATE:
        sys.argv.remove("--update")
    unittest.main()
