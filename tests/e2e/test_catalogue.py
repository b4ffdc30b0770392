#!/usr/bin/env python3
"""The catalogue of facts has every path and annotation that the simulated Macs yield, with its kind, and no other."""

import re
import sys
import unittest

from scans import MACHINES, ROOT, SIMULATOR, ScanTestCase

sys.path.insert(0, str(ROOT / "inv/facts"))

import catalogue  # noqa: E402

# What a value of each kind looks like in the file; for a compound, the value of its element.
VALUES = {
    "text": r".*",
    "integer": r"-?(0|[1-9]\d*)",
    "decimal": r"-?\d+\.\d\d",
    "yes/no": r"[01]",
    "element": r"",
    "element, text": r".*",
    "compound": r"",
    "compound, text": r".+",
}

# No test has time for this: a tool is given up after half an hour of silence.
UNSEEN = {("attribute", "/Scan/Command:N/silent", None)}


class Row:
    """A fact of the catalogue, and what it promises about a tree."""

    def __init__(self, fact):
        self.path = fact.path
        self.kind = fact.kind
        self.keys = re.findall(r"(?:^|; )`([^`]+)`", fact.fields.get("annotations", ""))

    def facts(self):
        """(what, path, annotation or None, kind of its value) of all that must be found."""
        if self.kind.startswith("compound"):
            yield from self.facts_of("attribute", "element", [key for key in self.keys if key == "complex"])
            yield from self.facts_of("element", self.kind, [key for key in self.keys if key != "complex"])
        else:
            yield from self.facts_of("element" if self.kind.startswith("element") else "attribute", self.kind, self.keys)

    def facts_of(self, what, kind, keys):
        yield what, self.path, None, kind
        yield from ((what, self.path, key, "text") for key in keys)


def read_rows():
    """The rows of each tree, by the tree's name."""
    rows = {"Snapshot": [], "AssetInfo": []}
    for fact in catalogue.Catalogue(catalogue.CATALOGUE.read_text(encoding="utf-8")).facts:
        rows[fact.tree].append(Row(fact))
    return rows


def general_name(name):
    """ "Soft:17" is "Soft:N"."""
    if name == "os:1":
        return name
    for prefix in ("usr-acc:", "env-var:"):
        if name.startswith(prefix):
            return prefix + "NAME"
    return re.sub(r":\d+$", ":N", name)


def facts_in(tag, path=""):
    """(what, path, annotation or None, value) of everything in a tree."""
    yield "element", path or "/", None, tag.value
    yield from (("element", path or "/", key, text) for key, text in tag.annotations)
    for attribute in tag.attributes:
        name = f"{path}/{general_name(attribute.name)}"
        yield "attribute", name, None, attribute.value
        yield from (("attribute", name, key, text) for key, text in attribute.annotations)
    for child in tag.children:
        yield from facts_in(child, f"{path}/{general_name(child.name)}")


class CatalogueOfFacts(ScanTestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.rows = read_rows()

    def collect(self):
        """All values of every fact, by the tree's name."""
        found = {"Snapshot": {}, "AssetInfo": {}}
        machines = sorted(folder for folder in MACHINES.iterdir() if folder.is_dir())
        scans = [*((machine, "/extended") for machine in machines), (machines[0], "/extended", "/without:values"), (machines[0], "/debug")]
        for container in [*(self.scan_silently(*scan) for scan in scans), self.scan_with_odd_tools(machines[0])]:
            for top in filter(None, (container.snapshot, container.asset_info)):
                for *fact, value in facts_in(top):
                    found[top.name].setdefault(tuple(fact), set()).add(value)
        return found

    def scan_with_odd_tools(self, machine):
        """A scan whose record has what only misbehaving tools cause."""
        self.write_tool("sysctl", "kill -9 $$\n")
        self.write_tool("fdesetup", "echo must be run as root; exit 1\n")
        self.write_tool("csrutil", "exec yes\n")
        damaged = 'exec sed "s/<string>/&\\xff/" "$VELKARO_MACHINE/profiler/$4.plist"'
        usual = f'exec {SIMULATOR}/bin/system_profiler "$@"'
        self.write_tool("system_profiler", f"[ $4 != SPAudioDataType ] || {damaged}\n{usual}\n")
        return self.scan_silently(machine, "/extended")

    def test_names_what_the_machines_yield_and_nothing_else(self):
        found = self.collect()
        for tree, rows in self.rows.items():
            listed = {(what, path, key): kind for row in rows for what, path, key, kind in row.facts()}
            with self.subTest(tree=tree, problem="not in the catalogue"):
                self.assertEqual(sorted(map(str, set(found[tree]) - set(listed))), [])
            with self.subTest(tree=tree, problem="in the catalogue, but made by no machine"):
                self.assertEqual(sorted(map(str, set(listed) - set(found[tree]) - UNSEEN)), [])
            for fact in set(listed) & set(found[tree]):
                with self.subTest(tree=tree, fact=fact, kind=listed[fact]):
                    self.check_values(found[tree][fact], listed[fact])

    def check_values(self, values, kind):
        self.assertEqual([value for value in values if not re.fullmatch(VALUES[kind], value, re.S)], [])
        if kind in ("element, text", "compound, text"):
            self.assertNotEqual(values, {""})

    def test_both_trees_have_rows_of_known_kinds(self):
        for rows in self.rows.values():
            self.assertGreater(len(rows), 40)
        self.assertEqual(set(catalogue.KINDS), set(VALUES))


if __name__ == "__main__":
    unittest.main()
