"""SQL queries over files, and rules that are such queries."""

import csv
import functools
import io
import json
import shutil
import sqlite3
import tempfile
import time
import unittest
import xml.etree.ElementTree
from pathlib import Path

import same_host
from inventories import FOLDER, ROOT, InventoryTestCase, inv, scan, SIMULATOR

STARTER = ROOT / "packaging" / "policies" / "starter.json"
VIEWS = ("systems", "network", "usb", "printers", "firewall", "firewall_rules", "security", "processes", "software", "disks", "volumes",
         "memory", "displays", "accounts")


@functools.lru_cache(maxsize=None)
def scanned(name):
    """The file of one of the simulator's machines, without the host's own secrets, which the commands would report."""
    return same_host.scan(SIMULATOR / "machines" / name)


class Query(InventoryTestCase):
    def setUp(self):
        self.files = [scanned("imac-10.6"), scanned("mac-pro-10.5")]

    def ask(self, sql, *files):
        return json.loads(self.check(0, "query", sql, "--format", "json", *(files or self.files)))

    def test_answers_about_all_files(self):
        self.assertEqual(self.ask("SELECT machine_name, serial, memory_mb FROM systems ORDER BY 1"),
                         [{"machine_name": "Render Node 1", "serial": "SIM0MACPRO5", "memory_mb": 6656},
                          {"machine_name": "Studio iMac", "serial": "SIM0IMAC106", "memory_mb": 4096}])

    def test_answers_as_a_table(self):
        self.assertEqual(self.check(0, "query", "SELECT serial, memory_mb FROM systems ORDER BY 1 DESC", *self.files),
                         "serial       memory_mb\nSIM0MACPRO5       6656\nSIM0IMAC106       4096\n")

    def test_answers_as_csv(self):
        text = inv("query", "SELECT 'a,\"b' AS odd, 1 AS one, NULL AS none", "-f", "csv", self.files[0]).stdout.decode()
        self.assertEqual(text, 'odd,one,none\r\n"a,""b",1,\r\n')
        self.assertEqual(list(csv.reader(io.StringIO(text)))[1], ['a,"b', "1", ""])

    def test_formulas_in_csv_are_disarmed_on_request(self):
        sql = "SELECT '=1+1' AS '@odd', '-x' AS word, -5 AS number, '-5' AS digits, char(13) || '=1' AS hidden, 'a=b' AS plain"
        answer = ["=1+1", "-x", "-5", "-5", "\r=1", "a=b"]
        for arguments, expected, heading in (([], answer, "@odd"), (["--csv-safe"], ["'=1+1", "'-x", "-5", "-5", "'\r=1", "a=b"], "'@odd")):
            text = inv("query", sql, "-f", "csv", *arguments, self.files[0]).stdout.decode()
            rows = list(csv.reader(io.StringIO(text, newline="")))
            self.assertEqual((rows[0][0], rows[1]), (heading, expected), text)
        (row,) = json.loads(self.check(0, "query", sql, "-f", "json", "--csv-safe", self.files[0]))
        self.assertEqual(row["@odd"], "=1+1")

    def test_what_a_value_could_do_to_a_terminal_is_shown_as_a_mark(self):
        self.assertEqual(self.check(0, "query", "SELECT char(27) || '[31m' AS x", self.files[0]), "x\n\ufffd[31m\n")

    def test_every_view_has_what_the_file_has(self):
        for view, path in (("network", "/Network/Adapters/*"), ("usb", "/Peripherals/USB/*"), ("printers", "/Peripherals/Printers/*"),
                           ("processes", "/Processes/*"), ("software", "/Software/*")):
            names = self.check(0, "get", self.files[0], path).splitlines()
            self.assertEqual(sorted(row["name"] for row in self.ask(f"SELECT name FROM {view}", self.files[0])), sorted(names), view)
        (firewall,) = self.ask("SELECT * FROM firewall", self.files[0])
        self.assertEqual((firewall["status"], firewall["stealth_mode"], firewall["logging"]), (1, 0, 1))
        self.assertEqual(len(self.ask("SELECT * FROM firewall_rules", self.files[0])), 6)
        (security,) = self.ask("SELECT * FROM security", self.files[0])
        self.assertIsNone(security["disk_encryption"])

    def test_a_database_has_the_same_views(self):
        path = FOLDER / "views.db"
        self.check(0, "load", path, *self.files)
        with sqlite3.connect(path) as database:
            for view in VIEWS:
                cursor = database.execute(f"SELECT * FROM {view} ORDER BY machine, timestamp, 4")
                names = [column[0] for column in cursor.description]
                rows = [dict(zip(names, row)) for row in cursor]
                self.assertEqual(sorted(map(str, rows)), sorted(map(str, self.ask(f"SELECT * FROM {view}"))), view)
        database.close()

    def test_versions_compare_as_versions(self):
        sql = "SELECT count(*) AS n FROM software WHERE name = 'Safari' AND version {} '5.{}' COLLATE version"
        version = self.ask("SELECT version FROM software WHERE name = 'Safari'", self.files[0])[0]["version"]
        self.assertEqual(version, "5.1")
        for operator, minor, count in (("<", "10", 1), (">", "10", 0), ("=", "1.0", 1)):
            self.assertEqual(self.ask(sql.format(operator, minor), self.files[0]), [{"n": count}])

    def test_only_reads(self):
        other = FOLDER / "other.db"
        for sql in (f"ATTACH '{other}' AS other", f"VACUUM INTO '{other}'", "DELETE FROM machines", "PRAGMA database_list"):
            self.assertEqual(self.check(2, "query", sql, self.files[0]), "")
            self.assertEqual(self.messages, "inv: query: only SELECT is allowed\n")
        self.assertFalse(other.exists())

    def test_gives_up_in_time(self):
        before = time.monotonic()
        self.check(2, "query", "--timeout", "1", "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n",
                   self.files[0])
        self.assertEqual(self.messages, "inv: query: it takes longer than 1 s\n")
        self.assertLess(time.monotonic() - before, 60)

    def test_folders_and_lists_are_files_too(self):
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        shutil.copy(self.files[0], folder / "imac.inv")
        (folder / "names").write_text(f"{self.files[1]}\n")
        sql = "SELECT serial FROM systems ORDER BY 1"
        self.assertEqual(self.check(0, "query", sql, folder, "--files-from", folder / "names"), self.check(0, "query", sql, *self.files))
        self.check(2, "query", sql)
        self.assertIn("FILE is required", self.messages)

    def test_a_file_that_cannot_be_read_leaves_the_others(self):
        self.assertIn("SIM0IMAC106", self.check(2, "query", "SELECT serial FROM systems", "missing.inv", self.files[0]))
        self.assertIn("inv: missing.inv: cannot be read: ", self.messages)


class Policy(InventoryTestCase):
    def setUp(self):
        self.file = scanned("imac-10.6")

    def policy(self, *rules):
        path = FOLDER / "rules.json"
        path.write_text(json.dumps({"rules": [dict(zip(("name", "severity", "message", "sql"), rule)) for rule in rules]}))
        return path

    def test_the_starter_set_finds_what_is_amiss(self):
        extended = scan(SIMULATOR / "machines" / "imac-10.6")
        verdicts = {verdict["rule"]: verdict for verdict in json.loads(self.check(1, "policy", STARTER, "-f", "json", extended))}
        self.assertEqual(list(verdicts), ["disk encryption", "firewall", "system release", "application versions", "disk space"])
        self.assertTrue(verdicts["firewall"]["kept"])
        self.assertEqual([breach["message"] for breach in verdicts["system release"]["breaches"]],
                         ["Studio iMac: Mac OS X v10.6 (Snow Leopard) gets no security updates any more"])
        self.assertIn("Studio iMac: Safari 5.1 is older than 17.0 (/Applications/Safari.app)",
                      [breach["message"] for breach in verdicts["application versions"]["breaches"]])

    def test_status_says_whether_a_rule_is_broken(self):
        kept = ("kept", "low", "never", "SELECT 1 WHERE 0")
        broken = ("broken", "high", "{machine_name} is here", "SELECT machine_name FROM systems")
        self.assertEqual(self.check(0, "policy", self.policy(kept), self.file), "Rule  Severity  Result\nkept  low       kept\n")
        self.assertEqual(self.check(1, "policy", self.policy(kept, broken), self.file),
                         "Rule    Severity  Result\nkept    low       kept\nbroken  high      Studio iMac is here\n")
        rules = self.policy(("wrong", "low", "m", "SELECT wrong"), broken)
        self.assertIn("wrong   low       no answer\n", self.check(2, "policy", rules, self.file))
        self.assertEqual(self.messages, f'inv: {rules}: rule "wrong": no such column: wrong\n')

    def test_folders_and_lists_are_files_too(self):
        folder = Path(tempfile.mkdtemp(dir=FOLDER))
        shutil.copy(self.file, folder / "imac.inv")
        rules = self.policy(("broken", "high", "{machine_name} is here", "SELECT machine_name FROM systems"))
        breach = self.check(1, "policy", rules, self.file)
        self.assertEqual(self.check(1, "policy", rules, folder), breach)
        self.assertEqual(self.check(1, "policy", rules, "-0", "--files-from", "-", input=bytes(self.file)), breach)

    def test_junit_is_xml(self):
        rules = self.policy(("kept", "low", "never", "SELECT 1 WHERE 0"), ("<broken>", "high", "\x1b & {machine_name}", "SELECT machine_name FROM systems"))
        suite = xml.etree.ElementTree.fromstring(self.check(1, "policy", rules, "--format=junit", self.file))
        self.assertEqual((suite.tag, suite.get("tests"), suite.get("failures"), suite.get("errors")), ("testsuite", "2", "1", "0"))
        self.assertEqual([case.get("name") for case in suite], ["kept", "<broken>"])
        self.assertEqual(suite[1][0].get("message"), "  & Studio iMac")

    def test_no_rule_is_kept_where_no_file_can_be_read(self):
        rules, folder = self.policy(("kept", "low", "x", "SELECT 1 WHERE 0")), Path(tempfile.mkdtemp(dir=FOLDER))
        for file in (FOLDER / "missing.inv", folder):
            for arguments in (["policy", rules], ["query", "SELECT count(*) FROM facts"]):
                self.assertEqual(self.check(2, *arguments, file), "")
                self.assertIn(f"inv: {file}: ", self.messages)

    def test_a_file_in_the_place_of_the_rules_is_named(self):
        self.assertEqual(self.check(2, "policy", self.file, STARTER), "")
        self.assertEqual(self.messages, f"inv: {self.file}: is named like a file to read; RULES comes before the files\n")

    def test_rules_that_cannot_be_read_end_with_2(self):
        wrong = FOLDER / "wrong.json"
        wrong.write_text("{")
        for path, message in ((wrong, "is not JSON: "), (FOLDER / "missing.json", "cannot be read: "), (self.policy(), 'needs a list of "rules"')):
            self.assertEqual(self.check(2, "policy", path, self.file), "")
            self.assertTrue(self.messages.startswith(f"inv: {path}: {message}"), self.messages)


if __name__ == "__main__":
    unittest.main()
