"""The typed tables of `inv export --table`, against what the independent decoder finds in the files and against the views of the database."""

import csv
import hashlib
import io
import json
import re
import shutil
import sqlite3
import unittest

import inv_decoder
import options_of
import same_host
from inventories import FOLDER, MACHINES, ROOT, InventoryTestCase, file_of_text, scanned

EXTENDED = [same_host.scan(machine, "/extended") for machine in MACHINES]
FILES = [scanned(machine.name) for machine in MACHINES] + EXTENDED
# The lists whose elements are the rows of a table. Of a table without lists each scan is a row.
LISTS = {"software": ["Software"], "disks": ["Storage/Physical-disks"], "volumes": ["Storage/Logical-disks"], "memory": ["Memory"],
         "displays": ["Video/Displays", "Video/Monitors"], "adapters": ["Network/Adapters"], "accounts": ["User-accounts"], "processes": ["Processes"],
         "packages": ["Packages"]}
# Views with the same rows, whose columns of the same names have the same values. (The view of displays lacks those that only an extended scan has.)
VIEWS = {"machines": ["systems"], "software": ["software", "software_details"], "disks": ["disks", "disk_health"], "volumes": ["volumes", "containers"],
         "memory": ["memory"], "adapters": ["network"], "accounts": ["accounts"], "processes": ["processes"],
         "packages": ["packages"], "security": ["security"]}
# Of these an extended scan has more than the one place that the view looks at.
BETTER = {"machines": {"system", "version", "processor"}, "disks": {"size_bytes"}, "memory": {"type"}, "adapters": {"subnet"}}


def number_of(name):
    return name.partition(":")[2] or name


def snapshot(file):
    return inv_decoder.read_file(file).sections[0].tree.top


def elements(file, table):
    """The elements that are rows: of a second list those whose numbers the first does not have."""
    found = {}
    for number, path in enumerate(LISTS[table]):
        tag = snapshot(file).find(path)
        for child in tag.children if tag else ():
            if table == "memory" and not child.name.startswith("Memory-slot:"):
                continue
            key = number_of(child.name) if table == "displays" else child.name
            if number == 0 or key not in found:
                found[key] = (f"/{path}/{child.name}", child)
    return list(found.values())


class Tables(InventoryTestCase):
    def rows(self, table, *files, status=0):
        return [json.loads(line) for line in self.check(status, "export", "--table", table, "--format", "ndjson", *files).splitlines()]

    def test_every_table_has_rows_of_the_simulated_machines(self):
        for table in options_of.TABLES:
            with self.subTest(table=table):
                self.assertGreater(len(self.rows(table, *FILES)), 2)

    def test_a_row_is_an_element_of_its_lists(self):
        for table in LISTS:
            for file in FILES:
                with self.subTest(table=table, file=file):
                    self.assertEqual([row["path"] for row in self.rows(table, file)], [path for path, _ in elements(file, table)])

    def test_a_machine_and_its_security_are_a_row_of_each_scan(self):
        for table in ("machines", "security"):
            rows = self.rows(table, *FILES)
            self.assertEqual([row["scan_id"] for row in rows], [hashlib.sha256(file.read_bytes()).hexdigest() for file in FILES])
            self.assertEqual({row["path"] for row in rows}, {"/"})

    def test_rows_begin_alike_and_join(self):
        for table in options_of.TABLES:
            for row in self.rows(table, *FILES):
                self.assertEqual(list(row)[:4], ["scan_id", "scanned_at", "machine", "path"])
                self.assertRegex(row["scan_id"], "^[0-9a-f]{64}$")
                self.assertRegex(row["scanned_at"], r"^20\d\d-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        (machine,) = self.rows("machines", FILES[0])
        facts = [json.loads(line) for line in self.check(0, "export", "--format", "ndjson", FILES[0]).splitlines()]
        self.assertEqual({(fact["scan_id"], fact["machine"], fact["scanned_at"]) for fact in facts},
                         {(machine["scan_id"], machine["machine"], machine["scanned_at"])})

    def test_values_are_those_of_the_file(self):
        for file in FILES:
            for row, (_, tag) in zip(self.rows("software", file), elements(file, "software")):
                self.assertEqual(row["name"], tag.value)
                self.assertEqual(row["version"], tag.get("version") or None)
                day = tag.get("inst-date") or ""
                self.assertEqual(row["modified_on"], "-".join((day[:4], day[4:6], day[6:])) if day else None)
            for row, (_, tag) in zip(self.rows("disks", file), elements(file, "disks")):
                size = tag.attribute("size")
                exact = size and (size.annotation("base-value") or int(size.value) * 10**9)
                self.assertEqual(row["size_bytes"], int(exact) if exact else None)
                details = snapshot(file).find(f"Storage/Details/{tag.name}")
                self.assertEqual(row["medium"], tag.get("medium") or (details and details.get("medium")))
            for row, (_, tag) in zip(self.rows("memory", file), elements(file, "memory")):
                self.assertEqual(row["used"], tag.get("used") == "1")
                self.assertEqual(row["capacity_bytes"], int(tag.get("capacity")) * 1024**2 if tag.get("capacity") else None)
            for row, (_, tag) in zip(self.rows("accounts", file), elements(file, "accounts")):
                self.assertEqual((row["name"], row["id"]), (tag.value, int(tag.get("id"))))
            for row, (_, tag) in zip(self.rows("processes", file), elements(file, "processes")):
                self.assertEqual((row["pid"], row["parent_pid"]), (int(tag.get("pid")), int(tag.get("ppid"))))
            (row,) = self.rows("machines", file)
            top = snapshot(file)
            self.assertEqual((row["serial"], row["model"]), (top.get("System/Chassis/serial"), top.get("System/Computer-system/model")))
            self.assertEqual(row["memory_bytes"], int(top.get("Memory/General-info/physical-memory")) * 1024**2)
            (row,) = self.rows("security", file)
            told = top.get("Security/Platform/filevault")
            self.assertEqual(row["disk_encryption"], told and told == "1")

    def test_an_extended_scan_adds_to_rows_and_doubles_none(self):
        for machine, extended in zip(MACHINES, EXTENDED):
            for table in ("software", "accounts", "adapters", "memory"):
                plain = self.rows(table, scanned(machine.name))
                self.assertEqual([row["path"] for row in plain], [row["path"] for row in self.rows(table, extended)], table)
            rows = self.rows("displays", extended)
            self.assertEqual(len({row["display"] for row in rows}), len(rows))
        told = [row for row in self.rows("displays", *EXTENDED) if row["vendor_id"] and row["id"]]
        self.assertTrue(told, "the displays that describe themselves have what the system says of them")

    def test_views_of_the_database_have_the_same_values(self):
        path = FOLDER / "tables.db"
        self.check(0, "load", path, *EXTENDED)
        database = sqlite3.connect(path)
        self.addCleanup(database.close)
        for table, views in VIEWS.items():
            for view in views:
                cursor = database.execute(f"SELECT * FROM {view}")
                names = [column[0] for column in cursor.description]
                viewed = [dict(zip(names, row)) for row in cursor]
                tabled = self.rows(table, *EXTENDED)
                shared = [name for name in names if name in tabled[0] and name not in BETTER.get(table, ())]
                with self.subTest(table=table, view=view):
                    self.assertGreater(len(shared), 1)
                    self.assertEqual(sorted(map(str, self.cells(viewed, shared))), sorted(map(str, self.cells(tabled, shared))))

    def cells(self, rows, names):
        """A view knows no booleans, and shows a text that is empty."""
        return [[None if row[name] in (None, "") else int(row[name]) if isinstance(row[name], bool) else row[name] for name in names] for row in rows]

    def test_csv_has_the_same_cells(self):
        for table in options_of.TABLES:
            rows = self.rows(table, *FILES)
            text = self.check(0, "export", "--table", table, "--format", "csv", *FILES)
            lines = list(csv.reader(io.StringIO(text, newline="")))
            self.assertEqual(lines[0], list(rows[0]))
            shown = [["" if cell is None else str(int(cell)) if isinstance(cell, (bool, int)) else str(cell) for cell in row.values()] for row in rows]
            self.assertEqual(lines[1:], shown)

    def test_more_threads_write_the_same(self):
        for table in ("machines", "software", "processes"):
            one = self.check(0, "export", "--table", table, "--format", "ndjson", *FILES)
            self.assertEqual(self.check(0, "export", "--table", table, "--format", "ndjson", "--jobs", "3", *FILES), one)

    def test_folders_lists_and_quarantine_are_those_of_export(self):
        folder = FOLDER / "table-spool"
        folder.mkdir()
        shutil.copy(FILES[0], folder / "a.inv")
        (folder / "b.inv").write_bytes(b"no inventory")
        (folder / "c.inv").write_bytes((folder / "a.inv").read_bytes())
        (FOLDER / "names").write_text(f"{folder}\n{FILES[1]}\n")
        aside = FOLDER / "table-aside"
        rows = self.rows("machines", "--files-from", FOLDER / "names", "--quarantine", aside, status=2)
        self.assertIn("2 exported, 1 skipped, 1 refused", self.messages)
        self.assertEqual([row["machine"] for row in rows], [self.rows("machines", file)[0]["machine"] for file in FILES[:2]])
        self.assertEqual(sorted(path.name for path in aside.iterdir()), ["b.inv", "b.inv.txt"])

    def test_secrets_are_masked_unless_they_are_wanted(self):
        text = "\ufeff?zxml\n+Snapshot=\n+Processes=\n*process:1=a\npid=1\ncmd-line=a --password=hunter2hunter2\n-\n-\n"
        file = FOLDER / "secret.inv"
        file.write_bytes(file_of_text(text.encode()))
        self.assertNotIn("hunter2", json.dumps(self.rows("processes", file)))
        self.assertIn("1 secret", self.messages)
        self.assertIn("hunter2", json.dumps(self.rows("processes", "--secrets", file)))

    def test_a_file_that_is_too_large_is_refused_and_the_output_whole(self):
        out = FOLDER / "rows.csv"
        self.check(1, "export", "--table", "machines", "--format", "csv", "--max-size", "1kb", "-o", out, FILES[0])
        self.assertEqual(len(out.read_bytes().splitlines()), 2)

    def test_an_unknown_table_is_answered_with_what_there_is(self):
        self.check(2, "export", "--table", "sofware", "--format", "csv", FILES[0])
        self.assertIn(f'"sofware" is not one of {", ".join(options_of.TABLES)}; did you mean software?', self.messages)

    def test_a_form_without_rows_is_refused(self):
        for form in ("json", "zxml"):
            self.assertEqual(self.check(2, "export", "--table", "disks", "--format", form, FILES[0]), "")
            self.assertEqual(self.messages, f"inv: --table: there are no rows in {form}; choose --format ndjson or csv\n")

    def test_a_damaged_file_gives_the_rows_that_are_left(self):
        text = "\ufeff?zxml\n+Snapshot=\n+Memory=\n*Memory-slot:1=\nused=maybe\ncapacity=-5\nspeed=fast\n*Memory-slot:odd=\n-\n-\n"
        file = FOLDER / "odd.inv"
        file.write_bytes(file_of_text(text.encode()))
        one, other = self.rows("memory", file)
        self.assertEqual([one[name] for name in ("slot", "used", "capacity_bytes", "speed_mhz")], [1, None, None, None])
        self.assertIsNone(other["slot"])

    def test_the_help_and_the_pages_name_every_table(self):
        for text in (options_of.help_text("export"), (ROOT / "docs" / "inv-tool.md").read_text(), (ROOT / "docs" / "man" / "inv.1").read_text()):
            self.assertEqual([name for name in options_of.TABLES if not re.search(rf"\b{name}\b", text)], [])


if __name__ == "__main__":
    unittest.main()
