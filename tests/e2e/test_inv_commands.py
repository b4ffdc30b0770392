"""How the commands of `inv` behave as processes: exit statuses, messages, standard input, colours, help."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import options_of
from inventories import FOLDER, INV, SIMULATOR, InventoryTestCase, debug_scanned, inv, scan, scanned
from terminals import Terminal

IMAC = "imac-10.6"
OTHER = "mac-pro-10.5"
# The commands that mask secrets.
MASKING = ("diff", "export", "load", "policy", "query", "report")


def on_terminal(*arguments, **changes):
    """What a command writes when its output is a terminal."""
    terminal = Terminal()
    environment = {**os.environ, "TERM": "xterm", **changes}
    with subprocess.Popen([INV, *arguments], stdout=terminal.end, stderr=terminal.end, env=environment):
        output = terminal.read()
    terminal.close()
    return output.encode()


def damaged_snapshot(name):
    """A file whose snapshot does not inflate any more; its asset section is whole."""
    data = bytearray(scanned(IMAC).read_bytes())
    data[100] ^= 0xFF
    path = FOLDER / name
    path.write_bytes(data)
    return path


def kept_policy():
    """Rules that no file breaks."""
    path = FOLDER / "kept.json"
    path.write_text('{"rules": [{"name": "none", "severity": "low", "message": "never", "sql": "SELECT 1 WHERE 0"}]}')
    return path


class Commands(InventoryTestCase):
    def setUp(self):
        self.file = scanned(IMAC)

    def test_help_begins_with_examples(self):
        self.assertTrue(self.check(0, "--help").startswith("Examples:\n  inv "))
        self.assertEqual(len(options_of.commands()), 15)
        for command in options_of.commands():
            with self.subTest(command=command):
                self.assertTrue(self.check(0, command, "--help").startswith(f"Examples:\n  inv {command} "))

    def test_unusable_arguments_end_with_2(self):
        for arguments in ([], ["frobnicate"], ["summary"], ["get", self.file], ["export", self.file],
                          ["export", "-f", "xml", self.file], ["show", self.file, "--section", "x"],
                          ["list", self.file, "--max-size", "0"], ["list", self.file, "--max-size", "many"],
                          ["list", self.file, "--max-size", "2000gb"], ["list", self.file, "--wrong"],
                          ["list"], ["diff", self.file], ["unpack", self.file], ["load", "x.db"],
                          ["report", self.file, self.file], ["report", "--compare", self.file], ["redact", self.file],
                          ["query", "SELECT 1"], ["query", "SELECT 1", self.file, "-f", "xml"], ["query", "SELECT 1", self.file, "--timeout", "0"],
                          ["policy", kept_policy()], ["policy", kept_policy(), self.file, "-f", "csv"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.check(2, *arguments), "")
                self.assertNotEqual(self.messages, "")

    def test_files_that_cannot_be_read_end_with_2(self):
        not_an_inventory = FOLDER / "not-an-inventory"
        not_an_inventory.write_bytes(b"hello, hello, hello")
        for file, reason in ((FOLDER / "missing.inv", "cannot be read: No such file or directory"),
                             (not_an_inventory, 'at byte 15: the magic "INV!" is missing')):
            for arguments in self.uses_of(file):
                # Such a file is what this command is meant to report.
                told_as_data = arguments[0] == "verify" and file == not_an_inventory
                with self.subTest(arguments=arguments):
                    output = self.check(1 if told_as_data else 2, *arguments)
                    self.assertIn(f"{file}: invalid {reason}\n" if told_as_data else f"inv: {file}: {reason}\n",
                                  output if told_as_data else self.messages)

    def uses_of(self, file):
        """Every command with this file in every place that a file can have."""
        uses = [["summary", file], ["summary", file, self.file], ["show", file], ["get", file, "/hostname"], ["list", file],
                ["verify", file], ["verify", self.file, file], ["export", "-f", "csv", file], ["export", "-f", "json", self.file, file],
                ["diff", file, self.file], ["diff", self.file, file], ["unpack", file, tempfile.mkdtemp(dir=FOLDER)],
                ["report", file], ["report", "--compare", file, self.file], ["report", "--compare", self.file, file],
                ["load", f"{FOLDER}/{self.id()}.db", file], ["load", f"{FOLDER}/{self.id()}.db", self.file, file],
                ["redact", file, "-o", "-"], ["query", "SELECT 1", file], ["query", "SELECT 1", self.file, file],
                ["policy", kept_policy(), file]]
        self.assertEqual({use[0] for use in uses}, set(options_of.commands_of_files()))
        return uses

    def test_a_damaged_section_leaves_the_other(self):
        path = damaged_snapshot("damaged.inv")
        for command in (["summary"], ["show"], ["list"], ["export", "-f", "ndjson"]):
            with self.subTest(command=command):
                self.assertIn("Studio iMac" if command != ["list"] else "AssetInfo", self.check(1, *command, path))
                self.assertIn("snapshot section: the zlib stream is damaged", self.messages)
        self.assertEqual(self.check(1, "get", path, "AssetInfo/int-name"), "Studio iMac\n")
        self.assertRegex(self.check(1, "verify", path), r"^.*/damaged\.inv: invalid at byte \d+: snapshot section: .*\n$")

    def test_good_files_are_handled_beside_bad_ones(self):
        table = self.check(2, "summary", self.file, FOLDER / "missing.inv", damaged_snapshot("beside.inv"))
        self.assertEqual(len(table.splitlines()), 3)

    def test_standard_input_is_a_file_too(self):
        data = self.file.read_bytes()
        self.assertEqual(self.check(0, "get", "-", "/System/Chassis/serial", input=data), "SIM0IMAC106\n")
        self.assertEqual(self.check(0, "verify", "-", input=data), "standard input: valid\n")
        for arguments in self.uses_of("-"):
            # How many secrets the processes of this host have does not matter.
            keeps_secrets = ["--secrets"] if arguments[0] in MASKING else []
            with self.subTest(arguments=arguments):
                result = inv(*arguments, *keeps_secrets, input=data)
                self.assertEqual(result.returncode, 0)
                # Over many files, the last line counts them.
                self.assertRegex(result.stderr, rb"^((\d+ \w+, )+\d\.\d s\n)?$")

    def test_get_says_no_when_a_path_names_nothing(self):
        self.assertEqual(self.check(1, "get", self.file, "/nothing", "/System/Chassis/manuf"), "Apple Inc.\n")
        self.assertEqual(self.check(1, "get", self.file, "/System"), "")
        self.assertEqual(self.check(0, "get", self.file, "/Environment/env-var:HOME"), "HOME\n")
        self.assertEqual(len(self.check(0, "get", self.file, "/Software/Soft:*/location").splitlines()), 150)

    def test_verify_is_quiet_when_asked(self):
        self.assertEqual(self.check(0, "verify", "--quiet", self.file), "")
        self.assertEqual(self.check(1, "verify", "-q", self.file, damaged_snapshot("quiet.inv")), "")
        self.assertEqual(self.messages, "")

    def test_a_section_above_the_limit_is_refused(self):
        self.check(1, "summary", self.file, "--max-size", "20kb")
        self.assertIn("it inflates to more than 20480 bytes", self.messages)
        self.check(0, "summary", self.file, "--max-size", "1mb")

    def test_diff_says_by_its_status_whether_two_scans_differ(self):
        self.assertEqual(self.check(0, "diff", self.file, self.file), "")
        self.assertEqual(self.messages, "")
        self.assertNotEqual(self.check(1, "diff", self.file, scanned(OTHER)), "")
        self.assertIn("two different machines: SIM0IMAC106 and ", self.messages)

    def test_list_names_the_byte_order(self):
        self.assertIn("bytes, most significant byte first\n", self.check(0, "list", self.file))

    def test_a_message_cannot_steer_the_terminal(self):
        self.check(2, "summary", FOLDER / "a\x1b[31mred")
        self.assertIn("a\N{REPLACEMENT CHARACTER}[31mred: cannot be read", self.messages)

    def test_a_debug_file_shows_what_it_has(self):
        path = debug_scanned(IMAC)
        listing = self.check(0, "list", path)
        self.assertRegex(listing, r"(?m)^ +1  raw data \(customdata rawdata\) ")
        self.assertEqual(self.check(0, "get", path, "AssetInfo/error-message"), "Debug scan\n")
        self.assertIn("AssetInfo", self.check(0, "show", path))
        self.check(1, "show", path, "/OS")
        self.assertEqual(self.check(0, "verify", path), f"{path}: valid\n")

    def test_show_limits_sections_and_depth(self):
        self.assertTrue(self.check(0, "show", self.file, "--section", "asset").startswith("AssetInfo\n"))
        outline = self.check(0, "show", self.file, "--section", "snapshot", "--depth", "0")
        self.assertRegex(outline.splitlines()[0], r"^/  \(\d+ below\)$")
        both = self.check(0, "show", self.file, "--section", "asset,snapshot", "--depth", "0")
        self.assertEqual([line.split()[0] for line in both.splitlines() if "below" in line], ["/", "AssetInfo"])

    def test_a_path_may_follow_the_section(self):
        self.assertEqual(self.check(0, "show", self.file, "--section", "asset", "AssetInfo/int-name"),
                         "AssetInfo/int-name  Studio iMac\n")
        self.assertEqual(self.check(1, "show", self.file, "--section", "asset", "/hostname"), "")

    def test_export_writes_a_file_whole_or_not_at_all(self):
        target = FOLDER / "facts.csv"
        self.assertEqual(self.check(0, "export", "-f", "csv", "-o", target, self.file), "")
        self.assertTrue(target.read_bytes().startswith(b"machine,path,"))
        self.check(2, "export", "-f", "csv", "-o", FOLDER / "no" / "facts.csv", self.file)
        self.check(2, "report", "-o", "", self.file)
        self.assertEqual(self.messages, "inv: : No such file or directory\n")
        self.assertEqual(list(FOLDER.glob("*.part")), [])

    def test_no_output_replaces_an_input_without_force(self):
        source, other, folder = scanned(IMAC), scanned(OTHER), Path(tempfile.mkdtemp(dir=FOLDER))
        file, link, twin = folder / "file.inv", folder / "link.inv", folder / "twin.inv"
        for command in (["export", "-f", "json", other], ["report"], ["report", "--compare", other], ["redact"]):
            for output in (file, link, twin):
                for each in folder.iterdir():
                    each.unlink()
                file.write_bytes(source.read_bytes())
                link.symlink_to(file)
                os.link(file, twin)
                with self.subTest(command=command, output=output.name):
                    self.check(2, *command, file, "-o", output)
                    self.assertEqual(self.messages, f"inv: {output}: is also an input; --force replaces it\n")
                    if len(command) == 1:
                        with open(file, "rb") as stream:
                            self.check(2, *command, "-", "-o", output, stdin=stream)
                    self.assertEqual(file.read_bytes(), source.read_bytes())
                    self.check(0, *command, file, "-o", output, "--force")
                    self.assertNotEqual(output.read_bytes(), source.read_bytes())

    def test_export_cannot_steer_the_terminal(self):
        machine = FOLDER / "steering"
        shutil.copytree(SIMULATOR / "machines" / IMAC, machine)
        (machine / "computer-name.txt").write_bytes("a\x1b[2J\x07\u009b2J\u202e\u200b\U000e0041z\n".encode())
        file = scan(machine)
        for form in ("zxml", "csv", "ndjson", "json"):
            with self.subTest(form=form):
                output = on_terminal("export", "-f", form, file).decode()
                self.assertIn("z", output)
                self.assertEqual(re.findall("[^\n\r\x20-\x7e\xa0-\u200a\u2010-\u2027\u2030-\u205f\u2070-\U000dffff]", output), [])
        self.assertIn("\u202e", self.check(0, "export", "-f", "zxml", file))

    def test_an_output_may_be_a_pipe(self):
        pipe, copy = FOLDER / "pipe", FOLDER / "copy"
        os.mkfifo(pipe)
        # The reader writes into a file: a pipe would have to be emptied meanwhile, as it may hold no more than two pages.
        with copy.open("wb") as output, subprocess.Popen(["timeout", "60", "cat", pipe], stdout=output):
            self.check(0, "export", "-f", "csv", "-o", pipe, self.file)
        self.assertEqual(copy.read_bytes(), inv("export", "-f", "csv", self.file).stdout)

    def test_no_part_of_an_output_stays_when_the_disk_is_full(self):
        folder = FOLDER / "full"
        folder.mkdir()
        # A limit on the size of files does what a full disk does, with another message.
        limited = ["sh", "-c", 'trap "" XFSZ; ulimit -f 4; exec "$@"', "sh", INV]
        for arguments in (["export", "-f", "json"], ["report"], ["redact"]):
            with self.subTest(arguments=arguments):
                result = subprocess.run([*limited, *arguments, self.file, "-o", folder / "out"], capture_output=True, timeout=60)
                self.assertEqual(result.returncode, 2)
                self.assertIn(b"/out: File too large\n", result.stderr)
                self.assertEqual(list(folder.iterdir()), [])

    def test_a_full_disk_is_reported(self):
        with open("/dev/full", "wb") as full:
            for arguments in (["show", self.file], ["export", "-f", "json", self.file], ["verify", self.file],
                              ["report", self.file], ["redact", self.file, "-o", "-"]):
                with self.subTest(arguments=arguments):
                    result = subprocess.run([INV, *arguments], stdout=full, stderr=subprocess.PIPE, timeout=60)
                    self.assertEqual(result.returncode, 2)
                    self.assertEqual(result.stderr, b"inv: standard output: No space left on device\n")

    def test_colours_are_for_terminals_without_no_color(self):
        for arguments in (["summary", self.file], ["show", self.file], ["verify", self.file]):
            with self.subTest(arguments=arguments):
                self.assertNotIn(b"\x1b", inv(*arguments).stdout)
                self.assertIn(b"\x1b[", on_terminal(*arguments))
                self.assertNotIn(b"\x1b", on_terminal(*arguments, NO_COLOR="1"))
                self.assertNotIn(b"\x1b", on_terminal(*arguments, TERM="dumb"))

    @unittest.skipIf(INV.parent.name == "sanitize", "the sanitizers take their memory beforehand")
    def test_too_little_memory_is_reported(self):
        large = FOLDER / "large.inv"
        with large.open("wb") as file:
            file.truncate(200 << 20)
        limited = subprocess.run(["sh", "-c", 'ulimit -v 100000; exec "$@"', "sh", INV, "verify", large], capture_output=True, timeout=60)
        self.assertEqual((limited.returncode, limited.stderr), (2, b"inv: out of memory\n"))

    def test_color_is_what_is_asked_for(self):
        for arguments in (["summary", self.file], ["show", self.file], ["verify", self.file]):
            with self.subTest(arguments=arguments):
                coloured = on_terminal(*arguments).replace(b"\r\n", b"\n")
                self.assertNotIn(b"\x1b", on_terminal(*arguments, "--color", "never"))
                self.assertEqual(on_terminal(*arguments, "--color", "auto").replace(b"\r\n", b"\n"), coloured)
                self.assertIn(b"\x1b[", on_terminal(*arguments, "--color=always", NO_COLOR="1"))
                self.assertIn(b"\x1b[", inv(*arguments, "--color=always").stdout)
        self.check(2, "show", self.file, "--color", "sometimes")
        self.assertIn('"sometimes" is not one of auto, always, never\n', self.messages)

    def test_help_says_what_the_option_does(self):
        self.assertEqual(self.check(0, "help"), self.check(0, "--help"))
        for command in options_of.commands():
            with self.subTest(command=command):
                self.assertEqual(self.check(0, "help", command), self.check(0, command, "--help"))

    def test_a_mistyped_command_is_answered_with_the_right_one(self):
        for arguments in (["sumary"], ["sumary", self.file], ["help", "sumary"]):
            self.check(2, *arguments)
            self.assertEqual(self.messages, "inv: sumary: no such command; did you mean summary?\n")
        self.check(2, "frobnicate", "--help")
        self.assertEqual(self.messages, "inv: frobnicate: no such command; inv help lists them\n")

    def test_a_mistyped_format_is_answered_with_the_list(self):
        for given, answer in (("cvs", '"cvs" is not one of json, ndjson, csv, zxml; did you mean csv?'),
                              ("2", '"2" is not one of json, ndjson, csv, zxml')):
            with self.subTest(given=given):
                self.assertEqual(self.check(2, "export", f"--format={given}", self.file), "")
                self.assertIn(f"--format: {answer}\n", self.messages)
        self.check(2, "show", self.file, "--section", "asset,snapshto")
        self.assertIn('--section: "snapshto" is not one of snapshot, asset; did you mean snapshot?\n', self.messages)

    def test_a_mistyped_path_is_answered_with_the_right_one(self):
        self.check(1, "get", self.file, "/System/Chasis/serial")
        self.assertIn("/System/Chasis/serial: no such value; did you mean /System/Chassis/serial?\n", self.messages)
        self.check(1, "show", self.file, "AssetInfo/int-nam")
        self.assertIn("AssetInfo/int-nam: no such path; did you mean AssetInfo/int-name?\n", self.messages)

    def test_verify_reports_only_failures_when_asked(self):
        bad = damaged_snapshot("failure.inv")
        told = self.check(1, "verify", "--failures", self.file, bad)
        self.assertRegex(told, rf"^{bad}: invalid at byte \d+: .*\n$")
        self.assertEqual(self.check(0, "verify", "--failures", self.file), "")

    def test_standard_input_is_read_once(self):
        for arguments in (["get", "-", "-", "/hostname"], ["summary", "-", self.file, "-"], ["verify", "--files-from", "-", "-"], ["diff", "-", "-"],
                          ["query", "SELECT 1", "-", "-"]):
            with self.subTest(arguments=arguments), self.file.open("rb") as file:
                self.assertEqual(self.check(2, *arguments, stdin=file), "")
                self.assertIn("standard input can be read only once\n", self.messages)
        with self.file.open("rb") as file:
            self.check(0, "diff", "-", self.file, stdin=file)

    def test_version_names_the_libraries_with_theirs(self):
        names, versions = zip(*(line.split(" ") for line in self.check(0, "--version").splitlines()))
        self.assertEqual(names, ("inv", "CLI11", "libsodium", "nlohmann-json", "SQLite", "zlib"))
        self.assertEqual(versions[0], options_of.VERSION)
        for version in versions:
            self.assertRegex(version, r"^\d+\.\d+(\.\d+)*$")


if __name__ == "__main__":
    unittest.main()
