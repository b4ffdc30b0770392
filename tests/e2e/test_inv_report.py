"""The pages of `inv report`: one for a fleet, one for each of its machines beside it, and one of what changed."""

import html
import re
import shutil
import tempfile
import unittest
from pathlib import Path

from inventories import InventoryTestCase, file_of_text, scanned

MACHINES = ("imac-10.6", "mac-pro-10.5", "macbook-10.7")
SECRET = "geheim-of-the-fleet-1"


def text_of(page):
    return html.unescape(re.sub("<[^>]*>", "", page))


def small_file(lines):
    return file_of_text(b"\xef\xbb\xbf?zxml\n+Snapshot=\n" + lines + b"-\n")


class Pages(InventoryTestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.scans = self.folder / "scans"
        self.scans.mkdir()
        for name in MACHINES:
            shutil.copy(scanned(name), self.scans / f"{name}.inv")
        self.out = self.folder / "fleet.html"

    def make(self, *arguments, status=0):
        """The text of the fleet's page."""
        self.check(status, "report", *arguments, "-o", self.out)
        return self.out.read_text()

    def linked_pages(self):
        """The machines' pages by their addresses."""
        table = self.out.read_text().split('<section id="machines">')[1]
        return {address: (self.folder / address).read_text() for address in re.findall('<a href="([^"#]+)"', table)}

    def plant(self, name, lines):
        (self.scans / name).write_bytes(small_file(lines))

    def test_a_fleet_links_to_a_page_for_each_machine(self):
        page = self.make(self.scans)
        self.assertIn("<p>3 machines</p>", page)
        pages = self.linked_pages()
        self.assertEqual(len(pages), len(MACHINES))
        self.assertEqual({path.name for path in self.folder.glob("*.html")}, {"fleet.html", *pages})
        for name in MACHINES:
            serial = self.check(0, "get", scanned(name), "/System/Chassis/serial").strip()
            self.assertEqual(pages[f"fleet-{serial}.html"], self.check(0, "report", scanned(name)))
            self.assertIn(f"<bdi>{serial}</bdi>", page)

    def test_a_list_of_files_is_a_fleet_as_well(self):
        names = self.folder / "names"
        names.write_text(f"{self.scans}/imac-10.6.inv\n{self.scans}/mac-pro-10.5.inv\n")
        self.assertIn("<p>2 machines</p>", self.make("--files-from", names))
        self.assertEqual(len(self.linked_pages()), 2)

    def test_a_machine_that_was_scanned_twice_is_one(self):
        shutil.copy(self.scans / "imac-10.6.inv", self.scans / "again.inv")
        self.assertIn("<p>3 machines</p>", self.make(self.scans))

    def test_a_file_that_cannot_be_read_leaves_the_others(self):
        (self.scans / "broken.inv").write_text("no inventory")
        self.assertIn("<p>3 machines</p>", self.make(self.scans, status=2))
        self.assertIn("broken.inv: at byte", self.messages)

    def test_nothing_that_a_name_says_leads_elsewhere(self):
        self.plant("evil.inv", b"hostname=../../<b>\"x\n")
        self.assertIn("<bdi>../../&lt;b&gt;&quot;x</bdi>", self.make(self.scans))
        self.assertEqual(len(self.linked_pages()), 4)
        self.assertEqual(len(list(self.folder.glob("fleet-*.html"))), 4)

    def test_volumes_that_share_their_space_fill_up_once(self):
        self.plant("full.inv", b"hostname=FULL\n+Storage=\n+Logical-disks=\n*partition:1=HD\ncontainer=disk3\nsize=100\nfree=4\n"
                   b"*partition:2=Data\ncontainer=disk3\nsize=100\nfree=4\n-\n-\n")
        full = self.make(self.scans).split('<section id="disks-filling-up">')[1].split("</section>")[0]
        self.assertEqual(re.findall("FULL.*free", text_of(full)), ["FULL: HD, Data96 % of 100 GB, 4.0 GB free"])

    def test_secrets_are_on_no_page_unless_somebody_asks_for_them(self):
        self.plant("secret.inv", b"hostname=S\n+Environment=\n*env-var:MY_TOKEN=MY_TOKEN\nvalue=" + SECRET.encode() + b"\n-\n")
        self.make(self.scans)
        self.assertIn("secret", self.messages)
        self.assertFalse(any(SECRET in path.read_text() for path in self.folder.glob("*.html")))
        self.make(self.scans, "--secrets")
        self.assertEqual(self.messages, "")
        self.assertTrue(any(SECRET in page for page in self.linked_pages().values()))

    def test_a_fleet_needs_a_place_for_its_pages(self):
        for arguments in ([self.scans], [self.scans / "imac-10.6.inv", self.scans / "mac-pro-10.5.inv"]):
            self.assertEqual(self.check(2, "report", *arguments), "")
            self.assertIn("-o FILE", self.messages)

    def test_a_folder_without_files_makes_no_page(self):
        empty = self.folder / "empty"
        empty.mkdir()
        self.check(1, "report", empty, "-o", self.out)
        self.assertFalse(self.out.exists())

    def test_a_machines_page_replaces_no_input(self):
        self.plant("A.inv", b"hostname=A\n")
        self.make(self.scans / "A.inv", self.scans / "imac-10.6.inv")
        (address,) = (address for address, page in self.linked_pages().items() if "<title>A</title>" in page)
        own = self.folder / address
        shutil.copy(self.scans / "A.inv", own)
        before = own.read_bytes()
        self.check(2, "report", own, self.scans / "imac-10.6.inv", "-o", self.out)
        self.assertIn("--force replaces it", self.messages)
        self.assertEqual(own.read_bytes(), before)
        self.make("--force", own, self.scans / "imac-10.6.inv")

    def test_a_comparison_words_the_changes_as_diff_does(self):
        old, new = self.folder / "old.inv", self.folder / "new.inv"
        for path, version in ((old, b"5.0"), (new, b"5.1")):
            path.write_bytes(small_file(b"hostname=A\n+Software=\n*Soft:1=Safari\nversion=" + version + b"\nlocation=/Safari.app\n-\n"))
        page = self.check(0, "report", "--compare", old, new)
        self.assertIn("1 change since", page)
        self.assertIn(self.check(1, "diff", old, new).strip(), text_of(page))

    def test_a_comparison_warns_of_two_machines(self):
        imac, mac_pro = (self.scans / f"{name}.inv" for name in MACHINES[:2])
        self.assertIn("Note: these are two different machines: ", text_of(self.check(0, "report", "--compare", imac, mac_pro)))
        self.assertNotIn('class="warning"', self.check(0, "report", "--compare", imac, imac))


if __name__ == "__main__":
    unittest.main()
