"""The database that `inv load` fills, read by another SQLite."""

import os
import pty
import sqlite3
import subprocess
import threading
import unittest

from inventories import FOLDER, INV, MACHINES, InventoryTestCase, facts, scanned


class Load(InventoryTestCase):
    def setUp(self):
        self.path = FOLDER / f"{self.id()}.db"
        self.files = [scanned(machine.name) for machine in MACHINES]

    def rows(self, query, *parameters):
        database = sqlite3.connect(self.path)
        self.addCleanup(database.close)
        return database.execute(query, parameters).fetchall()

    def test_every_fact_is_there_in_order(self):
        self.assertEqual(self.check(0, "load", self.path, *self.files), "")
        self.assertEqual(self.messages, "")
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

    def test_loading_again_changes_nothing(self):
        self.check(0, "load", self.path, *self.files)
        before = self.rows("SELECT machine, path, value FROM facts JOIN machines ON id = machine_id ORDER BY 1, position")
        self.check(0, "load", self.path, *reversed(self.files))
        after = self.rows("SELECT machine, path, value FROM facts JOIN machines ON id = machine_id ORDER BY 1, position")
        self.assertEqual(after, before)

    def test_bad_files_are_left_out_and_named(self):
        bad = FOLDER / "bad.inv"
        bad.write_bytes(b"not an inventory at all")
        self.check(2, "load", self.path, bad, *self.files)
        self.assertIn(f"inv: {bad}: ", self.messages)
        self.assertEqual(len(self.rows("SELECT * FROM machines")), len(MACHINES))

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
        self.assertEqual(self.messages, f"inv: {self.path}: file is not a database\n")
        self.assertEqual(self.path.read_bytes(), b"precious" * 1000)

    def test_a_terminal_sees_the_progress(self):
        master, slave = pty.openpty()
        with subprocess.Popen([INV, "load", self.path, *self.files], stderr=slave, env={**os.environ, "TERM": "xterm"}) as process:
            pass
        os.close(slave)
        seen = os.read(master, 65536)
        os.close(master)
        self.assertEqual(process.returncode, 0)
        self.assertIn(f"{len(MACHINES)} of {len(MACHINES)}".encode(), seen)
        self.assertTrue(seen.endswith(b"\r\x1b[K"))


if __name__ == "__main__":
    unittest.main()
