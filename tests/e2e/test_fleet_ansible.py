"""The Ansible role, run by Ansible itself over three simulated Macs: what is fetched, what stays on a Mac, and who is named when something fails."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from inventories import INV, ROOT, SCANNER, SIMULATOR, InventoryTestCase

FLEET = ROOT / "fleet" / "ansible"
ROLE = FLEET / "roles" / "velkaro_scanner"
MACS = {"studio": "imac-10.6", "render": "mac-pro-10.5", "travel": "macbook-pro-26"}

# Becoming root: records the request, and continues as the same user.
SUDO = """#!/bin/sh
echo "$@" >>"$SUDO_LOG"
while :; do
    case $1 in
    -u) shift 2 ;;
    -*) shift ;;
    *) exec "$@" ;;
    esac
done
"""
# A scanner that dies while it saves.
DYING = 'echo half >.velkaro-scanner-1.part; echo "10%"\n'
# A disk that loses the end of the file without the scanner noticing.
CUTTING = '{scan} "$@" | while read -r line; do echo "$line"; name=${{line#>>>}}; [ "$name" = "$line" ] || {{ head -c 900 "$name" >cut; mv -f cut "$name"; }}; done\n'


@unittest.skipUnless(shutil.which("ansible-playbook"), "Ansible is not installed")
class AnsibleTestCase(InventoryTestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for name in ("tools", "tmp", "home"):
            (self.folder / name).mkdir()
        self.inventories = self.folder / "inventories"
        self.write(self.folder / "tools" / "sudo", SUDO)
        for name in MACS:
            self.make_scanner(name)

    def write(self, path, script):
        path.write_text(script)
        path.chmod(0o755)

    def make_scanner(self, mac, script='exec {scan} "$@"\n'):
        """The scanner as installed on one of the Macs: it finds that Mac's tools on PATH."""
        scan = f"'{SIMULATOR}/run' '{SIMULATOR}/machines/{MACS[mac]}' '{SCANNER}'"
        self.write(self.folder / f"{mac}-scanner", "#!/bin/sh\n" + script.format(scan=scan))

    def installed(self, mac):
        return self.folder / "macs" / mac / "bin" / "velkaro-scanner"

    def macs(self, **changes):
        """The inventory of the fleet: three Macs that are this computer, each with a scanner of its own."""
        common = {
            "ansible_connection": "local",
            "velkaro_scanner_owner": os.getuid(),
            "velkaro_scanner_destination": str(self.inventories),
            "velkaro_scanner_inv": str(INV),
            **changes,
        }
        hosts = {
            mac: {"velkaro_scanner_source": str(self.folder / f"{mac}-scanner"), "velkaro_scanner_path": str(self.installed(mac))}
            for mac in MACS
        }
        path = self.folder / "macs.json"
        path.write_text(json.dumps({"all": {"hosts": hosts, "vars": common}}))
        return path

    def play(self, *arguments, status=0, **changes):
        """What Ansible prints; each Mac's line of the recap is in self.recap."""
        environment = {
            **os.environ,
            "PATH": f"{self.folder}/tools:{os.environ['PATH']}",
            "HOME": str(self.folder / "home"),
            "TMPDIR": str(self.folder / "tmp"),
            "SUDO_LOG": str(self.folder / "sudo.log"),
            "ANSIBLE_NOCOLOR": "1",
            "ANSIBLE_FORKS": "3",
            "ANSIBLE_PIPELINING": "1",
            "ANSIBLE_BECOME_ALLOW_SAME_USER": "1",
            "ANSIBLE_LOCALHOST_WARNING": "False",
            "ANSIBLE_PYTHON_INTERPRETER": "auto_silent",
            "LC_ALL": "C.UTF-8",
        }
        command = ["ansible-playbook", "-i", self.macs(**changes), FLEET / "scan.yml", *arguments]
        result = subprocess.run(command, cwd=self.folder, env=environment, capture_output=True, text=True, timeout=600)
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        self.recap = {
            found[1]: {key: int(count) for key, count in re.findall(r"(\w+)=(\d+)", found[2])}
            for found in re.finditer(r"^(\w+) +: (ok=.*)$", result.stdout, re.M)
        }
        return result.stdout

    def counts(self, key):
        return {mac: self.recap[mac][key] for mac in MACS}

    def fetched(self):
        return sorted(path.name for path in self.inventories.iterdir())

    def left_on_the_macs(self):
        return [path.name for path in (self.folder / "tmp").iterdir() if path.name.startswith("velkaro-scanner.")]


class Fleet(AnsibleTestCase):
    def test_each_mac_gives_its_file_and_a_second_run_changes_nothing_on_it(self):
        told = self.play(velkaro_scanner_options=["/extended", "/login:two words"])
        self.assertIn("3 of 3 Macs gave their inventory", told)
        self.assertEqual(self.counts("changed"), dict.fromkeys(MACS, 2))
        self.assertEqual(self.installed("studio").stat().st_mode & 0o777, 0o755)
        self.assertEqual(self.left_on_the_macs(), [])
        self.look_at_the_files()
        self.assertRegex((self.folder / "sudo.log").read_text(), r"-u root .*BECOME-SUCCESS")
        (self.folder / "sudo.log").unlink()
        before = (self.inventories / "studio.inv").stat().st_ino

        self.play(velkaro_scanner_become=False)
        self.assertEqual(self.counts("changed"), dict.fromkeys(MACS, 0))
        self.assertNotEqual((self.inventories / "studio.inv").stat().st_ino, before)
        self.assertFalse((self.folder / "sudo.log").exists())

    def look_at_the_files(self):
        """They are from those Macs, made with the options, and readable by their owner only."""
        self.assertEqual(self.fetched(), ["render.inv", "studio.inv", "travel.inv"])
        self.assertEqual(self.check(0, "get", self.inventories / "render.inv", "/System/Chassis/serial"), "SIM0MACPRO5\n")
        self.assertIn("two words", self.check(0, "show", self.inventories / "travel.inv", "AssetInfo"))
        self.check(0, "get", self.inventories / "studio.inv", "/Scan/*")
        for path in (self.inventories, *self.inventories.iterdir()):
            self.assertEqual(path.stat().st_mode & 0o077, 0, path)


class Failures(AnsibleTestCase):
    def test_a_mac_that_fails_is_named_and_cleaned_up_and_the_others_give_their_files(self):
        self.make_scanner("render", DYING)
        told = self.play(status=2)
        self.assertIn("render has no inventory: See that the scan saved a file: the scanner saved no file", told)
        self.assertIn("2 of 3 Macs gave their inventory; without: render", told)
        self.assertEqual(self.counts("failed"), {"studio": 0, "render": 1, "travel": 0})
        self.assertEqual(self.fetched(), ["studio.inv", "travel.inv"])
        self.assertEqual(self.left_on_the_macs(), [])

    def test_a_damaged_file_is_set_aside_and_the_last_good_one_stays(self):
        self.play("--limit", "render")
        good = (self.inventories / "render.inv").read_bytes()
        self.make_scanner("render", CUTTING)
        told = self.play("--limit", "render", status=2)
        self.assertRegex(told, r"render: render\.inv: invalid at byte \d+")
        self.assertEqual(self.fetched(), ["render.inv", "render.inv.refused"])
        self.assertEqual((self.inventories / "render.inv").read_bytes(), good)
        self.assertEqual((self.inventories / "render.inv.refused").stat().st_size, 900)
        self.assertEqual(self.left_on_the_macs(), [])

    def test_what_is_missing_is_named_and_no_file_stays(self):
        told = self.play("--limit", "studio", status=2, velkaro_scanner_inv="/nowhere/inv")
        self.assertIn("studio has no inventory: Verify that it is whole: ", told)
        self.assertEqual((self.fetched(), self.left_on_the_macs()), ([], []))
        shutil.rmtree(self.folder / "macs")
        told = self.play("--limit", "studio", "--extra-vars", "velkaro_scanner_source=", status=2)
        self.assertIn("studio has no inventory: Scan: ", told)
        self.assertEqual((self.fetched(), self.left_on_the_macs()), ([], []))

    def test_a_scan_without_an_end_is_given_up(self):
        self.make_scanner("studio", "exec sleep 30\n")
        told = self.play("--limit", "studio", status=2, velkaro_scanner_timeout=2)
        self.assertIn("studio has no inventory: Scan: ", told)
        self.assertEqual(self.left_on_the_macs(), [])

    def test_what_a_strict_reader_misses_is_a_failure_or_a_warning(self):
        told = self.play("--limit", "studio,travel")
        self.assertIn("travel: travel.inv: valid, but incomplete: scanned without /extended: disks, processor", told)
        self.assertNotIn("studio.inv: valid, but", told)
        self.assertIn("2 of 2 Macs gave their inventory", told)
        self.assertEqual(self.fetched(), ["studio.inv", "travel.inv"])
        (self.inventories / "travel.inv").unlink()
        told = self.play("--limit", "studio,travel", status=2, velkaro_scanner_refused="fail")
        self.assertIn("1 of 2 Macs gave their inventory; without: travel", told)
        self.assertEqual(self.fetched(), ["studio.inv", "travel.inv.refused"])

    def test_a_reader_that_need_not_be_strict_misses_nothing(self):
        told = self.play("--limit", "travel", velkaro_scanner_verify_options=[])
        self.assertNotIn("incomplete", told)
        self.assertEqual((self.recap["travel"]["failed"], self.recap["travel"]["ignored"]), (0, 0))


class OnTheMac(AnsibleTestCase):
    def test_check_mode_changes_nothing_and_scans_nothing(self):
        self.play("--check")
        self.assertEqual(self.counts("changed"), dict.fromkeys(MACS, 1))
        self.assertFalse((self.folder / "macs").exists() or self.inventories.exists())
        self.play()
        shutil.rmtree(self.inventories)
        self.play("--check")
        self.assertEqual(self.counts("changed"), dict.fromkeys(MACS, 0))
        self.make_scanner("travel", "echo newer\n")
        self.play("--check")
        self.assertEqual(self.counts("changed"), {"studio": 0, "render": 0, "travel": 1})
        self.assertFalse(self.inventories.exists())

    def test_a_scanner_that_should_not_stay_is_removed_after_failures_too(self):
        self.make_scanner("render", DYING)
        self.play("--limit", "studio,render", status=2, velkaro_scanner_keep=False)
        self.assertEqual(self.fetched(), ["studio.inv"])
        self.assertFalse(self.installed("studio").exists() or self.installed("render").exists())

    def test_a_wrong_variable_is_refused_before_anything_is_done(self):
        told = self.play("--limit", "studio", status=2, velkaro_scanner_refused="perhaps")
        self.assertIn("velkaro_scanner_refused must be one of: fail, warn, got: perhaps", told)
        self.assertFalse((self.folder / "macs").exists())


class Documented(unittest.TestCase):
    def variables(self, text, pattern):
        return re.findall(pattern, text, re.M)

    def test_every_variable_has_a_default_an_argument_and_a_line_of_the_page(self):
        defaults = (ROLE / "defaults" / "main.yml").read_text()
        names = self.variables(defaults, r"^(velkaro_scanner_\w+):")
        self.assertGreater(len(names), 10)
        arguments = (ROLE / "meta" / "argument_specs.yml").read_text()
        self.assertEqual(self.variables(arguments, r"^      (velkaro_scanner_\w+):"), names)
        self.assertEqual(self.variables((ROLE / "README.md").read_text(), r"^\| `(velkaro_scanner_\w+)` \|"), names)
        for name in names:
            default = re.search(rf"^{name}: (.*)$", defaults, re.M)[1]
            self.assertIn(f"      {name}:\n", arguments)
            self.assertRegex(arguments, rf"(?s)      {name}:\n        type: \w+\n(        elements: str\n)?        default: {re.escape(default)}\n")


if __name__ == "__main__":
    unittest.main()
