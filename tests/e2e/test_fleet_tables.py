"""The typed tables in the engines: each takes the table that `inv schema` prints for it and all rows of the CSV; DuckDB writes them as Parquet, and what is
read back is what NDJSON has."""

import functools
import json
import subprocess
import unittest

import options_of
import same_host
from inventories import FOLDER, INV, MACHINES, SIMULATOR, InventoryTestCase, inv, scanned
from test_fleet_engines import ENGINES, FLEET, POSTGRESQL, Node, Postgresql

HAVE_DUCKDB = (ENGINES / "node_modules" / "@duckdb" / "node-api").is_dir()
HAVE_CLICKHOUSE = (ENGINES / "node_modules" / "chdb").is_dir()
NAMES_FIRST = ("software", "processes", "packages")


@functools.lru_cache(maxsize=None)
def files():
    """Scans of all simulated Macs, plain and extended, and a fleet made of the largest: three scans of each Mac, a week apart."""
    scans = [scanned(machine.name) for machine in MACHINES] + [same_host.scan(machine, "/extended") for machine in MACHINES]
    folder = FOLDER / "typed-spool"
    folder.mkdir()
    large = [scanned("imac-10.6"), same_host.scan(SIMULATOR / "machines" / "imac-10.6", "/extended")]
    subprocess.run([INV.parent / "tests" / "fleet" / "make_fleet", folder, "30", *large], check=True, timeout=300)
    return [folder, *scans]


@functools.lru_cache(maxsize=None)
def rows(table):
    result = inv("export", "--table", table, "--format", "ndjson", *files(), check=True)
    return [json.loads(line) for line in result.stdout.splitlines()]


def counts():
    return {table: len(rows(table)) for table in options_of.TABLES}


def export(engine):
    """Writes TABLE.csv for every table into the engine's folder."""
    for table in options_of.TABLES:
        inv("export", "--table", table, "--format", "csv", "-o", engine.folder / f"{table}.csv", *files(), check=True)


def schema(table, form):
    return inv("schema", "--table", table, "--format", form, check=True).stdout.decode()


def as_shown(value):
    """A value of NDJSON as DuckDB's texts show it."""
    if isinstance(value, bool):
        return str(value).lower()
    return None if value is None else str(value)


@unittest.skipUnless(HAVE_DUCKDB, "DuckDB is not installed: npm ci in tests/engines")
class Parquet(InventoryTestCase):
    @classmethod
    def setUpClass(cls):
        cls.duckdb = Node("duckdb", "typed")
        export(cls.duckdb)
        load = cls.duckdb.shipped("duckdb/load-tables.sql")
        # Loads twice: what is there is not loaded again.
        cls.duckdb.run([*cls.duckdb.shipped("duckdb/schema.sql", "duckdb/tables.sql"), *load, *load, *cls.duckdb.shipped("duckdb/parquet.sql")])

    def ask(self, question):
        return self.duckdb.ask({"one": question})["one"]

    def test_the_shipped_tables_are_those_that_are_printed(self):
        shipped = (FLEET / "duckdb" / "tables.sql").read_text()
        printed = "\n".join(schema(table, "duckdb") for table in options_of.TABLES)
        self.assertTrue(shipped.partition("CREATE SCHEMA typed;\n\n")[2] == printed.replace("CREATE TABLE ", "CREATE TABLE typed."),
                        "run scripts/print_schemas")

    def test_every_row_is_loaded_once(self):
        for table, count in counts().items():
            self.assertEqual(self.ask(f"SELECT count(*) FROM typed.{table}"), [[str(count)]], table)

    def test_what_is_read_back_is_what_ndjson_has(self):
        for table in options_of.TABLES:
            wanted = rows(table)
            names = list(wanted[0])
            columns = [f"strftime({name} AT TIME ZONE 'UTC', '%Y-%m-%dT%H:%M:%SZ')" if name.endswith("_at") else f"{name}::VARCHAR" for name in names]
            back = self.ask(f"SELECT {', '.join(columns)} FROM read_parquet('{table}/*/*.parquet')")
            self.assertEqual(sorted(back, key=str), sorted([[as_shown(value) for value in row.values()] for row in wanted], key=str), table)

    def test_columns_have_their_types(self):
        described = dict(row[:2] for row in self.ask("DESCRIBE SELECT * FROM read_parquet('volumes/*/*.parquet')"))
        wanted = {"scan_id": "VARCHAR", "scanned_at": "TIMESTAMP WITH TIME ZONE", "size_bytes": "BIGINT", "writable": "BOOLEAN", "dt": "DATE"}
        self.assertEqual({name: described[name] for name in wanted}, wanted)
        (modified,) = [row[1] for row in self.ask("DESCRIBE SELECT * FROM read_parquet('software/*/*.parquet')") if row[0] == "modified_on"]
        self.assertEqual(modified, "DATE")

    def test_a_day_is_one_file_of_each_table_in_order(self):
        for table in options_of.TABLES:
            days = sorted({row["scanned_at"][:10] for row in rows(table)})
            files = sorted(path.relative_to(self.duckdb.folder / table).as_posix() for path in (self.duckdb.folder / table).rglob("*.parquet"))
            self.assertEqual(files, [f"dt={day}/part-0.parquet" for day in days], table)
            order = "name, machine" if table in NAMES_FIRST else "machine"
            read = f"read_parquet('{table}/*/*.parquet', filename = true, file_row_number = true)"
            places = f"SELECT file_row_number AS place, row_number() OVER (PARTITION BY filename ORDER BY {order}, file_row_number) - 1 AS wanted FROM {read}"
            self.assertEqual(self.ask(f"SELECT count(*) FROM ({places}) WHERE place <> wanted"), [["0"]], table)

    def test_tables_join(self):
        joined = "FROM typed.volumes JOIN typed.machines USING (scan_id, scanned_at, machine)"
        self.assertEqual(self.ask(f"SELECT count(*) {joined}"), self.ask("SELECT count(*) FROM typed.volumes"))


@unittest.skipUnless(POSTGRESQL, "PostgreSQL is not installed")
class OfPostgresql(InventoryTestCase):
    def test_takes_every_row(self):
        engine = Postgresql("postgresql")
        self.addCleanup(engine.stop)
        export(engine)
        for table in options_of.TABLES:
            engine.run([schema(table, "postgresql"), f"\\copy {table} FROM '{table}.csv' WITH (FORMAT csv, HEADER match)"])
        inv("export", "--format", "csv", "-o", engine.folder / "facts.csv", *files(), check=True)
        engine.run([inv("schema", "--format", "postgresql", check=True).stdout.decode(),
                    "\\copy facts FROM 'facts.csv' WITH (FORMAT csv, HEADER match, FORCE_NOT_NULL (unit, base_value, value, element))"])
        asked = engine.ask({table: f"SELECT count(*) FROM {table}" for table in options_of.TABLES})
        self.assertEqual({table: int(rows[0][0]) for table, rows in asked.items()}, counts())
        disks = engine.ask({"sizes": "SELECT sum(size_bytes) FROM disks"})["sizes"]
        self.assertEqual(disks, [[str(sum(row["size_bytes"] or 0 for row in rows("disks")))]])


@unittest.skipUnless(HAVE_CLICKHOUSE, "ClickHouse is not installed: npm install --no-save chdb in tests/engines")
class OfClickHouse(InventoryTestCase):
    def test_takes_every_row(self):
        engine = Node("clickhouse", "typed")
        export(engine)
        read = "INSERT INTO {0} SELECT * FROM file('{0}.csv', 'CSVWithNames') SETTINGS date_time_input_format = 'best_effort';"
        for table in options_of.TABLES:
            engine.run([schema(table, "clickhouse"), read.format(table)])
        asked = engine.ask({table: f"SELECT count(*) FROM {table}" for table in options_of.TABLES})
        self.assertEqual({table: int(rows[0][0]) for table, rows in asked.items()}, counts())


class Facts(InventoryTestCase):
    """The facts of the shipped schemas are those of the export."""

    FORMATS = {"sqlite": "sql", "duckdb": "duckdb", "clickhouse": "clickhouse", "postgresql": "postgresql"}

    def columns_of(self, text):
        body = text.partition("CREATE TABLE facts (\n")[2].partition("\n)")[0]
        listed = [column.strip() for line in body.splitlines() for column in line.partition("  --")[0].split(", ")]
        return dict(column.rstrip(",").split(" ", 1) for column in listed if column)

    def test_have_the_same_types(self):
        for engine, form in self.FORMATS.items():
            shipped = self.columns_of((FLEET / engine / "schema.sql").read_text().replace("LowCardinality(String)", "String"))
            printed = self.columns_of(self.check(0, "schema", "--format", form))
            # Loading makes a number of it.
            printed["base_value"] = printed["number"]
            with self.subTest(engine=engine):
                self.assertEqual(shipped, {name: printed[name] for name in shipped})
                self.assertEqual(set(printed) - set(shipped), {"machine", "scanned_at", "section"})


if __name__ == "__main__":
    unittest.main()
