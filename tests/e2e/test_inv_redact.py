"""`inv redact` as a process: what it writes can be shared, and is complete or absent."""

import functools
import os
import re
import sys
import unittest
from pathlib import Path

import inv_decoder
import same_host
from inventories import FOLDER, FULL_MACHINES, MACHINES, ROOT, SIMULATOR, InventoryTestCase, debug_scanned, inv

IMAC = "imac-10.6"

# Where identifiers are, written down here independently: of tags by the first part of their names.
PLACES = {
    "": ["hostname", "int-name", "alias", "domain", "user-name", "ip-address", "default-gateway", "mac-address",
         "uuid", "scanner-uuid", "serial", "serial-number", "fullname", "cmd-line"],
    "env-var": ["value"],
}
OWN_VALUES = ["usr-acc", "partition", "Printer"]
NOBODYS = {"root", "nobody", "daemon", ""}
# Names that many Macs have.
COMMON = {"Macintosh HD", "System", "Recovery HD", "BOOTCAMP", "EFI", "ARCHIVE", "Scratch", "Fax", "Guest", "Guest User", "disk0s1", "disk1s3"}
# Common values of the environment that also occur elsewhere.
SYSTEM_PATHS = {"/bin/bash"}
KEY = "our support key"
# What the system itself puts into the places for people and machines: small IDs, names of network services, mount points.
USUAL = {str(number) for number in range(1000)} | {
    "AirPort", "Bluetooth DUN", "Bluetooth PAN", "Ethernet", "Ethernet 1", "FireWire", "Thunderbolt Bridge", "VPN (L2TP)", "Wi-Fi",
    "/", "/System/Volumes/Data", "Data", "Macintosh HD - Data", "/Volumes/ARCHIVE", "/Volumes/BOOTCAMP", "/Volumes/Scratch",
    "/users/Guest", "local"}

sys.path.insert(0, str(ROOT / "inv" / "facts"))
import catalogue  # noqa: E402


@functools.lru_cache(maxsize=None)
def scanned(name):
    """A file whose identifiers depend only on the simulated Mac."""
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
    return found - NOBODYS - COMMON


def owned_values(container):
    """(path, value) of all facts that the catalogue says are a machine's, a person's or secret."""
    facts = {fact.key: fact for fact in catalogue.Catalogue(catalogue.CATALOGUE.read_text(encoding="utf-8")).facts}
    found = set()

    def walk(tag, key):
        values = [(key, tag.value)] + [((*key, each.name.partition(":")[0]), each.value) for each in tag.attributes]
        found.update(value for place, value in values if value and place in facts and facts[place].identifier)
        for child in tag.children:
            walk(child, (*key, child.name.partition(":")[0]))

    for section in container.sections:
        walk(section.tree.top, (section.tree.top.name,))
    return found


def is_token_in(identifier, text):
    pattern = re.escape(identifier)
    if re.match(r"[a-z0-9]", identifier[0], re.I):
        pattern = "(?<![A-Za-z0-9])" + pattern
    if re.match(r"[a-z0-9]", identifier[-1], re.I):
        pattern += "(?![A-Za-z0-9])"
    return re.search(pattern, text, re.I | re.A)


class Redact(InventoryTestCase):
    def redacted(self, source, *arguments, key=None, name="shared.inv"):
        out = FOLDER / name
        out.unlink(missing_ok=True)
        environment = {**os.environ, "VELKARO_KEY": key or ""}
        self.told = self.check(0, "redact", source, "-o", out, *arguments, env=environment)
        return inv_decoder.read_file(out)

    def test_nothing_that_identifies_a_machine_is_left(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                original = inv_decoder.read_file(scanned(machine.name))
                shared = self.redacted(scanned(machine.name))
                text = "\n".join(line.split("=", 1)[-1] for line in lines(shared))
                looked_for = [each for each in identifiers(original) - SYSTEM_PATHS
                              if len(each) > 1 and (re.search(r"[^\W\d_]", each) or each.count(".") == 3)]
                self.assertGreater(len(looked_for), 20 if machine.name in FULL_MACHINES else 10)
                self.assertEqual([each for each in looked_for if is_token_in(each, text)], [])
                self.assertEqual(identifiers(original) & identifiers(shared), set())
                self.assertNotIn("host-like", self.told)

    def test_what_only_an_extended_scan_has_is_replaced_too(self):
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

    def test_no_fact_of_a_machine_or_a_person_is_left_of_an_extended_scan(self):
        for machine in MACHINES:
            with self.subTest(machine=machine.name):
                source = same_host.scan(machine, "/extended")
                owned = owned_values(inv_decoder.read_file(source))
                left = owned_values(self.redacted(source))
                self.assertGreater(len(owned), 25)
                self.assertEqual((owned & left) - NOBODYS - COMMON - USUAL, set())

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

    def command_lines(self, *arguments, **options):
        return {line for line in lines(self.redacted(*arguments, **options)) if line.startswith("cmd-line=")}

    def test_the_same_key_and_salt_give_the_same_names_in_every_file(self):
        first = self.command_lines(scanned(IMAC), key=KEY, name="first.inv")
        salt = ["--salt-of", FOLDER / "first.inv"]
        self.assertTrue(first & self.command_lines(scanned("mac-pro-10.5"), *salt, key=KEY))
        self.assertFalse(first & self.command_lines(scanned(IMAC), *salt, key="another support key"))
        self.assertFalse(first & self.command_lines(scanned(IMAC), key=KEY))

    def test_a_file_carries_the_salt_of_its_key(self):
        container = self.redacted(scanned(IMAC), key=KEY)
        salts = [section.tree.top.attribute("pseudonym-salt").value for section in container.sections]
        self.assertRegex(salts[0], "^[0-9a-f]{32}$")
        self.assertEqual(salts, salts[:1] * 2)
        self.assertEqual(self.check(0, "verify", FOLDER / "shared.inv"), f"{FOLDER / 'shared.inv'}: valid\n")
        self.redacted(FOLDER / "shared.inv", name="again.inv")
        self.check(1, "get", FOLDER / "again.inv", "/pseudonym-salt")

    def test_the_key_may_come_from_a_file_the_environment_or_the_command_line(self):
        self.redacted(scanned(IMAC), key=KEY, name="first.inv")
        salt = ["--salt-of", FOLDER / "first.inv"]
        (FOLDER / "key").write_text(KEY + "\n")
        self.redacted(scanned(IMAC), *salt, "--key-file", FOLDER / "key", key="what does not count")
        self.assertEqual(self.messages, "")
        self.assertEqual((FOLDER / "shared.inv").read_bytes(), (FOLDER / "first.inv").read_bytes())
        self.redacted(scanned(IMAC), *salt, "--key", KEY)
        self.assertEqual((FOLDER / "shared.inv").read_bytes(), (FOLDER / "first.inv").read_bytes())
        self.assertEqual(self.messages, "inv: --key: every user of this computer can read the key in `ps`; --key-file and "
                                        "VELKARO_KEY hide it\n")

    def test_refuses_keys_that_can_be_guessed(self):
        (FOLDER / "key").write_text("elevenbytes\n")
        self.assert_refused(2, "key: a key of fewer than 12 bytes can be guessed", scanned(IMAC), "--key-file", FOLDER / "key")
        self.assert_refused(2, "--key: a key of fewer than 12 bytes can be guessed", scanned(IMAC), "--key", "elevenbytes")
        self.redacted(scanned(IMAC), key="twelve bytes")

    def test_refuses_a_key_or_salt_that_is_not_there(self):
        self.assert_refused(2, "cannot be read", scanned(IMAC), "--key-file", FOLDER / "absent")
        self.assert_refused(2, "has no salt: it was not redacted with a key", scanned(IMAC), "--key", KEY, "--salt-of", scanned(IMAC))
        self.assert_refused(2, "--salt-of: needs that file's key", scanned(IMAC), "--salt-of", scanned(IMAC))
        self.assert_refused(2, "--key", scanned(IMAC), "--key", KEY, "--key-file", FOLDER / "key")

    def test_without_a_key_names_differ_between_runs(self):
        texts = [list(lines(self.redacted(scanned(IMAC)))) for _ in range(2)]
        self.assertNotEqual(texts[0], texts[1])

    def test_reads_standard_input_and_writes_standard_output(self):
        data = scanned(IMAC).read_bytes()
        result = inv("redact", "-", "-o", "-", input=data)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        (FOLDER / "output.inv").write_bytes(result.stdout)
        self.assertEqual(self.check(0, "verify", FOLDER / "output.inv"), f"{FOLDER / 'output.inv'}: valid\n")

    def test_reports_what_it_did(self):
        out = FOLDER / "told.inv"
        self.assertRegex(self.check(0, "redact", scanned(IMAC), "-o", out),
                         rf"^{re.escape(str(out))}: \d+ names, numbers and addresses replaced; may still identify it: "
                         r"150 application names, 1 process name, \d+ variable names, 2 monitor names, 4 device names\n$")
        self.assertEqual(self.messages, "")

    def test_warns_of_a_file_name_that_reveals_the_machine(self):
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

    def test_leaves_out_the_profilers_output_on_request(self):
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

    def test_refuses_to_replace_what_it_reads(self):
        self.redacted(scanned(IMAC), key=KEY, name="first.inv")
        (FOLDER / "key").write_text(KEY)
        for output, arguments in [(FOLDER / "key", ["--key-file", FOLDER / "key"]),
                                  (FOLDER / "first.inv", ["--key", KEY, "--salt-of", FOLDER / "first.inv"])]:
            before = output.read_bytes()
            self.check(2, "redact", scanned(IMAC), "-o", output, *arguments)
            self.assertIn(f"inv: {output}: is also an input; --force replaces it\n", self.messages)
            self.assertEqual(output.read_bytes(), before)

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
