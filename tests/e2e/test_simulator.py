"""The simulated Macs: their recordings are well formed, and the replay tools answer like a Mac's own, or refuse."""

import os
import plistlib
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SIMULATOR = ROOT / "simulator"
MACHINES = sorted(folder for folder in (SIMULATOR / "machines").iterdir() if folder.is_dir())
TOOLS = sorted(tool.name for tool in (SIMULATOR / "bin").iterdir())

PROFILES = [path for machine in MACHINES for path in sorted((machine / "profiler").iterdir())]

TYPES = {
    f"SP{name}DataType"
    for name in (
        "AirPort Applications Audio Bluetooth DiscBurning Displays FireWire Firewall Hardware Memory Network"
        " NetworkLocation NetworkVolume ParallelATA ParallelSCSI Power Printers SerialATA Software StartupItem USB"
    ).split()
}
# What only an extended scan asks for. A Mac that does not have a type has no recording of it.
ADDITIONAL_TYPES = {f"SP{name}DataType" for name in "Storage NVMe USBHost Thunderbolt InstallHistory iBridge".split()}

PROLOGUE = (
    b'<?xml version="1.0" encoding="UTF-8"?>\n'
    b'<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">\n'
    b'<plist version="1.0">\n'
    b"<array>\n"
)
EPILOGUE = b"</array>\n</plist>\n"
PROFILER = ("system_profiler", "-detailLevel", "full", "-xml")


def run(machine, *command, **options):
    return subprocess.run([SIMULATOR / "run", machine, *command], capture_output=True, **options)


def edid_texts(value):
    """Every EDID text anywhere below a value of a property list."""
    if isinstance(value, dict):
        if "_spdisplays_edid" in value:
            yield value["_spdisplays_edid"]
        value = list(value.values())
    if isinstance(value, list):
        for element in value:
            yield from edid_texts(element)


class Recordings(unittest.TestCase):
    def test_there_are_seven_machines(self):
        old = ["imac-10.6", "mac-pro-10.5", "macbook-10.7"]
        new = ["imac-11", "macbook-pro-10.15", "macbook-pro-26", "virtual-mac-26"]
        self.assertEqual([machine.name for machine in MACHINES], sorted(old + new))

    def test_every_machine_has_all_data_types(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                self.assertEqual({path.stem for path in (machine / "profiler").iterdir()} - ADDITIONAL_TYPES, TYPES)

    def test_every_recording_is_in_the_profilers_frame(self):
        self.assertEqual((len(PROLOGUE), len(EPILOGUE)), (172, 18))
        for path in PROFILES:
            with self.subTest(path=path):
                content = path.read_bytes()
                self.assertEqual(content[:172], PROLOGUE)
                self.assertEqual(content[-18:], EPILOGUE)

    def test_every_recording_holds_the_data_type_of_its_name(self):
        for path in PROFILES:
            with self.subTest(path=path):
                (entry,) = plistlib.loads(path.read_bytes())
                self.assertEqual(entry["_dataType"], path.stem)
                self.assertIsInstance(entry["_items"], list)

    def test_every_edid_block_has_its_header_and_checksum(self):
        texts = [text for path in PROFILES for text in edid_texts(plistlib.loads(path.read_bytes()))]
        self.assertEqual(len(texts), 6)
        for text in texts:
            with self.subTest(edid=text):
                self.assertEqual(text[:2], "0x")
                block = bytes.fromhex(text[2:])
                self.assertEqual(len(block), 128)
                self.assertEqual(block[:8], bytes.fromhex("00ffffffffffff00"))
                self.assertEqual(sum(block) % 256, 0)

    def test_hardware_addresses_come_from_the_range_for_documentation(self):
        address = re.compile(rb"\b(?:[0-9a-f]{2}[:-]){5,7}[0-9a-f]{2}\b")
        for path in PROFILES:
            for found in address.findall(path.read_bytes()):
                self.assertRegex(found, rb"^00.00.5e.(ff.fe.)?00.53.")


class Profiler(unittest.TestCase):
    def setUp(self):
        self.machine = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.machine)
        (self.machine / "profiler").mkdir()

    def test_replays_one_type_byte_by_byte(self):
        for machine in MACHINES:
            for name in sorted(TYPES):
                with self.subTest(machine=machine.name, type=name):
                    answer = run(machine, *PROFILER, name)
                    self.assertEqual(answer.stdout, (machine / "profiler" / f"{name}.plist").read_bytes())
                    self.assertEqual((answer.stderr, answer.returncode), (b"", 0))

    def test_answers_a_type_without_recording_with_the_empty_array(self):
        answer = run(self.machine, *PROFILER, "SPFontsDataType")
        self.assertEqual((answer.stdout, answer.returncode), (PROLOGUE + EPILOGUE, 0))
        self.assertEqual(len(answer.stdout), 190)

    def test_replays_an_empty_recording_as_no_output(self):
        (self.machine / "profiler" / "SPUSBDataType.plist").touch()
        answer = run(self.machine, *PROFILER, "SPUSBDataType")
        self.assertEqual((answer.stdout, answer.returncode), (b"", 0))

    def test_splices_all_types_into_one_list(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                answer = run(machine, *PROFILER)
                self.assertTrue(answer.stdout.startswith(PROLOGUE) and answer.stdout.endswith(EPILOGUE))
                recordings = sorted((machine / "profiler").iterdir())
                types = [plistlib.loads(recording.read_bytes())[0] for recording in recordings]
                self.assertEqual(plistlib.loads(answer.stdout), types)

    def test_splices_no_types_into_the_empty_array(self):
        self.assertEqual(run(self.machine, *PROFILER).stdout, PROLOGUE + EPILOGUE)

    def test_prefers_a_recording_of_all_types(self):
        (self.machine / "profiler" / "SPUSBDataType.plist").write_bytes(PROLOGUE + b"\t<dict/>\n" + EPILOGUE)
        (self.machine / "profiler" / "full.plist").write_bytes(b"as recorded")
        self.assertEqual(run(self.machine, *PROFILER).stdout, b"as recorded")


class Tools(unittest.TestCase):
    def setUp(self):
        self.machine = Path(tempfile.mkdtemp()) / "Zoé's \"Mac\" $(touch folder) `touch folder`"
        self.addCleanup(shutil.rmtree, self.machine.parent)
        for folder in ("dscl", "diskutil"):
            (self.machine / folder).mkdir(parents=True)

    def recorded(self, path, text):
        (self.machine / path).write_text(text, encoding="utf-8")

    def answer(self, *command):
        answer = run(self.machine, *command, cwd=self.machine)
        self.assertEqual((answer.stderr, answer.returncode), (b"", 0))
        return answer.stdout.decode()

    def test_print_their_recordings(self):
        for path, command in {
            "ioreg.raw": ("ioreg", "-rd1", "-c", "IOPlatformExpertDevice"),
            "users.txt": ("ls", "-1", "/Users/"),
            "computer-name.txt": ("scutil", "--get", "ComputerName"),
            "dscl/zoé.txt": ("dscl", ".", "-read", "/users/zoé"),
            "diskutil/disk2.txt": ("diskutil", "info", "/dev/disk2"),
        }.items():
            with self.subTest(path=path):
                self.assertEqual(self.answer(*command), "")
                self.recorded(path, f"{path}\nno line end")
                self.assertEqual(self.answer(*command), f"{path}\nno line end")

    def test_are_missing_without_a_recording_where_not_every_mac_has_them(self):
        (self.machine / "tools").mkdir()
        for command in [
            ("sw_vers",),
            ("sysctl", "hw", "machdep.cpu", "kern.hv_vmm_present"),
            ("fdesetup", "status"),
            ("csrutil", "status"),
            ("profiles", "status", "-type", "enrollment"),
        ]:
            with self.subTest(command=command):
                answer = run(self.machine, *command)
                self.assertEqual((answer.stdout, answer.returncode), (b"", 127))
                self.assertEqual(answer.stderr.decode(), f"sh: {command[0]}: command not found\n")
                self.recorded(f"tools/{command[0]}.txt", "answer\nno line end")
                self.assertEqual(self.answer(*command), "answer\nno line end")

    def test_spctl_answers_on_standard_error(self):
        (self.machine / "tools").mkdir()
        self.recorded("tools/spctl.txt", "assessments enabled\n")
        answer = run(self.machine, "spctl", "--status")
        self.assertEqual((answer.stdout, answer.stderr, answer.returncode), (b"", b"assessments enabled\n", 0))

    def test_ls_finds_rosetta_or_not(self):
        command = ("ls", "-d", "/Library/Apple/usr/libexec/oah/libRosettaRuntime")
        answer = run(self.machine, *command)
        self.assertEqual((answer.stdout, answer.returncode), (b"", 1))
        self.assertEqual(answer.stderr.decode(), f"ls: {command[2]}: No such file or directory\n")
        (self.machine / "tools").mkdir()
        self.recorded("tools/ls.txt", f"{command[2]}\n")
        self.assertEqual(self.answer(*command), f"{command[2]}\n")

    def test_take_odd_names_as_file_names_only(self):
        quoting = ("two words", "$(touch ran)", "`touch ran`", "a;touch ran", "lab$1", 'a"b', "a'b", "a\\nb", "*")
        for name in (*quoting, "-n", ".."):
            with self.subTest(name=name):
                self.assertEqual(self.answer("dscl", ".", "-read", f"/users/{name}"), "")
                self.recorded(f"dscl/{name}.txt", f"record of {name}")
                self.recorded(f"diskutil/{name}.txt", f"disk {name}")
                self.assertEqual(self.answer("dscl", ".", "-read", f"/users/{name}"), f"record of {name}")
                self.assertEqual(self.answer("diskutil", "info", f"/dev/{name}"), f"disk {name}")
        self.assertEqual({path.name for path in self.machine.iterdir()}, {"dscl", "diskutil"})

    def test_let_no_name_leave_its_folder(self):
        self.recorded("secret.txt", "not an account")
        self.assertEqual(self.answer("dscl", ".", "-read", "/users/../secret"), "")
        self.assertEqual(self.answer("diskutil", "info", "/dev/../secret"), "")

    def test_refuse_what_was_not_recorded(self):
        refused = [(tool, *arguments) for tool in TOOLS for arguments in ((), ("-h",), ("a", "b", "c", "d", "e"))]
        refused.remove(("sw_vers",))
        refused += [
            ("ls", "-1", "/Users"),
            ("ls", "-1", "/Users/", ""),
            ("dscl", ".", "-read", "/users/"),
            ("dscl", ".", "-readall", "/users/zoe"),
            ("diskutil", "list", "/dev/disk0"),
            ("diskutil", "info", "disk0"),
            ("scutil", "--get", "HostName"),
            ("ioreg", "-rd1", "-c", "IOUSBDevice"),
            ("sysctl", "hw"),
            ("ls", "-d", "/Library"),
            ("spctl", "status"),
            ("profiles", "status", "-type", "configuration"),
            ("system_profiler", "-xml", "SPUSBDataType"),
            (*PROFILER, "SPUSBDataType", "SPPowerDataType"),
            (*PROFILER, "SP/../USBDataType"),
            (*PROFILER, ""),
        ]
        for command in refused:
            with self.subTest(command=command):
                answer = run(self.machine, *command)
                self.assertEqual((answer.stdout, answer.returncode), (b"", 64))
                self.assertIn(f"{command[0]}: no recording answers:", answer.stderr.decode())

    def test_refuse_to_answer_without_a_machine(self):
        environment = {name: value for name, value in os.environ.items() if name != "VELKARO_MACHINE"}
        for tool in TOOLS:
            with self.subTest(tool=tool):
                answer = subprocess.run([SIMULATOR / "bin" / tool], env=environment, capture_output=True)
                self.assertEqual((answer.stdout, answer.returncode), (b"", 64))
                self.assertIn(b"VELKARO_MACHINE is not set", answer.stderr)


class Run(unittest.TestCase):
    def test_keeps_the_working_directory_arguments_and_status(self):
        with tempfile.TemporaryDirectory() as folder:
            answer = run(MACHINES[0], "sh", "-c", 'pwd; printf "%s|" "$@"; exit 7', "sh", "a b", "", "*", cwd=folder)
            self.assertEqual(answer.stdout.decode(), f"{Path(folder).resolve()}\na b||*|")
            self.assertEqual(answer.returncode, 7)

    def test_takes_a_relative_machine_folder(self):
        command = ["../run", "imac-10.6", "scutil", "--get", "ComputerName"]
        answer = subprocess.run(command, cwd=SIMULATOR / "machines", capture_output=True)
        self.assertEqual((answer.stdout, answer.stderr), (b"Studio iMac\n", b""))

    def test_says_what_is_wrong_with_its_arguments(self):
        usage = run(MACHINES[0])
        self.assertEqual((usage.returncode, usage.stdout), (64, b""))
        self.assertIn(b"usage:", usage.stderr)
        absent = run("no such folder", "true")
        self.assertEqual((absent.returncode, absent.stdout), (66, b""))
        self.assertIn(b"no machine folder: no such folder", absent.stderr)


class Record(unittest.TestCase):
    def test_recording_a_simulated_mac_gives_its_recordings_again(self):
        def files(folder):
            return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}

        # The profiler answers for every type.
        unknown = {Path(f"profiler/{name}.plist"): PROLOGUE + EPILOGUE for name in ADDITIONAL_TYPES}
        for machine in MACHINES:
            with self.subTest(machine=machine.name), tempfile.TemporaryDirectory() as folder:
                copy = Path(folder) / "copy of a Mac"
                answer = run(machine, SIMULATOR / "record", copy)
                self.assertEqual((answer.stderr, answer.returncode), (b"", 0))
                self.assertEqual(files(copy), {**unknown, **files(machine)})

    def test_refuses_a_folder_that_is_there(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(run(MACHINES[0], SIMULATOR / "record", folder).returncode, 73)
            self.assertEqual(list(Path(folder).iterdir()), [])


if __name__ == "__main__":
    unittest.main()
