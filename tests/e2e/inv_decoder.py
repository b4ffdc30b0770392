#!/usr/bin/env python3
"""A strict decoder of .inv files, written from the format alone: it shares no code with the programs it checks.

    container = read_file("MAC_0017F2000000.inv")
    container.snapshot.find("Processors/Processor:1").attribute("core-count").value

Whatever differs from the format raises FormatError with the offset at which it was found. Texts are decoded as
UTF-8; bytes that are not UTF-8 come out as lone surrogates ("surrogateescape"), because the scanner hands on
what the machine's tools print.

On the command line it prints a file's header and the text of its sections:

    python3 inv_decoder.py FILE
"""

import re
import sys
import zlib
from dataclasses import dataclass, field

TRAILER_SIZE = 14
TEXT_START = b"\xef\xbb\xbf?zxml\n"
NUMBER = rb"(0|[1-9][0-9]*)"


class FormatError(Exception):
    """What is wrong, and at which offset of what ("file", "header", "text of section 0", ...)."""

    def __init__(self, message, offset, where):
        super().__init__(f"{where}, offset {offset}: {message}")
        self.offset = offset
        self.where = where


# --- the tree -----------------------------------------------------------------------------------------------


@dataclass
class Attribute:
    name: str
    value: str
    annotations: list = field(default_factory=list)  # of (key, text)

    def annotation(self, key):
        """The text of the first annotation with this key, or None."""
        return next((text for name, text in self.annotations if name == key), None)


@dataclass
class Tag:
    kind: str  # "leaf" or "branch"
    name: str
    value: str
    annotations: list = field(default_factory=list)  # of (key, text)
    attributes: list = field(default_factory=list)  # of Attribute
    children: list = field(default_factory=list)  # of Tag

    annotation = Attribute.annotation

    def child(self, name):
        """The first child of this name, or None."""
        return next((child for child in self.children if child.name == name), None)

    def attribute(self, name):
        """The first attribute of this name, or None."""
        return next((attribute for attribute in self.attributes if attribute.name == name), None)

    def find(self, path):
        """The descendant that "a/b/c" names, or None."""
        tag = self
        for name in path.split("/"):
            tag = tag and tag.child(name)
        return tag

    def get(self, path):
        """The value of the attribute that "a/b/attribute" names, or None."""
        *tags, name = path.split("/")
        tag = self.find("/".join(tags)) if tags else self
        attribute = tag and tag.attribute(name)
        return attribute and attribute.value


def decoded(raw):
    return raw.decode("utf-8", "surrogateescape")


class TextParser:
    """Parses the lines of one "?zxml" text. A tag's parts come in a fixed order: its line, its annotations, its
    attributes with theirs, its children, its closing line."""

    def __init__(self, where):
        self.where = where
        self.top = None
        self.open = []  # the branches not closed yet, outermost first
        self.tag = None  # the tag that attribute lines go to; None after a closing line
        self.annotated = None  # the tag or attribute that annotation lines go to

    def parse(self, text):
        if not text.startswith(TEXT_START):
            raise FormatError("the mark line is missing", 0, self.where)
        if b"\0" in text:
            raise FormatError("a NUL byte in the text", text.index(b"\0"), self.where)
        offset = len(TEXT_START)
        while offset < len(text):
            end = text.find(b"\n", offset)
            if end < 0:
                raise FormatError("the last line does not end", offset, self.where)
            self.take(text[offset:end], offset)
            offset = end + 1
        if self.top is None:
            raise FormatError("there is no top element", offset, self.where)
        if self.open:
            raise FormatError(f'"{self.open[-1].name}" is not closed', offset, self.where)
        return self.top

    def take(self, line, offset):
        if self.top is not None and not self.open and self.tag is None:
            raise FormatError("a line after the top element", offset, self.where)
        marker = line[:1]
        if line == b"-":
            self.close(offset)
        elif marker in (b"*", b"+"):
            self.add_tag(marker, *self.split(line[1:], offset), offset)
        elif marker == b"~":
            self.add_annotation(*self.split(line[1:], offset), offset)
        else:
            self.add_attribute(*self.split(line, offset), offset)

    def split(self, line, offset):
        name, equals, value = line.partition(b"=")
        if not equals:
            raise FormatError(f"a line without an equals sign: {line!r}", offset, self.where)
        return decoded(name), decoded(value)

    def add_tag(self, marker, name, value, offset):
        tag = Tag("branch" if marker == b"+" else "leaf", name, value)
        if self.open:
            self.open[-1].children.append(tag)
        elif self.top is None:
            self.top = tag
        else:
            raise FormatError("a second top element", offset, self.where)
        if tag.kind == "branch":
            self.open.append(tag)
        self.tag = self.annotated = tag

    def add_annotation(self, key, text, offset):
        if self.annotated is None:
            raise FormatError("an annotation of nothing", offset, self.where)
        self.annotated.annotations.append((key, text))

    def add_attribute(self, name, value, offset):
        if self.tag is None:
            raise FormatError("an attribute of nothing", offset, self.where)
        if self.tag.attribute(name):
            raise FormatError(f'the attribute "{name}" occurs twice', offset, self.where)
        self.annotated = Attribute(name, value)
        self.tag.attributes.append(self.annotated)

    def close(self, offset):
        if not self.open:
            raise FormatError("a closing line without an open branch", offset, self.where)
        self.open.pop()
        self.tag = self.annotated = None


def parse_text(text, where="text"):
    """The top element of a whole "?zxml" text."""
    return TextParser(where).parse(text)


# --- a tree's encoded forms ---------------------------------------------------------------------------------


def inflate(data, where="stream"):
    """The bytes of exactly one complete zlib stream made at the best level."""
    if data[:2] != b"\x78\xda":
        raise FormatError(f"not a zlib stream of the best level: {data[:2].hex()}", 0, where)
    stream = zlib.decompressobj()
    try:
        content = stream.decompress(data)
    except zlib.error as error:
        raise FormatError(str(error), 0, where) from None
    if not stream.eof:
        raise FormatError("the zlib stream is cut off", len(data), where)
    if stream.unused_data:
        raise FormatError("bytes behind the zlib stream", len(data) - len(stream.unused_data), where)
    return content


@dataclass
class IndexRecord:
    name: str
    offset: int
    length: int


@dataclass
class Encoded:
    """One of the four forms of a tree, taken apart."""

    sectioned: bool
    compressed: bool
    text: bytes  # of the whole tree
    top: Tag
    index: list = field(default_factory=list)  # of IndexRecord; split forms only
    byte_order: str = ""  # of the index offset, "big" or "little"; split forms only


def decode_tree(data, where="tree"):
    """Decodes a tree's bytes in any of the four forms, which differ in their last bytes."""
    if data.endswith(b"\0\1ZXML"):
        text = inflate(data[:-6], where)
        return Encoded(False, True, text, parse_text(text, f"text of {where}"))
    flags = data[-2:]
    if flags == b"\0\0":
        # Zeros follow the text: at least the two flags, more when a leaf hides children.
        text = data[:-2].rstrip(b"\0")
        return Encoded(False, False, text, parse_text(text, f"text of {where}"))
    if flags in (b"\1\0", b"\1\1"):
        return decode_split(data, flags == b"\1\1", where)
    raise FormatError(f"unknown flags {flags.hex()}", max(len(data) - 2, 0), where)


def decode_split(data, compressed, where):
    end = len(data) - 6
    if end < 0:
        raise FormatError("too short for an index offset", 0, where)
    failure = None
    for byte_order in ("big", "little"):
        offset = int.from_bytes(data[end : end + 4], byte_order)
        try:
            if offset > end:
                raise FormatError(f"the index offset {offset} is outside", end, where)
            index = parse_index(data[offset:end], offset, compressed, f"index of {where}")
        except FormatError as error:
            failure = failure or error
            continue
        pieces = [data[record.offset : record.offset + record.length] for record in index]
        if compressed:
            pieces = [
                inflate(piece, f"{record.name} of {where}").rstrip(b"\0") for piece, record in zip(pieces, index)
            ]
        text = b"".join(pieces)
        # The split forms leave out the top element's closing line.
        if text[len(TEXT_START) :].startswith(b"+"):
            text += b"-\n"
        top = parse_text(text, f"text of {where}")
        check_index_names(index, top, where)
        return Encoded(True, compressed, text, top, index, byte_order)
    raise failure


def parse_index(data, index_offset, compressed, where):
    """The records of an index; they must be contiguous and fill everything before the index."""
    text = inflate(data, where) if compressed else data
    pattern = re.compile(rb"\[([^\n]*)\]\noffset=" + NUMBER + rb"\nlength=" + NUMBER + rb"\n")
    records, position, expected = [], 0, 0
    while position < len(text):
        match = pattern.match(text, position)
        if not match:
            raise FormatError("not an index record", position, where)
        record = IndexRecord(decoded(match[1]), int(match[2]), int(match[3]))
        if record.offset != expected:
            raise FormatError(f'"{record.name}" is not where the one before it ends', position, where)
        records.append(record)
        expected += record.length
        position = match.end()
    if expected != index_offset:
        raise FormatError(f"the sections end at {expected}, the index begins at {index_offset}", 0, where)
    return records


def check_index_names(index, top, where):
    names = [record.name for record in index]
    expected = ["Root"] + [child.name for child in top.children]
    if names != expected:
        raise FormatError(f"the index names {names}, the tree has {expected}", 0, where)


# --- the container ------------------------------------------------------------------------------------------


@dataclass
class Section:
    number: int
    kind: str  # "snapshot", "assetinfo" or "customdata"; "" for sections that the header does not list
    offset: int
    data: bytes
    timestamp: str = ""  # of a snapshot
    tree: Encoded = None  # of a snapshot or an assetinfo section
    content: bytes = b""  # the inflated bytes of a customdata section

    @property
    def text(self):
        return self.tree.text if self.tree else self.content


@dataclass
class Container:
    header: bytes  # as text, inflated when it was compressed
    header_compressed: bool
    byte_order: str  # of the trailer: "big" or "little"
    count: int
    snapshot_count: int
    sections: list  # the listed ones, in file order
    unlisted: list  # sections without an entry; neighbours that cannot be separated count as one, with the number of the first

    def top(self, kind):
        """The top element of the first section of this kind, or None."""
        return next((section.tree.top for section in self.sections if section.kind == kind), None)

    @property
    def snapshot(self):
        return self.top("snapshot")

    @property
    def asset_info(self):
        return self.top("assetinfo")


ENTRY = re.compile(
    rb"\[" + NUMBER + rb"\]\noffset=" + NUMBER + rb"\nlength=" + NUMBER + rb"\n"
    rb"(?:type=(snapshot)\ntimestamp=([^\n]*)\nsnaptype=mac:1\n|type=(assetinfo)\n|type=(customdata)\nID=rawdata\n)"
)
HEADER_START = re.compile(rb"\[H\]\ncount=" + NUMBER + rb"\nsnapshotcount=" + NUMBER + rb"\n")


def read_file(path):
    """The Container in the file at this path."""
    with open(path, "rb") as file:
        return parse_container(file.read())


def parse_container(data):
    """The Container in these bytes, with every section decoded."""
    trailer = len(data) - TRAILER_SIZE
    if trailer < 0:
        raise FormatError("too short for a trailer", 0, "file")
    if data[-4:] != b"INV!":
        raise FormatError("the magic is missing", len(data) - 4, "file")
    if data[trailer + 8] != 3:
        raise FormatError(f"unknown version {data[trailer + 8]}", trailer + 8, "file")
    if data[trailer + 9] not in (0, 1):
        raise FormatError(f"unknown header form {data[trailer + 9]}", trailer + 9, "file")
    compressed = data[trailer + 9] == 1

    # The byte order is not stored: only one of the two offsets leads to a header.
    failure = None
    for byte_order in ("big", "little"):
        offset = int.from_bytes(data[trailer : trailer + 8], byte_order)
        try:
            if offset > trailer:
                raise FormatError(f"the header offset {offset} is outside", trailer, "file")
            header = inflate(data[offset:trailer], "header") if compressed else data[offset:trailer]
            start = HEADER_START.match(header)
            if not start:
                raise FormatError("the header does not begin as one", offset, "file")
        except FormatError as error:
            failure = failure or error
            continue
        sections, unlisted = parse_entries(header, start, data[:offset])
        container = Container(header, compressed, byte_order, int(start[1]), int(start[2]), sections, unlisted)
        check_snapshot_count(container)
        return container
    raise failure


def parse_entries(header, start, data):
    """The listed and the unlisted sections of a container whose sections' bytes are `data`."""
    count = int(start[1])
    sections, unlisted = [], []
    position, number, offset = start.end(), 0, 0

    def skip_to(next_number, next_offset):
        if next_number < number or next_offset < offset or next_offset > len(data):
            raise FormatError(f"section {next_number} is out of order", position, "header")
        if next_number > number:
            unlisted.append(Section(number, "", offset, data[offset:next_offset]))
        elif next_offset > offset:
            raise FormatError(f"bytes {offset} to {next_offset} belong to no section", position, "header")

    while position < len(header):
        match = ENTRY.match(header, position)
        if not match:
            raise FormatError("not a section's entry", position, "header")
        skip_to(int(match[1]), int(match[2]))
        number, offset, length = int(match[1]), int(match[2]), int(match[3])
        if number >= count or length > len(data) - offset:
            raise FormatError(f"section {number} is outside", position, "header")
        sections.append(decode_section(number, match, data[offset : offset + length]))
        position, number, offset = match.end(), number + 1, offset + length
    skip_to(count, len(data))
    return sections, unlisted


def decode_section(number, match, data):
    kind = decoded(match[4] or match[6] or match[7])
    section = Section(number, kind, int(match[2]), data)
    where = f"section {number}"
    if kind == "customdata":
        section.content = inflate(data, where)
        return section
    section.tree = decode_tree(data, where)
    if kind == "snapshot":
        section.timestamp = decoded(match[5])
        top_timestamp = section.tree.top.attribute("timestamp")
        if top_timestamp and section.timestamp not in ("", top_timestamp.value):
            raise FormatError("the timestamp is not that of the tree", match.start(), "header")
    return section


def check_snapshot_count(container):
    """Snapshots are counted by their trees; an unlisted section may hold one too."""
    known = sum(1 for section in container.sections if section.tree and section.tree.top.name == "Snapshot")
    most = known + container.count - len(container.sections)
    if not known <= container.snapshot_count <= most:
        raise FormatError(f"{container.snapshot_count} snapshots are counted, {known} found", 0, "header")


def main(arguments):
    if len(arguments) != 1:
        print("usage: inv_decoder.py FILE", file=sys.stderr)
        return 2
    try:
        container = read_file(arguments[0])
    except (OSError, FormatError) as error:
        print(f"inv_decoder.py: {error}", file=sys.stderr)
        return 1
    sys.stdout.buffer.write(container.header)
    for section in container.sections:
        sys.stdout.buffer.write(b"\n--- section %d (%s)\n" % (section.number, section.kind.encode()) + section.text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
