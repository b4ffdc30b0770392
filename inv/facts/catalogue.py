#!/usr/bin/env python3
"""Generates code and documentation from catalogue.txt, the list of all facts, whose header explains its format.

    inv/facts/catalogue.py page      # docs/snapshot.md, for the developer of a console
    inv/facts/catalogue.py facts     # C++: units, identifiers, identities and passing facts by path
    inv/facts/catalogue.py reports   # C++: the tables of a report
    inv/facts/catalogue.py views     # C++: the views of the database
    inv/facts/catalogue.py tables    # C++: the typed tables of exports

Prints to standard output, or into the file that -o names."""

import argparse
import re
import sys
from pathlib import Path

CATALOGUE = Path(__file__).with_name("catalogue.txt")

KINDS = ("text", "integer", "decimal", "yes/no", "element", "element, text", "compound", "compound, text")
UNITS = ("KB", "MB", "GB", "kHz", "Hz", "MHz", "ms", "min", "cm", "in", "mA", "%")
OWNERS = ("nobody", "machine", "person", "secret")
# How an owner's value is recognised in a file: IdentifierKind in catalogue.h. Paths are looked for in all texts.
IDENTIFIERS = ("text", "serial", "number", "account", "account-id", "addresses", "uri", "full-name", "network-name", "path")
FIELDS = ("annotations", "unit", "form", "source", "present", "since", "debug run", "known by", "word", "called", "described as", "there when",
          "follows")  # fmt: skip
SINCE = re.compile(r"(10\.\d+(\.\d+)?|1[1-5]|2[6-9])( on Apple silicon)?|(T2, )?Apple silicon")
REPLACEABLE = ", replaceable"

OWN_VALUE = "own value"
# How a column shows its values: ColumnForm in report_tables.h, and the type of a view's column.
COLUMN_FORMS = {"text": None, "date": None, "word": None, "number": "INTEGER", "amount": "INTEGER", "yes/no": "INTEGER"}
FORMS_OF_KINDS = {"integer": "number", "decimal": "number", "yes/no": "yes/no"}
# The same for a typed table, whose cells are not for people: CellForm in tables.h.
CELL_FORMS = {"text": "text", "integer": "integer", "number": "number", "yes/no": "yes_no", "bytes": "bytes", "seconds": "seconds", "time": "time",
              "date": "date"}  # fmt: skip
CELL_FORMS_OF_KINDS = {"integer": "integer", "decimal": "number", "yes/no": "yes/no"}
SIZE_UNITS = ("KB", "MB", "GB")


class Mistake(Exception):
    """What is wrong with the catalogue, and in which line."""

    def __init__(self, line, problem):
        super().__init__(f"{line}: error: {problem}")


class Fact:
    """A row of the page: what the scanner writes at a path of a tree."""

    def __init__(self, line, tree, path, kind, owner, identifier, passing):
        self.line, self.tree, self.path, self.kind = line, tree, path, kind
        self.owner, self.identifier, self.passing = owner, identifier, passing
        self.fields = {}

    @property
    def key(self):
        return key_of(self.tree, self.path)

    @property
    def is_element(self):
        return self.kind.startswith(("element", "compound"))

    @property
    def has_value(self):
        return not self.is_element or self.kind.endswith(", text")

    @property
    def known_by(self):
        return self.fields["known by"].split(", ") if "known by" in self.fields else []

    @property
    def described_as(self):
        """(text before, source of a value, text after) for each part of its description. The text after ends at a blank."""
        return re.findall(r"([^{]*)\{([^}]+)\}([^ {]*)", self.fields.get("described as", ""))

    @property
    def follows_below(self):
        """Whether the fact that it follows is in the same element."""
        return "follows" in self.fields and not self.fields["follows"].startswith("/")


def key_of(tree, path):
    """The path from the tree on, with what follows the colons left out."""
    names = [name for name in path.split("/") if name]
    return (tree, *(name.partition(":")[0] for name in names))


class Table:
    """What the report or the database shows of some elements: a column for each of the chosen facts."""

    def __init__(self, line, use, title, rows, description):
        self.line, self.use, self.title, self.rows, self.description = line, use, title, rows, description
        self.columns = []

    @property
    def pattern(self):
        """The rows with "*" in place of numbers and names."""
        return re.sub(r":\w+", ":*", self.rows)

    @property
    def patterns(self):
        """Of a typed table, whose rows can come from several lists."""
        return self.pattern.split(" or ")

    @property
    def is_whole_scan(self):
        """Whether its rows are scans, and its columns are paths from the top element on."""
        return self.rows == "/"


class Column:
    def __init__(self, line, title, source, form, description):
        self.line, self.title, self.source, self.form, self.description = line, title, source, form, description
        self.kind = None

    @property
    def sources(self):
        """The first of them that has a value counts."""
        return self.source.split(" or ")


class Catalogue:
    """What the file says: the facts, the tables, and the blocks of the page in their order."""

    def __init__(self, text):
        self.facts, self.tables = [], []
        self.page = []  # texts, and lists of facts that are a table
        self.tree = None
        self.block = None  # the fact or table that an indented line belongs to
        self.prose = []
        for number, line in enumerate(text.splitlines(), 1):
            self.read_line(number, line.rstrip())
        self.end_prose()
        self.check()

    def read_line(self, number, line):
        if line.startswith("#"):
            return
        if line.startswith("  ") and self.block:
            self.read_field(number, line.strip())
        elif line.startswith("/"):
            self.begin(self.read_fact(number, line))
        elif line.startswith("["):
            self.begin(self.read_table(number, line))
        elif line:
            self.read_prose(line)
        else:
            self.block = None
            self.end_prose()

    def begin(self, block):
        self.end_prose()
        self.block = block

    def read_prose(self, line):
        self.block = None
        heading = re.match(r"=+ ", line)
        if heading and line.startswith("= "):
            self.tree = line[2:]
        self.prose.append(line.replace("=", "#", len(heading[0]) - 1) if heading else line)

    def end_prose(self):
        if self.prose:
            self.page.append("\n".join(self.prose))
        self.prose = []

    def read_fact(self, number, line):
        path, *cells = (cell.strip() for cell in line.split("|"))
        if not self.tree:
            raise Mistake(number, f"{path} stands below no tree")
        if not cells or cells[0] not in KINDS:
            raise Mistake(number, f"{path}: the kind must be one of: {'; '.join(KINDS)}")
        if len(cells) < 2 or not cells[1]:
            raise Mistake(number, f"{path} does not say whose it is: {', '.join(OWNERS)}")
        if cells[2:] not in ([], ["passing"]):
            raise Mistake(number, f'{path}: only "passing" may follow whose it is')
        fact = Fact(number, self.tree, path, cells[0], *self.read_owner(number, path, cells[1]), len(cells) > 2)
        self.add_to_page(fact)
        self.facts.append(fact)
        return fact

    def read_owner(self, number, path, text):
        owner, _, identifier = text.partition(", ")
        if owner not in OWNERS:
            raise Mistake(number, f'{path}: "{owner}" owns nothing; whose it is must be one of: {", ".join(OWNERS)}')
        if owner == "nobody" and identifier:
            raise Mistake(number, f'{path}: what is nobody\'s needs no "{identifier}"')
        if identifier and identifier not in IDENTIFIERS:
            raise Mistake(number, f'{path}: "{identifier}" is not one of: {", ".join(IDENTIFIERS)}')
        return owner, identifier or {"nobody": None, "secret": "secret"}.get(owner, "text")

    def add_to_page(self, fact):
        self.end_prose()
        if not self.page or not isinstance(self.page[-1], list):
            self.page.append([])
        self.page[-1].append(fact)

    def read_table(self, number, line):
        parts = re.fullmatch(r"\[(report|view|table) ([^:]+): (/.*)\](?: (.+))?", line)
        if not parts:
            raise Mistake(number, f"not [report TITLE: /ROWS], [view NAME: /ROWS] or [table NAME: /ROWS] DESCRIPTION: {line}")
        table = Table(number, *parts.groups())
        if bool(table.description) != (table.use == "table"):
            raise Mistake(number, f"a description belongs to a table, and to nothing else: {table.title}")
        self.tables.append(table)
        return table

    def read_field(self, number, line):
        name, colon, text = line.partition(": ")
        if not colon:
            raise Mistake(number, f"not NAME: TEXT: {line}")
        if isinstance(self.block, Table):
            self.read_column(number, name, text)
        elif name not in FIELDS:
            raise Mistake(number, f'{self.block.path}: unknown column "{name}"; known are: {", ".join(FIELDS)}')
        elif name in self.block.fields:
            raise Mistake(number, f'{self.block.path}: "{name}" is there twice')
        else:
            self.block.fields[name] = text

    def read_column(self, number, title, text):
        text, _, description = text.partition(" | ")
        source, _, form = text.partition(" as ")
        forms = CELL_FORMS if self.block.use == "table" else COLUMN_FORMS
        if form and form not in forms:
            raise Mistake(number, f'"{form}" is not one of: {", ".join(forms)}')
        if title in (column.title for column in self.block.columns):
            raise Mistake(number, f'"{title}" is a column already')
        if bool(description) != (self.block.use == "table"):
            raise Mistake(number, f"a description belongs to a column of a table, and to nothing else: {title}")
        self.block.columns.append(Column(number, title, source, form, description))

    def check(self):
        self.by_key = {}
        for fact in self.facts:
            self.check_fact(fact)
            self.by_key[fact.key] = fact
        for fact in self.facts:
            self.check_known_by(fact)
            self.check_wording(fact)
        titles = set()
        for table in self.tables:
            self.check_table(table)
            if (table.use, table.title) in titles:
                raise Mistake(table.line, f"there is a {table.use} {table.title} already")
            titles.add((table.use, table.title))
        for table in self.tables:
            if table.use == "table":
                self.check_agreement(table)

    def check_fact(self, fact):
        if fact.key in self.by_key:
            raise Mistake(fact.line, f"{fact.path} is there already, in line {self.by_key[fact.key].line}")
        above = self.by_key.get(fact.key[:-1])
        if len(fact.key) > 1 and not (above and above.is_element):
            raise Mistake(fact.line, f"{fact.path}: the element above it must come first")
        if fact.fields.get("unit", UNITS[0]) not in UNITS:
            raise Mistake(fact.line, f'{fact.path}: unknown unit "{fact.fields["unit"]}"; known are: {", ".join(UNITS)}')
        if not SINCE.fullmatch(fact.fields.get("since", "26")):
            raise Mistake(fact.line, f'{fact.path}: "{fact.fields["since"]}" is no system')
        # Everything below a passing element is passing.
        fact.passing = fact.passing or bool(above and above.passing)

    def check_known_by(self, fact):
        for name in fact.known_by:
            if name.startswith("/"):
                self.check_known_elsewhere(fact, name)
                continue
            part = fact if name == OWN_VALUE else self.by_key.get((*fact.key, name))
            if not (fact.is_element and part and part.has_value):
                raise Mistake(fact.line, f'{fact.path} cannot be known by "{name}", which it does not have')

    def check_known_elsewhere(self, fact, path):
        """For an element with details of another: the other one has identifying attributes."""
        other = self.by_key.get(key_of(fact.tree, path))
        if not other or not other.known_by or other.known_by[0].startswith("/"):
            raise Mistake(fact.line, f'{fact.path} cannot be known by "{path}", which is not known by anything')

    def check_wording(self, fact):
        if "follows" in fact.fields and not self.followed(fact):
            raise Mistake(fact.line, f'{fact.path}: "follows" names nothing: {fact.fields["follows"]}')
        sources = [source for _, source, _ in fact.described_as if source != ELEMENT_NUMBER] + [fact.fields.get("there when", OWN_VALUE)]
        for name in sources if "called" in fact.fields else ():
            if not (name == OWN_VALUE or (*fact.key, *name.split("/")) in self.by_key):
                raise Mistake(fact.line, f'{fact.path} cannot be described by "{name}", which it does not have')
        followed, above = self.followed(fact), {fact.key}
        while followed:
            if followed.key in above:
                raise Mistake(fact.line, f"{fact.path} follows itself")
            above.add(followed.key)
            followed = self.followed(followed)

    def followed(self, fact):
        """The fact that this one follows: by its path in the snapshot, or by its name beside this one."""
        if "follows" not in fact.fields:
            return None
        path = fact.fields["follows"]
        key = key_of("Snapshot", path) if path.startswith("/") else (*fact.key[:-1], path)
        return self.by_key.get(key)

    def check_table(self, table):
        elements = [fact for fact in self.elements_of(table) if fact.is_element]
        if not elements:
            raise Mistake(table.line, f"no element is called {table.rows}")
        for column in table.columns:
            self.check_column(table, column, elements)

    def check_agreement(self, table):
        """A view and a table of the same elements call nothing else by the same name."""
        sources = {column.title: column.sources for column in table.columns}
        for view in self.tables:
            for column in view.columns if (view.use, view.rows) == ("view", table.rows) else ():
                known = sources.get(column.title, column.sources)
                if not {without_prefix(source, BASE_VALUE) for source in column.sources} <= set(known):
                    raise Mistake(column.line, f'"{column.title}" of the view {view.title} is something else than that of the table {table.title}')

    def elements_of(self, table):
        pattern = re.compile("|".join(re.escape(rows).replace(r"\*", "[^/]+") for rows in table.rows.split(" or ")))
        return [fact for fact in self.facts if fact.tree == "Snapshot" and pattern.fullmatch(fact.path)]

    def check_column(self, table, column, elements):
        if table.use != "report" and column.source in NAMES_OF_ELEMENTS:
            column.form = column.form or "text"
            return
        kinds, units = set(), set()
        for name in column.sources:
            if table.use == "view":
                if name.startswith(KEY_OF) and not name.endswith("version"):
                    raise Mistake(column.line, f'"{without_prefix(name, KEY_OF)}" is no version')
                name = without_prefix(without_prefix(name, BASE_VALUE), KEY_OF)
            facts = self.facts_of(elements, name)
            if not facts:
                raise Mistake(column.line, f'{table.rows} has no "{name}"')
            kinds |= {"text" if fact.is_element else fact.kind for fact in facts}
            units |= {fact.fields.get("unit") for fact in facts}
        if len(kinds) > 1 and len(column.sources) == 1:
            raise Mistake(column.line, f'"{column.source}" has several kinds: {"; ".join(sorted(kinds))}')
        column.kind = kinds.pop() if len(kinds) == 1 else "text"
        if column.form == "bytes" and not units <= set(SIZE_UNITS):
            raise Mistake(column.line, f'"{column.source}" is not in {", ".join(SIZE_UNITS)}')
        forms = CELL_FORMS_OF_KINDS if table.use == "table" else FORMS_OF_KINDS
        column.form = column.form or forms.get(column.kind, "text")

    def facts_of(self, elements, name):
        """What a column's source names, for each of the elements that has it."""
        if name == OWN_VALUE:
            return [fact for fact in elements if fact.has_value]
        if name.startswith("/"):
            # Of rows from several lists each has what is beside it.
            keys = {key_of(element.tree, name.replace("*", element.key[-1])) for element in elements}
        else:
            names = [segment.partition(":")[0] for segment in name.split("/")]
            keys = ((*element.key, *names) for element in elements)
        return [self.by_key[key] for key in keys if key in self.by_key]


def without_prefix(text, prefix):
    return text[len(prefix) :] if text.startswith(prefix) else text


# The page. A column that no fact of a table fills is left out.

PAGE_COLUMNS = {
    "Path": lambda fact: f"`{fact.path}`",
    "Kind": lambda fact: fact.kind,
    "Whose": lambda fact: "" if fact.owner == "nobody" else fact.owner,
    "Annotations": lambda fact: fact.fields.get("annotations"),
    "Unit": lambda fact: ", ".join(fact.fields[name] for name in ("unit", "form") if name in fact.fields),
    "Source": lambda fact: fact.fields.get("source"),
    "Present": lambda fact: fact.fields.get("present"),
    "Since": lambda fact: fact.fields.get("since"),
    "Debug run": lambda fact: fact.fields.get("debug run"),
    "Known by": lambda fact: ", ".join(name if name == OWN_VALUE else f"`{name}`" for name in fact.known_by),
    "Passing": lambda fact: "yes" if fact.passing else "",
}


def page_row(cells):
    return "".join("| " + (cell + " " if cell else "") for cell in cells) + "|"


def page_table(facts):
    columns = {}
    for title, cell_of in PAGE_COLUMNS.items():
        cells = [(cell_of(fact) or "").replace("|", "\\|") for fact in facts]
        if any(cells):
            columns[title] = cells
    return "\n".join([page_row(columns), "|---" * len(columns) + "|", *map(page_row, zip(*columns.values()))])


def write_page(catalogue):
    note = "<!-- Written by inv/facts/catalogue.py from inv/facts/catalogue.txt: change that file and run it again. -->"
    blocks = [block if isinstance(block, str) else page_table(block) for block in catalogue.page]
    return "\n\n".join([note, *blocks]) + "\n"


# The facts, as a tree of names: what is below a fact is contiguous, sorted for the search in catalogue.cpp, and comes after
# everything above it.


def cpp_text(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def cpp_enumerator(text):
    return re.sub(r"\W", "_", text)


def cpp_range(array, first, count):
    return f"{{{array} + {first}, {array} + {first + count}}}" if count else "{}"


def names_below(catalogue):
    """For each key, level by level, the keys one level below it."""
    keys = {key[:depth] for key in catalogue.by_key for depth in range(len(key) + 1)}
    below = {}
    for key in sorted(keys, key=lambda key: (len(key), [(len(name), name) for name in key])):
        below[key] = []
        if key:
            below[key[:-1]].append(key)
    return below


def cpp_truth(truth):
    return "true" if truth else "false"


def source_in_cpp(source):
    return "" if source == OWN_VALUE else source


def wording(catalogue, fact, description_parts, row_of):
    """How a fact is described to people."""
    noun, replaceable, _ = fact.fields.get("called", "").partition(REPLACEABLE)
    followed = None if fact.follows_below else catalogue.followed(fact)
    cells = [
        cpp_text(fact.fields.get("word", "")),
        cpp_truth(fact.kind == "yes/no"),
        cpp_text(noun),
        cpp_truth(replaceable),
        cpp_range("kDescriptionParts", description_parts, len(fact.described_as)),
        cpp_text(fact.fields.get("there when", "")),
        cpp_text(fact.fields["follows"] if fact.follows_below else ""),
        f"kCatalogue + {row_of[followed.key]}" if followed else "nullptr",
    ]
    return f"{{{', '.join(cells)}}}"


def write_facts(catalogue):
    below = names_below(catalogue)
    row_of = {key: row for row, key in enumerate(below)}
    rows, known_by, descriptions, next_row = [], [], [], 1
    for key, children in below.items():
        fact = catalogue.by_key.get(key)
        parts = [source_in_cpp(part) for part in fact.known_by] if fact else []
        identifier = fact.identifier if fact and fact.identifier != "path" else None
        cells = [
            cpp_text(key[-1] if key else ""),
            cpp_text(fact.fields.get("unit", "") if fact else ""),
            f"IdentifierKind::{cpp_enumerator(identifier)}" if identifier else "{}",
            cpp_truth(fact and fact.passing),
            cpp_range("kKnownBy", len(known_by), len(parts)),
            cpp_range("kCatalogue", next_row, len(children)),
            wording(catalogue, fact, len(descriptions), row_of) if fact else "{}",
        ]
        if fact:
            descriptions += [f"{{{cpp_text(before)}, {cpp_text(source_in_cpp(source))}, {cpp_text(after)}}}" for before, source, after in fact.described_as]
        rows.append(f"    {{{', '.join(cells)}}},  // {'/'.join(key) or 'the trees'}")
        known_by += parts
        next_row += len(children)
    depth = max(len(fact.key) - 1 for fact in catalogue.facts if fact.is_element)
    names = ", ".join(map(cpp_text, known_by))
    return FACTS.format(known_by=names, descriptions="\n".join(f"    {part}," for part in descriptions), rows="\n".join(rows), depth=depth)


FACTS = """// Written by catalogue.py.
#include "inv/facts/catalogue.h"

namespace inv {{

static constexpr std::string_view kKnownBy[] = {{{known_by}}};
static constexpr DescriptionPart kDescriptionParts[] = {{
{descriptions}
}};

const CatalogueFact kCatalogue[] = {{
{rows}
}};

const uint32_t kCatalogueDepth = {depth};

}}  // namespace inv
"""


# The tables of a report.


def report_column(column):
    source = " or ".join("" if source == OWN_VALUE else source for source in column.sources)
    return f"{{{cpp_text(column.title)}, {cpp_text(source)}, ColumnForm::{cpp_enumerator(column.form)}}}"


def report_table(table):
    columns = ",\n       ".join(map(report_column, table.columns))
    return f"      {{{cpp_text(table.title)},\n       {cpp_text(table.pattern[1:])},\n       {{{columns}}}}},"


def write_reports(catalogue):
    return REPORTS.format(tables="\n".join(report_table(table) for table in catalogue.tables if table.use == "report"))


REPORTS = """// Written by catalogue.py.
#include "inv/report/report_tables.h"

namespace inv {{

const std::vector<ReportTable>& report_table_list() {{
  static const std::vector<ReportTable> tables = {{
{tables}
  }};
  return tables;
}}

}}  // namespace inv
"""


# The typed tables.


def table_column(table, column):
    source = " or ".join("" if source == OWN_VALUE else source for source in column.sources)
    path = " or ".join(path_for_people(table, source) for source in column.sources)
    texts = (column.title, source, path, column.description)
    name, source, path, description = map(cpp_text, texts)
    return f"{{{name}, CellForm::{CELL_FORMS[column.form]}, {source}, {path}, {description}}}"


def path_for_people(table, source):
    if source.startswith("/") or source in NAMES_OF_ELEMENTS:
        return "" if source in NAMES_OF_ELEMENTS else source
    return " or ".join(rows.rstrip("/") + ("" if source == OWN_VALUE else f"/{source}") for rows in table.rows.split(" or "))


def typed_table(table):
    rows = ", ".join(cpp_text(pattern[1:]) for pattern in table.patterns)
    columns = ",\n       ".join(table_column(table, column) for column in table.columns)
    return f"      {{{cpp_text(table.title)},\n       {cpp_text(table.description)},\n       {{{rows}}},\n       {{{columns}}}}},"


def write_tables(catalogue):
    return TABLES.format(tables="\n".join(typed_table(table) for table in catalogue.tables if table.use == "table"))


TABLES = """// Written by catalogue.py.
#include "inv/export/tables.h"

namespace inv {{

const std::vector<TypedTable>& typed_tables() {{
  static const std::vector<TypedTable> tables = {{
{tables}
  }};
  return tables;
}}

}}  // namespace inv
"""


# The views of the database: a row for each element of each scan.

ELEMENT_NAME, ELEMENT_NUMBER = NAMES_OF_ELEMENTS = ("its name", "its number")
BASE_VALUE = "base value of "
KEY_OF = "key of "


def sql_cast(column, value):
    sql_type = "REAL" if column.kind == "decimal" else COLUMN_FORMS[column.form]
    return f"CAST({value} AS {sql_type})" if sql_type else value


def sql_behind(start):
    """What follows the start of an element's path."""
    return f"replace(f.element, '{start}', '')"


def sql_beside(table, path):
    """The path of an element with details of a row's: "*" in it is the row's name, "N" its number."""
    list_path, _, name = path.rpartition("/")
    if name == "*":
        return f"'{list_path}/' || {sql_behind(table.rows.rpartition('/')[0] + '/')}"
    start = name.partition(":")[0]
    return f"'{list_path}/{start}:' || {sql_behind(table.rows.rpartition(':')[0] + ':')}"


def view_value(table, column):
    if table.is_whole_scan and column.source.startswith(KEY_OF):
        path = f"/{without_prefix(column.source, KEY_OF)}"
        return f"(SELECT k.version_key FROM facts d JOIN version_keys k ON k.version = d.value WHERE d.path = '{path}' AND d.machine_id = m.id)"
    if table.is_whole_scan:
        return f"(SELECT {sql_cast(column, 'd.value')} FROM facts d WHERE d.path = '/{column.source}' AND d.machine_id = m.id)"
    values = [view_source(table, column, source) for source in column.sources]
    return values[0] if len(values) == 1 else f"coalesce({', '.join(values)})"


def view_source(table, column, source):
    if source in NAMES_OF_ELEMENTS:
        name = sql_behind(table.pattern[: table.pattern.index("*")])
        return name if source == ELEMENT_NAME else f"CAST({name} AS INTEGER)"
    if source.startswith("/"):
        element, _, attribute = source.rpartition("/")
        return f"(SELECT {sql_cast(column, 'd.value')} FROM facts d\n   WHERE d.path = {sql_beside(table, element)} || '/{attribute}' AND d.machine_id = f.machine_id)"
    if source == OWN_VALUE:
        return "max(CASE WHEN f.path = f.element THEN f.value END)"
    if "/" in source:
        return f"(SELECT {sql_cast(column, 'd.value')} FROM facts d\n   WHERE d.path = f.element || '/{source}' AND d.machine_id = f.machine_id)"
    if source.startswith(BASE_VALUE):
        return f"max(CASE f.name WHEN '{without_prefix(source, BASE_VALUE)}' THEN CAST(nullif(f.base_value, '') AS INTEGER) END)"
    if source.startswith(KEY_OF):
        key = "(SELECT k.version_key FROM version_keys k WHERE k.version = f.value)"
        return f"max(CASE f.name WHEN '{without_prefix(source, KEY_OF)}' THEN {key} END)"
    return f"max(CASE f.name WHEN '{source}' THEN {sql_cast(column, 'f.value')} END)"


def view(catalogue, table):
    columns = ",\n".join(f"  {view_value(table, column)} AS {column.title}" for column in table.columns)
    if table.is_whole_scan:
        return WHOLE_SCAN_VIEW.format(name=table.title, columns=columns)
    if "*" not in table.pattern:
        return VIEW.format(name=table.title, columns=columns, condition=f"f.path GLOB '{table.pattern}/*'")
    condition = f"f.path GLOB '{table.pattern}'"
    rows = {element.key for element in catalogue.elements_of(table)}
    # A star of GLOB stands for slashes too.
    if any(fact.is_element and fact.key[:-1] in rows for fact in catalogue.facts):
        condition += f" AND f.element NOT GLOB '{table.pattern}/*'"
    return VIEW.format(name=table.title, columns=columns, condition=condition)


def write_views(catalogue):
    views = [table for table in catalogue.tables if table.use == "view"]
    return VIEWS.format(views="\n".join(view(catalogue, table) for table in views),
                        dropped="\n".join(f"DROP VIEW IF EXISTS {table.title};" for table in views))


VIEW = """CREATE VIEW {name} AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
{columns}
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE {condition}
GROUP BY f.machine_id, f.element;
"""

WHOLE_SCAN_VIEW = """CREATE VIEW IF NOT EXISTS {name} AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
{columns}
FROM machines m;
"""

VIEWS = """// Written by catalogue.py.
#include "inv/export/schema.h"

namespace inv {{

const std::string_view kDatabaseViews = R"sql(
{views})sql";

const std::string_view kDatabaseViewsDropped = R"sql(
{dropped}
)sql";

}}  // namespace inv
"""

PRODUCTS = {"page": write_page, "facts": write_facts, "reports": write_reports, "views": write_views, "tables": write_tables}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("product", choices=PRODUCTS)
    parser.add_argument("-o", metavar="FILE", type=Path)
    parser.add_argument("--catalogue", metavar="FILE", type=Path, default=CATALOGUE, help="instead of catalogue.txt")
    options = parser.parse_args()
    try:
        text = PRODUCTS[options.product](Catalogue(options.catalogue.read_text(encoding="utf-8")))
    except Mistake as mistake:
        sys.exit(f"{options.catalogue}:{mistake}")
    if options.o:
        options.o.write_bytes(text.encode("utf-8"))
    else:
        sys.stdout.buffer.write(text.encode("utf-8"))


if __name__ == "__main__":
    main()
