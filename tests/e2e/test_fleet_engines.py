"""One fleet, twelve questions, the same answers: SQLite, DuckDB, PostgreSQL and ClickHouse load what `inv export` writes of the
500 files of a fleet, by the shipped files, and are asked by the shipped files. Then DuckDB writes them as Parquet and reads them back."""

import contextlib
import csv
import functools
import io
import json
import os
import pwd
import re
import shutil
import sqlite3
import subprocess
import tempfile
import unittest
from datetime import datetime, timedelta, timezone
from pathlib import Path

from inventories import FOLDER, FULL_MACHINES, ROOT, SIMULATOR, InventoryTestCase, inv, scan, scanned

FLEET = ROOT / "fleet"
ENGINES = ROOT / "tests" / "engines"
QUESTIONS = sorted((FLEET / "questions").glob("*.sql"))
# The files are of January and of March up to the 21st.
NOW = datetime(2026, 3, 22, 12, tzinfo=timezone.utc)
SCANS = 500
EXTENDED = ("imac-10.6", "imac-11", "macbook-pro-26")
POSTGRESQL = sorted(Path("/usr/lib/postgresql").glob("*/bin"))


def rfc_3339(time):
    return time.strftime("%Y-%m-%dT%H:%M:%SZ")


class Scan:
    """What one scan says, so far as the questions ask."""

    KINDS = {"/System/Chassis/serial": "serial", "/System/Computer-system/uuid": "uuid", "/Security/Platform/filevault": "filevault",
             "/Software/Soft": "application", "/Software/Soft/version": "version", "/Software-details/Soft/source": "source",
             "/Software-details/Soft/signed-by": "signed_by", "/Storage/Logical-disks/partition/used%": "used",
             "/User-accounts/usr-acc/group": "group", "/User-accounts/usr-acc/id": "user_id"}

    def __init__(self, row):
        self.id, self.machine, self.time = row["scan_id"], row["machine"], row["scanned_at"]
        self.said = {name: {} for name in self.KINDS.values()}

    def add(self, row):
        if row["kind"] in self.KINDS:
            # The details of an application are a list of their own, in which it has the same number.
            self.said[self.KINDS[row["kind"]]][row["element"].replace("-details/", "/")] = row["value"]

    def one(self, name):
        return next(iter(self.said[name].values()), None)


class FleetOfScans:
    """Three scans each of 167 Macs, as tests/fleet/make_fleet varies those of the simulator, and the rows that `inv export` makes of them; read by this
    script alone, which finds the answers without SQL."""

    def __init__(self):
        self.files, self.csv = FOLDER / "fleet", FOLDER / "facts.csv"
        scans = [*map(scanned, FULL_MACHINES), *(scan(SIMULATOR / "machines" / machine, "/extended") for machine in EXTENDED)]
        subprocess.run([Path(os.environ["VELKARO_BUILD"]) / "tests" / "fleet" / "make_fleet", self.files, str(SCANS), *scans], check=True, timeout=300)
        inv("export", "--jobs", "2", "--format", "csv", "-o", self.csv, self.files).check_returncode()
        self.count, self.scans = 0, {}
        with self.csv.open(newline="", encoding="utf-8") as file:
            for row in csv.DictReader(file):
                self.count += 1
                self.scans.setdefault(row["scan_id"], Scan(row)).add(row)
        self.days = {scan.time[:10] for scan in self.scans.values()}
        self.latest = {}
        for found in sorted(self.scans.values(), key=lambda scan: (scan.time, scan.id)):
            self.latest[found.machine] = found

    def older(self, wanted):
        """Machine, application and version of what is older than wanted."""
        def key(version):
            return [int(number) for number in version.split(".")]
        for scan in self.latest.values():
            for element, name in scan.said["application"].items():
                version = scan.said["version"].get(element, "")
                if name in wanted and re.fullmatch(r"\d+(\.\d+)*", version) and key(version) < key(wanted[name]):
                    yield scan.machine, name, version

    def duplicates(self):
        uuids = {}
        for scan in self.scans.values():
            uuids.setdefault(scan.one("serial"), set()).add(scan.one("uuid"))
        return {serial for serial, found in uuids.items() if len(found) > 1}

    def in_latest(self, name, is_meant):
        """How many values of this name in the last scans are meant."""
        return sum(is_meant(value, scan, element) for scan in self.latest.values() for element, value in scan.said[name].items())


@functools.lru_cache(maxsize=None)
def fleet():
    return FleetOfScans()


def clock(engine):
    """The clock at the time of the fleet."""
    moments = [f"'{rfc_3339(NOW - timedelta(days=days))}' AS {name}" for days, name in ((7, "a_week_ago"), (30, "a_month_ago"))]
    create = "CREATE OR REPLACE VIEW" if engine != "sqlite" else "DROP VIEW clock; CREATE VIEW"
    return f"{create} clock AS SELECT {', '.join(moments)};"


@functools.lru_cache(maxsize=None)
def wanted():
    """A version of two applications that others have as well: between 9 and 11, where texts compare otherwise than versions."""
    versions = {}
    for scan in fleet().latest.values():
        for element, name in scan.said["application"].items():
            versions.setdefault(name, set()).add(scan.said["version"].get(element, ""))
    return {name: max(versions[name]).split(".")[0] + ".10" for name in ("Example Tool 100", "Example Tool 120")}


def insert_wanted():
    return f"INSERT INTO wanted VALUES {', '.join(str(pair) for pair in wanted().items())};"


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
        (self.folder / "facts.csv").symlink_to(fleet().csv)
        load = f"{self.name}/load.sql"
        self.run([*self.shipped(f"{self.name}/schema.sql", "views.sql", load, load), clock(self.name), insert_wanted()])

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
        self.assertEqual(reference()["counts"], [[str(fleet().count), str(SCANS)]])
        for name, rows in reference().items():
            self.assertTrue(rows, name)

    def test_the_answers_are_those_that_are_found_without_sql(self):
        answers, latest = reference(), fleet().latest.values()
        told = {scan.machine: {"0": "off", None: "unknown"}.get(scan.one("filevault")) for scan in latest}
        self.assertEqual({row[0]: row[2] for row in answers["01-without-encryption"]}, {machine: said for machine, said in told.items() if said})
        self.assertEqual(set(told.values()), {"off", "unknown", None})
        self.assertEqual(sorted(tuple(row[:3]) for row in answers["02-old-applications"]), sorted(fleet().older(wanted())))
        self.assertEqual(len(answers["03-full-disks"]), fleet().in_latest("used", lambda used, *_: float(used) > 90))
        self.assertEqual({change[1] for change in answers["04-changed-since-last-week"]}, {"added", "removed", "changed"})
        lost = {scan.machine for scan in latest if scan.time < rfc_3339(NOW - timedelta(days=30))}
        self.assertEqual({row[0] for row in answers["05-not-seen"]}, lost)
        self.assertTrue(0 < len(lost) < len(latest))
        administrators = fleet().in_latest("group", lambda group, scan, element: group in ("80", "0") or scan.said["user_id"].get(element) == "0")
        self.assertEqual(len(answers["09-administrators"]), administrators)
        unsigned = fleet().in_latest("source", lambda source, scan, element: source != "apple" and not scan.said["signed_by"].get(element))
        self.assertEqual(len(answers["10-unsigned-applications"]), unsigned)
        self.assertEqual(sum(int(row[1]) for row in answers["11-systems-by-release"]), len(latest))
        self.assertEqual({row[0] for row in answers["12-duplicate-serials"]}, fleet().duplicates())

    def test_the_database_of_inv_holds_the_same_rows(self):
        database = FOLDER / "inv.db"
        inv("load", "--jobs", "2", database, fleet().files).check_returncode()
        reference()
        with contextlib.closing(sqlite3.connect(database)) as connection:
            connection.execute("ATTACH ? AS fleet", (str(FOLDER / "sqlite-asked" / "fleet.db"),))
            ours = "SELECT scan_id, kind, path, value, unit FROM main.facts JOIN main.machines ON id = machine_id"
            theirs = "SELECT scan_id, kind, path, value, unit FROM fleet.facts"
            self.assertEqual(connection.execute(f"SELECT count(*) FROM ({ours})").fetchone(), (fleet().count,))
            self.assertEqual(connection.execute(f"SELECT count(*) FROM ({ours} EXCEPT {theirs})").fetchone(), (0,))

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
        days = fleet().days
        files = sorted(path.relative_to(self.duckdb.folder / "facts").as_posix() for path in (self.duckdb.folder / "facts").rglob("*.parquet"))
        self.assertEqual(files, sorted(f"dt={day}/part-0.parquet" for day in days))

    def test_what_is_read_back_is_what_was_loaded(self):
        columns = "kind, scan_id, element, path, name, value, number, unit, base_value"
        there, back = f"SELECT {columns} FROM facts", f"SELECT {columns} FROM read_parquet('facts/*/*.parquet', hive_partitioning = true)"
        self.assertEqual(self.one(f"SELECT count(*) FROM ({back})"), [str(fleet().count)])
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
        """But that DuckDB may write the first rows of a day, fewer than one of its vectors has, behind the others."""
        row, before = "(kind, machine, scan_id)", "lag((kind, machine, scan_id)) OVER (PARTITION BY filename ORDER BY file_row_number)"
        rows = (f"SELECT filename, file_row_number AS place, count(*) OVER (PARTITION BY filename) AS size, {row} < {before} AS is_back"
                " FROM read_parquet('facts/*/*.parquet', filename = true, file_row_number = true)")
        self.assertEqual(self.duckdb.ask({"": f"SELECT filename FROM ({rows}) WHERE is_back AND size - place >= 2048"}), {"": []})
        self.assertEqual(self.duckdb.ask({"": f"SELECT filename FROM ({rows}) WHERE is_back GROUP BY filename HAVING count(*) > 1"}), {"": []})



if __name__ == "__main__":
    unittest.main()
