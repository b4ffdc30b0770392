"""Signatures: `inv` and the real `ssh-keygen` must reach the same verdict on every file, signature and list."""

import json
import re
import shutil
import sqlite3
import subprocess
import unittest
from pathlib import Path

from inventories import FOLDER, InventoryTestCase, debug_scanned, inv, scanned

NAMESPACE = "velkaro-inventory"
NAME = "imac@studio.example.com"
LISTED = "inv: {}: line {}: {}\n"
OTHER_MACHINE = "mac-pro-10.5"
NO_KEY = 'there is no key such as "ssh-ed25519 AAAA..."'


def ssh_keygen(*arguments, **options):
    """The finished process, which had no input."""
    return subprocess.run(["ssh-keygen", *arguments], capture_output=True, timeout=60, **{"stdin": subprocess.DEVNULL, **options})


def make_key(name, kind="ed25519"):
    """The path of a new private key; the public key has the same name with ".pub"."""
    path = KEYS / name
    ssh_keygen("-q", "-t", kind, "-N", "", "-C", name, "-f", path, check=True)
    return path


def public(key):
    """Type and key, without the comment."""
    return " ".join(Path(f"{key}.pub").read_text().split()[:2])


def sign(file, key, *options, namespace=NAMESPACE):
    """The path of the signature, which ssh-keygen writes next to the file."""
    signature = Path(f"{file}.sig")
    signature.unlink(missing_ok=True)
    ssh_keygen("-Y", "sign", "-n", namespace, "-f", key, *options, file, check=True)
    return signature


def setUpModule():
    if not shutil.which("ssh-keygen"):
        raise unittest.SkipTest("ssh-keygen is not installed")
    global KEYS
    KEYS = FOLDER / "keys"
    KEYS.mkdir()
    for name in ("imac", "mini"):
        make_key(name)


class SignatureTestCase(InventoryTestCase):
    def setUp(self):
        self.folder = FOLDER / self.id()
        self.folder.mkdir()
        self.key = KEYS / "imac"
        self.other = KEYS / "mini"
        self.signers = self.write("allowed_signers", f"{NAME} {public(self.key)}\n")
        self.file = self.copy(scanned("imac-10.6"), "imac.inv")
        self.signature = sign(self.file, self.key)

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def copy(self, file, name):
        return self.write(name, file.read_bytes())

    def verify(self, status, *options, file=None, signers=None):
        """What `inv verify` prints after the file's name, with the signature next to the file."""
        file = file or self.file
        output = self.check(status, "verify", "--allowed-signers", signers or self.signers, *options, file)
        self.assertTrue(output.startswith(f"{file}: ") and output.endswith("\n"))
        return output[len(f"{file}: "):-1]

    def refused(self, reason, *options, **others):
        self.assertEqual(self.verify(1, *options, **others), f"valid; signature refused: {reason}")

    def fingerprint(self, key):
        return ssh_keygen("-l", "-f", f"{key}.pub").stdout.decode().split()[1]

    def ssh_keygen_accepts(self, signers=None, identity=NAME, file=None, signature=None, revoked=()):
        with open(file or self.file, "rb") as stream:
            result = ssh_keygen("-Y", "verify", "-n", NAMESPACE, "-f", signers or self.signers, "-I", identity, "-s",
                                signature or self.signature, *(("-r", *revoked) if revoked else ()), stdin=stream)
        self.assertIn(result.returncode, (0, 255), result.stderr)
        return result.returncode == 0

    def inv_accepts(self, signers=None, identity=NAME, file=None, signature=None):
        result = inv("verify", "--allowed-signers", signers or self.signers, "--identity", identity, "--signature",
                     signature or self.signature, file or self.file)
        self.assertIn(result.returncode, (0, 1), result.stderr)
        return b", signed by " in result.stdout


class Verify(SignatureTestCase):
    def test_names_the_signer(self):
        self.assertEqual(self.verify(0), f"valid, signed by {NAME}")
        self.assertEqual(self.messages, "")
        self.assertEqual(self.verify(0, "--identity", NAME), f"valid, signed by {NAME}")

    def test_finds_the_principals_that_ssh_keygen_finds(self):
        signers = self.write("several", f"mini {public(self.other)}\na,*@b {public(self.key)}\nc {public(self.key)}\n")
        found = ssh_keygen("-Y", "find-principals", "-f", signers, "-s", self.signature, check=True).stdout.decode()
        self.assertEqual(self.verify(0, signers=signers), "valid, signed by " + ",".join(found.split()))

    def test_every_hash_that_ssh_keygen_makes_is_checked(self):
        for hash_name in ("sha256", "sha512"):
            with self.subTest(hash=hash_name):
                sign(self.file, self.key, "-O", f"hashalg={hash_name}")
                self.assertEqual(self.verify(0), f"valid, signed by {NAME}")

    def test_files_of_every_length_are_checked(self):
        for length in (0, 1, 63, 64, 127, 128, 65536, 1 << 20):
            file = self.write("length", b"x" * length)
            sign(file, self.key)
            self.assertRegex(self.verify(1, file=file), f"^invalid at byte .*, signed by {NAME}$")

    def test_a_debug_file_can_be_signed_too(self):
        file = self.copy(debug_scanned("imac-10.6"), "debug.inv")
        sign(file, self.key)
        self.assertEqual(self.verify(0, file=file), f"valid, signed by {NAME}")

    def test_a_file_that_was_damaged_before_it_was_signed_is_invalid_and_signed(self):
        file = self.write("cut.inv", self.file.read_bytes()[:-1])
        sign(file, self.key)
        self.assertRegex(self.verify(1, file=file), f'^invalid at byte [0-9]+: the magic "INV!" is missing, signed by {NAME}$')

    def test_a_file_that_was_damaged_since_is_neither(self):
        self.file.write_bytes(self.file.read_bytes()[:-1])
        self.assertRegex(self.verify(1), '^invalid at byte [0-9]+: the magic "INV!" is missing; '
                                         "signature refused: it is not a signature of this file$")

    def test_refuses_the_signature_of_another_file(self):
        other = self.write("other.inv", self.file.read_bytes() + b"\n")
        sign(other, self.key)
        self.refused("it is not a signature of this file", "--signature", f"{other}.sig")

    def test_refuses_keys_that_are_unknown_of_others_or_revoked(self):
        key = f"the key {self.fingerprint(self.key)}"
        self.refused(f"{key} is not that of mini", "--identity", "mini")
        self.refused(f"{key} is revoked", "--revoked-keys", f"{self.key}.pub")
        self.assertEqual(self.verify(0, "--revoked-keys", f"{self.other}.pub"), f"valid, signed by {NAME}")
        signers = self.write("others", f"mini {public(self.other)}\n")
        self.refused(f"{key} is not an allowed signer's", signers=signers)
        self.refused(f"{key} is not an allowed signer's", signers="/dev/null")

    def test_refuses_keys_before_and_after_their_time(self):
        key = f"the key {self.fingerprint(self.key)}"
        for options, reason in (('valid-after="20990101"', "is not valid yet"), ('valid-before="20200101Z"', "is not valid any more")):
            signers = self.write("timed", f"{NAME} {options} {public(self.key)}\n")
            self.refused(f"{key} {reason}", signers=signers)

    def test_refuses_other_namespaces(self):
        sign(self.file, self.key, namespace="file")
        self.refused('it is made for "file", not for "velkaro-inventory"')
        sign(self.file, self.key)
        signers = self.write("filed", f'{NAME} namespaces="file" {public(self.key)}\n')
        self.refused(f"the key {self.fingerprint(self.key)} may not sign for velkaro-inventory", signers=signers)

    def test_names_types_of_keys_that_it_does_not_check(self):
        for name, kind in (("rsa", "ssh-rsa"), ("ecdsa", "ecdsa-sha2-nistp256")):
            with self.subTest(kind=kind):
                key = make_key(name, name)
                sign(self.file, key)
                signers = self.write(name, f"{NAME} {public(key)}\n")
                self.refused(f"it is signed with a key of the type {kind}, and only ssh-ed25519 is supported", signers=signers)
                self.assertEqual(self.messages, LISTED.format(signers, 1, f"keys of the type {kind} are not supported"))

    def test_names_certificates(self):
        make_key("authority")
        ssh_keygen("-q", "-s", KEYS / "authority", "-I", "id", "-n", NAME, f"{self.key}.pub", check=True)
        sign(self.file, f"{self.key}-cert.pub")
        signers = self.write("authorities", f"*@studio.example.com cert-authority {public(KEYS / 'authority')}\n")
        self.assertTrue(self.ssh_keygen_accepts(signers))
        self.refused("it is signed with a key of the type ssh-ed25519-cert-v01@openssh.com, and only ssh-ed25519 is supported",
                     signers=signers)
        self.assertEqual(self.messages, LISTED.format(signers, 1, "cert-authority is not supported"))

    def test_a_file_without_a_signature_is_refused(self):
        self.signature.unlink()
        self.refused(f"{self.signature} cannot be read: No such file or directory")
        self.write("imac.inv.sig", b"x" * 65537)
        self.refused(f"{self.signature} is larger than 65536 bytes")
        self.write("imac.inv.sig", self.file.read_bytes()[:60000])
        self.refused("it is not a signature as ssh-keygen -Y sign makes it")

    def test_several_files_have_a_signature_each(self):
        other = self.copy(scanned(OTHER_MACHINE), "other.inv")
        sign(other, self.other)
        signers = self.write("both", f"imac {public(self.key)}\nmini {public(self.other)}\n")
        self.assertEqual(self.check(0, "verify", "--allowed-signers", signers, self.file, other),
                         f"{self.file}: valid, signed by imac\n{other}: valid, signed by mini\n")
        self.assertEqual(self.check(1, "verify", "--allowed-signers", signers, "--identity", "mini", self.file, other),
                         f"{self.file}: valid; signature refused: the key {self.fingerprint(self.key)} is not that of mini\n"
                         f"{other}: valid, signed by mini\n")

    def test_standard_input_may_be_signed(self):
        output = self.check(0, "verify", "--allowed-signers", self.signers, "--signature", self.signature, "-",
                            input=self.file.read_bytes())
        self.assertEqual(output, f"standard input: valid, signed by {NAME}\n")

    def test_a_quiet_run_answers_by_its_status(self):
        self.assertEqual(self.check(0, "verify", "-q", "--allowed-signers", self.signers, self.file), "")
        self.assertEqual(self.check(1, "verify", "-q", "--allowed-signers", "/dev/null", self.file), "")

    def test_options_that_cannot_be_met_end_with_2(self):
        bad = self.write("bad", f"{public(self.key)}\nnonsense\n")
        binary = self.folder / "binary"
        ssh_keygen("-q", "-k", "-f", binary, f"{self.other}.pub", check=True)
        allowed = ("--allowed-signers", self.signers)
        missing = "cannot be read: No such file or directory"
        for options, message in (
                (("--allowed-signers", "/nowhere"), f"inv: /nowhere: {missing}\n"),
                (("--allowed-signers", self.folder), f"inv: {self.folder}: cannot be read: Is a directory\n"),
                ((*allowed, "--revoked-keys", "/nowhere"), f"inv: /nowhere: {missing}\n"),
                ((*allowed, "--revoked-keys", bad), LISTED.format(bad, 2, NO_KEY)),
                ((*allowed, "--revoked-keys", binary),
                 LISTED.format(binary, 1, "binary revocation lists are not supported; list public keys, one per line")),
                ((*allowed, "--signature", self.signature, self.file),
                 "inv: --signature: is for one file; without it, the signature of FILE is FILE.sig\n"),
                ((*allowed, "-"), "inv: standard input: has no signature beside it; name one with --signature\n")):
            for command in (["verify"], ["summary"], ["load", self.folder / "x.db"]):
                with self.subTest(command=command[0], message=message):
                    self.assertEqual(self.check(2, *command, *options, self.file), "")
                    self.assertEqual(self.messages, message)
        self.assertFalse((self.folder / "x.db").exists())

    def test_the_other_options_need_a_list(self):
        for option in ("--signature", "--identity", "--revoked-keys"):
            for command in (["verify"], ["summary"], ["load", self.folder / "x.db"]):
                self.assertEqual(self.check(2, *command, option, "x", self.file), "")
                self.assertIn("--allowed-signers", self.messages)

    def test_no_option_may_be_empty(self):
        # A script whose variable is not set must not load unchecked files.
        for options in (["--allowed-signers", ""], *(["--allowed-signers", self.signers, option, ""]
                                                     for option in ("--signature", "--identity", "--revoked-keys"))):
            for command in (["verify"], ["summary"], ["load", self.folder / "x.db"]):
                with self.subTest(options=options, command=command[0]):
                    self.assertEqual(self.check(2, *command, *options, self.file), "")
                    self.assertIn("cannot be empty", self.messages)

    def test_a_line_that_cannot_be_read_is_reported_and_spoils_no_other(self):
        signers = self.write("mixed", f"# ours\nnonsense\n{NAME} {public(self.key)}\n")
        self.assertEqual(self.verify(0, signers=signers), f"valid, signed by {NAME}")
        self.assertEqual(self.messages, LISTED.format(signers, 2, NO_KEY))

    def test_names_cannot_reach_the_terminal(self):
        signers = self.write("coloured", f"\"\x1b[31mred\" {public(self.key)}\n")
        self.assertEqual(self.verify(0, signers=signers), "valid, signed by \uFFFD[31mred")


class Users(SignatureTestCase):
    """The commands that use only files whose signature is accepted."""

    def setUp(self):
        super().setUp()
        self.unsigned = self.copy(scanned(OTHER_MACHINE), "unsigned.inv")
        self.refusal = f"inv: {self.unsigned}: signature refused: {self.unsigned}.sig cannot be read: No such file or directory\n"
        self.database = self.folder / "macs.db"

    def loaded(self):
        database = sqlite3.connect(self.database)
        self.addCleanup(database.close)
        return database.execute("SELECT file, signed_by FROM machines ORDER BY file").fetchall()

    def test_summary_names_the_signer(self):
        lines = self.check(0, "summary", "--allowed-signers", self.signers, self.file).splitlines()
        self.assertIn(f"Signed by     {NAME}", lines)
        self.assertNotIn("Signed by", self.check(0, "summary", self.file))

    def test_a_table_of_machines_names_it_too(self):
        table = self.check(1, "summary", "--allowed-signers", self.signers, self.file, self.unsigned).splitlines()
        self.assertEqual(self.messages, self.refusal)
        self.assertEqual(len(table), 2)
        self.assertTrue(table[0].endswith("  Signed by"))
        self.assertRegex(table[1], r"  imac@\S*\u2026$")
        self.assertLessEqual(len(table[1]), 80)
        machines = json.loads(self.check(1, "summary", "--json", "--allowed-signers", self.signers, self.file, self.unsigned))
        self.assertEqual([machine["signed_by"] for machine in machines], [NAME])
        self.assertNotIn("Signed by", self.check(0, "summary", self.file, self.unsigned))

    def test_nothing_is_shown_of_a_file_whose_signature_is_refused(self):
        self.assertEqual(self.check(1, "summary", "--allowed-signers", self.signers, self.unsigned), "")
        self.assertEqual(self.messages, self.refusal)

    def test_load_records_the_signer(self):
        self.check(1, "load", "--allowed-signers", self.signers, self.database, self.unsigned, self.file)
        self.assertRegex(self.messages, re.escape(self.refusal) + r"1 loaded, .* 1 refused, .* s\n$")
        self.assertEqual(self.loaded(), [(str(self.file), NAME)])

    def test_load_records_the_identity_that_was_asked_for(self):
        signers = self.write("patterns", f"*@studio.example.com {public(self.key)}\n")
        self.check(0, "load", "--allowed-signers", signers, "--identity", NAME, self.database, self.file)
        self.assertEqual(self.loaded(), [(str(self.file), NAME)])

    def test_load_without_the_options_needs_no_signature(self):
        self.check(0, "load", self.database, self.unsigned, self.file)
        self.assertEqual(self.loaded(), [(str(self.file), ""), (str(self.unsigned), "")])


class Flips(SignatureTestCase):
    """A small signed file, so that the many runs are short."""

    def setUp(self):
        super().setUp()
        self.file = self.write("small.inv", b"what was signed, and nothing else")
        self.signature = sign(self.file, self.key)

    def flipped(self, path, position, flip):
        data = bytearray(path.read_bytes())
        data[position] ^= flip
        return self.write(f"flipped-{path.name}", bytes(data))

    def test_every_flipped_byte_of_the_file_is_refused(self):
        self.assertTrue(self.inv_accepts())
        for position in range(len(self.file.read_bytes())):
            file = self.flipped(self.file, position, 1 << position % 8)
            self.assertFalse(self.inv_accepts(file=file), position)

    def test_flipped_bytes_of_an_inventory_are_refused(self):
        file = self.copy(scanned("imac-10.6"), "imac.inv")
        signature = sign(file, self.key)
        size = len(file.read_bytes())
        for position in [*range(0, size, size // 40 or 1), size - 1]:
            self.assertFalse(self.inv_accepts(file=self.flipped(file, position, 0x20), signature=signature), position)

    def test_every_flipped_byte_of_the_signature_has_ssh_keygens_verdict(self):
        text = self.signature.read_bytes()
        end = text.index(b"-----END")
        accepted = []
        for position, byte in enumerate(text):
            # A flip that keeps the alphabet, one that leaves it, and one that makes the byte a zero.
            for flip in {(0x01, 0x80, byte)[position % 3], 0x20}:
                signature = self.flipped(self.signature, position, flip)
                ours = self.inv_accepts(signature=signature)
                with self.subTest(position=position, flip=flip):
                    self.assertEqual(ours, self.ssh_keygen_accepts(signature=signature))
                if ours:
                    accepted.append(position)
        # Ignored are the line ends within the armor, like other blanks, and what follows it.
        for position in accepted:
            self.assertTrue(text[position:position + 1] == b"\n" or position > end, position)

    def test_signatures_in_other_forms_have_ssh_keygens_verdict(self):
        text = self.signature.read_bytes()
        lines = text.splitlines(keepends=True)
        joined = b"".join(line.rstrip() for line in lines[1:-1]) + b"\n"
        cases = {
            "as written": (text, True),
            "one line": (lines[0] + joined + lines[-1], True), "no last line end": (text[:-1], True),
            "a note behind it": (text + b"note", True), "blanks": (text.replace(b"A", b" A\t\v\f\r\n"), False),
            "blanks in the middle": (lines[0] + joined.replace(b"A", b" A\t\v\f\r\n") + lines[-1], True),
            "a note before it": (b"note\n" + text, False), "an empty line before it": (b"\n" + text, False),
            "an empty line in it": (lines[0] + b"\n" + b"".join(lines[1:]), True), "nothing": (b"", False),
            "no armor": (b"".join(lines[1:-1]), False), "no end": (b"".join(lines[:-1]), False),
            "no padding": (text.replace(b"=", b""), False), "more padding": (text.replace(b"=\n", b"==\n"), False),
            "two": (text + text, True), "nothing in it": (lines[0] + lines[-1], False),
            "a zero byte": (text[:60] + b"\0" + text[60:], False),
        }
        for name, (changed, accepted) in cases.items():
            with self.subTest(name=name):
                signature = self.write("changed.sig", changed)
                self.assertEqual(self.ssh_keygen_accepts(signature=signature), accepted)
                self.assertEqual(self.inv_accepts(signature=signature), accepted)

    def test_lists_have_ssh_keygens_verdict(self):
        key, other = public(self.key), public(self.other)
        rsa = "ssh-rsa AAAAB3NzaC1yc2EAAAADAQABAAAAAQ=="
        lines_for = {
            True: [
                f"{NAME} {key}", f"{NAME} {key} comment\r", f" \t{NAME}\t{key}\t\"comment", f"* {key}", f"a,{NAME},b {key}",
                f"imac@*.example.com {key}", f"imac@????io.example.com {key}", f"*,!mini {key}", f'"{NAME}" {key}',
                f'a,"{NAME}" {key}', f'{NAME} namespaces="{NAMESPACE}" {key}', f'{NAME} namespaces="file,velkaro-*" {key}',
                f'{NAME} NameSpaces="*" {key}', f'{NAME} namespaces="a\\"b,*" {key}', f'{NAME} namespaces="a b,*" {key}',
                f'{NAME} valid-after="20200101" {key}', f'{NAME} valid-after="202001011200Z" {key}',
                f'{NAME} valid-after="20200101120000z" {key}', f'{NAME} valid-after="20200101UTC" {key}',
                f'{NAME} valid-after="20200131235960Z" {key}', f'{NAME} valid-after="20200231" {key}',
                f'{NAME} valid-before="20370101",valid-after="20200101",namespaces="*" {key}',
                f"# comment\n\n{NAME} {key}", f"nonsense\n{NAME} {key}", f"{NAME} {rsa}\n{NAME} {key}", f"{NAME} {other}\n{NAME} {key}",
                f'{NAME} valid-before="20200101" {key}\n{NAME} {key}', f"{NAME} {key}\nnonsense", f"{NAME},{'x' * 900} {key}",
                f"{NAME} {key} {'x' * 200000}", ",".join(f"mac{i}" for i in range(20000)) + f",{NAME} {key}",
            ],
            False: [
                "", "\n", f"#{NAME} {key}", key, NAME, f"{NAME} {other}", f"{NAME} {rsa}", f"{NAME}x {key}", f"IMAC{NAME[4:]} {key}",
                f"!{NAME} {key}", f"*,!{NAME} {key}", f"!imac@*,* {key}", f"imac {key}", f"a, {NAME} {key}", f'"{NAME} {key}',
                f"{NAME} cert-authority {key}", f'{NAME} namespaces="file" {key}', f'{NAME} namespaces="" {key}',
                f'{NAME} namespaces="*,!{NAMESPACE}" {key}', f'{NAME} namespaces="VELKARO-INVENTORY" {key}',
                f"{NAME} namespaces={NAMESPACE} {key}", f'{NAME} namespaces="*",namespaces="*" {key}',
                f'{NAME} namespaces="* {key}', f'{NAME} valid-before="20200101" {key}', f'{NAME} valid-after="20370101" {key}',
                f"{NAME} valid-after=20200101 {key}", f'{NAME} valid-after="2020-01-01" {key}', f'{NAME} valid-after="20201301" {key}',
                f'{NAME} valid-after="2020010124" {key}', f'{NAME} valid-after="202001012400" {key}', f'{NAME} valid-after="" {key}',
                f'{NAME} valid-after="19700101Z" {key}', f'{NAME} valid-after="20200101",valid-after="20200101" {key}',
                f'{NAME} valid-before="20370101",valid-after="20380101" {key}', f'{NAME} valid-after="20200101", {key}',
                f"{NAME} no-touch-required {key}", f'{NAME} valid-after="20200101"x {key}', f"{NAME} {key[:-4]}", f"{NAME} {key}AAAA",
                f"{NAME} ssh-rsa {key.split()[1]}", f"{NAME}\n{key}", f"{NAME} x {key}", f"{NAME} x y {key}",
            ],
        }
        for accepted, contents in lines_for.items():
            for content in contents:
                with self.subTest(content=content[:100]):
                    signers = self.write("table", content + "\n")
                    self.assertEqual(self.ssh_keygen_accepts(signers), accepted)
                    self.assertEqual(self.inv_accepts(signers), accepted)

    def test_revocation_lists_have_ssh_keygens_verdict(self):
        key, other = public(self.key), public(self.other)
        for content, status in (("", 0), ("\n# lost\n", 0), (other, 0), (f"{other}\n{key} x\n", 1), (f" \t{key}", 1), (f"#{key}", 0)):
            with self.subTest(content=content):
                revoked = self.write("revoked", content)
                self.assertEqual(self.ssh_keygen_accepts(revoked=[revoked]), status == 0)
                verdict = self.verify(1, "--revoked-keys", revoked)
                self.assertEqual(", signed by " in verdict, status == 0)


if __name__ == "__main__":
    unittest.main()
