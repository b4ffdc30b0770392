"""What the scanner prints and asks: a calling program and an operator rely on every byte."""

import os
import re
import shutil
import subprocess
import time
import unittest

import options_of
from scans import IMAC, PERCENTAGES, PROMPT, SCANNER, ScanTestCase

NAME = "STUDIO-IMAC_00005E00531A.inv"


class Dialogue(ScanTestCase):
    def test_y_starts_the_scan(self):
        result = self.scan(answer="y\n")
        path = self.out.resolve() / self.files()[0]
        self.assertEqual(result.stdout, f'{PROMPT}Scan started...\n\nScan finished. Results saved to file "{path}"\n')
        self.assertEqual(result.returncode, 0)

    def test_only_the_first_word_counts(self):
        result = self.scan(answer="  y no more of this\n")
        self.assertIn("Scan started...\n", result.stdout)

    def test_n_cancels(self):
        result = self.scan(answer="n more\n")
        self.assertEqual((result.stdout, result.returncode), (PROMPT + "Scan canceled.\n", 0))
        self.assertEqual(self.files(), [])

    def test_anything_else_is_incorrect(self):
        for answer in ("Y\n", "yes\n", "no\n", "", "\n \t\n", "y" * 127, "y" * 128 + "\n", "n" * 100000):
            with self.subTest(answer=answer[:10], length=len(answer)):
                result = self.scan(answer=answer)
                self.assertEqual(result.stdout, PROMPT + "Incorrect input. Application terminated.\n")
                self.assertEqual(result.returncode, 1)
                self.assertEqual(self.files(), [])

    def test_a_closed_standard_input_is_incorrect(self):
        command = ["sh", "-c", 'exec "$0" <&-', SCANNER]
        result = subprocess.run(command, cwd=self.out, env=self.environment(IMAC), capture_output=True, text=True)
        self.assertEqual(result.stdout, PROMPT + "Incorrect input. Application terminated.\n")
        self.assertEqual(result.returncode, 1)

    def test_unknown_arguments_and_capitals_are_ignored(self):
        for argument in ("/SILENT", "/Silent", "--silent", "/silently", "silent", "/login", "/log:", "/Debug", "/HELP", "--help ", "-?", "/h", "--", ""):
            with self.subTest(argument=argument):
                self.assertEqual(self.scan(argument, answer="n").stdout, PROMPT + "Scan canceled.\n")


class AboutTheProgram(ScanTestCase):
    VERSION = f"velkaro-scanner {options_of.VERSION}\nIts files carry client version 12.01.18.0.\n"

    def ask(self, *arguments):
        """What is printed; nothing is asked, and nothing scanned."""
        result = self.scan(*arguments, answer="y")
        self.assertEqual((result.stderr, result.returncode, self.files()), ("", 0, []))
        self.assertNotIn(PROMPT, result.stdout)
        return result.stdout

    def test_version_differs_from_the_one_in_files(self):
        for word in ("--version", "/version"):
            self.assertEqual(self.ask(word), self.VERSION)

    def test_help_lists_every_option(self):
        text = self.ask("--help")
        for word in ("/help", "/?", "-h"):
            self.assertEqual(self.ask(word), text)
        source = (options_of.ROOT / "src" / "driver" / "options.cpp").read_text()
        understood = {f"-{name}" for name in re.findall(r'is_option\(argument, "(\w+)"\)', source)}
        understood |= {f"-{name}:" for name in re.findall(r'option_value\(argument, "(\w+)"\)', source)}
        self.assertEqual(options_of.scanner_options(), understood | {"-h", "--help", "--version"})
        for word in re.findall(r'"([/-][a-z?-]+)"', source):
            self.assertRegex(text, rf"[ ,]{re.escape(word)}[ ,.]")

    def test_other_options_change_nothing(self):
        self.assertEqual(self.ask("/silent", "/log", "--version", "/debug"), self.VERSION)
        self.assertTrue(self.ask("--version", "/silent", "--help").startswith("Takes the inventory of this Mac"))

    def test_a_value_that_looks_like_an_option_is_a_value(self):
        for argument in ("/login:--help", "-login:/?", "/ip:--version"):
            self.assertEqual(self.scan(argument, answer="n").stdout, PROMPT + "Scan canceled.\n")


class SilentRun(ScanTestCase):
    def test_prints_only_percentages_and_the_file_name(self):
        for option in ("/silent", "-silent"):
            with self.subTest(option=option):
                result = self.scan(option)
                self.assertRegex(result.stdout, f"^{re.escape(PERCENTAGES)}>>>[^/\n]+\\.inv\n$")
                self.assertEqual((result.stderr, result.returncode), ("", 0))

    def test_prints_no_complaints(self):
        self.assertEqual(self.scan("/silent", "/ip:192.0.2.250").stderr, "")

    def test_takes_options_in_any_order_and_repeated(self):
        result = self.scan("-login:a", "/ip:", "/silent", "/unknown", "-silent", "/login:b", "-ip:1.2.3.4")
        self.assertRegex(result.stdout, f"^{re.escape(PERCENTAGES)}>>>")

    def test_leaves_standard_input_alone(self):
        read_end, write_end = os.pipe()
        os.write(write_end, b"n\nleft")
        os.close(write_end)
        subprocess.run([SCANNER, "/silent"], cwd=self.out, env=self.environment(IMAC), stdin=read_end, stdout=subprocess.DEVNULL)
        self.assertEqual(os.read(read_end, 100), b"n\nleft")
        os.close(read_end)

    @unittest.skipUnless(os.path.exists("/proc/self/fd/0"), "nothing tells here what another process has open")
    def test_has_no_input(self):
        self.write_tool(
            "env",
            'scanner=$PPID\n[ "$(cat /proc/$scanner/comm)" = velkaro-scanner ] || read _ _ _ scanner _ </proc/$scanner/stat\n'
            f'readlink /proc/$scanner/fd/0 >"{self.folder}/input"\n',
        )
        self.scan("/silent", answer="y\n")
        self.assertEqual((self.folder / "input").read_text(), "/dev/null\n")

    def test_shows_each_percentage_while_the_scan_runs(self):
        """The third data type's run waits until the reader of the pipe has seen the line of the second."""
        gate = self.folder / "gate"
        self.write_tool(
            "system_profiler",
            f'[ "$4" != SPSoftwareDataType ] || while [ ! -e "{gate}" ]; do sleep 0.05; done\n'
            f'exec "{IMAC.parents[1] / "bin" / "system_profiler"}" "$@"\n',
        )
        scanner = subprocess.Popen(
            [SCANNER, "/silent"], cwd=self.out, env=self.environment(IMAC), stdout=subprocess.PIPE, text=True
        )
        self.assertEqual(scanner.stdout.readline(), "10%\n")
        self.assertIsNone(scanner.poll())
        gate.touch()
        self.assertTrue(scanner.stdout.read().startswith("20%\n"))
        self.assertEqual(scanner.wait(), 0)
        scanner.stdout.close()

    def test_saves_its_file_when_nobody_reads_what_it_prints(self):
        scan = subprocess.Popen(
            [SCANNER, "/silent"], cwd=self.out, env=self.environment(IMAC), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE
        )
        scan.stdout.close()
        self.assertEqual(scan.wait(300), 0)
        self.decode()


class LoggedRun(ScanTestCase):
    STEPS = "".join(f"{n}...done\n" for n in range(1, 15))

    def log(self, result_line, percentages=""):
        return (
            f"------Start Log------\nI. Collecting Data....{percentages}done\nII. Parsing Data....done\n"
            "III. Get Data For AssetInfo....33% 66% 100% done\n"
            f"IV. PostProcess>>>\n{self.STEPS}IV. PostProcess End.\n"
            "V. Creating AssetInfo Section....done\nVI. Generating File name....done\nVII. Saving to file...."
            f"{result_line}done\n------End Log------\n"
        )

    def test_prints_the_banners_around_the_result_line(self):
        result = self.scan("/log", answer="y")
        path = self.out.resolve() / self.files()[0]
        finished = f'\nScan finished. Results saved to file "{path}"\n'
        self.assertEqual(result.stdout, PROMPT + "Scan started...\n" + self.log(finished))

    def test_prints_percentages_and_banners_when_silent_too(self):
        result = self.scan("-log", "-silent")
        self.assertEqual(result.stdout, self.log(f">>>{self.files()[0]}\n", PERCENTAGES))

    def test_a_debug_run_has_no_banners(self):
        result = self.scan("/log", "/silent", "/debug")
        self.assertEqual(result.stdout, f">>>{self.files()[0]}\n")


class DebugRun(ScanTestCase):
    def test_shows_an_operator_the_whole_path(self):
        result = self.scan("/debug", answer="y\n")
        path = self.out.resolve() / self.files()[0]
        self.assertEqual(result.stdout, f'{PROMPT}Scan started...\n\nScan finished. Results saved to file "{path}"\n')

    def test_takes_the_adapter_of_the_given_address(self):
        """The first adapter's address, and one that no adapter has."""
        for address, hardware_address in (("192.0.2.17", "00-00-5E-00-53-1A"), ("198.51.100.1", "")):
            with self.subTest(address=address):
                facts = self.scan_silently(IMAC, "/debug", f"/ip:{address}").asset_info
                self.assertEqual((facts.get("ip-address"), facts.get("mac-address")), (address, hardware_address))

    def test_retries_a_profiler_with_an_empty_answer(self):
        count = self.folder / "count"
        self.write_tool("system_profiler", f'echo >>"{count}"; [ $(wc -l <"{count}") -lt 4 ] || echo answer\n')
        (section,) = [section for section in self.scan_silently(IMAC, "/debug").sections if section.kind == "customdata"]
        self.assertEqual((section.content, len(count.read_text())), (b"answer\n", 4))


class OutputFile(ScanTestCase):
    def test_has_the_most_significant_byte_of_its_offset_first(self):
        for option in ((), ("/debug",)):
            with self.subTest(option=option):
                self.assertEqual(self.scan_silently(IMAC, *option).byte_order, "big")

    def test_is_named_after_the_netbios_name_and_the_hardware_address(self):
        self.scan_silently()
        self.assertEqual(self.files(), [NAME])

    def test_gets_the_next_free_number_when_it_exists(self):
        for expected in (NAME, NAME.replace(".inv", "(1).inv"), NAME.replace(".inv", "(2).inv")):
            self.assertEqual(self.scan("/silent").stdout, f"{PERCENTAGES}>>>{expected}\n")
            self.assertIn(expected, self.files())

    def test_that_cannot_be_saved_does_not_end_the_log(self):
        """In a folder that is gone nothing can be saved, and the path of the file is only its name."""
        result = self.scan("/log", answer="y", prefix=("sh", "-c", 'rmdir "$PWD" && exec "$0" "$@"'))
        self.assertTrue(result.stdout.endswith("VII. Saving to file....done\n------End Log------\n"), result.stdout)
        self.assertIn(f"Cannot create file :{NAME}\n", result.stderr)
        self.assertEqual(result.returncode, 0)

    def test_an_unreadable_file_of_that_name_is_never_replaced(self):
        (self.out / NAME).write_text("mine")
        (self.out / NAME).chmod(0)
        (self.out / NAME.replace(".inv", "(1).inv")).symlink_to("nowhere")
        self.assertIn(NAME.replace(".inv", "(2).inv"), self.scan("/silent").stdout)
        (self.out / NAME).chmod(0o600)
        self.assertEqual((self.out / NAME).read_text(), "mine")

    def test_without_a_netbios_name_it_has_the_computers_name(self):
        machine = self.machine_without("SPNetworkLocationDataType")
        self.scan_silently(machine)
        self.assertEqual(self.files(), ["STUDIO IMAC_.inv"])

    def machine_without(self, data_type):
        machine = self.folder / "machine"
        subprocess.run(["cp", "-R", IMAC, machine], check=True)
        (machine / "profiler" / f"{data_type}.plist").unlink()
        (machine / "computer-name.txt").write_text("Studio iMac\n")
        return machine

    def test_a_slash_in_the_machines_name_leads_to_no_other_folder(self):
        machine = self.machine_without("SPNetworkLocationDataType")
        for computer, name in (("either/or", "EITHER_OR_.inv"), ("../up", ".._UP_.inv"), ("/", "__.inv")):
            with self.subTest(computer=computer):
                (machine / "computer-name.txt").write_text(computer + "\n")
                result = self.scan("/silent", machine=machine)
                self.assertEqual((result.stdout, result.stderr), (f"{PERCENTAGES}>>>{name}\n", ""))
                self.assertEqual(self.decode(name).asset_info.get("alias"), computer)

    def test_in_a_folder_without_write_permission_it_says_so(self):
        self.out.chmod(0o555)
        self.folder.chmod(0o755)
        prefix = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups") if os.geteuid() == 0 else ()
        result = self.scan(answer="y", prefix=prefix)
        self.assertIn(f"Cannot create file :{self.out.resolve()}/{NAME}\n", result.stderr)
        self.assertEqual((result.stdout, result.returncode), (PROMPT + "Scan started...\n", 0))
        silent = self.scan("/silent", prefix=prefix)
        self.assertEqual((silent.stdout, silent.stderr, silent.returncode), (PERCENTAGES, "", 0))
        self.assertEqual(self.files(), [])


class Profiler(ScanTestCase):
    REPLAY = f'exec "{IMAC.parents[1] / "bin" / "system_profiler"}" "$@"\n'

    def test_is_retried_after_two_empty_answers(self):
        count = self.folder / "count"
        self.write_tool(
            "system_profiler",
            f'if [ "$4" = SPSoftwareDataType ]; then echo >> "{count}"; [ $(wc -l < "{count}") -gt 2 ] || exit 0; fi\n{self.REPLAY}',
        )
        result = self.scan(answer="y")
        self.assertNotIn("No output", result.stderr)
        self.assertEqual(len(count.read_text()), 3)
        self.assertIsNotNone(self.decode().snapshot.find("OS/os:1"))

    def test_that_is_missing_is_named_and_the_scan_ends_in_seconds(self):
        self.write_tool("system_profiler", "exit 127\n")
        start = time.monotonic()
        result = self.scan(answer="y")
        self.assertLess(time.monotonic() - start, 30)
        lines = [line for line in result.stderr.splitlines() if "system_profiler" in line]
        self.assertEqual(len(lines), 21)
        self.assertEqual(lines[0], "No output: system_profiler -detailLevel full -xml SPHardwareDataType")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(self.decode().snapshot.name, "Snapshot")

    def test_output_of_exactly_a_read_arrives_whole(self):
        recording = (IMAC / "profiler" / "SPSoftwareDataType.plist").read_bytes()
        padding = b" " * (65536 - len(recording) % 65536)
        padded = self.folder / "padded"
        padded.write_bytes(recording.replace(b"</array>\n</plist>\n", padding + b"</array>\n</plist>\n"))
        self.assertEqual(padded.stat().st_size % 65536, 0)
        self.write_tool("system_profiler", f'[ "$4" != SPSoftwareDataType ] || exec cat "{padded}"\n{self.REPLAY}')
        self.assertIsNotNone(self.scan_silently().snapshot.find("OS/os:1"))


class SnapshotAttributes(ScanTestCase):
    def test_describe_the_scan_itself(self):
        top = self.scan_silently().snapshot
        self.assertEqual(
            [attribute.name for attribute in top.attributes],
            "timestamp scan-time client-version scan-subtype snaptype hostname domain user-name ip-address".split(),
        )
        values = {attribute.name: attribute.value for attribute in top.attributes}
        self.assertRegex(values["timestamp"], r"^20\d{12}\.000000\+0$")
        self.assertEqual(int(values["scan-time"]) % 1000, 0)
        self.assertEqual(values["client-version"], "12.01.18.0")
        self.assertEqual(values["scan-subtype"], "sstService")
        self.assertEqual(values["snaptype"], "mac:1")

    def test_have_the_end_of_the_scan_and_its_duration(self):
        """The last tool of a scan takes more than a second and then looks at the clock."""
        env, clock = shutil.which("env"), self.folder / "clock"
        self.write_tool("env", f'sleep 1.1\ndate -u +%Y%m%d%H%M%S >"{clock}"\nexec "{env}"\n')
        start = time.monotonic()
        top = self.scan_silently().snapshot
        took = time.monotonic() - start
        self.assertGreaterEqual(top.get("timestamp")[:14], clock.read_text().strip())
        self.assertEqual(int(top.get("scan-time")) % 1000, 0)
        self.assertTrue(1 <= int(top.get("scan-time")) / 1000 <= took + 1, (top.get("scan-time"), took))

    def test_have_an_address_only_where_one_is_known(self):
        for option, address, hardware_address in (
            ((), "192.0.2.17", "00-00-5E-00-53-1A"),
            (("-ip:",), "", ""),
            (("/ip:",), "", ""),
            (("/ip:192.0.2.17", "-ip:"), "", ""),
        ):
            with self.subTest(option=option):
                container = self.scan_silently(IMAC, *option)
                self.assertEqual(container.snapshot.get("ip-address"), address)
                self.assertEqual(container.asset_info.get("ip-address"), address)
                self.assertEqual(container.asset_info.get("mac-address"), hardware_address)

    def test_the_timestamp_is_readable_in_every_locale_and_zone(self):
        for locale, zone, expected in (
            ("ar_EG.UTF-8", "Asia/Kolkata", r"^20\d{12}\.000000\+330$"),
            ("fa_IR.UTF-8", "America/New_York", r"^20\d{12}\.000000-(300|240)$"),
        ):
            with self.subTest(locale=locale):
                environment = self.environment(IMAC)
                environment.update(LC_ALL=locale, TZ=zone)
                result = subprocess.run([SCANNER, "/silent"], cwd=self.out, env=environment, capture_output=True, text=True)
                name = result.stdout.splitlines()[-1].removeprefix(">>>")
                self.assertRegex(self.decode(name).snapshot.attribute("timestamp").value, expected)

    def test_the_header_lists_both_sections(self):
        container = self.scan_silently()
        self.assertIsNotNone(container.snapshot)
        self.assertIsNotNone(container.asset_info)


if __name__ == "__main__":
    unittest.main()
