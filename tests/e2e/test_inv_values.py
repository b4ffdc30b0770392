"""Every way out of a file gives the values that the independent decoder finds in it."""

import csv
import datetime
import hashlib
import io
import json
import os
import re
import time
import unittest
import unittest.mock

import inv_decoder
from inventories import MACHINES, SIMULATOR, InventoryTestCase, debug_scanned, facts, inv, scan, scanned

COLUMNS = ["machine", "path", "name", "value", "unit", "base_value", "scan_id", "scanned_at", "section", "kind", "element", "number"]


def batches(items, size):
    return [items[i : i + size] for i in range(0, len(items), size)]


def on_each_machine(test):
    """Runs a test with the path of a scan and the facts in it, machine by machine."""

    def run(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                path = scanned(machine.name)
                found = facts(path)
                self.assertGreater(len(found), 100)
                test(self, path, found)

    return run


class Values(InventoryTestCase):
    @on_each_machine
    def test_zxml_is_the_decoders_text(self, path, _):
        texts = b"".join(section.text for section in inv_decoder.read_file(path).sections)
        self.assertEqual(inv("export", "--format", "zxml", path).stdout, texts)

    @on_each_machine
    def test_get_prints_every_fact(self, path, found):
        for batch in batches([fact for fact in found if "*" not in fact[0]], 200):
            output = self.check(0, "get", path, *(fact[0] for fact in batch))
            self.assertEqual(output, "".join(f"{fact[2]}\n" for fact in batch))

    @on_each_machine
    def test_csv_holds_every_fact(self, path, found):
        rows = list(csv.reader(io.StringIO(self.check(0, "export", "-f", "csv", path), newline="")))
        self.assertEqual(rows[0], COLUMNS)
        self.assert_rows(path, [[cell or None if name in ("scanned_at", "number") else cell for name, cell in zip(COLUMNS, row)] for row in rows[1:]],
                         found)

    @on_each_machine
    def test_ndjson_holds_every_fact(self, path, found):
        lines = self.check(0, "export", "-f", "ndjson", path).split("\n")
        self.assertEqual(lines.pop(), "")
        rows = [list(json.loads(line, parse_int=str, parse_float=str).values()) for line in lines]
        self.assertEqual(list(json.loads(lines[0])), COLUMNS)
        self.assert_rows(path, rows, found)

    def assert_rows(self, path, rows, found):
        (machine,) = {row[0] for row in rows}
        self.assertRegex(machine, "^SIM0")
        self.assertEqual([tuple(row[1:4]) for row in rows], [fact[:3] for fact in found])
        self.assertEqual([row[5] for row in rows], [fact[4] for fact in found])
        for row, fact in zip(rows, found):
            if fact[3]:
                self.assertEqual(row[4], fact[3])
            self.assertEqual(row[9], re.sub(":[^/]*", "", row[1]))
            self.assertEqual(row[10], "/".join(re.findall(":([^/]*)", row[1])))
            is_number = re.fullmatch(r"-?(0|[1-9]\d*)(\.\d+)?", row[3]) and sum(map(str.isdigit, row[3])) <= 15
            self.assertEqual(row[11], row[3] if is_number else None)
        self.assertEqual({row[6] for row in rows}, {hashlib.sha256(path.read_bytes()).hexdigest()})
        (scanned_at,) = {row[7] for row in rows}
        seconds = time.time() - datetime.datetime.strptime(scanned_at, "%Y-%m-%dT%H:%M:%S%z").timestamp()
        self.assertTrue(0 <= seconds < 3600, scanned_at)
        sections = ["asset" if row[1].startswith("AssetInfo") else "snapshot" for row in rows]
        self.assertEqual([row[8] for row in rows], sections)

    def test_the_time_is_utc_in_every_zone_and_calendar(self):
        machine = SIMULATOR / "machines" / "macbook-pro-26"
        for zone, locale in (("Asia/Tokyo", "C"), ("America/St_Johns", "C"), ("Asia/Bangkok", "th_TH.UTF-8"), ("Asia/Kolkata", "fa_IR.UTF-8"),
                             ("Asia/Riyadh", "ar_SA.UTF-8")):
            with self.subTest(zone=zone, locale=locale), unittest.mock.patch.dict(os.environ, TZ=zone, LC_ALL=locale):
                for arguments in ((), ("/extended",)):
                    path = scan(machine, *arguments)
                    after = time.time()
                    row = json.loads(self.check(0, "export", "-f", "ndjson", path).partition("\n")[0])
                    moment = datetime.datetime.strptime(row["scanned_at"], "%Y-%m-%dT%H:%M:%S%z").timestamp()
                    self.assertTrue(-1 <= after - moment < 120, row)

    def test_a_debug_file_and_a_scan_are_of_one_machine(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                machines = {json.loads(line)["machine"] for path in (scanned(machine.name), debug_scanned(machine.name))
                            for line in self.check(0, "export", "-f", "ndjson", path).splitlines()}
                self.assertEqual(len(machines), 1)

    @on_each_machine
    def test_json_holds_every_tag_attribute_and_annotation(self, path, _):
        def annotations(item):
            return [(annotation["key"], annotation["text"]) for annotation in item.get("annotations", [])]

        def compare(element, tag):
            self.assertEqual((element["name"], element["value"]), (tag.name, tag.value))
            self.assertEqual(annotations(element), tag.annotations)
            self.assertEqual(
                [(item["name"], item["value"], annotations(item)) for item in element["attributes"]],
                [(item.name, item.value, item.annotations) for item in tag.attributes],
            )
            self.assertEqual(len(element["children"]), len(tag.children))
            for below, child in zip(element["children"], tag.children):
                compare(below, child)

        (machine,) = json.loads(self.check(0, "export", "--format", "json", path))
        self.assertEqual(machine["schema"], "velkaro-inventory/1")
        tops = [section.tree.top for section in inv_decoder.read_file(path).sections]
        self.assertEqual(machine["timestamp"], tops[0].attribute("timestamp").value)
        self.assertEqual(len(machine["trees"]), len(tops))
        for tree, top in zip(machine["trees"], tops):
            compare(tree, top)

    @on_each_machine
    def test_show_names_every_tag_by_its_path(self, path, _):
        def paths(tag, path):
            yield path
            for child in tag.children:
                yield from paths(child, f"{path}/{child.name}")

        snapshot = inv_decoder.read_file(path).snapshot
        shown = [line.strip() for line in self.check(0, "show", path, "--section", "snapshot").splitlines()]
        listed = [line.split("  ")[0] for line in shown if line.startswith("/")]
        self.assertEqual(listed, ["/", *list(paths(snapshot, ""))[1:]])

    @on_each_machine
    def test_every_file_is_valid(self, path, _):
        self.assertEqual(self.check(0, "verify", path), f"{path}: valid\n")


if __name__ == "__main__":
    unittest.main()
