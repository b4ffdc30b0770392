#!/usr/bin/env python3
"""The catalogue of facts: what its generator makes from it, and how it reports mistakes. The page is up to date."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
GENERATOR = ROOT / "inv/facts/catalogue.py"
sys.path.insert(0, str(GENERATOR.parent))

import catalogue  # noqa: E402

SMALL = """\
# A comment.
= Snapshot

== Software

From SPApplicationsDataType.

/ | element | nobody
/Software | element | nobody
/Software/Soft:N | element, text | nobody
  source: `_name`
  known by: location, own value
/Software/Soft:N/location | text | person, path
/Software/Soft:N/size | integer | nobody | passing
  unit: MB
  form: cut off
  present: given

[report Applications: /Software/Soft:N]
  Name: own value
  Size, MB: size
  Location: location as number

[table software: /Software/Soft:N] an application
  name: own value | what it is called
  number: its number as integer | its number
  size_bytes: size as bytes | its size, in bytes
  size: size | its size, in MB

[view software: /Software/Soft:N]
  name: own value
  size_mb: size
"""


def line_of(text):
    """The number of the line of SMALL that begins so."""
    return 1 + next(i for i, line in enumerate(SMALL.splitlines()) if line.startswith(text))


class Page(unittest.TestCase):
    def test_is_the_one_that_the_catalogue_makes(self):
        made = catalogue.write_page(catalogue.Catalogue(catalogue.CATALOGUE.read_text(encoding="utf-8")))
        page = (ROOT / "docs/snapshot.md").read_text(encoding="utf-8")
        self.assertTrue(page == made, "run: inv/facts/catalogue.py page -o docs/snapshot.md")

    def test_shows_texts_and_tables_without_empty_columns(self):
        page = catalogue.write_page(catalogue.Catalogue(SMALL))
        self.assertEqual(
            page.split("\n\n", 1)[1],
            "# Snapshot\n\n## Software\n\nFrom SPApplicationsDataType.\n\n"
            "| Path | Kind | Whose | Unit | Source | Present | Known by | Passing |\n"
            "|---|---|---|---|---|---|---|---|\n"
            "| `/` | element | | | | | | |\n"
            "| `/Software` | element | | | | | | |\n"
            "| `/Software/Soft:N` | element, text | | | `_name` | | `location`, own value | |\n"
            "| `/Software/Soft:N/location` | text | person | | | | | |\n"
            "| `/Software/Soft:N/size` | integer | | MB, cut off | | given | | yes |\n",
        )

    def test_shows_the_first_system_that_has_a_fact(self):
        text = "= Snapshot\n/ | element | nobody\n/a | text | nobody\n  present: given\n  since: 12 on Apple silicon\n"
        self.assertIn("| Path | Kind | Present | Since |", catalogue.write_page(catalogue.Catalogue(text)))
        self.assertIn("| `/a` | text | given | 12 on Apple silicon |", catalogue.write_page(catalogue.Catalogue(text)))

    def test_every_fact_of_the_profiler_in_a_part_of_the_extended_scan_may_say_since_when(self):
        facts = catalogue.Catalogue(catalogue.CATALOGUE.read_text(encoding="utf-8")).facts
        since = {fact.path: fact.fields["since"] for fact in facts if "since" in fact.fields}
        self.assertEqual(since["/Platform/performance-cores"], "12 on Apple silicon")
        self.assertEqual(since["/Security/Platform/mdm-enrolled"], "10.13.4")
        self.assertEqual(since["/Peripherals/USB/Device:N/link-speed"], "26")
        self.assertEqual([path for path in since if path.startswith(("/Scan", "/Software/", "/OS"))], [])

    def test_keeps_bars_within_their_cells(self):
        page = catalogue.write_page(catalogue.Catalogue("= Snapshot\n/ | element | nobody\n  source: a|b\n"))
        self.assertIn("| a\\|b |", page)

    def test_shows_that_all_below_a_passing_element_passes(self):
        text = "= Snapshot\n/ | element | nobody\n/P | element | nobody | passing\n/P/p:N | text | nobody\n"
        self.assertIn("| `/P/p:N` | text | yes |", catalogue.write_page(catalogue.Catalogue(text)))


class Code(unittest.TestCase):
    def test_has_the_facts_level_by_level_with_those_below_each_sorted(self):
        made = catalogue.write_facts(catalogue.Catalogue(SMALL))
        self.assertIn('kKnownBy[] = {"location", ""};', made)
        self.assertIn(
            '    {"", "", {}, false, {}, {kCatalogue + 1, kCatalogue + 2}, {}},  // the trees\n'
            '    {"Snapshot", "", {}, false, {}, {kCatalogue + 2, kCatalogue + 3}, {"", false, "", false, {}, "", "", nullptr}},  // Snapshot\n'
            '    {"Software", "", {}, false, {}, {kCatalogue + 3, kCatalogue + 4}, {"", false, "", false, {}, "", "", nullptr}},  // Snapshot/Software\n'
            '    {"Soft", "", {}, false, {kKnownBy + 0, kKnownBy + 2}, {kCatalogue + 4, kCatalogue + 6}, {"", false, "", false, {}, "", "", nullptr}},  // Snapshot/Software/Soft\n'
            '    {"size", "MB", {}, true, {}, {}, {"", false, "", false, {}, "", "", nullptr}},  // Snapshot/Software/Soft/size\n'
            '    {"location", "", {}, false, {}, {}, {"", false, "", false, {}, "", "", nullptr}},  // Snapshot/Software/Soft/location\n',
            made,
        )
        self.assertIn("kCatalogueDepth = 2;", made)

    def test_identifies_details_by_their_element(self):
        text = SMALL.replace("[report", "/More | element | nobody\n/More/Soft:N | element | nobody\n  known by: /Software/Soft:N\n\n[report")
        self.assertIn('kKnownBy[] = {"/Software/Soft:N", "location", ""};', catalogue.write_facts(catalogue.Catalogue(text)))
        with self.assertRaises(catalogue.Mistake):
            catalogue.Catalogue(text.replace("known by: /Software/Soft:N", "known by: /Software/Hard:N"))

    def test_has_the_descriptions_for_people(self):
        text = """\
= Snapshot
/ | element | nobody
/a | text | nobody
  follows: /D
/D | element | nobody
/D/d:N | element, text | nobody
  called: Disk, replaceable
  described as: {own value}, no. {its number} ({serial})
  there when: used
/D/d:N/serial | text | nobody
  word: number
/D/d:N/used | yes/no | nobody
  follows: serial
"""
        made = catalogue.write_facts(catalogue.Catalogue(text))
        self.assertIn('kDescriptionParts[] = {\n    {"", "", ","},\n    {" no. ", "its number", ""},\n    {" (", "serial", ")"},\n};', made)
        self.assertIn('{"", false, "Disk", true, {kDescriptionParts + 0, kDescriptionParts + 3}, "used", "", nullptr}},  // Snapshot/D/d\n', made)
        self.assertIn('{"number", false, "", false, {}, "", "", nullptr}},  // Snapshot/D/d/serial\n', made)
        self.assertIn('{"", true, "", false, {}, "", "serial", nullptr}},  // Snapshot/D/d/used\n', made)
        self.assertIn('{"", false, "", false, {}, "", "", kCatalogue + 2}},  // Snapshot/a\n', made)
        self.assertIn('    {"D", ', made.split("\n")[made.split("\n").index("const CatalogueFact kCatalogue[] = {") + 3])

    def test_has_the_identifiers(self):
        text = "= Snapshot\n/ | element | nobody\n/a | text | machine\n/b | text | person, account-id\n/c | text | secret\n"
        made = catalogue.write_facts(catalogue.Catalogue(text))
        self.assertIn('{"a", "", IdentifierKind::text,', made)
        self.assertIn('{"b", "", IdentifierKind::account_id,', made)
        self.assertIn('{"c", "", IdentifierKind::secret,', made)

    def test_has_the_tables_of_the_report(self):
        made = catalogue.write_reports(catalogue.Catalogue(SMALL))
        self.assertIn('{"Applications",\n       "Software/Soft:*",\n       {{"Name", "", ColumnForm::text},', made)
        self.assertIn('{"Size, MB", "size", ColumnForm::number}', made)
        self.assertIn('{"Location", "location", ColumnForm::number}', made)
        self.assertNotIn("size_mb", made)

    def test_has_the_views(self):
        made = catalogue.write_views(catalogue.Catalogue(SMALL))
        self.assertIn("CREATE VIEW software AS\n", made)
        self.assertIn("  max(CASE f.name WHEN 'size' THEN CAST(f.value AS INTEGER) END) AS size_mb\nFROM", made)
        self.assertIn("WHERE f.path GLOB '/Software/Soft:*'\nGROUP BY", made)
        self.assertNotIn("Applications", made)

    def test_views_have_the_keys_of_versions(self):
        text = SMALL.replace("/Software/Soft:N/size | integer", "/Software/Soft:N/fix-version | text | nobody\n/Software/Soft:N/size | integer")
        text = text.replace("  size_mb: size\n", "  size_mb: size\n  fix_key: key of fix-version\n", 1)
        made = catalogue.write_views(catalogue.Catalogue(text))
        self.assertIn("  max(CASE f.name WHEN 'fix-version' THEN (SELECT k.version_key FROM version_keys k WHERE k.version = f.value) END) AS fix_key\n", made)
        self.assertIn("DROP VIEW IF EXISTS software;\n", made)

    def test_shows_an_element_that_is_alone_as_a_row(self):
        text = SMALL.replace("/Software/Soft:N | ", "/Software/kind | text | nobody\n/Software/Soft:N | ")
        text += "\n[view folders: /Software]\n  kind: kind\n"
        self.assertIn("AS kind\nFROM facts f JOIN machines m ON m.id = f.machine_id\nWHERE f.path GLOB '/Software/*'\n",
                      catalogue.write_views(catalogue.Catalogue(text)))

    def test_takes_values_from_elements_beside_the_rows(self):
        text = SMALL.replace("[report", "/More | element | nobody\n/More/Soft:N | element | nobody\n/More/Soft:N/kind | text | nobody\n\n[report")
        for source, element in (("/More/Soft:N/kind", "'/More/Soft:' || replace(f.element, '/Software/Soft:', '')"),
                                ("/More/*/kind", "'/More/' || replace(f.element, '/Software/', '')")):
            made = catalogue.write_views(catalogue.Catalogue(text + f"  kind: {source}\n"))
            self.assertIn(f"(SELECT d.value FROM facts d\n   WHERE d.path = {element} || '/kind' AND d.machine_id = f.machine_id) AS kind", made)

    def test_takes_the_first_source_that_has_a_value(self):
        text = SMALL.replace("  Size, MB: size", "  Size, MB: size or own value").replace("  size_mb: size", "  size_mb: size or location as text")
        self.assertIn('{"Size, MB", "size or ", ColumnForm::text}', catalogue.write_reports(catalogue.Catalogue(text)))
        self.assertIn("coalesce(max(CASE f.name WHEN 'size' THEN f.value END), max(CASE f.name WHEN 'location' THEN f.value END)) AS size_mb",
                      catalogue.write_views(catalogue.Catalogue(text)))

    def test_has_the_typed_tables(self):
        made = catalogue.write_tables(catalogue.Catalogue(SMALL))
        self.assertIn('{"software",\n       "an application",\n       {"Software/Soft:*"},\n', made)
        self.assertIn('{{"name", CellForm::text, "", "/Software/Soft:N", "what it is called"},\n', made)
        self.assertIn('{"number", CellForm::integer, "its number", "", "its number"},\n', made)
        self.assertIn('{"size_bytes", CellForm::bytes, "size", "/Software/Soft:N/size", "its size, in bytes"},\n', made)
        self.assertIn('{"size", CellForm::integer, "size", "/Software/Soft:N/size", "its size, in MB"}}},\n', made)
        self.assertNotIn("Applications", made)

    def test_a_typed_table_takes_rows_of_several_lists(self):
        text = SMALL.replace("[report", "/More | element | nobody\n/More/Soft:N | element, text | nobody\n/More/Soft:N/old | yes/no | nobody\n\n[report")
        text = text.replace("[table software: /Software/Soft:N]", "[table software: /Software/Soft:N or /More/Soft:N]").replace(
            "  size: size | its size, in MB", "  old: /More/Soft:N/old | whether it is\n  more: /More/Soft:N or own value | more")
        made = catalogue.write_tables(catalogue.Catalogue(text))
        self.assertIn('{"Software/Soft:*", "More/Soft:*"}', made)
        self.assertIn('{"old", CellForm::yes_no, "/More/Soft:N/old", "/More/Soft:N/old", "whether it is"}', made)
        self.assertIn('{"more", CellForm::text, "/More/Soft:N or ", "/More/Soft:N or /Software/Soft:N or /More/Soft:N", "more"}', made)

    def test_a_table_of_whole_scans_has_paths_from_the_top(self):
        text = SMALL + "\n[table machines: /] a scan\n  size: Software/Soft:1/size | of the first\n"
        made = catalogue.write_tables(catalogue.Catalogue(text))
        self.assertIn('{"size", CellForm::integer, "Software/Soft:1/size", "/Software/Soft:1/size", "of the first"}', made)

    def test_keeps_what_is_below_the_rows_out_of_a_view(self):
        text = SMALL.replace("/Software/Soft:N/size | integer", "/Software/Soft:N/x | element | nobody\n/Software/Soft:N/size | integer")
        made = catalogue.write_views(catalogue.Catalogue(text))
        self.assertIn("WHERE f.path GLOB '/Software/Soft:*' AND f.element NOT GLOB '/Software/Soft:*/*'\n", made)


class Mistakes(unittest.TestCase):
    def expect(self, line, problem, old, new):
        """SMALL with `new` instead of `old` is wrong in this line."""
        self.assertIn(old, SMALL)
        with self.assertRaises(catalogue.Mistake) as raised:
            catalogue.Catalogue(SMALL.replace(old, new, 1))
        self.assertEqual(str(raised.exception), f"{line}: error: {problem}")

    def test_a_fact_says_whose_it_is(self):
        line = line_of("/Software/Soft:N/location")
        problem = "/Software/Soft:N/location does not say whose it is: nobody, machine, person, secret"
        self.expect(line, problem, "location | text | person, path", "location | text")
        self.expect(line, problem, "location | text | person, path", "location | text |")

    def test_owners_are_known(self):
        line = line_of("/Software/Soft:N/location")
        problem = '/Software/Soft:N/location: "Jane" owns nothing; whose it is must be one of: nobody, machine, person, secret'
        self.expect(line, problem, "person, path", "Jane")

    def test_identifiers_are_known(self):
        line = line_of("/Software/Soft:N/location")
        kinds = "text, serial, number, account, account-id, addresses, uri, full-name, network-name, path"
        self.expect(line, f'/Software/Soft:N/location: "folder" is not one of: {kinds}', "person, path", "person, folder")
        self.expect(line, '/Software/Soft:N/location: what is nobody\'s needs no "path"', "person, path", "nobody, path")

    def test_kinds_are_known(self):
        kinds = "text; integer; decimal; yes/no; element; element, text; compound; compound, text"
        problem = f"/Software/Soft:N/size: the kind must be one of: {kinds}"
        self.expect(line_of("/Software/Soft:N/size"), problem, "size | integer", "size | number")
        self.expect(line_of("/Software/Soft:N/size"), problem, "size | integer | nobody | passing", "size")

    def test_nothing_but_passing_follows_the_owner(self):
        problem = '/Software/Soft:N/size: only "passing" may follow whose it is'
        self.expect(line_of("/Software/Soft:N/size"), problem, "| passing", "| passes")
        self.expect(line_of("/Software/Soft:N/size"), problem, "| passing", "| passing | passing")

    def test_first_systems_are_known(self):
        for since in ("10", "10.x", "16", "macOS 12", "12 on Intel", "30"):
            self.expect(line_of("/Software/Soft:N/size"), f'/Software/Soft:N/size: "{since}" is no system', "form: cut off", f"since: {since}")

    def test_columns_are_known(self):
        known = "annotations, unit, form, source, present, since, debug run, known by, word, called, described as, there when, follows"
        problem = f'/Software/Soft:N/size: unknown column "units"; known are: {known}'
        self.expect(line_of("  unit"), problem, "  unit: MB", "  units: MB")

    def test_a_field_has_a_name(self):
        self.expect(line_of("  unit"), "not NAME: TEXT: MB", "  unit: MB", "  MB")

    def test_a_field_is_listed_once(self):
        self.expect(line_of("  form"), '/Software/Soft:N/size: "unit" is there twice', "  form: cut off", "  unit: MB")

    def test_units_are_known(self):
        problem = '/Software/Soft:N/size: unknown unit "mb"; known are: KB, MB, GB, kHz, Hz, MHz, ms, min, cm, in, mA, %'
        self.expect(line_of("/Software/Soft:N/size"), problem, "unit: MB", "unit: mb")

    def test_a_fact_is_listed_once(self):
        line = line_of("/Software/Soft:N/size")
        problem = f"/Software/Soft:NAME/location is there already, in line {line - 1}"
        self.expect(line, problem, "/Software/Soft:N/size", "/Software/Soft:NAME/location")

    def test_facts_follow_their_element(self):
        line = line_of("/Software/Soft:N/size")
        self.expect(line, "/Soft/size: the element above it must come first", "/Software/Soft:N/size", "/Soft/size")
        problem = "/Software/Soft:N/location/size: the element above it must come first"
        self.expect(line, problem, "/Software/Soft:N/size", "/Software/Soft:N/location/size")

    def test_facts_belong_to_a_tree(self):
        self.expect(line_of("/ |"), "/ stands below no tree", "= Snapshot", "No tree")

    def test_elements_are_known_by_what_they_have(self):
        line = line_of("/Software/Soft:N |")
        problem = '/Software/Soft:N cannot be known by "{}", which it does not have'
        self.expect(line, problem.format("place"), "known by: location", "known by: place")
        self.expect(line, problem.format("own value"), "| element, text", "| element")

    def test_attributes_are_known_by_nothing(self):
        line = line_of("/Software/Soft:N/size")
        self.expect(line, '/Software/Soft:N/size cannot be known by "own value", which it does not have', "unit: MB", "known by: own value")

    def test_descriptions_use_existing_attributes(self):
        line = line_of("/Software/Soft:N |")
        called = "known by: location, own value\n  called: Application\n  {}"
        problem = '/Software/Soft:N cannot be described by "place", which it does not have'
        self.expect(line, problem, "known by: location, own value", called.format("described as: {own value} ({place})"))
        self.expect(line, problem, "known by: location, own value", called.format("there when: place"))

    def test_followed_facts_exist_and_form_no_cycle(self):
        line = line_of("/Software/Soft:N/size")
        self.expect(line, '/Software/Soft:N/size: "follows" names nothing: mass', "form: cut off", "follows: mass")
        self.expect(line, '/Software/Soft:N/size: "follows" names nothing: /Hardware', "form: cut off", "follows: /Hardware")
        self.expect(line, "/Software/Soft:N/size follows itself", "form: cut off", "follows: size")

    def test_tables_have_a_use_and_rows(self):
        head = "[report Applications: /Software/Soft:N]"
        line = line_of(head)
        problem = "not [report TITLE: /ROWS], [view NAME: /ROWS] or [table NAME: /ROWS] DESCRIPTION"
        self.expect(line, f"{problem}: [page Applications: /Software/Soft:N]", "[report", "[page")
        self.expect(line, f"{problem}: [report Applications]", head, "[report Applications]")
        self.expect(line, "no element is called /Software/Hard:N", head, "[report Applications: /Software/Hard:N]")
        self.expect(line, "no element is called /Software/Soft:N/size", head, "[report Applications: /Software/Soft:N/size]")

    def test_tables_are_listed_once(self):
        again = "[view software: /Software/Soft:N]\n\n[view software:"
        self.expect(line_of("[view") + 2, "there is a view software already", "[view software:", again)

    def test_columns_show_what_the_elements_have(self):
        line = line_of("  Size, MB")
        self.expect(line, '/Software/Soft:N has no "mass"', "Size, MB: size", "Size, MB: mass")
        self.expect(line, '/Software/Soft:N has no "its name"', "Size, MB: size", "Size, MB: its name")
        self.expect(line_of("  Name"), '/Software/Soft:N has no "own value"', "| element, text | nobody\n  source: `_name`\n  known by: location, own value", "| element | nobody\n\n")

    def test_columns_have_one_kind(self):
        more = "/Software/Hard:N | element | nobody\n/Software/Hard:N/size | text | nobody\n\n[report Applications: /Software/*]"
        text = "[report Applications: /Software/Soft:N]"
        self.expect(line_of("  Size, MB") + 3, '"size" has several kinds: integer; text', text, more)

    def test_columns_have_a_known_form(self):
        line = line_of("  Location")
        self.expect(line, '"digits" is not one of: text, date, word, number, amount, yes/no', "as number", "as digits")

    def test_tables_and_their_columns_are_described_and_nothing_else_is(self):
        line = line_of("[table")
        problem = "a description belongs to a table, and to nothing else: "
        self.expect(line, problem + "software", "] an application", "]")
        self.expect(line_of("[view"), problem + "software", "[view software: /Software/Soft:N]", "[view software: /Software/Soft:N] an application")
        problem = "a description belongs to a column of a table, and to nothing else: "
        self.expect(line_of("  size_bytes"), problem + "size_bytes", " | its size, in bytes", "")
        self.expect(line_of("  size_mb"), problem + "size_mb", "size_mb: size", "size_mb: size | its size")

    def test_cells_have_a_known_form_and_sizes_a_unit_of_bytes(self):
        line = line_of("  size_bytes")
        self.expect(line, '"amount" is not one of: text, integer, number, yes/no, bytes, seconds, time, date', "size as bytes", "size as amount")
        self.expect(line, '"location" is not in KB, MB, GB', "size as bytes", "location as bytes")

    def test_only_versions_have_keys(self):
        self.expect(line_of("  size_mb"), '"size" is no version', "  size_mb: size\n", "  size_mb: key of size\n")

    def test_views_and_tables_of_the_same_elements_agree(self):
        problem = '"size_mb" of the view software is something else than that of the table software'
        self.expect(line_of("  size_mb"), problem, "  size: size |", "  size_mb: location |")
        catalogue.Catalogue(SMALL.replace("  size: size |", "  size_mb: location or size |"))
        catalogue.Catalogue(SMALL.replace("  size: size |", "  size_mb: size |").replace("size_mb: size\n", "size_mb: base value of size\n"))
        other = SMALL.replace("/Software/Soft:N | ", "/Software/Hard:N | element | nobody\n/Software/Hard:N/mass | text | nobody\n/Software/Soft:N | ")
        catalogue.Catalogue(other + "\n[table things: /Software/Hard:N] a thing\n  size_mb: mass | its mass\n")

    def test_columns_have_titles_of_their_own(self):
        self.expect(line_of("  Location"), '"Name" is a column already', "  Location:", "  Name:")

    def test_the_build_stops_with_the_file_and_the_line(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "facts.txt"
            file.write_text("= Snapshot\n/ | element\n", encoding="utf-8")
            output = Path(folder) / "facts.cpp"
            command = [sys.executable, GENERATOR, "facts", "--catalogue", file, "-o", output]
            run = subprocess.run(command, stderr=subprocess.PIPE, universal_newlines=True, check=False)
            self.assertNotEqual(run.returncode, 0)
            self.assertEqual(run.stderr, f"{file}:2: error: / does not say whose it is: nobody, machine, person, secret\n")
            self.assertFalse(output.exists())


if __name__ == "__main__":
    unittest.main()
