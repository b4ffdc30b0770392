#!/usr/bin/env python3
"""The extended scan has everything that the default one has, unchanged and in place, and a record of how it went."""

import re
import subprocess
import unittest

import namespaces
import scans
import test_children
from options_of import VERSION
from scans import ALL_MACHINES, IMAC, PERCENTAGES, SAMPLES

ADDITIONAL_TYPES = ["SPStorage", "SPNVMe", "SPUSBHost", "SPThunderbolt", "SPInstallHistory", "SPiBridge"]
TOOLS = {
    "sw_vers": "sw_vers",
    "sysctl": "sysctl hw machdep.cpu kern.hv_vmm_present",
    "fdesetup": "fdesetup status",
    "csrutil": "csrutil status",
    "spctl": "spctl --status",
    "profiles": "profiles status -type enrollment",
    "ls": "ls -d /Library/Apple/usr/libexec/oah/libRosettaRuntime",
}
ADDITIONAL_COMMANDS = [
    *(f"system_profiler -detailLevel full -xml {name}DataType" for name in ADDITIONAL_TYPES),
    *(f"{line} 2>&1" for line in TOOLS.values()),
]

# The top elements that only an extended scan makes, and the lists that it continues. The default scan may have no element in
# such a list yet, so the list itself may be new, or have its first children.
NEW_ELEMENTS = {"Platform", "Battery", "Software-details", "Packages", "Scan"}
CONTINUED = {
    "": NEW_ELEMENTS | {"Security", "Storage", "Video", "Network", "Peripherals"},
    "/Security": {"Platform"},
    "/Storage": {"Physical-disks", "Logical-disks", "Details"},
    "/Storage/Physical-disks": {"HDD", "Removable"},
    "/Storage/Logical-disks": {"partition"},
    "/Video": {"Displays", "Details"},
    "/Network": {"Details"},
    "/Peripherals": {"USB", "Thunderbolt", "Bluetooth"},
    "/Peripherals/USB": {"Device"},
}
# What describes the run itself.
OF_THE_RUN = {"Processes", "Environment"}
TIMES = {"timestamp", "scan-time", "first-scan", "last-scan", "snapshot-list"}

ALL_BUT_LS = sorted(set(TOOLS) - {"ls"})
# What a tool can do, and what the record then has.
HOSTILE = {
    "missing": ("exit 127\n", {"exit-status": "127", "bytes": "0", "missing": "1"}),
    "silent": ("exit 0\n", {"exit-status": "0", "bytes": "0"}),
    "refusing": ("echo 'must be run as root' >&2; exit 1\n", {"exit-status": "1", "bytes": "20", "refused": "1"}),
    "killed": ("printf abc; kill -9 $$\n", {"signal": "9"}),
    "garbage": ("printf '\\377\\000<plist>&&&\\n: = : =\\n'; exit 3\n", {"exit-status": "3", "bytes": "21"}),
    # More than a tool may print, but not too much for a data type.
    "too long": ("yes 'garbage: 1' | head -c 2000000\n", {"bytes": "1048576", "cut": "1"}),
}


def facts(element):
    """The attributes of an element, without the times of the run."""
    return [attribute for attribute in element.attributes if attribute.name not in TIMES]


class ExtendedTestCase(scans.ScanTestCase):
    def scan_namespaced(self, machine, *options):
        before = set(self.files())
        result = self.scan("/silent", *options, machine=machine, prefix=namespaces.own_processes())
        self.assertEqual((result.returncode, result.stdout[: len(PERCENTAGES)]), (0, PERCENTAGES), result.stderr)
        (name,) = set(self.files()) - before
        return self.decode(name)

    def commands(self, container):
        """What the scan's record has of each command, in order."""
        elements = [child for child in container.snapshot.find("Scan").children]
        self.assertEqual([element.name for element in elements], [f"Command:{n + 1}" for n in range(len(elements))])
        return {element.value: {one.name: one.value for one in element.attributes} for element in elements}

    def assert_contained(self, usual, extended, path=""):
        """Each element begins with what the default scan has, and what follows is documented."""
        self.assertEqual((usual.name, usual.value, usual.annotations), (extended.name, extended.value, extended.annotations))
        self.assertEqual(facts(usual), facts(extended), path)
        if usual.name in OF_THE_RUN:
            return
        known = len(usual.children)
        if known > 0 or path not in CONTINUED:
            self.assertEqual(usual.kind, extended.kind, path)
        for one, other in zip(usual.children, extended.children):
            self.assert_contained(one, other, f"{path}/{other.name}")
        self.assertLessEqual(known, len(extended.children), path)
        added = {re.sub(r":[0-9]+$", "", child.name) for child in extended.children[known:]}
        self.assertLessEqual(added, CONTINUED.get(path, set()), path)

    def assert_extends(self, machine):
        usual, extended = self.scan_namespaced(machine), self.scan_namespaced(machine, "/extended")
        self.assert_contained(usual.snapshot, extended.snapshot)
        self.assert_contained(usual.asset_info, extended.asset_info, path="asset")
        self.assertNotIn("Scan", [child.name for child in usual.snapshot.children])
        return extended


class Containment(ExtendedTestCase):
    def test_of_every_machine(self):
        for machine in ALL_MACHINES:
            with self.subTest(machine=machine.name):
                self.assert_extends(machine)

    @unittest.skipUnless(SAMPLES.is_dir(), "the recordings (../shared/samples/machines) are not beside the repository")
    def test_of_every_recording(self):
        for machine in sorted(folder for folder in SAMPLES.iterdir() if folder.is_dir()):
            with self.subTest(machine=machine.name):
                self.assert_extends(machine)

    def test_whatever_the_additional_tools_do(self):
        for what in HOSTILE:
            script, expected = HOSTILE[what]
            with self.subTest(tools=what):
                for tool in ALL_BUT_LS:
                    self.write_tool(tool, script)
                self.write_profiler(script)
                self.check_records(self.commands(self.assert_extends(IMAC)), expected)

    def write_profiler(self, script):
        """A profiler that does this for the additional data types."""
        cases = "|".join(f"{name}DataType" for name in ADDITIONAL_TYPES)
        usual = f'exec {scans.SIMULATOR}/bin/system_profiler "$@"\n'
        self.write_tool("system_profiler", f"case $4 in {cases}) ;; *) {usual};; esac\n{script}")

    def check_records(self, records, expected):
        for tool in ALL_BUT_LS:
            record = records[f"{TOOLS[tool]} 2>&1"]
            del record["seconds"]
            # A shell's message about a tool that was killed counts as well.
            expected.setdefault("bytes", record["bytes"])
            self.assertEqual(record, {"run": "1", "retries": "0", **expected}, tool)
        again = "1" if expected["bytes"] == "0" or "refused" in expected else "0"
        self.assertEqual(records["system_profiler -detailLevel full -xml SPNVMeDataType"]["retries"], again)


class Record(ExtendedTestCase):
    """What the scan records about itself."""

    def setUp(self):
        super().setUp()
        self.container = self.scan_namespaced(IMAC, "-extended", "/login:secret", "/unknown", "/ip:192.0.2.10")
        self.scan_element = self.container.snapshot.find("Scan")

    def test_names_program_options_and_user(self):
        for name, value in {
            "scanner-version": VERSION,
            "options": "/silent -extended /login: /ip:192.0.2.10",
            "effective-user": self.identity("-un"),
            "effective-uid": self.identity("-u"),
            "calendar": "gregorian",
            "time-zone": "UTC",
        }.items():
            self.assertEqual(self.scan_element.get(name), value, name)
        self.assertTrue(self.scan_element.get("locale"))
        self.assertEqual(self.container.asset_info.get("login"), "secret")

    def identity(self, option):
        command = [*namespaces.own_processes(), "id", option]
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()

    def test_has_every_command_once_in_order(self):
        lines = list(self.commands(self.container))
        usual = [f"system_profiler -detailLevel full -xml {name}DataType" for name in test_children.DATA_TYPES]
        self.assertEqual(lines[:21], usual)
        self.assertEqual(lines[-13:], ADDITIONAL_COMMANDS)
        between = [line.split()[0] for line in lines[21:-13]]
        self.assertEqual(sorted(between), ["diskutil", "dscl", "env", "ioreg", "ls", "ps"])

    def test_has_a_series_as_one_command(self):
        records = self.commands(self.container)
        accounts = records['dscl . -read "/users/NAME"']
        self.assertEqual((accounts["run"], accounts["runs"], accounts["exit-status"]), ("1", "3", "0"))
        self.assertNotIn("retries", accounts)
        names = [line for line in records if "mira" in line]
        self.assertEqual(names, [])

    def test_has_bytes_and_seconds(self):
        record = self.commands(self.container)["system_profiler -detailLevel full -xml SPHardwareDataType"]
        size = (IMAC / "profiler" / "SPHardwareDataType.plist").stat().st_size
        self.assertEqual((record["bytes"], record["retries"], record["exit-status"]), (str(size), "0", "0"))
        self.assertRegex(record["seconds"], r"^\d+\.\d\d$")

    def test_distinguishes_a_missing_tool_from_a_missing_file(self):
        records = self.commands(self.container)
        self.assertEqual(records["csrutil status 2>&1"].get("missing"), "1")
        self.assertNotIn("missing", records[ADDITIONAL_COMMANDS[-1]])
        self.assertEqual(records[ADDITIONAL_COMMANDS[-1]]["exit-status"], "1")

    def test_reports_a_damaged_output(self):
        recording = IMAC / "profiler" / "SPAudioDataType.plist"
        damage = f"sed 's/<string>/<string>\\xff/' {recording}"
        self.write_tool("system_profiler", f'case $4 in SPAudio*) exec {damage};; esac\nexec {scans.SIMULATOR}/bin/system_profiler "$@"\n')
        records = self.commands(self.scan_namespaced(IMAC, "/extended"))
        self.assertEqual([line for line, record in records.items() if record.get("salvaged") == "1"], ["system_profiler -detailLevel full -xml SPAudioDataType"])


class Debug(ExtendedTestCase):
    def test_has_the_further_outputs_after_their_commands(self):
        self.write_tool("csrutil", "echo 'System Integrity Protection status: enabled.'\n")
        container = self.scan_silently(IMAC, "/debug", "/extended")
        self.assertEqual([section.kind for section in container.sections[:2]], ["assetinfo", "customdata"])
        self.assertTrue(container.sections[1].content.startswith(b"<?xml"))
        further = [section.content.split(b"\n", 1) for section in container.sections[2:]]
        self.assertEqual({section.kind for section in container.sections[2:]}, {"customdata"})
        # Only the tools that printed something.
        self.assertEqual([line.decode() for line, _ in further], [*ADDITIONAL_COMMANDS[:8], "csrutil status 2>&1", ADDITIONAL_COMMANDS[-1]])
        self.assertEqual(further[8][1], b"System Integrity Protection status: enabled.\n")


@unittest.skipUnless(test_children.can_trace(), "strace is not installed, or not allowed here")
class Commands(ExtendedTestCase):
    def trace(self, *options):
        log = self.folder / "trace"
        # The leak checker does not work in a traced program.
        quiet = ["-E", "ASAN_OPTIONS=detect_leaks=0"]
        strace = ["strace", *quiet, "-f", "-qq", "-s", "400", "-e", "trace=execve,clone,clone3,fork,vfork", "-o", str(log)]
        result = self.scan("/silent", *options, prefix=[*namespaces.own_processes(), *strace])
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = [command[-1] for command in test_children.Trace(log.read_text()).commands]
        return [line for line in lines if not line.startswith("ps -p")]

    @unittest.skipUnless(test_children.can_trace(), "strace is not installed, or not allowed here")
    def test_run_after_those_of_the_default_scan(self):
        usual = self.trace()
        self.assertEqual(usual, [*test_children.COMMANDS, test_children.COMPUTER_NAME[-1]])
        self.assertEqual(self.trace("/extended"), [*usual[:-1], *ADDITIONAL_COMMANDS, usual[-1]])


if __name__ == "__main__":
    unittest.main()
