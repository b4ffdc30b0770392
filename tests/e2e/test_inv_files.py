"""Commands over several files, and their messages about arguments that are not what they seem."""

import json
import os
import shutil
import tempfile
import unittest
from pathlib import Path

from inventories import FOLDER, InventoryTestCase, debug_scanned, file_of_text, inv, scanned

SERIAL = "/System/Chassis/serial"
MEMORY = "/Memory/General-info/physical-memory"


class SeveralFiles(InventoryTestCase):
    def setUp(self):
        """The commands run in a folder of two files with short names."""
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        shutil.copy(scanned("imac-10.6"), folder / "imac.inv")
        shutil.copy(scanned("mac-pro-10.5"), folder / "pro.inv")
        shutil.copy(debug_scanned("imac-10.6"), folder / "debug.inv")
        before = os.getcwd()
        self.addCleanup(os.chdir, before)
        os.chdir(folder)

    def test_get_names_the_file_of_each_value_when_there_are_several(self):
        self.assertEqual(self.check(0, "get", "imac.inv", "pro.inv", SERIAL), "imac.inv:SIM0IMAC106\npro.inv:SIM0MACPRO5\n")
        self.assertEqual(self.check(0, "get", "imac.inv", SERIAL), "SIM0IMAC106\n")

    def test_get_names_files_as_grep_does(self):
        self.assertEqual(self.check(0, "get", "-h", "imac.inv", "pro.inv", SERIAL), "SIM0IMAC106\nSIM0MACPRO5\n")
        self.assertEqual(self.check(0, "get", "--no-filename", "imac.inv", "pro.inv", SERIAL), "SIM0IMAC106\nSIM0MACPRO5\n")
        self.assertEqual(self.check(0, "get", "-H", "imac.inv", SERIAL), "imac.inv:SIM0IMAC106\n")
        self.assertEqual(self.check(0, "get", "--with-filename", "imac.inv", SERIAL), "imac.inv:SIM0IMAC106\n")

    def test_h_alone_asks_for_help(self):
        self.assertEqual(self.check(0, "get", "-h"), self.check(0, "get", "--help"))

    def test_get_takes_all_paths_of_a_file_before_those_of_the_next(self):
        self.assertEqual([line.partition(":")[0] for line in self.check(0, "get", "imac.inv", "pro.inv", SERIAL, MEMORY).splitlines()],
                         ["imac.inv", "imac.inv", "pro.inv", "pro.inv"])

    def test_files_and_paths_come_in_any_order(self):
        self.assertEqual(self.check(0, "get", SERIAL, "imac.inv", "AssetInfo/int-name", "pro.inv"),
                         self.check(0, "get", "imac.inv", "pro.inv", SERIAL, "AssetInfo/int-name"))

    def test_absent_paths_are_named_with_their_file(self):
        self.assertEqual(self.check(1, "get", "imac.inv", "pro.inv", SERIAL, "/nothing"), "imac.inv:SIM0IMAC106\npro.inv:SIM0MACPRO5\n")
        self.assertEqual(self.messages, "inv: imac.inv: /nothing: no such value\ninv: pro.inv: /nothing: no such value\n")
        self.assertEqual(self.check(1, "show", "imac.inv", "/nothing"), "")
        self.assertEqual(self.messages, "inv: imac.inv: /nothing: no such path\n")

    def test_get_writes_json(self):
        found = json.loads(self.check(1, "get", "--json", "imac.inv", "pro.inv", "/Memory/Memory-slot:1/capacity", "/hostnam"))
        self.assertEqual(found, [{"file": "imac.inv", "path": "/Memory/Memory-slot:1/capacity", "value": "2048", "unit": "MB"},
                                 {"file": "pro.inv", "path": "/Memory/Memory-slot:1/capacity", "value": "2048", "unit": "MB"}])
        self.assertEqual(json.loads(self.check(0, "get", "--json", "imac.inv", "/Software/Soft:1")),
                         [{"file": "imac.inv", "path": "/Software/Soft:1", "value": self.check(0, "get", "imac.inv", "/Software/Soft:1")[:-1]}])
        self.assertEqual(json.loads(self.check(1, "get", "--json", "imac.inv", "/nothing")), [])

    def test_get_trims_the_end_of_values_when_asked(self):
        serial = self.trailing_value()
        self.assertEqual(self.check(0, "get", "odd.inv", serial), "SIM \r\n")
        self.assertEqual(self.check(0, "get", "--trim", "odd.inv", serial), "SIM\n")
        self.assertEqual(json.loads(self.check(0, "get", "--trim", "--json", "odd.inv", serial))[0]["value"], "SIM")
        self.assertEqual(json.loads(self.check(0, "get", "--json", "odd.inv", serial))[0]["value"], "SIM \r")

    def trailing_value(self):
        """The path of a value that ends in a blank and a carriage return, in a file that is made for it."""
        text = inv("export", "-f", "zxml", "imac.inv").stdout
        mark = text[: text.index(b"\n") + 1]
        Path("odd.inv").write_bytes(file_of_text(mark + b"+Snapshot=\nodd=SIM \r\n-\n"))
        return "/odd"

    def test_show_puts_the_name_of_its_file_above_each_tree(self):
        shown = self.check(0, "show", "imac.inv", "pro.inv", SERIAL)
        self.assertEqual(shown, f"imac.inv:\n{SERIAL}  SIM0IMAC106\n\npro.inv:\n{SERIAL}  SIM0MACPRO5\n")

    def test_list_shows_every_file(self):
        listing = self.check(0, "list", "imac.inv", "pro.inv")
        self.assertEqual(listing, self.check(0, "list", "imac.inv") + "\n" + self.check(0, "list", "pro.inv"))

    def folder_of_two(self):
        """A folder with both files, one of them deeper, and a link that is not followed."""
        Path("spool/b").mkdir(parents=True)
        shutil.copy("imac.inv", "spool/b/imac.inv")
        shutil.copy("pro.inv", "spool/pro.inv")
        Path("spool/link.inv").symlink_to("pro.inv")
        return "spool", ("spool/b/imac.inv", "spool/pro.inv")

    def test_summary_names_the_files_of_machines_with_one_name(self):
        self.assertNotIn("File", self.check(0, "summary", "imac.inv", "pro.inv"))
        shutil.copy("imac.inv", "again.inv")
        lines = self.check(0, "summary", "imac.inv", "pro.inv", "again.inv").splitlines()
        self.assertEqual([line.split()[0] for line in lines], ["File", "imac.inv", "pro.inv", "again.inv"])
        self.assertLessEqual(max(map(len, lines)), 80)
        self.assertTrue(all("SIM0" in line for line in lines[1:]))

    def test_summary_sorts_by_a_column(self):
        names = [line.split()[0] for line in self.check(0, "summary", "imac.inv", "pro.inv", "--sort", "system").splitlines()]
        self.assertEqual(names, ["Machine", "Render", "Studio"])
        self.check(2, "summary", "imac.inv", "--sort", "modle")
        self.assertIn('"modle" is not one of name, model, serial, system, memory, disk, age; did you mean model?', self.messages)

    def test_summary_writes_json(self):
        machines = json.loads(self.check(2, "summary", "--json", "--sort", "memory", "pro.inv", "missing.inv", "imac.inv"))
        self.assertEqual([(machine["file"], machine["serial"], machine["memory"]["megabytes"]) for machine in machines],
                         [("imac.inv", "SIM0IMAC106", 4096), ("pro.inv", "SIM0MACPRO5", 6656)])
        self.assertEqual(len(json.loads(self.check(0, "summary", "--json", "imac.inv"))), 1)
        self.assertEqual(json.loads(self.check(2, "summary", "--json", "missing.inv")), [])

    def test_a_folder_is_all_files_in_it(self):
        folder, files = self.folder_of_two()
        for command, arguments in (("get", [SERIAL]), ("show", [SERIAL]), ("list", [])):
            with self.subTest(command=command):
                self.assertEqual(self.check(0, command, folder, *arguments), self.check(0, command, *files, *arguments))
        self.check(1, "get", "spool/b", SERIAL, "/nothing")
        self.assertEqual(self.messages, "inv: spool/b/imac.inv: /nothing: no such value\n")

    def test_the_one_file_of_a_folder_or_a_list_is_named_too(self):
        self.folder_of_two()
        Path("names").write_text("imac.inv\n")
        self.assertEqual(self.check(0, "get", "spool/b", SERIAL), "spool/b/imac.inv:SIM0IMAC106\n")
        self.assertEqual(self.check(0, "show", "spool/b", SERIAL), f"spool/b/imac.inv:\n{SERIAL}  SIM0IMAC106\n")
        self.assertEqual(self.check(0, "get", "--files-from", "names", SERIAL), "imac.inv:SIM0IMAC106\n")

    def test_an_empty_folder_is_named(self):
        Path("empty").mkdir()
        for command, arguments in (("get", [SERIAL]), ("show", [SERIAL]), ("list", [])):
            with self.subTest(command=command):
                self.assertIn("SIM0IMAC106" if arguments else "imac.inv", self.check(1, command, "empty", "imac.inv", *arguments))
                self.assertEqual(self.messages, "inv: empty: has no *.inv files\n")

    def test_files_are_read_from_a_list(self):
        Path("names").write_text("imac.inv\npro.inv\n")
        for command, arguments in (("get", [SERIAL]), ("show", [SERIAL]), ("list", [])):
            with self.subTest(command=command):
                both = self.check(0, command, "imac.inv", "pro.inv", *arguments)
                self.assertEqual(self.check(0, command, *arguments, "--files-from", "names"), both)
                self.assertEqual(self.check(0, command, *arguments, "--files-from", "-", "-0", input=b"imac.inv\0pro.inv\0"), both)
        self.check(2, "get", SERIAL, "--files-from", "missing")
        self.assertEqual(self.messages, "inv: missing: cannot be read: No such file or directory\n")

    def test_a_file_that_cannot_be_read_leaves_the_others(self):
        for command, arguments in (("get", [SERIAL]), ("show", [SERIAL]), ("list", [])):
            with self.subTest(command=command):
                self.assertIn("imac.inv", self.check(2, command, "missing.inv", "imac.inv", *arguments))
                self.assertIn("inv: missing.inv: cannot be read: ", self.messages)

    def test_an_argument_of_the_wrong_kind_is_reported(self):
        for arguments, message in ((["get", SERIAL, "/hostname"], f"a FILE is missing: {SERIAL}, /hostname are paths within one"),
                                   (["show", SERIAL], f"a FILE is missing: {SERIAL} is a path within one"),
                                   (["show"], "a FILE is missing"),
                                   (["get", "imac.inv", "pro.inv"], f"a PATH such as {SERIAL} is missing: imac.inv, pro.inv are files"),
                                   (["get", "imac.inv"], f"a PATH such as {SERIAL} is missing: imac.inv is a file")):
            with self.subTest(arguments=arguments):
                self.check(2, *arguments)
                self.assertEqual(self.messages, f"inv: {arguments[0]}: {message}\n")

    def test_a_file_is_one_whatever_its_name(self):
        shutil.copy("imac.inv", "AssetInfo")
        absolute = os.path.abspath("AssetInfo")
        self.assertEqual(self.check(0, "get", "AssetInfo", absolute, SERIAL), f"AssetInfo:SIM0IMAC106\n{absolute}:SIM0IMAC106\n")
        self.check(2, "get", os.path.abspath("missing.inv"), SERIAL)
        self.assertIn("missing.inv: cannot be read: No such file or directory", self.messages)

    def test_advice_is_given_for_a_debug_file(self):
        advice = "inv: debug.inv: this is a debug file; inv unpack turns it into a simulated Mac\n"
        self.assertIn("STUDIO-IMAC", self.check(0, "summary", "debug.inv"))
        self.assertEqual(self.messages, advice)
        self.check(1, "get", "debug.inv", SERIAL, "/hostname")
        self.assertEqual(self.messages, f"inv: debug.inv: {SERIAL}: no such value\n{advice}"
                                        "inv: debug.inv: /hostname: no such value\n")
        self.check(0, "get", "debug.inv", "AssetInfo/int-name")
        self.assertEqual(self.messages, "")
        self.check(0, "summary", "imac.inv")
        self.assertEqual(self.messages, "")


if __name__ == "__main__":
    unittest.main()
