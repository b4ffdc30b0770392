"""The manual pages are sound, and describe every command and option that the programs have."""

import re
import shutil
import subprocess
import unittest

import options_of
from inventories import ROOT, InventoryTestCase

FOLDER = ROOT / "docs" / "man"
INV_PAGE = (FOLDER / "inv.1").read_text()
SCANNER_PAGE = (FOLDER / "velkaro-scanner.1").read_text()
# What mdoc's macro of flags puts before its argument: "Fl -max-size", "Fl q , -quiet".
FLAG = r"(-?[A-Za-z0-9][a-z-]*)"


def section(page, name):
    return re.search(rf"^\.Sh {name}\n(.*?)(?=^\.Sh |\Z)", page, re.M | re.S)[1]


def flags_of_items(text):
    """The options that a text has list items for."""
    items = re.findall(rf"^\.It Fl {FLAG}(?: , {FLAG})?(?= |$)", text, re.M)
    return {"-" + flag for item in items for flag in item if flag}


class ManPages(InventoryTestCase):
    def test_every_command_is_described_in_order(self):
        self.assertEqual(re.findall(r"^\.It Cm (\w+)$", INV_PAGE, re.M), self.in_order_of_page())
        self.assertEqual(set(self.in_order_of_page()), set(options_of.commands()))

    def in_order_of_page(self):
        return re.findall(r"^\.Cm (\w+)$", section(INV_PAGE, "SYNOPSIS"), re.M)

    def test_every_option_is_described(self):
        described, common = section(INV_PAGE, "DESCRIPTION").split("All commands have these options:")
        for command in options_of.commands():
            with self.subTest(command=command):
                text = re.search(rf"^\.It Cm {command}\n(.*?)(?=^\.It Cm |\Z)", described, re.M | re.S)[1]
                limit = {"--max-size"} if command in ("schema", "help") else set()
                self.assertEqual((flags_of_items(text) | flags_of_items(common)) - limit, options_of.options(command))

    def test_every_option_is_in_the_synopsis(self):
        for command in options_of.commands():
            with self.subTest(command=command):
                text = re.search(rf"^\.Cm {command}\n(.*?)(?=^\.Nm)", section(INV_PAGE, "SYNOPSIS"), re.M | re.S)[1]
                long_ones = {name for name in options_of.options(command) if name.startswith("--")}
                self.assertEqual({"-" + flag for flag in re.findall(rf"Fl {FLAG}", text)}, long_ones - options_of.HELP)
                for name in re.findall(r"Op Fl -([a-z-]+)", text):
                    self.assertNotRegex(options_of.help_text(command), rf"--{name} .*REQUIRED")

    def test_the_programs_own_options_are_described(self):
        text = section(INV_PAGE, "SYNOPSIS").split(".Cm help")[1]
        self.assertTrue({"-h", "--help", "--version"} <= options_of.options())
        self.assertIn(".Fl h | -help\n", text)
        self.assertIn(".Fl -version\n", text)

    def test_the_scanners_options_are_described(self):
        wanted = {name.rstrip(":") for name in options_of.scanner_options()}
        self.assertEqual(flags_of_items(SCANNER_PAGE), wanted)
        synopsis = section(SCANNER_PAGE, "SYNOPSIS")
        self.assertEqual({"-" + flag for flag in re.findall(rf"(?:Fl|\|) {FLAG}", synopsis)}, wanted)

    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_the_pages_are_sound(self):
        for page in FOLDER.iterdir():
            result = subprocess.run(["mandoc", "-T", "lint", page], capture_output=True, text=True, timeout=60)
            # The pages refer to each other before they are installed.
            found = [line for line in result.stdout.splitlines() if "referenced manual not found" not in line]
            self.assertEqual(found + result.stderr.splitlines(), [])


if __name__ == "__main__":
    unittest.main()
