"""`inv redact` as a process: what it writes can be shared, and is whole or not there."""

import functools
import re
import unittest
from pathlib import Path

import inv_decoder
import same_host
from inventories import FOLDER, FULL_MACHINES, MACHINES, SIMULATOR, InventoryTestCase, debug_scanned, inv

IMAC = "imac-10.6"

# Where identifiers are, written down here independently: of tags by the first part of their names.
PLACES = {
    "": ["hostname", "int-name", "alias", "domain", "user-name", "ip-address", "default-gateway", "mac-address",
         "uuid", "scanner-uuid", "serial", "serial-number", "fullname", "cmd-line"],
    "env-var": ["value"],
}
OWN_VALUES = ["usr-acc", "partition", "Printer"]
NOBODYS = {"root", "nobody", "daemon", ""}


@functools.lru_cache(maxsize=None)
def scanned(name):
    """A file in which it depends on the simulated Mac alone what names somebody, and how much of it."""
    return same_host.scan(SIMULATOR / "machines" / name)


def lines(container):
    """All lines of a file's trees, decoded."""
    for section in container.sections:
        yield from inv_decoder.decoded(section.text).split("\n")


def tags(tag):
    yield tag
    for child in tag.children:
        yield from tags(child)


def identifiers(container):
    """The values at those places, joined ones apart."""
    found = set()
    for section in container.sections:
        for tag in tags(section.tree.top):
            kind = tag.name.split(":")[0]
            values = [tag.value] if kind in OWN_VALUES else []
            names = PLACES[""] + PLACES.get(kind, [])
            values += [attribute.value for attribute in tag.attributes if attribute.name in names]
            for value in values:
                found.update(part.strip() for part in re.split("[\r\n]|, " if kind != "env-var" else "[\r\n]", value))
    return found - NOBODYS


def is_token_in(identifier, text):
    pattern = re.escape(identifier)
    if re.match(r"[a-z0-9]", identifier[0], re.I):
        pattern = "(?<![A-Za-z0-9])" + pattern
    if re.match(r"[a-z0-9]", identifier[-1], re.I):
        pattern += "(?![A-Za-z0-9])"
    return re.search(pattern, text, re.I | re.A)


class Redact(InventoryTestCase):
    def redacted(self, source, *arguments):
        out = FOLDER / "shared.inv"
        out.unlink(missing_ok=True)
        self.check(0, "redact", source, "-o", out, *arguments)
        return inv_decoder.read_file(out)

    def test_nothing_that_identifies_a_machine_is_left(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                original = inv_decoder.read_file(scanned(machine.name))
                shared = self.redacted(scanned(machine.name))
                text = "\n".join(line.split("=", 1)[-1] for line in lines(shared))
                looked_for = [each for each in identifiers(original)
                              if len(each) > 1 and (re.search(r"[^\W\d_]", each) or each.count(".") == 3)]
                self.assertGreater(len(looked_for), 25 if machine.name in FULL_MACHINES else 10)
                self.assertEqual([each for each in looked_for if is_token_in(each, text)], [])
                self.assertEqual(identifiers(original) & identifiers(shared), set())

    def test_what_only_an_extended_scan_tells_is_replaced_too(self):
        source = same_host.scan(SIMULATOR / "machines" / "macbook-pro-26", "/extended", "/ip:192.0.2.26")
        original, shared = ("\n".join(lines(each)) for each in (inv_decoder.read_file(source), self.redacted(source)))
        for value in [
            "SIMBATT0000026A",  # battery
            "0ba051a7c0de2601",  # disk
            "51A7C0DE-26D0-4000-8000-000000000007",  # volume
            "51a7c0de",  # display
            "SIMSSD00000026",  # on USB
            "0x51A7C0DE26040001",  # on Thunderbolt
            "00:00:5E:00:53:2B",  # Bluetooth controller
            "Field Headset",
            "SIMKEYB0026",
            "2001:db8:26::1026",
            "lab.example",
            "mdm.lab.example",
            "SIM26TEAM1",  # who signed an application
            "/ip:192.0.2.26",
        ]:
            with self.subTest(value=value):
                self.assertIn(value, original)
                self.assertNotIn(value, shared)

    def test_everything_else_stays(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                original = inv_decoder.read_file(scanned(machine.name))
                shared = self.redacted(scanned(machine.name))
                self.assertEqual(re.findall(rb"timestamp=.*", shared.header), re.findall(rb"timestamp=.*", original.header))
                self.assertEqual(len(list(lines(original))), len(list(lines(shared))))
                pairs = list(zip(lines(original), lines(shared)))
                kept = sum(before == after for before, after in pairs)
                self.assertGreater(kept, len(pairs) * 0.75)
                for before, after in pairs:
                    self.assertEqual(before.split("=")[0].split(":")[0], after.split("=")[0].split(":")[0])
                    for name in ["timestamp", "model", "size", "version", "pid", "kernel"]:
                        if before.startswith(name + "="):
                            self.assertEqual(before, after)

    def test_the_result_is_valid(self):
        self.redacted(scanned(IMAC))
        self.assertEqual(self.check(0, "verify", FOLDER / "shared.inv"), f"{FOLDER / 'shared.inv'}: valid\n")

    def test_addresses_keep_their_shape(self):
        for machine in MACHINES:
            container = self.redacted(scanned(machine.name))
            for adapter in container.snapshot.find("Network/Adapters").children:
                mac = adapter.attribute("mac-address")
                if mac and mac.value:
                    self.assertRegex(mac.value, "^[0-9A-F]{2}(-[0-9A-F]{2})+$")
                    self.assertTrue(mac.value.startswith(adapter.attribute("manuf-by-mac").value))
                ip = adapter.attribute("ip-address")
                for address in ip.value.split(", ") if ip else []:
                    self.assertRegex(address, r"^10(\.\d+){3}$|^fd[0-9a-f:]+$")
            self.assertRegex(container.snapshot.get("System/Computer-system/uuid"), "^[0-9A-F]{8}(-[0-9A-F]{4}){3}-")

    def test_the_same_key_gives_the_same_names_in_every_file(self):
        one, two, other = (
            {line for line in lines(self.redacted(scanned(name), *key)) if line.startswith("cmd-line=")}
            for name, key in [(IMAC, ["--key", "k"]), ("mac-pro-10.5", ["--key", "k"]), (IMAC, ["--key", "l"])]
        )
        self.assertTrue(one & two)
        self.assertFalse(one & other)

    def test_without_a_key_names_differ_between_runs(self):
        texts = [list(lines(self.redacted(scanned(IMAC)))) for _ in range(2)]
        self.assertNotEqual(texts[0], texts[1])

    def test_reads_standard_input_and_writes_standard_output(self):
        data = scanned(IMAC).read_bytes()
        self.redacted(scanned(IMAC), "--key", "k")
        result = inv("redact", "-", "-o", "-", "--key", "k", input=data)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual(result.stdout, (FOLDER / "shared.inv").read_bytes())

    def test_tells_what_it_did(self):
        out = FOLDER / "told.inv"
        self.assertRegex(self.check(0, "redact", scanned(IMAC), "-o", out),
                         rf"^{re.escape(str(out))}: \d+ names, numbers and addresses replaced; none is left\n$")
        self.assertEqual(self.messages, "")

    def test_warns_of_a_file_name_that_tells_the_machine(self):
        out = FOLDER / ("shared-" + scanned(IMAC).name)
        self.check(0, "redact", scanned(IMAC), "-o", out)
        self.assertIn("the file's own name identifies the machine", self.messages)

    def assert_refused(self, status, message, *arguments):
        out = FOLDER / "refused.inv"
        self.assertEqual(self.check(status, "redact", *arguments, "-o", out), "")
        self.assertIn(message, self.messages)
        self.assertFalse(out.exists())
        self.assertEqual(list(FOLDER.glob("*.part")), [])

    def test_refuses_the_profilers_output(self):
        self.assert_refused(1, "section 1 (raw data) can contain anything", debug_scanned(IMAC))

    def test_leaves_the_profilers_output_out_when_told_to(self):
        container = self.redacted(debug_scanned(IMAC), "--drop-opaque")
        self.assertEqual([section.tree.top.name for section in container.sections], ["AssetInfo"])

    def test_refuses_damaged_files(self):
        data = bytearray(scanned(IMAC).read_bytes())
        data[100] ^= 0xFF
        damaged = FOLDER / "damaged.inv"
        damaged.write_bytes(data)
        self.assert_refused(1, "it is damaged", damaged)

    def test_what_cannot_be_read_is_unusable(self):
        self.assert_refused(2, "cannot be read", FOLDER / "absent.inv")
        self.assert_refused(2, "the file is shorter than a trailer", Path("/dev/null"))

    def test_an_existing_file_stays_when_refused(self):
        out = FOLDER / "existing.inv"
        out.write_bytes(b"before")
        self.check(1, "redact", debug_scanned(IMAC), "-o", out)
        self.assertEqual(out.read_bytes(), b"before")

    def test_unusable_arguments(self):
        self.check(2, "redact", scanned(IMAC))
        self.check(2, "redact", scanned(IMAC), "-o", FOLDER / "x.inv", "--key", "")
        self.check(2, "redact", scanned(IMAC), "-o", FOLDER / "absent" / "x.inv")
        self.assertIn("No such file or directory", self.messages)


if __name__ == "__main__":
    unittest.main()
