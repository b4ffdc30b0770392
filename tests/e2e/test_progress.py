"""The line on the operator's terminal that says what the scan is doing: shown while a tool runs, and at no other time."""

import fcntl
import os
import re
import signal
import subprocess
import termios
import time
import unittest

from quick_scans import QUICK_PS
from scans import IMAC, PROMPT, SCANNER, SIMULATOR, ScanTestCase
from terminals import Screen, Terminal

REPLAY = f'exec "{SIMULATOR / "bin" / "system_profiler"}" "$@"\n'
TITLES = [
    "Hardware", "Network", "Software", "Parallel ATA", "Audio", "Bluetooth", "FireWire", "Displays", "Memory", "Printers",
    "Serial ATA", "Parallel SCSI", "USB", "AirPort", "Firewall", "Network locations", "Network volumes", "Applications",
    "Startup items", "Disc burning", "Power",
]  # fmt: skip


def questions(text):
    """The lines' texts, each once, without the seconds."""
    found = re.findall(r"\r([^\r\n]*\S), \d+ s(?=\r)", text)
    return [line for number, line in enumerate(found) if number == 0 or found[number - 1] != line]


class ProgressTestCase(ScanTestCase):
    def setUp(self):
        super().setUp()
        self.write_tool("ps", QUICK_PS.split("\n", 1)[1])

    def terminal(self, columns=80):
        terminal = Terminal(columns)
        self.addCleanup(terminal.close)
        return terminal

    def start(self, *arguments, answer="y\n", **streams):
        # If the scan asks nothing, a pipe would be closed before it is written to.
        (self.folder / "answer").write_text(answer)
        with open(self.folder / "answer") as stdin:
            return subprocess.Popen([SCANNER, *arguments], cwd=self.out, env=self.environment(IMAC), stdin=stdin, **streams)

    def scan_on(self, terminal, *arguments, answer="y\n"):
        """What a scan writes to standard output, which is a pipe, and to standard error, which is the terminal."""
        scan = self.start(*arguments, answer=answer, stdout=subprocess.PIPE, stderr=terminal.end)
        errors = terminal.read()
        output = scan.stdout.read().decode()
        scan.stdout.close()
        self.assertEqual(scan.wait(), 0)
        return output, errors

    def result_line(self):
        return f'\nScan finished. Results saved to file "{self.out.resolve() / self.files()[0]}"\n'


class Progress(ProgressTestCase):
    def test_shows_each_step_and_leaves_nothing_behind(self):
        output, errors = self.scan_on(self.terminal())
        self.assertEqual(output, PROMPT + "Scan started...\n" + self.result_line())
        asked = questions(errors)
        self.assertEqual(asked[:21], [f"{title}, {number} of 21" for number, title in enumerate(TITLES, 1)])
        rest = [line for line in asked[21:] if not line.startswith("Processes, ")]
        self.assertEqual(
            rest, ["Computer", "Removable disks", "Accounts", "Accounts, 1 of 3", "Accounts, 2 of 3", "Accounts, 3 of 3", "Environment"]
        )
        processes = [line for line in asked if line.startswith("Processes, ")]
        count = int(processes[0].split()[-1])
        self.assertEqual(processes, [f"Processes, {number} of {count}" for number in range(1, count + 1)])
        self.assertEqual(Screen(80).feed(errors).text(), "")

    def test_is_gone_before_the_next_line_of_output_on_the_same_terminal(self):
        terminal = self.terminal()
        scan = self.start(stdout=terminal.end, stderr=terminal.end)
        written = terminal.read()
        self.assertEqual(scan.wait(), 0)
        self.assertEqual(Screen(80).feed(written).text(), PROMPT + "Scan started...\n" + self.result_line())
        without = re.sub(r"\r[^\r\n]+, \d+ s\r +\r", "", written)
        self.assertEqual(without.replace("\r\n", "\n"), PROMPT + "Scan started...\n" + self.result_line())

    def test_seconds_go_by_while_a_tool_is_silent(self):
        self.write_tool("system_profiler", f'[ "$4" != SPApplicationsDataType ] || sleep 2.5\n{REPLAY}')
        _, errors = self.scan_on(self.terminal())
        seconds = re.findall(r"Applications, 18 of 21, (\d+) s", errors)
        self.assertEqual(seconds[:3], ["0", "1", "2"])

    def test_a_narrow_terminal_is_not_littered(self):
        for columns in (30, 12, 2):
            with self.subTest(columns=columns):
                _, errors = self.scan_on(self.terminal(columns))
                screen = Screen(columns).feed(errors)
                self.assertFalse(screen.overran)
                self.assertEqual(screen.text(), "")
                self.assertIn("\rApplications, 18 of 21, 0 s"[:columns], errors)

    def test_of_a_debug_run_names_the_profiler(self):
        self.write_tool("system_profiler", f"sleep 1.2\n{REPLAY}")
        output, errors = self.scan_on(self.terminal(), "/debug")
        self.assertEqual(questions(errors), ["System profiler"])
        self.assertIn("System profiler, 1 s", errors)
        self.assertEqual(Screen(80).feed(errors).text(), "")
        self.assertEqual(output, PROMPT + "Scan started...\n" + self.result_line())

    def test_is_not_there_when_no_scan_is_made(self):
        for answer, status in (("n\n", 0), ("no\n", 1), ("", 1)):
            with self.subTest(answer=answer):
                terminal = self.terminal()
                scan = self.start(answer=answer, stdout=subprocess.DEVNULL, stderr=terminal.end)
                self.assertEqual(terminal.read(), "")
                self.assertEqual(scan.wait(), status)

    def test_is_not_there_in_a_silent_or_logged_scan(self):
        for options in (["/silent"], ["/log"], ["/silent", "/log"], ["/debug", "/log"]):
            with self.subTest(options=options):
                _, errors = self.scan_on(self.terminal(), *options)
                self.assertEqual(errors, "")

    def test_is_not_there_where_standard_error_is_not_a_terminal(self):
        terminal = self.terminal()
        scan = self.start(stdout=terminal.end, stderr=subprocess.PIPE)
        written = terminal.read()
        self.assertEqual(scan.stderr.read(), b"")
        scan.stderr.close()
        self.assertEqual(scan.wait(), 0)
        self.assertEqual(written.replace("\r\n", "\n"), PROMPT + "Scan started...\n" + self.result_line())

    def test_never_shares_a_line_with_a_message(self):
        _, errors = self.scan_on(self.terminal(), "/ip:192.0.2.250")
        self.assertEqual(
            Screen(100).feed(errors).text(),
            "No network adapter has the address 192.0.2.250; the machine's identity stays empty\n",
        )
        self.write_tool("diskutil", "exec cat /dev/zero\n")
        _, errors = self.scan_on(self.terminal())
        self.assertRegex(Screen(100).feed(errors).text(), r"^Output cut off after \d+ bytes: diskutil info /dev/disk1\n$")


class ToolErrors(ProgressTestCase):
    def setUp(self):
        super().setUp()
        self.write_tool("dscl", "echo no such record >&2\n")

    def test_go_nowhere_where_the_progress_is_shown(self):
        _, errors = self.scan_on(self.terminal())
        self.assertNotIn("no such record", errors)

    def test_are_seen_with_a_log(self):
        _, errors = self.scan_on(self.terminal(), "/log")
        self.assertEqual(errors, "no such record\r\n" * 3)

    def test_are_seen_where_standard_error_is_not_a_terminal(self):
        self.assertEqual(self.scan(answer="y\n").stderr, "no such record\n" * 3)


class Ends(ProgressTestCase):
    """A signal ends the scan, the tool that runs with all its processes, and the line."""

    def setUp(self):
        super().setUp()
        self.write_tool("system_profiler", f'echo $$ >"{self.folder}/pid"\nsleep 1000 | cat\n')

    def check_gone(self, scan, number):
        self.assertEqual(scan.wait(30), -number)
        tool = int((self.folder / "pid").read_text())
        for _ in range(500):
            if not self.group_lives(tool):
                break
            time.sleep(0.01)
        self.assertFalse(self.group_lives(tool))
        self.assertEqual(self.files(), [])

    def group_lives(self, process):
        try:
            group = os.getpgid(process)
            self.assertNotEqual(group, os.getpgid(0))
            os.killpg(group, 0)
        except ProcessLookupError:
            return False
        return True

    def test_by_a_signal_to_the_scanner(self):
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT, signal.SIGQUIT):
            with self.subTest(signal=number):
                terminal = self.terminal()
                scan = self.start(stdout=subprocess.DEVNULL, stderr=terminal.end)
                seen = terminal.read(until=", 1 s")
                scan.send_signal(number)
                self.check_gone(scan, number)
                self.assertEqual(Screen(80).feed(seen + terminal.read()).text(), "")

    def test_by_the_interrupt_key(self):
        terminal = self.terminal()

        def control_terminal():
            os.setsid()
            fcntl.ioctl(terminal.end, termios.TIOCSCTTY, 0)

        scan = self.start(stdout=subprocess.DEVNULL, stderr=terminal.end, preexec_fn=control_terminal)
        terminal.read(until=", 1 s")
        os.write(terminal.master, b"\x03")
        self.check_gone(scan, signal.SIGINT)

    def test_but_not_by_one_that_the_caller_ignores(self):
        self.write_tool("system_profiler", f'echo $$ >"{self.folder}/pid"\n{REPLAY}')
        command = ["sh", "-c", 'trap "" HUP; kill_soon() { sleep 0.3; kill -HUP $$; }; kill_soon & exec "$0" /silent', SCANNER]
        result = subprocess.run(command, cwd=self.out, env=self.environment(IMAC), stdin=subprocess.DEVNULL, capture_output=True)
        self.assertEqual(result.returncode, 0)
        self.decode()


if __name__ == "__main__":
    unittest.main()
