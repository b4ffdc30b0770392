#!/usr/bin/env python3
"""The decoder that the other end-to-end tests trust must accept what the format allows and nothing else."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import zlib

import inv_decoder
from inv_decoder import FormatError, TEXT_START

ROOT = pathlib.Path(__file__).resolve().parents[2]
SNAPSHOT_TEXT = TEXT_START + b"+Snapshot=\ntimestamp=T\n+a=\n*b=v\nx=1=2\n~k=t\n~k=u\n-\n*c=\n-\n"
HEADER_TEXT = TEXT_START + b"+Snapshot=\ntimestamp=T\n"
A_TEXT = b"+a=\n*b=v\nx=1=2\n~k=t\n~k=u\n-\n"
C_TEXT = b"*c=\n"
ASSET_TEXT = TEXT_START + b"*AssetInfo=\nhostname=H\n"


def packed(data):
    return zlib.compress(data, 9)


def index(pieces):
    text, offset = b"", 0
    for name, piece in zip((b"Root", b"a", b"c"), pieces):
        text += b"[%s]\noffset=%d\nlength=%d\n" % (name, offset, len(piece))
        offset += len(piece)
    return text, offset


def split(compressed, byte_order):
    pieces = [HEADER_TEXT, A_TEXT, C_TEXT]
    if compressed:
        pieces = [packed(piece) for piece in pieces]
    text, offset = index(pieces)
    text = packed(text) if compressed else text
    return b"".join(pieces) + text + offset.to_bytes(4, byte_order) + bytes([1, compressed])


def whole(text):
    return packed(text) + b"\0\1ZXML"


def file(sections, header, byte_order="big", compressed=False):
    data = b"".join(sections)
    return (
        data
        + (packed(header) if compressed else header)
        + len(data).to_bytes(8, byte_order)
        + bytes([3, compressed])
        + b"INV!"
    )


def entry(number, offset, length, rest):
    return b"[%d]\noffset=%d\nlength=%d\n%s" % (number, offset, length, rest)


SNAPSHOT_REST = b"type=snapshot\ntimestamp=T\nsnaptype=mac:1\n"
ASSET_REST = b"type=assetinfo\n"
RAW_REST = b"type=customdata\nID=rawdata\n"
START = b"[H]\ncount=%d\nsnapshotcount=%d\n"


def two_sections(first=None, **options):
    first = whole(SNAPSHOT_TEXT) if first is None else first
    second = whole(ASSET_TEXT)
    header = START % (2, 1) + entry(0, 0, len(first), SNAPSHOT_REST) + entry(1, len(first), len(second), ASSET_REST)
    return file([first, second], header, **options)


def documented_file():
    page = (ROOT / "docs" / "inv-format.md").read_text(encoding="utf-8")
    dump = re.search(r"```hexdump\n(.*?)```", page, re.S)[1]
    return b"".join(bytes.fromhex(line[8:58]) for line in dump.splitlines())


class Accepted(unittest.TestCase):
    def check_snapshot(self, top):
        self.assertEqual((top.kind, top.name, top.value), ("branch", "Snapshot", ""))
        self.assertEqual(top.get("timestamp"), "T")
        self.assertEqual([child.name for child in top.children], ["a", "c"])
        b = top.find("a/b")
        self.assertEqual((b.kind, b.value), ("leaf", "v"))
        self.assertEqual(top.get("a/b/x"), "1=2")
        self.assertEqual(b.attribute("x").annotations, [("k", "t"), ("k", "u")])
        self.assertEqual(b.attribute("x").annotation("k"), "t")
        self.assertIsNone(top.find("a/missing/b"))
        self.assertIsNone(top.get("a/missing/x"))

    def test_container_in_both_byte_orders_with_plain_and_compressed_header(self):
        for byte_order in ("big", "little"):
            for compressed in (False, True):
                data = two_sections(byte_order=byte_order, compressed=compressed)
                container = inv_decoder.parse_container(data)
                self.assertEqual(container.byte_order, byte_order)
                self.assertEqual(container.header_compressed, compressed)
                self.assertEqual([section.kind for section in container.sections], ["snapshot", "assetinfo"])
                self.assertEqual(container.sections[0].timestamp, "T")
                self.assertEqual(container.asset_info.get("hostname"), "H")
                self.check_snapshot(container.snapshot)

    def test_every_layout_of_a_tree(self):
        layouts = {
            (False, True, ""): whole(SNAPSHOT_TEXT),
            (False, False, ""): SNAPSHOT_TEXT + b"\0\0",
            (True, True, "big"): split(True, "big"),
            (True, True, "little"): split(True, "little"),
            (True, False, "big"): split(False, "big"),
            (True, False, "little"): split(False, "little"),
        }
        for expected, data in layouts.items():
            container = inv_decoder.parse_container(two_sections(first=data))
            tree = container.sections[0].tree
            self.assertEqual((tree.sectioned, tree.compressed, tree.byte_order), expected)
            self.assertEqual(tree.text, SNAPSHOT_TEXT)
            self.check_snapshot(container.snapshot)

    def test_zeros_for_what_a_leaf_hides(self):
        self.assertEqual(inv_decoder.decode_tree(ASSET_TEXT + bytes(9)).text, ASSET_TEXT)

    def test_unlisted_sections(self):
        asset = whole(ASSET_TEXT)
        header = START % (3, 0) + entry(1, 5, len(asset), ASSET_REST)
        container = inv_decoder.parse_container(file([b"first", asset, b"last"], header))
        self.assertEqual([(section.number, section.data) for section in container.unlisted], [(0, b"first"), (2, b"last")])

    def test_raw_section(self):
        raw = packed(b"<plist>")
        container = inv_decoder.parse_container(file([raw], START % (1, 0) + entry(0, 0, len(raw), RAW_REST)))
        self.assertEqual(container.sections[0].content, b"<plist>")

    def test_no_sections(self):
        self.assertEqual(inv_decoder.parse_container(file([], START % (0, 0))).sections, [])

    def test_bytes_that_are_not_utf8_and_carriage_returns(self):
        top = inv_decoder.parse_text(TEXT_START + b"*t=a\rb\xff\n")
        self.assertEqual(top.value, "a\rb\udcff")

    def test_a_tree_deeper_than_the_stack(self):
        text = TEXT_START + b"+d=\n" * 100000 + b"-\n" * 100000
        self.assertEqual(inv_decoder.parse_text(text).name, "d")

    def test_the_example_of_the_format_page(self):
        container = inv_decoder.parse_container(documented_file())
        self.assertEqual(container.snapshot.get("Processors/Processor:1/speed"), "2.66")
        self.assertEqual(container.asset_info.get("hostname"), "IMAC")


class Refused(unittest.TestCase):
    def refuse(self, message, function, data):
        with self.assertRaisesRegex(FormatError, re.escape(message)):
            function(data)

    def test_texts(self):
        for lines, message in {
            b"": "there is no top element",
            b"+a=\n": '"a" is not closed',
            b"*a=": "the last line does not end",
            b"*a=\n*b=\n": "a second top element",
            b"+a=\n-\n*b=\n": "a line after the top element",
            b"*a=\n-\n": "a closing line without an open branch",
            b"x=1\n": "an attribute of nothing",
            b"~k=t\n": "an annotation of nothing",
            b"+a=\n+b=\n-\nx=1\n-\n": "an attribute of nothing",
            b"+a=\n+b=\n-\n~k=t\n-\n": "an annotation of nothing",
            b"+a=\n*b\n-\n": "a line without an equals sign",
            b"+a=\n\n-\n": "a line without an equals sign",
            b"+a=\n- \n": "a line without an equals sign",
            b"*a=\nx=1\nx=2\n": 'the attribute "x" occurs twice',
            b"*a=\0\n": "a NUL byte",
        }.items():
            with self.subTest(lines=lines):
                self.refuse(message, inv_decoder.parse_text, TEXT_START + lines)
        self.refuse("the mark line is missing", inv_decoder.parse_text, b"?zxml\n*a=\n")

    def test_an_error_has_its_offset(self):
        with self.assertRaises(FormatError) as caught:
            inv_decoder.parse_text(TEXT_START + b"+a=\nbad\n-\n")
        self.assertEqual(caught.exception.offset, len(TEXT_START) + 4)

    def test_streams(self):
        stream = packed(b"text")
        self.refuse("not a zlib stream of the best level", inv_decoder.inflate, zlib.compress(b"text", 1))
        self.refuse("the zlib stream is cut off", inv_decoder.inflate, stream[:-1])
        self.refuse("bytes behind the zlib stream", inv_decoder.inflate, stream + b"x")
        self.refuse("incorrect data check", inv_decoder.inflate, stream[:-1] + b"\0")

    def test_trees(self):
        self.refuse("unknown flags", inv_decoder.decode_tree, ASSET_TEXT + b"\2\0")
        self.refuse("unknown flags", inv_decoder.decode_tree, b"")
        self.refuse("too short for an index offset", inv_decoder.decode_tree, b"\1\1")
        # The index begins one byte late, or names a part that the tree does not have.
        data = split(False, "big")
        self.refuse("", inv_decoder.decode_tree, b"x" + data)
        self.refuse("the index names", inv_decoder.decode_tree, data.replace(b"[c]", b"[d]"))
        self.refuse("is not where the one before it ends", inv_decoder.decode_tree, data.replace(b"offset=0", b"offset=1"))

    def test_trailers(self):
        data = two_sections()
        self.refuse("too short for a trailer", inv_decoder.parse_container, data[-13:])
        self.refuse("the magic is missing", inv_decoder.parse_container, data[:-1] + b"?")
        self.refuse("unknown version 4", inv_decoder.parse_container, data[:-6] + b"\4\0INV!")
        self.refuse("unknown header form 2", inv_decoder.parse_container, data[:-6] + b"\3\2INV!")
        self.refuse("is outside", inv_decoder.parse_container, data[:-14] + b"\1" * 8 + data[-6:])

    def test_headers(self):
        asset = whole(ASSET_TEXT)
        good = entry(0, 0, len(asset), ASSET_REST)
        for header, message in {
            b"[h]\n": "the header does not begin as one",
            START % (0, 0): "belong to no section",
            START % (0, 0) + good: "section 0 is outside",
            START % (1, 0) + good + b"\n": "not a section's entry",
            START % (1, 0) + good.replace(b"assetinfo", b"unknown"): "not a section's entry",
            START % (1, 0) + good.replace(b"offset=0", b"offset=00"): "not a section's entry",
            START % (1, 0) + entry(0, 1, len(asset) - 1, ASSET_REST): "belong to no section",
            START % (1, 0) + entry(0, 0, len(asset) + 1, ASSET_REST): "section 0 is outside",
            START % (1, 0) + entry(0, 0, len(asset) - 6, ASSET_REST): "unknown flags",
            START % (2, 0) + good + good: "section 0 is out of order",
            START % (1, 1) + good: "1 snapshots are counted, 0 found",
        }.items():
            with self.subTest(header=header):
                self.refuse(message, inv_decoder.parse_container, file([asset], header))

    def test_a_timestamp_that_is_not_the_trees(self):
        data = two_sections().replace(b"timestamp=T\nsnaptype", b"timestamp=U\nsnaptype")
        self.refuse("the timestamp is not that of the tree", inv_decoder.parse_container, data)

    def test_every_truncation(self):
        for data in (documented_file(), two_sections(), two_sections(first=split(True, "little"))):
            for length in range(len(data)):
                with self.assertRaises(FormatError):
                    inv_decoder.parse_container(data[:length])

    def test_damage_is_noticed_wherever_it_changes_a_text(self):
        def texts(data):
            container = inv_decoder.parse_container(data)
            return container.header, [section.text for section in container.sections]

        data = documented_file()
        intact = texts(data)
        for position in range(len(data)):
            for byte in {0x00, 0x80, 0xFF, data[position] ^ 1} - {data[position]}:
                damaged = data[:position] + bytes([byte]) + data[position + 1 :]
                try:
                    # A stream's last byte may hold bits that mean nothing.
                    self.assertEqual(texts(damaged), intact, f"byte {position} changed to {byte:#x}")
                except FormatError:
                    pass


class CommandLine(unittest.TestCase):
    def run_on(self, data):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "file.inv"
            path.write_bytes(data)
            command = [sys.executable, inv_decoder.__file__, str(path)]
            return subprocess.run(command, capture_output=True, check=False)

    def test_prints_header_and_texts(self):
        result = self.run_on(two_sections())
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertTrue(result.stdout.startswith(START % (2, 1)))
        self.assertIn(b"\n--- section 0 (snapshot)\n" + SNAPSHOT_TEXT, result.stdout)
        self.assertTrue(result.stdout.endswith(b"\n--- section 1 (assetinfo)\n" + ASSET_TEXT))

    def test_says_what_is_wrong(self):
        result = self.run_on(b"no file of this kind")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b"the magic is missing", result.stderr)


if __name__ == "__main__":
    unittest.main()
