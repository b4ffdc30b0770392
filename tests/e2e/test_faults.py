"""Tools that fail, lie and print what no Mac would: every scan ends with a whole file that has all that was readable."""

import contextlib
import os
import plistlib
import re
import resource
import shutil
import subprocess
import time
import unittest
import uuid
from pathlib import Path

import inv_decoder
from quick_scans import QUICK_PS, facts, own_namespace
from scans import IMAC, PERCENTAGES, SAMPLES, SCANNER, SIMULATOR, ScanTestCase

PROLOGUE, EPILOGUE = plistlib.dumps([]).replace(b"<array/>", b"<array>\n</array>").split(b"</array>")
EPILOGUE = b"</array>" + EPILOGUE
EMPTY = plistlib.dumps([])
NAME = "STUDIO-IMAC_00005E00531A.inv"
# What only the hardware data type knows.
HARDWARE = r"/Processors|/Computer-system|/Chassis|/General-info|/AssetInfo/"
SLOW_BUILD = os.environ["VELKARO_BUILD"].endswith("sanitize")


def framed(elements):
    return PROLOGUE + elements + EPILOGUE


def recording(data_type):
    return (IMAC / "profiler" / f"{data_type}.plist").read_bytes()


class FaultTestCase(ScanTestCase):
    """Scans an iMac with only the tools it needs on PATH, each of which a test may replace or remove."""

    def setUp(self):
        super().setUp()
        self.mark = uuid.uuid4().hex
        self.outputs = self.folder / "outputs"
        self.outputs.mkdir()
        for name in ("sh", "cat", "awk", "env"):
            self.write_tool(name, f'exec "{shutil.which(name)}" "$@"\n')
        for name in ("ioreg", "dscl", "ls", "diskutil", "scutil"):
            self.write_tool(name, f'exec "{SIMULATOR / "bin" / name}" "$@"\n')
        self.write_tool("ps", QUICK_PS.split("\n", 1)[1])
        self.write_tool(
            "system_profiler",
            f'for output in "{self.outputs}/$4" "$VELKARO_MACHINE/profiler/$4.plist"; do\n'
            '    [ ! -f "$output" ] || exec cat "$output"\ndone\n'
            f'exec "{SIMULATOR / "bin" / "system_profiler"}" "$@"\n',
        )

    def environment(self, machine, **changes):
        environment = super().environment(machine, VELKARO_TEST_MARK=self.mark, **changes)
        environment["PATH"] = str(self.tools)
        return environment

    def answer(self, data_type, output):
        """What the profiler prints for a data type."""
        (self.outputs / data_type).write_bytes(output)

    def remaining(self):
        """The processes that a scan left running: those with its mark in their environment."""
        found = []
        for process in Path("/proc").glob("[0-9]*"):
            try:
                if self.mark.encode() in (process / "environ").read_bytes():
                    found.append((process / "cmdline").read_bytes())
            except OSError:
                pass
        return found

    def scan_faulty(self, *arguments, prefix=()):
        """The container of a scan, and what it printed to standard error."""
        for path in self.out.iterdir():
            path.unlink()
        result = self.scan(*arguments, answer="y\n", prefix=prefix)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.remaining(), [])
        return self.decode(), result.stderr

    def whole_facts(self):
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        return facts(container)

    def lost(self, whole, prefix=()):
        """The paths of the facts that a scan no longer reports."""
        container, _ = self.scan_faulty(prefix=prefix)
        return sorted({path for path, *_ in whole - facts(container)})


# What only this tool knows, as paths of facts.
TOOLS = {
    # Without the registry's UUID the profiler's replaces the user's name.
    "ioreg": r"uuid|/@user-name$",
    "awk": r"uuid|/@user-name$",
    "dscl": r"/User-accounts",
    "ls": r"/User-accounts",
    "ps": r"/Processes",
    "diskutil": r"/Storage/Physical-disks/Removable/@model$",
    "env": r"/Environment",
    "scutil": r"^/AssetInfo/@(int-name|alias)$",
}

# Each is a shell script; "REAL" is replaced by the real tool.
FAULTS = {
    "absent": None,
    "fails": "exit 1\n",
    "fails after its answer": "REAL; exit 1\n",
    "is killed": "kill -9 $$\n",
    "is killed after a few bytes": "printf 'half a li'; kill -9 $$\n",
    "closes its pipe early": f"printf 'said'; exec >&-; exec {shutil.which('sleep')} 0.05\n",
    "prints half a character": r"REAL; printf 'caf\303'" + "\n",
    "prints NULs": r"printf 'a\0b\0\n\0'; REAL; printf '\0'" + "\n",
    "prints line ends": r"printf '\n\n\n\r\r\n'" + "\n",
    "prints forever": f"exec {shutil.which('yes')} 'x=1 y'\n",
    "prints one line forever": f"exec {shutil.which('cat')} /dev/zero\n",
}


class FailingTools(FaultTestCase):
    def break_tool(self, name, script):
        """Puts another script in a tool's place, where "REAL" then runs the tool."""
        tool, real = self.tools / name, self.folder / name
        tool.rename(real)
        if script is not None:
            self.write_tool(name, script.replace("REAL", f'"{real}" "$@"'))

    @contextlib.contextmanager
    def broken_tool(self, name, script):
        self.break_tool(name, script)
        try:
            yield
        finally:
            (self.folder / name).rename(self.tools / name)

    def test_cost_what_they_know_and_nothing_else(self):
        whole = self.whole_facts()
        prefix = own_namespace()
        for tool, known in TOOLS.items():
            for fault, script in FAULTS.items():
                with self.subTest(tool=tool, fault=fault), self.broken_tool(tool, script):
                    lost = self.lost(whole, prefix)
                    self.assertEqual([path for path in lost if not re.search(known, path)], [])

    def test_leave_the_rest_of_the_profilers_facts_alone(self):
        whole = self.whole_facts()
        for fault, script in FAULTS.items():
            # Without any output the profiler is run again; test_console has those cases.
            if script and re.search("printf|REAL", script):
                faulty = f'[ "$4" = SPPrintersDataType ] || exec REAL\n{script}'
                with self.subTest(fault=fault), self.broken_tool("system_profiler", faulty):
                    self.assertEqual([path for path in self.lost(whole) if "/Printers" not in path], [])

    @unittest.skipIf(SLOW_BUILD, "takes minutes under the sanitizers, where unit tests lower the limit instead")
    def test_a_profiler_that_prints_forever_is_cut_off(self):
        whole = self.whole_facts()
        forever = f'[ "$4" = SPPrintersDataType ] || exec REAL\nexec {shutil.which("yes")} "a driver\'s log line"\n'
        self.break_tool("system_profiler", forever)
        container, messages = self.scan_faulty()
        self.assertIn("Output cut off after 536870912 bytes: system_profiler -detailLevel full -xml SPPrintersDataType\n", messages)
        self.assertEqual({path for path, *_ in whole - facts(container) if "/Printers" not in path}, set())

    def test_are_ended_though_the_caller_ignores_broken_pipes(self):
        """A shell that never notices its closed pipe would run forever."""
        self.break_tool("diskutil", "while :; do echo more; done\n")
        result = self.scan(answer="y\n", prefix=["sh", "-c", 'trap "" PIPE; exec "$0" "$@"'])
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stderr, "Output cut off after [0-9]+ bytes: diskutil info")
        self.assertEqual(self.remaining(), [])
        self.decode()

    def test_leave_neither_processes_nor_descriptors(self):
        """Each tool looks at the scanner that started it, and fails in its own way."""
        probe = (
            "scanner=$PPID\n"
            '[ "$(cat /proc/$scanner/comm)" = velkaro-scanner ] || read _ _ _ scanner _ </proc/$scanner/stat\n'
            # Until it waits for the answer, its end of the tool's pipe may still be open.
            'while state=; read _ _ state _ </proc/$scanner/stat; [ "$state" = R ] || [ "$state" = D ]; do :; done\n'
            'read children </proc/$scanner/task/$scanner/children\n'
            f'set -- "$@" -- /proc/$scanner/fd/*; while [ "$1" != -- ]; do shift; done\n'
            f'echo "$# $children" >>"{self.folder}/seen"\n'
        )
        scripts = [script for fault, script in FAULTS.items() if script and "REAL" not in script]
        for number, tool in enumerate([tool for tool in TOOLS if tool not in ("awk", "scutil")]):
            self.break_tool(tool, probe + scripts[number % len(scripts)])
        real = SIMULATOR / "bin" / "system_profiler"
        self.write_tool("system_profiler", f'type=$4\n{probe}"{real}" -detailLevel full -xml $type\nkill -9 $$\n')
        self.scan_faulty()
        seen = [line.split() for line in (self.folder / "seen").read_text().splitlines()]
        self.assertGreater(len(seen), 21 + 5)
        self.assertEqual({len(children) for _, *children in seen}, {1})
        self.assertEqual({descriptors for descriptors, *_ in seen}, {seen[0][0]})

    def test_without_any_tool_a_silent_scan_ends_soon(self):
        for tool in self.tools.iterdir():
            if tool.name != "sh":
                tool.unlink()
        start = time.monotonic()
        result = self.scan("/silent")
        self.assertLess(time.monotonic() - start, 30)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout, f"{PERCENTAGES}>>>{self.files()[0]}\n")
        self.assertEqual(self.remaining(), [])
        self.assertEqual((self.decode().snapshot.name, self.decode().asset_info.name), ("Snapshot", "AssetInfo"))

    def test_say_nothing_in_a_silent_scan(self):
        for tool in TOOLS:
            self.break_tool(tool, "echo complaint >&2; exit 1\n")
        result = self.scan("/silent")
        self.assertEqual((result.stdout, result.stderr, result.returncode), (f"{PERCENTAGES}>>>{self.files()[0]}\n", "", 0))


class ToolPath(FaultTestCase):
    """The scan's own PATH has only the test's tools, as cron's lacks the profiler."""

    COMPLETED = ":/usr/bin:/bin:/usr/sbin:/sbin"

    def test_is_completed_for_the_tools(self):
        seen = self.folder / "seen"
        for tool in ("system_profiler", "dscl", "ps"):
            real = self.folder / tool
            (self.tools / tool).rename(real)
            self.write_tool(tool, f'echo "$PATH" >>"{seen}"\nexec "{real}" "$@"\n')
        self.scan_faulty()
        self.assertEqual(set(seen.read_text().splitlines()), {str(self.tools) + self.COMPLETED})

    def test_finds_a_tool_that_the_caller_lacks(self):
        """The machine's own ps, which is in /usr/bin or /bin on Linux as well."""
        (self.tools / "ps").unlink()
        self.assertGreater(len(self.scan_faulty()[0].snapshot.find("Processes").children), 0)

    def test_in_the_snapshot_is_the_callers(self):
        container, _ = self.scan_faulty()
        self.assertEqual(container.snapshot.get("Environment/env-var:PATH/value"), str(self.tools))
        (self.tools / "env").unlink()
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        self.assertEqual(container.snapshot.get("Environment/env-var:PATH/value"), str(self.tools))
        self.assertEqual(container.snapshot.get("Environment/env-var:VELKARO_TEST_MARK/value"), self.mark)


class GivenAddress(FaultTestCase):
    MESSAGE = "No network adapter has the address {}; the machine's identity stays empty\n"

    def test_that_no_adapter_has_is_reported_once(self):
        for address in ("192.0.2.250", ""):
            for options in ([], ["/debug"]):
                with self.subTest(address=address, options=options):
                    _, messages = self.scan_faulty(f"/ip:{address}", *options)
                    self.assertEqual(messages, self.MESSAGE.format(address))

    def test_that_an_adapter_has_is_not_reported(self):
        address = self.scan_faulty()[0].snapshot.get("ip-address")
        self.assertEqual(self.scan_faulty(f"/ip:{address}")[1], "")


HOSTILE_NAMES = (
    "$(touch ran)", "`touch ran`", 'a"; touch ran; "', '"$(touch ran)"', "; touch ran", "& touch ran &", "| touch ran",
    "&& touch ran", "> ran", "\\", '\\"', "\\$(touch ran)", "'", "' ; touch ran ; '", "-n", "--help", "-rf", "two words",
    "  blanks  ", "tab\there", "*", "?", "~", "$HOME", "${IFS}", "!!", "#", "%s%n", "a\\nb", "é", "(", "{a,b}", "..", "",
)  # fmt: skip


class HostileNames(FaultTestCase):
    def keep_arguments(self, tool):
        """Makes a tool log its arguments, a line of dashes after each; returns the log's path."""
        kept = self.folder / f"arguments of {tool}"
        self.write_tool(tool, f"""printf '%s\\n----\\n' "$@" >>"{kept}"\n""")
        return kept

    def kept(self, path):
        return path.read_text().removesuffix("\n----\n").split("\n----\n") if path.exists() else []

    def check_nothing_ran(self):
        self.assertEqual([path for path in self.folder.rglob("ran")], [])
        self.assertEqual(len(self.files()), 1)

    def test_of_home_folders_reach_dscl_as_they_are(self):
        arguments = self.keep_arguments("dscl")
        (self.folder / "listing").write_text("".join(name + "\n" for name in HOSTILE_NAMES))
        self.write_tool("ls", f'exec cat "{self.folder}/listing"\n')
        self.scan_faulty()
        self.check_nothing_ran()
        expected = [argument for name in HOSTILE_NAMES for argument in (".", "-read", f"/users/{name}")]
        self.assertEqual(self.kept(arguments), expected)

    def test_of_a_home_folder_with_a_line_end_are_two_names(self):
        arguments = self.keep_arguments("dscl")
        self.write_tool("ls", "printf 'a\\n$(touch ran)\\n'\n")
        self.scan_faulty()
        self.check_nothing_ran()
        self.assertEqual(self.kept(arguments), [".", "-read", "/users/a", ".", "-read", "/users/$(touch ran)"])

    def test_of_devices_reach_diskutil_or_do_not(self):
        arguments = self.keep_arguments("diskutil")
        names = [*HOSTILE_NAMES, "disk7", "disk7s1", "disk1\ntouch ran"]
        disks = [{"_name": "d", "removable_media": "yes", "bsd_name": name} for name in names]
        usb = [{"_dataType": "SPUSBDataType", "_items": [{"_name": "bus", "_items": disks}]}]
        self.answer("SPUSBDataType", plistlib.dumps(usb))
        container, _ = self.scan_faulty()
        self.check_nothing_ran()
        plain = ["-n", "--help", "-rf", "blanks", "..", "disk7", "disk7s1"]
        self.assertEqual(self.kept(arguments), [argument for name in plain for argument in ("info", f"/dev/{name}")])
        disks = container.snapshot.find("Storage/Physical-disks").children
        self.assertEqual(sum(disk.name.startswith("Removable:") for disk in disks), len(names))

    def test_of_the_machine_and_its_variables_are_only_texts(self):
        (self.outputs / "SPNetworkLocationDataType").write_bytes(framed(b""))
        for name in ("$(touch ran)", "`touch ran`", "; touch ran", "%s%n%d", "-rf", "a\\b"):
            with self.subTest(name=name):
                self.write_tool("scutil", f"cat <<'END'\n{name}\nEND\n")
                self.write_tool("env", f"cat <<'END'\nA={name}\n{name}=1\na/+b=1\nEND\n")
                container, _ = self.scan_faulty()
                self.check_nothing_ran()
                self.assertTrue(self.files()[0].startswith(name.upper() + "_"))
                self.assertEqual(container.asset_info.get("alias"), name)
                self.assertEqual(container.snapshot.get("Environment/env-var:A/value"), name)


def swapped(value):
    """Every list as a dictionary, every dictionary as a list, every text as a number and the other way round."""
    if isinstance(value, dict):
        return [swapped(element) for element in value.values()]
    if isinstance(value, list):
        return {f"item{i}": swapped(element) for i, element in enumerate(value)}
    return 7 if isinstance(value, str) else str(value)


class OddOutputs(FaultTestCase):
    PROFILER = sorted(path.stem for path in (IMAC / "profiler").iterdir())

    def answer_all(self, change):
        for data_type in self.PROFILER:
            (data,) = plistlib.loads(recording(data_type))
            self.answer(data_type, plistlib.dumps([{"_dataType": data_type, "_items": change(data["_items"])}]))

    def test_of_other_kinds_than_expected(self):
        def values(change):
            return lambda items: [
                {key: change(value) for key, value in item.items()} if isinstance(item, dict) else item for item in items
            ]

        for name, change in {
            "items that are no list": lambda items: "text",
            "items in a dictionary": swapped,
            "items that are texts": lambda items: ["text"] * len(items),
            "items that are lists": lambda items: [[item] for item in items],
            "no items": lambda items: [],
            "empty items": lambda items: [{}] * len(items),
            "numbers": values(lambda value: value if isinstance(value, list) else -1),
            "reals": values(lambda value: value if isinstance(value, list) else 1e300),
            "empty texts": values(lambda value: value if isinstance(value, list) else ""),
            "booleans": values(lambda value: True),
            "texts for lists": values(lambda value: "text" if isinstance(value, list) else value),
            "swapped values": values(swapped),
        }.items():
            with self.subTest(name=name):
                self.answer_all(change)
                container, messages = self.scan_faulty()
                self.assertEqual(messages, "")
                self.assertEqual(container.snapshot.name, "Snapshot")

    def test_of_nothing_at_all(self):
        for data_type in self.PROFILER:
            self.answer(data_type, framed(b""))
        for tool in TOOLS:
            if tool != "awk":
                self.write_tool(tool, "exit 0\n")
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        self.assertEqual({child.name for child in container.snapshot.children}, set())

    def test_without_items_as_a_mac_writes_that(self):
        """A single empty element, eight bytes shorter than the frame that is cut off the outputs."""
        self.assertEqual(len(EMPTY), 182)
        whole = self.whole_facts()
        for types, known in (
            (["SPHardwareDataType"], HARDWARE),
            (["SPPowerDataType"], "/System/PowerManagement"),
            (["SPHardwareDataType", "SPPrintersDataType", "SPPowerDataType"], f"{HARDWARE}|/PowerManagement|/Peripherals"),
        ):
            with self.subTest(types=types):
                for data_type in self.PROFILER:
                    self.answer(data_type, EMPTY if data_type in types else recording(data_type))
                lost = self.lost(whole)
                self.assertTrue(lost)
                self.assertEqual([path for path in lost if not re.search(known, path)], [])

    def test_without_items_anywhere(self):
        for data_type in self.PROFILER:
            self.answer(data_type, EMPTY)
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        self.assertEqual({child.name for child in container.snapshot.children} - {"Environment", "Processes"}, {"User-accounts"})

    def test_with_two_thousand_million_packages(self):
        (data,) = plistlib.loads(recording("SPHardwareDataType"))
        for count in (2_000_000_000, 2**31, 2**63 - 1, -(2**63), -1):
            with self.subTest(count=count):
                data["_items"][0].update(packages=count, number_processors=count)
                self.answer("SPHardwareDataType", plistlib.dumps([data]))
                processors = self.scan_faulty()[0].snapshot.find("Processors")
                self.assertLessEqual(len(processors.children) if processors else 0, 1024)

    def test_nested_100000_deep(self):
        whole = self.whole_facts()
        for opening, closing in ((b"<array>", b"</array>"), (b"<dict><key>_items</key>", b"</dict>")):
            for end in (closing * 100_000, b""):
                with self.subTest(opening=opening, closed=bool(end)):
                    deep = b"<key>deep</key>" + opening * 100_000 + end
                    output = recording("SPPrintersDataType").replace(b"<key>_items</key>", deep + b"<key>_items</key>", 1)
                    self.answer("SPPrintersDataType", output)
                    # What is never closed swallows the items that follow.
                    allowed = [] if end else [path for path, *_ in whole if "/Printers" in path]
                    self.assertEqual([path for path in self.lost(whole) if path not in allowed], [])

    def test_of_200_megabytes(self):
        text = b"a driver that cannot stop talking\n" * (200_000_000 // 34)
        output = recording("SPPrintersDataType").replace(b"</string>", text + b"</string>", 1)
        whole = self.whole_facts()
        self.answer("SPPrintersDataType", output)
        self.assertEqual([path for path in self.lost(whole) if "/Printers" not in path], [])


class Salvage(FaultTestCase):
    def test_replaces_one_byte_of_another_encoding(self):
        whole = self.whole_facts()
        name = plistlib.loads(recording("SPPrintersDataType"))[0]["_items"][0]["_name"]
        damaged = recording("SPPrintersDataType").replace(name.encode(), name[:3].encode() + b"\xe9" + name[4:].encode(), 1)
        self.answer("SPPrintersDataType", damaged)
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        reported = facts(container)
        self.assertEqual([(path, value) for path, value, _ in whole - reported], [("/Snapshot/Peripherals/Printers/Printer", name)])
        self.assertEqual([value for _, value, _ in reported - whole], [name[:3] + "\ufffd" + name[4:]])

    def test_loses_nothing_to_a_log_line_before_the_list(self):
        whole = self.whole_facts()
        for line in (b"2011-06-01 12:00:00.000 system_profiler[123:903] driver <0x1> failed & gone\n", b"\xff\xfe\0", b"\n"):
            with self.subTest(line=line):
                for data_type in ("SPHardwareDataType", "SPPrintersDataType", "SPPowerDataType"):
                    self.answer(data_type, line + recording(data_type))
                self.assertEqual(self.lost(whole), [])

    def test_loses_nothing_to_an_end_in_the_middle(self):
        whole = self.whole_facts()
        output = recording("SPPrintersDataType")
        for data_type in ("SPHardwareDataType", "SPPrintersDataType", "SPPowerDataType"):
            for end in (b"</array></plist>", b"</plist>\n", EPILOGUE + PROLOGUE):
                with self.subTest(data_type=data_type, end=end):
                    output = recording(data_type)
                    self.answer(data_type, output[: -len(EPILOGUE)] + end + EPILOGUE)
                    self.assertEqual(self.lost(whole), [])
                    self.answer(data_type, output.replace(b"<array>", b"<array>" + end, 1))
                    self.assertEqual(self.lost(whole), [])
                    self.answer(data_type, output)

    def test_keeps_what_a_profiler_printed_before_it_died(self):
        whole = self.whole_facts()
        output = recording("SPApplicationsDataType")
        self.answer("SPApplicationsDataType", output[: len(output) // 2])
        container, _ = self.scan_faulty()
        lost = {path for path, *_ in whole - facts(container)}
        self.assertTrue(all(path.startswith("/Snapshot/Software/") for path in lost), lost)
        kept = len(container.snapshot.find("Software").children)
        (before,) = plistlib.loads(output)
        self.assertAlmostEqual(kept, len(before["_items"]) / 2, delta=15)

    def test_keeps_the_rest_where_a_type_is_garbage(self):
        whole = self.whole_facts()
        for garbage in (b"Segmentation fault\n", os.urandom(5000), b"<" * 5000, b"&" * 5000, b"\0" * 5000, b"<!--" * 500):
            with self.subTest(garbage=garbage[:20]):
                self.answer("SPPrintersDataType", garbage)
                self.assertEqual([path for path in self.lost(whole) if "/Printers" not in path], [])

    def test_names_a_type_whose_output_is_not_a_list(self):
        self.answer("SPPrintersDataType", b"Segmentation fault\n" * 50)
        _, messages = self.scan_faulty()
        self.assertEqual(messages, "Unreadable output from the system profiler: SPPrintersDataType\n")

    def test_of_one_type_leaves_the_others_as_they_are(self):
        """A key that salvage would change, in every healthy type."""
        for data_type in OddOutputs.PROFILER:
            self.answer(data_type, recording(data_type).replace(b"<key>_items</key>", "<key>_it\ufffdms</key>".encode(), 1))
        self.answer("SPHardwareDataType", recording("SPHardwareDataType").replace(b"</string>", b"\xe9</string>", 1))
        container, messages = self.scan_faulty()
        self.assertEqual(messages, "")
        self.assertIsNotNone(container.snapshot.find("Processors"))
        for path in ("Software", "Memory/Memory-slot:1", "Peripherals", "Storage", "OS/os:1/name", "Network"):
            self.assertIsNone(container.snapshot.find(path), path)

    def test_of_a_debug_run_finds_the_identity_and_leaves_the_bytes_alone(self):
        full = subprocess.run(
            [SIMULATOR / "run", IMAC, "system_profiler", "-detailLevel", "full", "-xml"], capture_output=True, check=True
        ).stdout
        for name, output in {
            "whole": full,
            "Latin-1": full.replace(b"Studio", b"Studi\xf6", 1),
            "log line": b"driver: \xff\0 failed\n" + full,
            "NULs": full.replace(b"<string>", b"<string>\0", 1),
        }.items():
            with self.subTest(name=name):
                self.write_tool("system_profiler", f'exec cat "{self.outputs}/full"\n')
                self.answer("full", output)
                container, messages = self.scan_faulty("/debug")
                self.assertEqual((self.files(), messages), ([NAME], ""))
                (raw,) = [section for section in container.sections if section.kind == "customdata"]
                self.assertEqual(raw.content, output)
                self.assertEqual(container.asset_info.get("mac-address"), "00-00-5E-00-53-1A")

    @unittest.skipUnless((SAMPLES / "macbook-10.4").is_dir(), "the recordings are not beside the repository")
    def test_reads_the_longer_prologue_of_an_old_system(self):
        result = self.scan(machine=SAMPLES / "macbook-10.4", answer="y\n")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        snapshot = self.decode().snapshot
        for path in ("System/Computer-system", "OS/os:1", "Processors/Processor:1", "Memory/Memory-slot:1",
                     "Video/Video-devices/Video-adapter:1", "Storage/Physical-disks/HDD:1", "Peripherals/USB/Device:1"):  # fmt: skip
            self.assertIsNotNone(snapshot.find(path), path)


class Saving(FaultTestCase):
    def check_refused(self, result):
        self.assertEqual((result.returncode, self.files()), (0, []))
        self.assertEqual(result.stderr.splitlines(), [f"Cannot create file :{self.out.resolve()}/{NAME}"])
        self.assertNotIn("Scan finished", result.stdout)

    def test_leaves_no_file_where_the_size_of_files_is_limited(self):
        for limit in (0, 1, 4096, 8000):
            with self.subTest(limit=limit):
                result = subprocess.run(
                    [SCANNER],
                    cwd=self.out,
                    env=self.environment(IMAC),
                    input="y\n",
                    capture_output=True,
                    text=True,
                    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)),
                )
                self.check_refused(result)

    def test_leaves_no_file_on_a_full_file_system(self):
        mount = ["unshare", "--mount", "sh", "-c", 'mount -t tmpfs -o size=4k tmpfs "$0" && cd "$0" && "$@"', self.out]
        if subprocess.run([*mount, "true"], capture_output=True).returncode != 0:
            self.skipTest("this user may not mount a file system")
        left = self.folder / "left"
        environment = dict(self.environment(IMAC), PATH=f"{self.tools}:{os.environ['PATH']}")
        shell = ["sh", "-c", f'"$0"; {shutil.which("ls")} -A >"{left}"', SCANNER]
        result = subprocess.run([*mount, *shell], env=environment, input="y\n", capture_output=True, text=True)
        self.assertEqual(left.read_text(), "")
        self.check_refused(result)


del ScanTestCase, FaultTestCase

if __name__ == "__main__":
    unittest.main()
