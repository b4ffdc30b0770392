"""What runs on the Macs of a fleet, run on simulated ones: the daily scan into a spool, its collection, and what device management asks and installs."""

import os
import plistlib
import re
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import inv_decoder
from inventories import INV, ROOT, SCANNER, SIMULATOR

FLEET = ROOT / "fleet"
SCRIPTS = FLEET / "scripts"
LABEL = "com.velkaro.scanner.daily"
DAEMON = FLEET / "launchd" / f"{LABEL}.plist"
IMAC = SIMULATOR / "machines" / "imac-10.6"
STEM = "STUDIO-IMAC_00005E00531A"
NAME = re.compile(STEM + r"-\d{8}T\d{6}Z\.inv")
DAY = 24 * 60 * 60

# A Mac's folder is its home; one that has no folder does not answer.
SSH = """#!/bin/sh
echo "$@" >>"$LOG"
while case $1 in -o) shift 2 ;; -l) shift 2 ;; *) false ;; esac do :; done
cd "$MACS/$1" 2>/dev/null || { echo "ssh: $1: no route to host" >&2; exit 255; }
shift
exec sh -c "$*"
"""


class ScriptTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.spool = self.folder / "spool of a Mac"
        self.log = self.folder / "log"
        self.tools = self.folder / "tools"
        self.tools.mkdir()

    def write_tool(self, name, script):
        path = self.tools / name
        path.write_text(script)
        path.chmod(0o755)
        return path

    def record(self, name):
        """A tool that records how it was called."""
        self.write_tool(name, f'#!/bin/sh\necho {name} "$@" >>"$LOG"\n')

    def logged(self):
        return self.log.read_text().splitlines() if self.log.exists() else []

    def run_script(self, name, *arguments, prefix=(), status=0, stdin="", **variables):
        """What a script prints; its error messages are in self.complaints."""
        environment = {**os.environ, "VELKARO_SCANNER": SCANNER, "LOG": str(self.log), "TZ": "UTC", **variables}
        environment["PATH"] = f"{self.tools}:{os.environ['PATH']}"
        command = [*prefix, SCRIPTS / name, *arguments]
        result = subprocess.run(command, cwd=self.folder, env=environment, input=stdin, capture_output=True, text=True, timeout=120)
        self.complaints = result.stderr
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        return result.stdout

    def scan(self, *arguments, **options):
        """The name of a scan of the simulated iMac in the spool."""
        told = self.run_script("scan-to-spool", *arguments, prefix=(SIMULATOR / "run", IMAC), **options)
        return told.rstrip("\n")

    def spooled(self):
        return sorted(path.name for path in self.spool.iterdir())

    def put(self, name, age=0):
        """A file of this age in days."""
        self.spool.mkdir(exist_ok=True)
        path = self.spool / name
        path.touch()
        os.utime(path, (time.time() - age * DAY,) * 2)


class Spool(ScriptTestCase):
    def test_a_scan_is_in_the_spool_under_a_name_with_its_time(self):
        name = self.scan(self.spool, "/login:daily scan")
        self.assertRegex(name, NAME)
        self.assertEqual(self.spooled(), [name])
        container = inv_decoder.read_file(self.spool / name)
        self.assertIn("daily scan", repr(container.asset_info))

    def test_others_enter_neither_spool_nor_file(self):
        name = self.scan(self.spool)
        for path in (self.spool, self.spool / name):
            self.assertEqual(path.stat().st_mode & 0o077, 0, path)

    def test_no_name_is_used_twice(self):
        self.put(f"{STEM}.inv")
        first = self.scan(self.spool)
        self.assertRegex(first, NAME)
        # Both scans end at the same time.
        self.write_tool("date", f"#!/bin/sh\necho {first[len(STEM) + 1 : -len('.inv')]}\n")
        second = self.scan(self.spool)
        self.assertEqual(second, f"{STEM}(1).inv")
        self.assertEqual(self.spooled(), sorted([f"{STEM}.inv", first, second]))

    def test_a_scan_that_saves_nothing_is_a_failure(self):
        silent = self.write_tool("silent", "#!/bin/sh\necho 100%\n")
        self.assertEqual(self.scan(self.spool, status=1, VELKARO_SCANNER=str(silent)), "")
        self.assertIn(f"the scanner saved no file in {self.spool}", self.complaints)
        self.scan(self.spool, status=1, VELKARO_SCANNER="/nowhere/velkaro-scanner")
        self.assertEqual(self.spooled(), [])

    def test_old_files_go_and_young_ones_stay(self):
        for name, age in (("old.inv", 32), ("young.inv", 29), ("note.txt", 400), (".velkaro-scanner-1.part", 3), (".velkaro-scanner-2.part", 0)):
            self.put(name, age)
        name = self.scan(self.spool)
        self.assertEqual(self.spooled(), sorted([".velkaro-scanner-2.part", name, "note.txt", "young.inv"]))
        self.scan("--keep", "7", self.spool)
        self.assertNotIn("young.inv", self.spooled())

    def test_it_waits_a_random_time_below_the_splay(self):
        self.record("sleep")
        waited = set()
        for _ in range(8):
            self.log.unlink(missing_ok=True)
            # What follows the wait does not matter here.
            self.scan("--splay", "1000", self.spool, VELKARO_SCANNER="false", status=1)
            (line,) = self.logged()
            waited.add(int(line.split()[1]))
        self.assertGreater(len(waited), 4)
        self.assertTrue(all(0 <= seconds < 1000 for seconds in waited), waited)
        self.log.unlink()
        self.scan(self.spool, VELKARO_SCANNER="false", status=1)
        self.assertEqual(self.logged(), [])

    def test_bad_arguments_are_refused(self):
        for arguments in ((), ("--splay", "soon", self.spool), ("--keep", "", self.spool), ("--keep", "7"), ("--what", self.spool), ("",)):
            self.scan(*arguments, status=2)
            self.assertIn("usage: ", self.complaints)
        self.assertFalse(self.spool.exists())


class Launchd(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.job = plistlib.loads(DAEMON.read_bytes())

    def test_the_job_has_the_name_of_its_file_and_only_known_keys(self):
        self.assertEqual(self.job["Label"], LABEL)
        known = "Label LowPriorityIO ProcessType ProgramArguments StandardErrorPath StartCalendarInterval Umask".split()
        self.assertEqual(sorted(self.job), known)
        self.assertEqual(self.job["Umask"], 0o077)
        self.assertEqual(self.job["StartCalendarInterval"], {"Hour": 12, "Minute": 0})

    def test_its_command_scans_into_the_spool(self):
        program, *arguments = self.job["ProgramArguments"]
        installed = "/usr/local/share/velkaro-scanner/"
        self.assertTrue(program.startswith(installed))
        self.assertEqual(ROOT / program[len(installed):], SCRIPTS / "scan-to-spool")
        self.assertEqual(arguments[-1], "/var/spool/velkaro-scanner")
        self.assertEqual(arguments[0], "--splay")
        self.assertGreaterEqual(int(arguments[1]), 3600)
        self.record("sleep")
        name = self.scan(*arguments[:-1], self.spool)
        self.assertEqual(self.spooled(), [name])
        self.assertRegex(self.logged()[0], r"^sleep \d+$")


@unittest.skipUnless(shutil.which("rsync"), "rsync is not installed")
class Collect(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.write_tool("ssh", SSH)
        self.macs = self.folder / "macs"
        self.out = self.folder / "collected files"
        for host in ("studio", "render@192.0.2.18"):
            self.put_on(host, "a.inv", "of " + host)

    def put_on(self, host, name, text=""):
        spool = self.macs / host.split("@")[-1] / "spool"
        spool.mkdir(parents=True, exist_ok=True)
        (spool / name).write_text(text)
        (spool / name).chmod(0o600)

    def collect(self, *arguments, **options):
        self.run_script("collect", "--spool", "spool/", *arguments, MACS=str(self.macs), **options)

    def collected(self):
        return sorted(path.relative_to(self.out).as_posix() for path in self.out.rglob("*") if path.is_file())

    def test_each_mac_has_a_folder_of_what_is_whole(self):
        for name in (".velkaro-scanner-7.part", "x.part", "notes.txt", "a.inv.sig"):
            self.put_on("studio", name)
        (self.macs / "studio" / "spool" / "folder.inv").mkdir()
        self.put_on("studio", "folder.inv/b.inv")
        self.collect(self.out, "studio", "render@192.0.2.18")
        self.assertEqual(self.collected(), ["render@192.0.2.18/a.inv", "studio/a.inv", "studio/a.inv.sig"])
        self.assertEqual((self.out / "studio" / "a.inv").read_text(), "of studio")
        for path in (self.out, *self.out.rglob("*.inv")):
            self.assertEqual(path.stat().st_mode & 0o077, 0, path)

    def test_what_is_here_is_kept_and_not_fetched_again(self):
        self.collect(self.out, "studio")
        self.put_on("studio", "a.inv", "another file of this name")
        self.put_on("studio", "b.inv")
        self.collect(self.out, "studio")
        (self.macs / "studio" / "spool" / "b.inv").unlink()
        self.collect(self.out, "studio")
        self.assertEqual(self.collected(), ["studio/a.inv", "studio/b.inv"])
        self.assertEqual((self.out / "studio" / "a.inv").read_text(), "of studio")

    def test_a_mac_that_does_not_answer_is_named_and_the_others_are_collected(self):
        self.collect("--jobs", "1", self.out, "gone", "studio", "render@192.0.2.18", status=1)
        self.assertIn("gone: not collected\n", self.complaints)
        self.assertEqual(self.collected(), ["render@192.0.2.18/a.inv", "studio/a.inv"])
        self.collect("--jobs", "1", self.out, "studio", "gone", status=1)

    def test_hosts_may_be_read(self):
        for number in range(20):
            self.put_on(f"mac{number}", "a.inv")
        self.collect(self.out, "-", stdin="".join(f"mac{number}\n\n" for number in range(20)))
        self.assertEqual(len(self.collected()), 20)
        self.collect(self.out, "-", stdin="")

    def test_an_invalid_name_reaches_neither_ssh_nor_a_folder(self):
        for name in ("-oProxyCommand=touch", "..", "a/b", "a b", "$(id)", "../../etc"):
            self.collect(self.out, name, status=1)
            self.assertIn(f"{name}: not the name of a Mac\n", self.complaints)
        self.assertEqual(self.logged(), [])
        self.assertFalse(self.out.exists())

    def test_rsync_is_started_there_as_asked_and_asks_nothing(self):
        self.write_tool("sudo", '#!/bin/sh\necho sudo "$@" >>"$LOG"\nshift\nexec "$@"\n')
        self.collect("--rsync-path", "sudo -n rsync", self.out, "studio")
        self.assertTrue(any(line.startswith("sudo -n rsync --server") for line in self.logged()))
        self.assertIn("BatchMode=yes", self.logged()[0])

    def test_bad_arguments_are_refused(self):
        for arguments in ((), (self.out,), ("--jobs", "0", self.out, "studio"), ("--jobs", "many", self.out, "studio"), ("--what", "x", self.out, "studio")):
            self.collect(*arguments, status=2)
            self.assertIn("usage: ", self.complaints)
        self.assertFalse(self.out.exists())


class DeviceManagement(ScriptTestCase):
    def attribute(self, **variables):
        return self.run_script("extension-attribute", VELKARO_SPOOL=str(self.spool), VELKARO_INV=str(INV), **variables)

    def test_the_attribute_is_the_time_of_the_newest_scan(self):
        for name in ("Z_1-20261120T215819Z.inv", "A_1-20261121T030405Z.inv", "Z_1-20251231T235959Z.inv", ".velkaro-scanner-1.part", "other.inv"):
            self.put(name)
        self.assertEqual(self.attribute(), "<result>2026-11-21 03:04:05</result>\n")

    def test_without_a_scan_it_is_empty(self):
        self.assertEqual(self.attribute(), "<result></result>\n")
        self.put("half.part")
        self.assertEqual(self.attribute(), "<result></result>\n")
        self.assertEqual(self.attribute(VELKARO_FACT="/OS/os:1/name"), "<result></result>\n")

    def test_it_is_a_fact_of_that_scan_when_one_is_named(self):
        self.scan(self.spool)
        self.assertRegex(self.attribute(), r"^<result>\d{4}-\d\d-\d\d \d\d:\d\d:\d\d</result>\n$")
        self.assertEqual(self.attribute(VELKARO_FACT="/System/Chassis/serial"), "<result>SIM0IMAC106</result>\n")
        self.assertEqual(self.attribute(VELKARO_FACT="/No/such"), "<result></result>\n")
        volumes = "<result>/\n/Volumes/BOOTCAMP\n/Volumes/TRAVEL\n/Volumes/Mac &amp; More</result>\n"
        self.assertEqual(self.attribute(VELKARO_FACT="/Storage/Logical-disks/*/mount-point"), volumes)

    def test_what_could_end_the_result_is_escaped(self):
        self.put("A_1-20261121T030405Z.inv")
        reader = self.write_tool("reader", "#!/bin/sh\necho '</result><script>&amp;'\n")
        told = self.run_script("extension-attribute", VELKARO_SPOOL=str(self.spool), VELKARO_INV=str(reader), VELKARO_FACT="x")
        self.assertEqual(told, "<result>&lt;/result&gt;&lt;script&gt;&amp;amp;</result>\n")


class PostInstall(ScriptTestCase):
    def setUp(self):
        super().setUp()
        self.volume = self.folder / "volume"
        self.volume.mkdir()
        self.installed = self.volume / "Library" / "LaunchDaemons" / f"{LABEL}.plist"

    def install(self, **options):
        self.run_script("post-install", "velkaro-scanner.pkg", "/usr/local", self.volume, **options)

    def test_it_makes_a_closed_spool_and_starts_the_launchd_job(self):
        self.record("launchctl")
        for _ in range(2):
            self.install(VELKARO_BOOT_VOLUME=str(self.volume))
        self.assertEqual((self.volume / "var/spool/velkaro-scanner").stat().st_mode & 0o777, 0o700)
        self.assertEqual(self.installed.read_bytes(), DAEMON.read_bytes())
        self.assertEqual(self.installed.stat().st_mode & 0o777, 0o644)
        once = [f"launchctl bootout system/{LABEL}", f"launchctl bootstrap system {self.installed}"]
        self.assertEqual(self.logged(), once * 2)

    def test_it_also_starts_on_an_old_system_and_for_the_first_time(self):
        self.write_tool("launchctl", '#!/bin/sh\necho launchctl "$@" >>"$LOG"\n[ "$1" = load ]\n')
        self.install(VELKARO_BOOT_VOLUME=str(self.volume))
        self.assertEqual(self.logged()[-1], f"launchctl load -w {self.installed}")

    def test_on_another_volume_nothing_is_started(self):
        self.record("launchctl")
        self.install()
        self.assertTrue(self.installed.exists())
        self.assertEqual(self.logged(), [])

    def test_a_collector_may_read_new_files(self):
        self.record("chmod")
        self.install(VELKARO_COLLECTOR="collector")
        spool = self.volume / "var/spool/velkaro-scanner"
        self.assertEqual(self.logged(), [f"chmod 700 {spool}", f"chmod +a collector allow list,search,file_inherit,read {spool}"])


if __name__ == "__main__":
    unittest.main()
