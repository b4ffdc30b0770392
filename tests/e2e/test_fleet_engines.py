"""One fleet, twelve questions, the same answers: SQLite, DuckDB, PostgreSQL and ClickHouse load the rows of 500 scans, as `inv export` writes them, by the
shipped files and are asked by the shipped files. Then DuckDB writes them as Parquet and reads them back."""

import csv
import functools
import hashlib
import io
import json
import os
import pwd
import random
import re
import shutil
import subprocess
import tempfile
import unittest
from datetime import datetime, timedelta, timezone
from pathlib import Path

from inventories import FOLDER, ROOT, SIMULATOR, InventoryTestCase, inv, scan

FLEET = ROOT / "fleet"
ENGINES = ROOT / "tests" / "engines"
QUESTIONS = sorted((FLEET / "questions").glob("*.sql"))
NOW = datetime(2026, 11, 20, 12, tzinfo=timezone.utc)
SCANS = 500
# What comes from the computer that the tests run on.
OF_THE_HOST = ("/Processes", "/Environment")
FILEVAULT = "/Security/Platform/filevault"
POSTGRESQL = sorted(Path("/usr/lib/postgresql").glob("*/bin"))


def rfc_3339(time):
    return time.strftime("%Y-%m-%dT%H:%M:%SZ")


class FleetOfScans:
    """Rows as `inv export` writes them, of three scans each of 167 Macs: each a simulated one under another serial number, and each scan a little different."""

    def __init__(self):
        self.random = random.Random(20261120)
        self.rows = []
        self.macs, self.not_seen, self.duplicates, self.unencrypted = set(), set(), set(), {}
        models = [self.exported(machine) for machine in sorted((SIMULATOR / "machines").iterdir()) if machine.is_dir()]
        for number in range(SCANS):
            self.add_scan(number // 3, number % 3, models[number // 3 % len(models)])

    def exported(self, machine):
        files = scan(machine), scan(machine, "/extended")
        tables = [list(csv.DictReader(io.StringIO(inv("export", "--format", "csv", file).stdout.decode(), newline=""))) for file in files]
        return [[row for row in table if not row["kind"].startswith(OF_THE_HOST)] for table in tables]

    def add_scan(self, mac, turn, model):
        """The first scan is two weeks older than the last, and the second six days; every ninth Mac was not seen since."""
        lost = mac % 9 == 4 and mac % 50 < 48
        time = NOW - timedelta(days=(14, 6, 0)[turn] + 40 * lost, minutes=mac)
        # A serial number that two Macs have; they are one machine then.
        serial = f"FLEET{mac - (mac % 50 == 49):05}"
        machine = dict(serial=serial, uuid=f"00000000-0000-4000-8000-{mac:012}", time=rfc_3339(time),
                       id=hashlib.sha256(f"{mac} {turn}".encode()).hexdigest())
        extended = mac % 4 != 0
        for row in model[extended]:
            self.add_row(row, machine, mac, turn)
        if mac % 50 == 49:
            self.duplicates.add(serial)
        else:
            told = any(row["kind"] == FILEVAULT for row in model[extended])
            if not told or mac % 3:
                self.unencrypted[serial] = "off" if told else "unknown"
        self.macs.add(serial)
        if lost:
            self.not_seen.add(serial)

    def add_row(self, row, machine, mac, turn):
        kind, changed = row["kind"], {}
        if kind == "/System/Chassis/serial":
            changed["value"] = machine["serial"]
        elif kind == "/System/Computer-system/uuid":
            changed["value"] = machine["uuid"]
        elif kind == "AssetInfo/alias":
            changed["value"] = f"Mac, the \"{mac}th\""
        elif kind == "/Software/Soft/version" and row["value"] == "5.1":
            changed["value"] = f"5.1.{mac % 12}"
        elif kind == "/Software/Soft/version" and row["value"] and self.random.random() < 0.05:
            changed["value"] = f"{row['value']}.{self.random.randrange(12)}"
        elif kind == "/Storage/Logical-disks/partition/used%":
            changed["value"] = str(self.random.randrange(60, 101))
        elif kind == FILEVAULT:
            changed["value"] = str(int(mac % 3 == 0))
        elif kind == "/User-accounts/usr-acc/group" and mac % 10 == 0:
            changed["value"] = "80"
        # An application that comes with the last scan of some Macs, and goes with that of others.
        if row["path"].startswith(("/Software/Soft:2/", "/Software-details/Soft:2/")) or row["path"] == "/Software/Soft:2":
            if mac % 5 == 0 and turn == (2 if mac % 2 else 0):
                return
        if "value" in changed:
            changed["number"] = changed["value"] if re.fullmatch(r"\d+(\.\d+)?", changed["value"]) else ""
        self.rows.append({**row, **changed, "machine": machine["serial"], "scan_id": machine["id"], "scanned_at": machine["time"]})

    def write(self, path):
        with path.open("w", newline="", encoding="utf-8") as file:
            writer = csv.DictWriter(file, list(self.rows[0]), lineterminator="\r\n")
            writer.writeheader()
            writer.writerows(self.rows)


@functools.lru_cache(maxsize=None)
def fleet():
    return FleetOfScans()


def clock(engine):
    """The clock at the time of the fleet."""
    moments = [f"'{rfc_3339(NOW - timedelta(days=days))}' AS {name}" for days, name in ((7, "a_week_ago"), (30, "a_month_ago"))]
    create = "CREATE OR REPLACE VIEW" if engine != "sqlite" else "DROP VIEW clock; CREATE VIEW"
    return f"{create} clock AS SELECT {', '.join(moments)};"


WANTED = "INSERT INTO wanted VALUES ('Safari', '5.1.10'), ('Mail', '4.10'), ('Render Queue', '7.1');"
COUNTS = "SELECT (SELECT count(*) FROM facts), (SELECT count(*) FROM scans)"


def plain(value):
    """A value as text, a number without needless zeros: engines write them differently."""
    try:
        return f"{float(value):g}" if value is not None else None
    except ValueError:
        return value


class Engine:
    """One that has loaded the fleet. Each asks its questions in a folder with facts.csv."""

    def __init__(self, name, folder="asked"):
        self.name = name
        self.folder = FOLDER / f"{name}-{folder}"
        self.folder.mkdir()

    def shipped(self, *names):
        return [(FLEET / name).read_text() for name in names]

    def setup(self):
        """Loads twice: what is there is not loaded again."""
        (self.folder / "facts.csv").symlink_to(rows_file())
        load = f"{self.name}/load.sql"
        self.run([*self.shipped(f"{self.name}/schema.sql", "views.sql", load, load), clock(self.name), WANTED])

    def answers(self):
        asked = self.ask({**{path.stem: path.read_text() for path in QUESTIONS}, "counts": COUNTS})
        return {name: sorted([[plain(value) for value in row] for row in rows], key=str) for name, rows in asked.items()}


class Sqlite(Engine):
    def sqlite3(self, script, *options):
        command = ["sqlite3", "-batch", "-bail", *options, "fleet.db"]
        return subprocess.run(command, cwd=self.folder, input=script, capture_output=True, text=True, check=True, timeout=300).stdout

    def run(self, scripts):
        for script in scripts:
            self.sqlite3(script)

    def ask(self, questions):
        answers = {}
        for name, question in questions.items():
            answers[name] = [list(row.values()) for row in json.loads(self.sqlite3(question, "-json") or "[]")]
        return answers


class Node(Engine):
    """An engine that is an npm package."""

    def ask(self, questions, run=()):
        command = ["node", ENGINES / f"{self.name}.mjs", self.folder]
        task = json.dumps({"run": list(run), "ask": questions})
        result = subprocess.run(command, input=task, capture_output=True, text=True, timeout=300)
        if result.returncode != 0:
            raise AssertionError(result.stderr)
        return json.loads(result.stdout)

    def run(self, scripts):
        self.ask({}, scripts)


class Postgresql(Engine):
    """A server of the test's own, in its folder, that only this computer's sockets reach. Root may not run one, so somebody else does then."""

    def __init__(self, name):
        super().__init__(name)
        self.data = Path(tempfile.mkdtemp(dir="/tmp"))
        self.as_server = []
        if os.geteuid() == 0:
            user = pwd.getpwnam("postgres")
            os.chown(self.data, user.pw_uid, user.pw_gid)
            self.as_server = ["setpriv", f"--reuid={user.pw_uid}", f"--regid={user.pw_gid}", "--clear-groups"]
        self.serve("initdb", "-D", self.data / "data", "-U", "tester", "-A", "trust", "-E", "UTF8", "--locale=C", "--no-sync")
        options = f"-k {self.data} -c listen_addresses= -c fsync=off -c synchronous_commit=off"
        self.serve("pg_ctl", "-D", self.data / "data", "-l", self.data / "log", "-w", "-o", options, "start")

    def serve(self, program, *arguments):
        command = [*self.as_server, POSTGRESQL[-1] / program, *arguments]
        subprocess.run(command, cwd=self.data, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True, timeout=120)

    def stop(self):
        self.serve("pg_ctl", "-D", self.data / "data", "-m", "immediate", "stop")
        shutil.rmtree(self.data)

    def psql(self, script, *options):
        command = [POSTGRESQL[-1] / "psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", "-h", self.data, "-U", "tester", *options, "postgres"]
        result = subprocess.run(command, cwd=self.folder, input=script.encode(), capture_output=True, timeout=300)
        if result.returncode != 0:
            raise AssertionError(result.stderr.decode())
        # A value may hold line ends of any kind.
        return result.stdout.decode()

    def run(self, scripts):
        for script in scripts:
            self.psql(script)

    def ask(self, questions):
        answers = {}
        for name, question in questions.items():
            table = csv.reader(io.StringIO(self.psql(question, "--csv", "-t", "-P", "null=<NULL>"), newline=""))
            answers[name] = [[None if value == "<NULL>" else value for value in row] for row in table]
        return answers


@functools.lru_cache(maxsize=None)
def rows_file():
    path = FOLDER / "facts.csv"
    fleet().write(path)
    return path


@functools.lru_cache(maxsize=None)
def reference():
    """The answers of SQLite, which all others are compared with."""
    engine = Sqlite("sqlite")
    engine.setup()
    return engine.answers()


@unittest.skipUnless(shutil.which("sqlite3"), "sqlite3 is not installed")
class Engines(InventoryTestCase):
    maxDiff = 2000

    def compare(self, engine):
        engine.setup()
        answers = engine.answers()
        for name, rows in reference().items():
            with self.subTest(engine=engine.name, question=name):
                self.assertEqual(answers[name], rows)

    def test_there_are_twelve_questions_and_each_has_an_answer(self):
        self.assertEqual([path.stem[:2] for path in QUESTIONS], [f"{number:02}" for number in range(1, 13)])
        self.assertEqual(reference()["counts"], [[str(len(fleet().rows)), str(SCANS)]])
        for name, rows in reference().items():
            self.assertTrue(rows, name)

    def test_the_answers_are_what_was_put_into_the_fleet(self):
        answers = reference()
        self.assertEqual({row[0] for row in answers["05-not-seen"]}, fleet().not_seen)
        self.assertEqual({row[0] for row in answers["12-duplicate-serials"]}, fleet().duplicates)
        self.assertEqual({row[0]: row[2] for row in answers["01-without-encryption"]}, fleet().unencrypted)
        self.assertEqual({change[1] for change in answers["04-changed-since-last-week"]}, {"added", "removed", "changed"})
        self.assertEqual({int(row[3]) for row in answers["03-full-disks"]}, set(range(91, 101)))
        self.assertEqual(sum(int(row[1]) for row in answers["11-systems-by-release"]), len(fleet().macs))
        older = {(row[1], row[2]) for row in answers["02-old-applications"]}
        self.assertIn(("Safari", "5.1.9"), older)
        self.assertNotIn(("Safari", "5.1.11"), older)

    @unittest.skipUnless((ENGINES / "node_modules" / "@duckdb" / "node-api").is_dir(), "DuckDB is not installed: npm ci in tests/engines")
    def test_duckdb_answers_the_same(self):
        self.compare(Node("duckdb"))

    @unittest.skipUnless((ENGINES / "node_modules" / "chdb").is_dir(), "ClickHouse is not installed: npm install --no-save chdb in tests/engines")
    def test_clickhouse_answers_the_same(self):
        self.compare(Node("clickhouse"))

    @unittest.skipUnless(POSTGRESQL, "PostgreSQL is not installed")
    def test_postgresql_answers_the_same(self):
        engine = Postgresql("postgresql")
        self.addCleanup(engine.stop)
        self.compare(engine)

@unittest.skipUnless((ENGINES / "node_modules" / "@duckdb" / "node-api").is_dir(), "DuckDB is not installed: npm ci in tests/engines")
class Parquet(InventoryTestCase):
    """The facts; test_fleet_tables.py has the typed tables."""

    @classmethod
    def setUpClass(cls):
        cls.duckdb = Node("duckdb", "parquet")
        cls.duckdb.setup()
        cls.duckdb.run(cls.duckdb.shipped("duckdb/tables.sql", "duckdb/parquet.sql"))

    def one(self, question):
        (row,) = self.duckdb.ask({"one": question})["one"]
        return row

    def test_a_day_is_a_folder_of_few_files(self):
        days = {row["scanned_at"][:10] for row in fleet().rows}
        files = sorted(path.relative_to(self.duckdb.folder / "facts").as_posix() for path in (self.duckdb.folder / "facts").rglob("*.parquet"))
        self.assertEqual(files, sorted(f"dt={day}/part-0.parquet" for day in days))

    def test_what_is_read_back_is_what_was_loaded(self):
        columns = "kind, scan_id, element, path, name, value, number, unit, base_value"
        there, back = f"SELECT {columns} FROM facts", f"SELECT {columns} FROM read_parquet('facts/*/*.parquet', hive_partitioning = true)"
        self.assertEqual(self.one(f"SELECT count(*) FROM ({back})"), [str(len(fleet().rows))])
        self.assertEqual(self.one(f"SELECT count(*) FROM ({there} EXCEPT ALL {back})"), ["0"])

    def test_the_day_is_that_of_the_scan_and_the_time_is_one(self):
        source = "read_parquet('facts/*/*.parquet', hive_partitioning = true)"
        wrong = f"SELECT count(*) FROM {source} WHERE strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') <> dt::VARCHAR"
        self.assertEqual(self.one(wrong), ["0"])
        self.assertEqual(self.one(f"SELECT any_value(typeof(scanned_at)) FROM {source}"), ["TIMESTAMP WITH TIME ZONE"])

    @unittest.skipUnless((ENGINES / "node_modules" / "chdb").is_dir(), "ClickHouse is not installed: npm install --no-save chdb in tests/engines")
    def test_clickhouse_reads_the_same_layout(self):
        days = "SELECT {} AS day, count(*) FROM {}('facts/*/*.parquet') GROUP BY day ORDER BY day"
        reader = Node("clickhouse", "parquet")
        (reader.folder / "facts").symlink_to(self.duckdb.folder / "facts")
        theirs = reader.ask({"days": days.format("toString(dt)", "file") + " SETTINGS use_hive_partitioning = 1"})["days"]
        ours = self.duckdb.ask({"days": days.format("dt::VARCHAR", "read_parquet")})["days"]
        self.assertEqual([[plain(value) for value in row] for row in theirs], [[plain(value) for value in row] for row in ours])

    def test_the_rows_of_a_file_are_in_order(self):
        rows, order = "read_parquet('facts/*/*.parquet', filename = true, file_row_number = true)", "kind, machine, scan_id, file_row_number"
        places = f"SELECT file_row_number AS place, row_number() OVER (PARTITION BY filename ORDER BY {order}) - 1 AS wanted FROM {rows}"
        self.assertEqual(self.one(f"SELECT count(*) FROM ({places}) WHERE place <> wanted"), ["0"])


if __name__ == "__main__":
    unittest.main()
