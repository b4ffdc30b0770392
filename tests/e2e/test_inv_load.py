"""The database that `inv load` fills, read by another SQLite."""

import concurrent.futures
import contextlib
import os
import random
import re
import shutil
import signal
import sqlite3
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

import same_host
from inventories import FOLDER, INV, MACHINES, ROOT, SIMULATOR, InventoryTestCase, facts, file_of_text, inv, scanned
from terminals import Terminal


# A row of each view, of an extended scan.
VIEWED = {
    "SELECT model, serial, kernel, memory_mb FROM systems": ("Mac16,8", "SIM0MBP26A", "Darwin 25.1.0", 49152),
    "SELECT name, version, location FROM software": ("Old Plotter", "1.9", "/Applications/Utilities/Old Plotter.app"),
    "SELECT disk, model, interface, size_gb, size_bytes, partitions FROM disks":
        ("HDD:1", "APPLE SSD AP1024SIM", "NVMe", 1000, 1000555581440, 3),
    "SELECT name, mount_point, file_system, free_gb, used_percent FROM volumes":
        ("FIELD DATA", "/Volumes/FIELD DATA", "ExFAT", 1250.12, 37),
    "SELECT slot, used, capacity_mb FROM memory": (1, 0, None),
    "SELECT model, main FROM displays": (None, 1),
    "SELECT name, full_name, id, group_id, shell FROM accounts": ("sol", "Sol Example", 501, 20, "/bin/zsh"),
    "SELECT name, device, ip_address, gateway, mac_address FROM network":
        ("Wi-Fi", "en0", "192.0.2.26", "192.0.2.1", "00-00-5E-00-53-26"),
    "SELECT name, manufacturer, vendor_id, product_id FROM usb": ("Field Probe", "Example Instruments", "0x1d6d", "0x0826"),
    "SELECT name, is_default, status, driver_version FROM printers": ("Field Printer", 1, "idle", "2.3"),
    "SELECT status, stealth_mode, logging FROM firewall": (1, 1, 0),
    "SELECT name, rule, allowed FROM firewall_rules": ("com.example.fieldserver", "Apps/app:1", 0),
    "SELECT disk_encryption, integrity_protection, gatekeeper, secure_boot, activation_lock, managed FROM security":
        (1, 1, 1, "Full Security", 1, 1),
    "SELECT user_name, command FROM processes": ("root", "/Applications/Render.app/Contents/MacOS/Render --queue /Volumes/Projects"),
    "SELECT name, version, installed, source FROM packages":
        ("Field Notes", "4.2.1", "20260114081451.000000+0", "package_source_other"),
    "SELECT name, version, architecture, source, signed_by FROM software_details":
        ("Field Notes", "4.2.1", "arch_arm", "identified_developer", "Developer ID Application: Example Instruments GmbH (SIM26TEAM1), "
         "Developer ID Certification Authority, Apple Root CA"),
    "SELECT disk, model, medium, smart_status, internal FROM disk_health": ("Removable:1", "Portable SSD X5", "ssd", "Verified", 0),
    "SELECT name, mount_point, container, disk, size_bytes, free_bytes FROM containers":
        ("Lab", "/Volumes/Lab", "disk3", "APPLE SSD AP1024SIM", 994662584320, 421337563136),
    "SELECT system, system_version, build, model_name, chip, cores, performance_cores, efficiency_cores, memory, memory_type,"
    " virtual_machine FROM platforms":
        ("macOS 26.1 (25B78)", "26.1", "25B78", "MacBook Pro", "Apple M4 Pro", 12, 8, 4, "48 GB", "LPDDR5", 0),
    "SELECT condition, cycle_count, maximum_capacity, charge_percent, serial FROM batteries": ("Good", 61, "94%", 82, "SIMBATT0000026A"),
}


class Load(InventoryTestCase):
    def setUp(self):
        self.path = FOLDER / f"{self.id()}.db"
        self.files = [scanned(machine.name) for machine in MACHINES]

    def rows(self, query, *parameters):
        database = sqlite3.connect(self.path)
        self.addCleanup(database.close)
        return database.execute(query, parameters).fetchall()

    def assert_tally(self, **expected):
        """The last line of the messages counts these fates, and no other."""
        *self.complaints, line = self.messages.splitlines()
        self.assertRegex(line, r"^(\d+ \w+, )+\d+\.\d s$")
        counted = {fate: int(count) for count, fate in re.findall(r"(\d+) (\w+), ", line)}
        self.assertEqual(list(counted), ["loaded", "replaced", "skipped", "refused", "damaged"])
        self.assertEqual({fate: count for fate, count in counted.items() if count}, expected)

    def loaded(self):
        return self.rows("SELECT machine, path, value FROM facts JOIN machines ON id = machine_id ORDER BY 1, position")

    def test_every_fact_is_there_in_order(self):
        self.assertEqual(self.check(0, "load", self.path, *self.files), "")
        self.assert_tally(loaded=len(MACHINES))
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(MACHINES))
        for file in self.files:
            with self.subTest(file=file.name):
                loaded = self.rows(
                    "SELECT path, f.name, value, base_value FROM facts f JOIN machines m ON m.id = machine_id"
                    " WHERE file = ? ORDER BY position", str(file))
                self.assertEqual(loaded, [(path, name, value, base) for path, name, value, _, base in facts(file)])

    def test_views_count_what_the_files_hold(self):
        self.check(0, "load", self.path, *self.files)
        for view, start, depth in (("software", "/Software/Soft:", 2), ("volumes", "/Storage/Logical-disks/", 3),
                                   ("disks", "/Storage/Physical-disks/", 3), ("memory", "/Memory/Memory-slot:", 2),
                                   ("displays", "/Video/Monitors/Monitor:", 3), ("accounts", "/User-accounts/usr-acc:", 2)):
            with self.subTest(view=view):
                (count,), = self.rows(f"SELECT count(*) FROM {view}")
                elements = [{"/".join(path.split("/")[: depth + 1]) for path, *_ in facts(file) if path.startswith(start)}
                            for file in self.files]
                self.assertEqual(count, sum(map(len, elements)))
                self.assertGreater(count, 0)

    def test_views_show_what_an_extended_scan_adds(self):
        self.check(0, "load", self.path, same_host.scan(SIMULATOR / "machines" / "macbook-pro-26", "/extended"))
        for query, row in VIEWED.items():
            with self.subTest(query=query):
                self.assertIn(row, self.rows(query))
        self.assertEqual({query.rsplit(" ", 1)[1] for query in VIEWED} | {"facts", "latest"}, self.views())

    def test_the_page_names_every_view(self):
        self.check(0, "load", self.path, self.files[0])
        page = (ROOT / "docs" / "inv-tool.md").read_text(encoding="utf-8")
        _, _, rows = page.partition("| table or view |")
        rows, _, _ = rows.partition("\n\n")
        listed = {name for row in rows.splitlines() for name in re.findall(r"`(\w+)`", row.split(" | ")[0])}
        self.assertEqual(listed, self.views() | {"machines", "version_keys"})

    def views(self):
        return {name for name, in self.rows("SELECT name FROM sqlite_master WHERE type = 'view'")}

    def test_loading_again_skips_what_is_there(self):
        self.check(0, "load", self.path, *self.files[:2])
        before = self.loaded()
        self.check(0, "load", self.path, *reversed(self.files[:2]))
        self.assert_tally(skipped=2)
        self.assertEqual(self.loaded(), before)
        self.check(0, "load", self.path, *self.files, self.files[3])
        self.assert_tally(loaded=len(MACHINES) - 2, skipped=3)

    def test_bad_files_are_left_out_and_named(self):
        bad = FOLDER / "bad.inv"
        bad.write_bytes(b"not an inventory at all")
        self.check(2, "load", self.path, bad, *self.files, FOLDER / "missing.inv")
        self.assert_tally(loaded=len(MACHINES), refused=2)
        self.assertEqual(len(self.complaints), 2)
        self.assertIn(f"inv: {bad}: ", self.messages)
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(MACHINES))

    def test_a_damaged_copy_replaces_nothing(self):
        damaged = FOLDER / "damaged.inv"
        content = bytearray(self.files[0].read_bytes())
        content[200] ^= 0xFF
        damaged.write_bytes(content)
        self.check(0, "load", self.path, self.files[0])
        before = self.loaded()
        self.check(1, "load", self.path, damaged)
        self.assert_tally(skipped=1)
        self.assertEqual(self.loaded(), before)
        self.path = FOLDER / f"{self.id()}-2.db"
        self.check(1, "load", self.path, damaged, self.files[0])
        self.assert_tally(damaged=1, replaced=1)
        self.assertEqual(self.loaded(), before)
        self.assertEqual(self.rows("SELECT damaged FROM machines"), [(0,)])

    def test_folders_are_searched(self):
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        below = folder / "b" / "c"
        below.mkdir(parents=True)
        for name, file in (("z.inv", self.files[0]), ("b/x.inv", self.files[1]), ("b/c/a.inv", self.files[2]), ("a.txt", self.files[3]),
                           (".inv", self.files[3]), ("b/.hidden.inv", self.files[4])):
            shutil.copy(file, folder / name)
        (folder / "link.inv").symlink_to(self.files[3])
        (folder / "loop").symlink_to(folder)
        self.check(0, "load", self.path, folder)
        self.assert_tally(loaded=4)
        self.assertEqual(self.rows("SELECT file FROM machines ORDER BY id"),
                         [(f"{folder}/{name}",) for name in ("b/.hidden.inv", "b/c/a.inv", "b/x.inv", "z.inv")])
        self.check(0, "load", FOLDER / "linked.db", f"{folder}/loop/")
        self.assert_tally(loaded=4)
        empty = Path(tempfile.mkdtemp(dir=FOLDER))
        self.check(1, "load", self.path, empty)
        self.assert_tally()
        self.assertEqual(self.complaints, [f"inv: {empty}: has no *.inv files"])

    def test_files_are_read_from_a_list(self):
        names = FOLDER / "names.txt"
        names.write_text("".join(f"{file}\n" for file in self.files[:2]) + f"\n{self.files[2]}")
        self.check(0, "load", self.path, "--files-from", names, self.files[3])
        self.assert_tally(loaded=4)
        self.assertEqual(self.rows("SELECT file FROM machines ORDER BY id"), [(str(self.files[i]),) for i in (3, 0, 1, 2)])
        odd = FOLDER / "odd\nname.inv"
        shutil.copy(self.files[4], odd)
        self.check(0, "load", self.path, "--files-from", "-", "-0", input=f"{odd}\0{self.files[5]}\0".encode())
        self.assert_tally(loaded=2)
        self.check(2, "load", self.path, "--files-from", FOLDER / "no-list")
        self.assertIn("no-list: cannot be read: No such file or directory", self.messages)
        self.check(2, "load", self.path)
        self.assertIn("FILE is required", self.messages)

    def test_what_cannot_be_read_is_set_aside_with_its_fault(self):
        folder = FOLDER / "quarantine"
        bad = Path(tempfile.mkdtemp(dir=FOLDER)) / "bad.inv"
        bad.write_bytes(b"not an inventory at all")
        other = Path(tempfile.mkdtemp(dir=FOLDER)) / "bad.inv"
        other.write_bytes(b"nor is this one, by far")
        for _ in range(2):
            self.check(2, "load", "--quarantine", folder, self.path, bad, self.files[0], other, FOLDER / "missing.inv")
            self.assertEqual(sorted(path.name for path in folder.iterdir()),
                             ["bad.inv", "bad.inv.2", "bad.inv.2.txt", "bad.inv.txt", "missing.inv.txt"])
        self.assertTrue((folder / "bad.inv").samefile(bad))
        self.assertEqual((folder / "bad.inv.2").read_bytes(), other.read_bytes())
        path, *faults = (folder / "bad.inv.txt").read_text().splitlines()
        self.assertEqual(path, str(bad))
        self.assertEqual([f"inv: {bad}: {fault}" for fault in faults], [line for line in self.messages.splitlines() if f"{bad}:" in line])
        self.assertTrue(bad.exists())

    def test_more_jobs_make_the_same_database(self):
        copies = []
        for i in range(100):
            copies.append(FOLDER / f"copy-{i:03}.inv")
            copies[-1].write_bytes(b"x" if i % 9 == 0 else self.files[i % len(self.files)].read_bytes())
        seen = set()
        for jobs in ("1", "2", "7"):
            self.path = FOLDER / f"{self.id()}-{jobs}.db"
            self.check(2, "load", "--jobs", jobs, self.path, *copies)
            seen.add((self.messages.rpartition(", ")[0], tuple(self.loaded()), tuple(self.rows("SELECT file FROM machines ORDER BY id"))))
        self.assertEqual(len(seen), 1)
        self.check(2, "load", "--jobs", "0", self.path, self.files[0])

    def test_loaders_that_meet_at_a_new_database_take_it_for_theirs(self):
        tiny = FOLDER / "tiny.inv"
        tiny.write_bytes(file_of_text(b"\xef\xbb\xbf?zxml\n+Snapshot=\n*a=\n-\n"))
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            for i in range(40):
                path = f"{self.path}-{i}"
                results = list(pool.map(lambda _: inv("load", path, tiny), range(8)))
                self.assertEqual({result.returncode for result in results}, {0}, results)

    def test_eight_loaders_at_once_load_everything(self):
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            results = list(pool.map(lambda i: inv("load", self.path, *self.files[i % 7:], *self.files[: i % 7]), range(8)))
        self.assertEqual([result.returncode for result in results], [0] * 8, results)
        fates = [re.findall(r"\d+", result.stderr.decode())[:3] for result in results]
        self.assertEqual(sum(int(loaded) for loaded, _, _ in fates), len(self.files))
        self.assertEqual({int(loaded) + int(skipped) for loaded, _, skipped in fates}, {len(self.files)})
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(self.files))
        counts = self.rows("SELECT count(*) FROM facts")
        self.assertEqual(counts, [(sum(len(facts(file)) for file in self.files),)])

    def test_an_interrupted_run_is_completed_by_the_next(self):
        names = FOLDER / "fifo"
        os.mkfifo(names)
        with subprocess.Popen([INV, "load", self.path, *self.files[:3], names], stderr=subprocess.DEVNULL) as process:
            with open(names, "wb"):
                process.kill()
        self.check(0, "load", self.path, *self.files)
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(self.files))

    def test_a_run_that_is_ended_in_the_midst_leaves_whole_scans_and_the_next_adds_the_others(self):
        files, facts_each = 400, 102
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        for i in range(files):
            values = "".join(f"value-{j}={i * j}\n" for j in range(facts_each - 2))
            text = f"\ufeff?zxml\n+Snapshot=\nhostname=mac-{i}\n{values}+System=\n*Chassis=\nserial=SIM{i:05}\n-\n-\n"
            (folder / f"{i:03}.inv").write_bytes(file_of_text(text.encode()))
        start = time.monotonic()
        self.check(0, "load", self.path, folder)
        whole_run = time.monotonic() - start
        self.assert_tally(loaded=files)
        undisturbed = self.everything()
        moments = random.Random(26)
        # The first run is ended as soon as some scans are there, the others at any time.
        for turn, ending in enumerate([signal.SIGKILL] * 4 + [signal.SIGINT, signal.SIGTERM]):
            moment = moments.uniform(0.05, 0.95) * whole_run if turn else None
            with self.subTest(ending=ending, moment=moment):
                self.path = FOLDER / f"{self.id()}-{turn}.db"
                with subprocess.Popen([INV, "load", "--jobs", "2", self.path, folder], stderr=subprocess.DEVNULL) as process:
                    if turn:
                        time.sleep(moment)
                    while not turn and process.poll() is None and not self.has_scans():
                        time.sleep(0.01)
                    process.send_signal(ending)
                if self.path.exists() and self.rows("SELECT name FROM sqlite_master"):
                    self.assertEqual(self.rows("PRAGMA integrity_check"), [("ok",)])
                    self.assertEqual(self.rows("PRAGMA foreign_key_check"), [])
                    counts = self.rows("SELECT count(fact_values.machine_id) FROM machines LEFT JOIN fact_values ON machine_id = id GROUP BY id")
                    self.assertEqual(set(counts), {(facts_each,)} if counts else set())
                    self.assertTrue(turn or counts)
                self.check(0, "load", self.path, folder)
                self.assertEqual(self.everything(), undisturbed)

    def has_scans(self):
        """While another process may be writing."""
        if not self.path.exists():
            return False
        with contextlib.closing(sqlite3.connect(f"file:{self.path}?mode=ro", uri=True)) as database:
            try:
                return database.execute("SELECT count(*) FROM machines").fetchone() != (0,)
            except sqlite3.OperationalError:
                return False

    def everything(self):
        return [self.rows(f"SELECT * FROM {table}") for table in ("machines", "paths", "fact_values")]

    def test_every_name_is_a_files(self):
        for name in (":memory:", "file:x.db?mode=memory", "-", "plain.db"):
            with self.subTest(name=name):
                self.check(0, "load", name, self.files[0], cwd=FOLDER)
                self.path = FOLDER / name
                self.assertEqual(len(self.rows("SELECT * FROM machines")), 1)

    def test_a_database_that_cannot_be_opened_is_named(self):
        for path, reason in ((FOLDER, "unable to open database file"), (FOLDER / "no" / "x.db", "unable to open database file"),
                             ("", "unable to open database file"), ("/dev/full", "")):
            with self.subTest(path=path):
                self.check(2, "load", path, self.files[0])
                self.assertIn(f"inv: {path}: {reason}", self.messages)

    def test_a_file_in_the_place_of_the_database_is_named(self):
        for name in (self.files[0], FOLDER / "new.inv"):
            self.check(2, "load", name, self.files[1])
            self.assertEqual(self.messages, f"inv: {name}: is named like a file to read; DATABASE comes before the files\n")
        self.assertFalse((FOLDER / "new.inv").exists())

    def test_a_locked_database_is_waited_for(self):
        self.check(0, "load", self.path, self.files[0])
        other = sqlite3.connect(self.path, isolation_level=None, check_same_thread=False)
        self.addCleanup(other.close)
        other.execute("BEGIN EXCLUSIVE")
        release = threading.Timer(0.5, other.execute, ["COMMIT"])
        release.start()
        self.check(0, "load", self.path, *self.files)
        release.join()
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(MACHINES))

    def test_a_file_that_is_no_database_is_left_alone(self):
        self.path.write_bytes(b"precious" * 1000)
        self.check(2, "load", self.path, *self.files)
        self.assert_tally()
        self.assertEqual(self.complaints, [f"inv: {self.path}: file is not a database"])
        self.assertEqual(self.path.read_bytes(), b"precious" * 1000)

    def test_a_terminal_sees_the_progress(self):
        terminal = Terminal()
        self.addCleanup(terminal.close)
        with subprocess.Popen([INV, "load", self.path, *self.files], stderr=terminal.end, env={**os.environ, "TERM": "xterm"}) as process:
            seen = terminal.read()
        self.assertEqual(process.returncode, 0)
        self.assertIn(f"{len(MACHINES)} of {len(MACHINES)}", seen)
        self.assertRegex(seen, r"\] \d of \d, \d+ a second, 0:00 left\x1b\[K")
        before, _, line = seen.rpartition("\r\x1b[K")
        self.assertRegex(line, r"^\d+ loaded, ")


if __name__ == "__main__":
    unittest.main()
