"""Summaries on terminals of several widths: no line is wider, whatever characters the names have."""

import os
import subprocess
import unicodedata
import unittest

from inventories import FOLDER, FULL_MACHINES, INV, MACHINES, InventoryTestCase, file_of_text, scanned
from terminals import Terminal

WIDTHS = (20, 40, 60, 80, 132)
NAMES = {
    "chinese": "\u6771\u4eac\u306e\u5f71\u50cf\u7de8\u96c6\u5ba4\u306e\u30de\u30c3\u30af\u4e00\u53f7\u6a5f" * 3,
    "taken-apart": unicodedata.normalize("NFD", "B\u00fcro\u00e9\u00e8 \u304c\u304e\u3050\u3052\u3054 \ud55c\uad6d\uc5b4 ") * 4,
    "pictures": "\u2705\U0001f600\u26a1\ufe0f\u2b50\U0001f1e9\U0001f1ea " * 6,
    "letters": "a-machine-with-a-long-name-" * 8,
}


def columns(text):
    """The columns that a terminal needs for a text."""
    def width(character):
        if unicodedata.category(character) in ("Mn", "Me", "Cf") or 0x1160 <= ord(character) <= 0x11FF:
            return 0
        return 2 if unicodedata.east_asian_width(character) in "WF" else 1
    return sum(map(width, text))


def shown(columns_of_terminal, *arguments):
    """The lines that a command writes to a terminal of this width."""
    terminal = Terminal(columns_of_terminal)
    environment = {**os.environ, "TERM": "xterm", "NO_COLOR": "1"}
    with subprocess.Popen([INV, *arguments], stdout=terminal.end, env=environment) as process:
        text = terminal.read()
    terminal.close()
    assert process.returncode == 0, (arguments, process.returncode)
    return text.split("\r\n")[:-1]


def file_named(name, machine, serial="SIM0000IMAC1"):
    lines = ["\ufeff?zxml", "+Snapshot=", f"hostname={machine}", "+System=", "+Chassis=", f"serial={serial}", "model=iMac11,1", "-", "-",
             "+Storage=", "+Logical-disks=", f"*partition:1={machine}", "size=1000", "free=40", "-", "-", "-", ""]
    path = FOLDER / name
    path.write_bytes(file_of_text("\n".join(lines).encode()))
    return path


class Widths(InventoryTestCase):
    def assert_fits(self, width, *arguments):
        lines = shown(width, *arguments)
        self.assertGreater(len(lines), 1)
        for line in lines:
            self.assertLessEqual(columns(line), width, line)
        return lines

    def test_summaries_of_several_files_fit_the_terminal(self):
        machines = [scanned(machine.name) for machine in MACHINES]
        named = [file_named(f"{name}.inv", machine) for name, machine in NAMES.items()]
        strange = file_named("strange.inv", "x", serial="S" * 300)
        for files in (machines, machines + machines, named, [*machines, *named, *named, strange]):
            for width in WIDTHS:
                with self.subTest(width=width, files=len(files)):
                    self.assert_fits(width, "summary", *files)

    def test_summaries_of_one_file_fit_the_terminal(self):
        files = [*map(scanned, FULL_MACHINES), *(file_named(f"{name}.inv", machine) for name, machine in NAMES.items())]
        for file in files:
            for width in WIDTHS:
                with self.subTest(width=width, file=file.name):
                    self.assert_fits(width, "summary", file)

    def test_columns_line_up_after_wide_characters(self):
        lines = self.assert_fits(132, "summary", file_named("short-1.inv", "\u6771\u4eac"), file_named("short-2.inv", "e\u0301\u304b\u3099\u2705"))
        places = [columns(line[:line.index(word)]) for line, word in zip(lines, ("Serial", "SIM0000IMAC1", "SIM0000IMAC1"))]
        self.assertEqual(len(set(places)), 1, lines)

    def test_what_has_no_room_is_named(self):
        file = scanned("imac-10.6")
        whole = self.assert_fits(80, "summary", file, scanned("mac-pro-10.5"))
        self.assertEqual(whole[0].split(), ["Machine", "Model", "Serial", "System", "Memory", "Disk", "Scanned"])
        narrow = self.assert_fits(40, "summary", file, scanned("mac-pro-10.5"))
        self.assertEqual(narrow[0].split(), ["Machine", "Serial", "System"])
        self.assertEqual(narrow[-1], "No room for Disk, Memory, Model, Scanned"[:40])

    def test_a_terminal_without_a_width_has_80_columns(self):
        file = scanned("imac-10.6")
        self.assertEqual(shown(0, "summary", file), shown(80, "summary", file))


if __name__ == "__main__":
    unittest.main()
