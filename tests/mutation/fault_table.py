"""The tables of deliberate faults: each is a change of one rule in one source, and some test must fail with it.

    [src/collectors/printers.cpp] test_faults.OddOutputs

    A fax whose switch says no is written too.
    - if (find_value(item, "fax"))
    + if (is_yes(item, "fax"))

The brackets hold the source that the faults below them are put into. They are followed by the end-to-end tests that
run if no unit test has failed: scripts of tests/e2e, or test cases in them. A fault is a line that says what must
hold, then the text to replace, after "-", and its replacement, after "+". The former must be in the source exactly
once; it may begin and end anywhere in a line, and when it has several lines, their indentation does not matter. A "+"
alone deletes it. "#" begins a comment.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TABLES = Path(__file__).resolve().parent / "faults"


class TableError(Exception):
    pass


@dataclass
class Fault:
    source: str  # path from the root
    rule: str  # what must hold
    place: str  # the table and the line
    e2e: list
    removed: list = field(default_factory=list)  # lines
    added: list = field(default_factory=list)

    @property
    def name(self):
        """What identifies it, even when it is moved within its table."""
        return f"{self.source}: {self.rule}"

    def apply(self, text):
        """The source with the fault in it. TableError unless the replaced text is there exactly once."""
        pattern = r"[ \t]*\n[ \t]*".join(re.escape(line) for line in self.removed)
        found = list(re.finditer(pattern, text))
        if len(found) != 1:
            raise TableError(f"{self.place}: found {len(found)} times in {self.source}: {' / '.join(self.removed)}")
        return text[: found[0].start()] + "\n".join(self.added) + text[found[0].end() :]


class Parser:
    def __init__(self, path):
        self.path = path
        self.source = None
        self.fault = None
        self.faults = []

    def parse(self):
        for number, line in enumerate(self.path.read_text().splitlines(), 1):
            self.place = f"{self.path.name}:{number}"
            self.take(line.strip())
        self.finish()
        return self.faults

    def take(self, line):
        heading = re.fullmatch(r"\[(.+)\](.*)", line)
        if not line or line.startswith("#"):
            return
        if heading:
            self.finish()
            self.source, self.e2e = heading.group(1), heading.group(2).split()
        elif line[0] in "-+":
            self.take_change(line[0], line[1:].strip())
        else:
            self.finish()
            self.fault = Fault(self.source, line, self.place, self.e2e)

    def take_change(self, sign, text):
        if not self.fault:
            raise TableError(f"{self.place}: no rule stands before this change")
        (self.fault.removed if sign == "-" else self.fault.added).append(text)

    def finish(self):
        if self.fault:
            if not self.fault.removed or not self.fault.added or self.fault.removed == self.fault.added:
                raise TableError(f"{self.fault.place}: changes nothing")
            self.faults.append(self.fault)
        self.fault = None


def read_tables():
    """All faults, table by table. TableError when a table cannot be read or two faults have the same name."""
    faults = [fault for path in sorted(TABLES.glob("*.txt")) for fault in Parser(path).parse()]
    names = [fault.name for fault in faults]
    for fault in faults:
        if names.count(fault.name) > 1:
            raise TableError(f"{fault.place}: this rule stands twice for {fault.source}")
    return faults
