"""What `inv schema` says of the rows of an export: every row that is written is valid by it, and the tables that it makes take every row."""

import csv
import io
import json
import re
import shutil
import sqlite3
import subprocess
import unittest

import options_of
import same_host
from inventories import FOLDER, MACHINES, ROOT, InventoryTestCase, file_of_text, scanned

SCHEMAS = ROOT / "docs" / "schema"
VALIDATORS = ROOT / "tests" / "validators"
KINDS = ("facts", *options_of.TABLES)
FORMATS = ("sql", "duckdb", "clickhouse", "postgresql")
FILES = [scanned(machine.name) for machine in MACHINES] + [same_host.scan(machine, "/extended") for machine in MACHINES]
# Values that are missing, and values that are not what they should be.
ODD = """\ufeff?zxml
+Snapshot=
timestamp=20120118153045
+Software=
*Soft:1=
*Soft:x=A
version=
inst-date=20129999
64bit-app=maybe
-
+Memory=
*Memory-slot:1=
used=2
capacity=-1
speed=fast
-
+Storage=
+Logical-disks=
*partition:1=A
size=-0
free=1e9
used%=007
-
-
-
"""


def of_table(kind):
    return [] if kind == "facts" else ["--table", kind]


def csv_fields(line):
    return next(csv.reader(io.StringIO(line)))


class Schema(InventoryTestCase):
    def schema(self, kind):
        return json.loads(self.check(0, "schema", *of_table(kind)))

    def test_the_files_in_the_documentation_are_what_it_prints(self):
        self.assertEqual({path.name for path in SCHEMAS.glob("*.json")}, {f"{kind}.json" for kind in KINDS})
        for kind in KINDS:
            printed = self.check(0, "schema", *of_table(kind))
            shown = (SCHEMAS / f"{kind}.json").read_text(encoding="utf-8")
            self.assertTrue(shown == printed, "run scripts/print_schemas")

    def test_it_says_what_it_is_and_of_which_version(self):
        for kind in KINDS:
            schema = self.schema(kind)
            self.assertEqual(schema["$schema"], "https://json-schema.org/draft/2020-12/schema")
            self.assertEqual((schema["title"], schema["type"]), (kind, "object"))
            self.assertRegex(schema["version"], r"^[0-9]+\.[0-9]+$")
            self.assertEqual(schema["$id"], f"urn:velkaro:inventory:{kind}:{schema['version']}")
            self.assertIn(f"`{schema['version']}`", (SCHEMAS / "README.md").read_text())
            for name, column in schema["properties"].items():
                self.assertTrue(column["description"], (kind, name))
            self.assertEqual(schema["required"], list(schema["properties"]))

    def test_its_columns_are_those_of_the_rows(self):
        for kind in KINDS:
            first = self.check(0, "export", "--format", "csv", *of_table(kind), FILES[0]).splitlines()[0]
            self.assertEqual(csv_fields(first), list(self.schema(kind)["properties"]))

    def test_types_say_what_can_be_missing(self):
        columns = self.schema("volumes")["properties"]
        self.assertEqual(columns["scan_id"]["type"], "string")
        self.assertEqual(columns["scanned_at"], {"description": "when the scan was made", "type": ["string", "null"], "format": "date-time"})
        self.assertEqual(columns["size_bytes"], {"description": "its size, in bytes", "type": ["integer", "null"], "minimum": 0,
                                                 "path": "/Storage/Logical-disks/*/size"})
        self.assertEqual(columns["writable"]["type"], ["boolean", "null"])
        self.assertEqual(self.schema("software")["properties"]["modified_on"]["format"], "date")
        facts = self.schema("facts")["properties"]
        self.assertEqual((facts["value"]["type"], facts["number"]["type"]), ("string", ["number", "null"]))

    def test_tables_have_the_types_of_their_engine(self):
        wanted = {"sql": ("TEXT NOT NULL", "TIMESTAMP WITH TIME ZONE", "TEXT", "BIGINT", "BOOLEAN"),
                  "duckdb": ("VARCHAR NOT NULL", "TIMESTAMPTZ", "VARCHAR", "BIGINT", "BOOLEAN"),
                  "clickhouse": ("String", "Nullable(DateTime('UTC'))", "Nullable(String)", "Nullable(Int64)", "Nullable(Bool)"),
                  "postgresql": ("text NOT NULL", "timestamptz", "text", "bigint", "boolean")}
        for form, types in wanted.items():
            text = self.check(0, "schema", "--table", "volumes", "--format", form)
            declared = dict(re.findall(r"^  (\w+) (.*?),?  -- ", text, re.M))
            self.assertEqual(tuple(declared[name] for name in ("scan_id", "scanned_at", "name", "size_bytes", "writable")), types)
            self.assertEqual(list(declared), list(self.schema("volumes")["properties"]))
            self.assertTrue(text.startswith("-- Version 1.0. A row is a volume;"))
            self.assertEqual(text.endswith(") ENGINE = MergeTree ORDER BY (machine, scan_id);\n"), form == "clickhouse")
        self.assertIn("  modified_on DATE,", self.check(0, "schema", "--table", "software", "--format", "sql"))
        self.assertIn("  number DOUBLE  --", self.check(0, "schema", "--format", "duckdb"))

    def test_sqlite_takes_every_row(self):
        database = sqlite3.connect(":memory:")
        self.addCleanup(database.close)
        for kind in KINDS:
            database.executescript(self.check(0, "schema", "--format", "sql", *of_table(kind)))
            text = self.check(0, "export", "--format", "csv", *of_table(kind), *FILES)
            _, *rows = csv.reader(io.StringIO(text, newline=""))
            marks = ", ".join("?" * len(rows[0]))
            database.executemany(f"INSERT INTO {kind} VALUES ({marks})", [[cell or (None if kind != "facts" else "") for cell in row] for row in rows])
            self.assertEqual(database.execute(f"SELECT count(*) FROM {kind}").fetchone(), (len(rows),))
        types = database.execute("SELECT typeof(size_bytes), typeof(machine), typeof(scanned_at) FROM disks WHERE size_bytes <> ''").fetchone()
        self.assertEqual(types, ("integer", "text", "text"))
        joined = "SELECT count(*) FROM disks JOIN machines USING (scan_id, machine, scanned_at)"
        self.assertEqual(database.execute(joined).fetchone(), database.execute("SELECT count(*) FROM disks").fetchone())

    def test_unknown_names_are_answered_with_what_there_is(self):
        self.check(2, "schema", "--table", "disk")
        self.assertIn(f'"disk" is not one of {", ".join(options_of.TABLES)}; did you mean disks?', self.messages)
        self.check(2, "schema", "--format", "postgres")
        self.assertIn(f'"postgres" is not one of json-schema, {", ".join(FORMATS)}; did you mean postgresql?', self.messages)


@unittest.skipUnless((VALIDATORS / "node_modules").exists() and shutil.which("node"), "run npm ci in tests/validators first")
class ValidRows(InventoryTestCase):
    def validate(self, kind, path):
        """The complaints about the rows of a file, and how many rows it has."""
        schema = SCHEMAS / f"{kind}.json"
        result = subprocess.run(["node", VALIDATORS / "rows.mjs", schema, path], capture_output=True, text=True, timeout=300)
        self.assertEqual((result.stderr, result.returncode), ("", 0))
        *complaints, count = result.stdout.splitlines()
        return [complaint.partition(": ")[2] for complaint in complaints], int(count)

    def exported(self, kind, *files):
        path = FOLDER / f"{kind}.ndjson"
        self.check(0, "export", "--format", "ndjson", *of_table(kind), "-o", path, *files)
        return path

    def test_every_row_of_every_machine_is_valid(self):
        for kind in KINDS:
            complaints, count = self.validate(kind, self.exported(kind, *FILES))
            self.assertEqual(complaints, [], kind)
            self.assertGreater(count, 2, kind)

    def test_every_row_of_odd_values_is_valid(self):
        file = FOLDER / "odd.inv"
        file.write_bytes(file_of_text(ODD.encode()))
        counts = {}
        for kind in KINDS:
            complaints, counts[kind] = self.validate(kind, self.exported(kind, file))
            self.assertEqual(complaints, [], kind)
        self.assertEqual({kind: count for kind, count in counts.items() if count},
                         {"facts": 12, "machines": 1, "software": 2, "volumes": 1, "memory": 1, "security": 1})

    def test_a_wrong_row_is_refused(self):
        (row,) = [json.loads(line) for line in self.exported("memory", FILES[0]).read_text().splitlines()[:1]]
        lacking = {name: value for name, value in row.items() if name != "slot"}
        wrong = {"must have required property 'slot'": lacking, "slot must be integer,null": {**row, "slot": "1"},
                 "slot must be integer": {**row, "slot": 1.5}, "capacity_bytes must be >= 0": {**row, "capacity_bytes": -1},
                 "used must be boolean,null": {**row, "used": 1}, "machine must be string": {**row, "machine": None},
                 "scanned_at must match format": {**row, "scanned_at": "2012-01-18 15:30"}, "bank must be string,null": {**row, "bank": 7}}
        path = FOLDER / "wrong.ndjson"
        path.write_text("".join(json.dumps(changed) + "\n" for changed in wrong.values()))
        complaints, count = self.validate("memory", path)
        self.assertEqual(count, len(wrong))
        self.assertEqual(len(complaints), len(wrong))
        for expected, complaint in zip(wrong, complaints):
            self.assertIn(expected, complaint)

    def test_a_wrong_fact_is_refused(self):
        (row,) = [json.loads(line) for line in self.exported("facts", FILES[0]).read_text().splitlines()[:1]]
        path = FOLDER / "wrong.ndjson"
        path.write_text(json.dumps({**row, "number": "1"}) + "\n" + json.dumps({**row, "value": 1}) + "\n")
        self.assertEqual(self.validate("facts", path), (["data/number must be number,null", "data/value must be string"], 2))

    def test_a_column_that_came_later_is_no_fault(self):
        (row,) = [json.loads(line) for line in self.exported("memory", FILES[0]).read_text().splitlines()[:1]]
        path = FOLDER / "later.ndjson"
        path.write_text(json.dumps({**row, "came_later": 1}) + "\n")
        self.assertEqual(self.validate("memory", path), ([], 1))


if __name__ == "__main__":
    unittest.main()
