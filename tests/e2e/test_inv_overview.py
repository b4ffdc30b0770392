"""What summary and report say about each simulated Mac, and about the recordings of real ones if available: the true name of its
system, what an extended scan adds, and what is missing."""

import functools
import html
import re
import unittest

from inventories import MACHINES, ROOT, SIMULATOR, InventoryTestCase, scan

SAMPLES = ROOT.parent / "shared" / "samples" / "machines"

# Of each machine: lines of the summary of an ordinary scan, and of an extended one.
PLAIN = {
    "imac-10.6": ["System        Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549), 32-bit", "Firewall      on",
                  "Memory        4 GB  ███░  3 of 4 slots filled", "Graphics      ATI Radeon HD 4850, 512 MB"],
    "mac-pro-10.5": ["System        Mac OS X v10.5 (Leopard), 10.5.8 (9L30)", "Processor     2 x Quad-Core Intel Xeon, 8 cores, 2660 MHz",
                     "              display, no details reported", "Firewall      on, blocks all connections, stealth mode"],
    "macbook-10.7": ["System        Mac OS X v10.7 (Lion), 10.7 (11A511), 64-bit", "              Intel HD Graphics 3000"],
    "imac-11": ["System        macOS 11 (Darwin 20.6.0)", "Displays      display, no details reported",
                "Missing       scanned without /extended: displays"],
    "macbook-pro-10.15": ["System        macOS 10.15 (Darwin 19.6.0)", "Graphics      Intel UHD Graphics 630",
                          "Missing       scanned without /extended: disks, volumes, displays"],
    "macbook-pro-26": ["System        macOS 26 (Darwin 25.1.0)", "Memory        48 GB", "Graphics      Apple M4 Pro", "Firewall      on, stealth mode",
                       "Missing       scanned without /extended: disks, processor, volumes, displays"],
    "virtual-mac-26": ["System        macOS 26 (Darwin 25.1.0)", "Memory        8 GB", "Firewall      off",
                       "Missing       scanned without /extended: disks, processor, volumes, displays"],
}
EXTENDED = {
    "imac-10.6": ["Model         iMac, iMac11,1", "System        Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549), 32-bit",
                  "Processor     Intel Core i7, 4 cores, 2800 MHz, Intel(R) Core(TM) i7 CPU         860  @ 2.80GHz",
                  "Disks         SIMDISK S1TB-7200, 1.0 TB, SATA, hard disk",
                  "Displays      iMac, built-in, 27 in, 2560 x 1440, main"],
    "mac-pro-10.5": ["              SIMDISK S2TB-5400, 2.0 TB, SATA, Failing by SMART", "              Console switch, 1024 x 768 @ 60 Hz, main",
                     "Missing       no answer: ioreg"],
    "macbook-10.7": ["Processor     Intel Core i7, 4 cores, 2000 MHz, Intel(R) Core(TM) i7-2720QM CPU @ 2.20GHz",
                     "Battery       condition Good, 21 cycles"],
    "imac-11": ["System        macOS 11.7.10 (20G1427)", "              APPLE SSD SM0032SIM, 32 GB, NVMe, SSD",
                "Processor     Quad-Core Intel Core i5, 4 cores, 3400 MHz, Intel(R) Core(TM) i5-7500 CPU @ 3.40GHz",
                "              Macintosh HD         shares this space",
                "Displays      iMac, built-in, 2560 x 1440 @ 60.00Hz, 5120 x 2880 pixels, main",
                "Security      FileVault off", "              SIP unknown (Custom Configuration) (the profiler: on)"],
    "macbook-pro-10.15": ["System        Mac OS X 10.15.7 (19H2026)", "Memory        16 GB, not upgradeable  ██  2 of 2 slots filled",
                          "Graphics      Intel UHD Graphics 630, 1536 MB shared", "              AMD Radeon Pro 5300M, 4096 MB",
                          "Management    enrolled in MDM, not approved by the user"],
    "macbook-pro-26": ["Model         MacBook Pro, Mac16,8", "System        macOS 26.1 (25B78)", "Processor     Apple M4 Pro, 12 cores (8 P + 4 E)",
                       "Memory        48 GB LPDDR5, soldered", "Disks         APPLE SSD AP1024SIM, 1.0 TB, NVMe, SSD",
                       "Volumes       Macintosh HD  ███████████░░░░░░░░░  57 % of 995 GB, 421 GB free", "              Lab - Data    shares this space",
                       "              FIELD DATA    ███████░░░░░░░░░░░░░  37 % of 2.0 TB, 1.3 TB free",
                       "Displays      Color LCD, built-in, 1512 x 982 @ 120.00Hz, 3024 x 1964 pixels, main",
                       "              Studio 27Q, 2560 x 1440 @ 60.00Hz, 5120 x 2880 pixels", "Graphics      Apple M4 Pro, 16 cores, Metal 4",
                       "Battery       condition Good, 61 cycles, maximum capacity 94%, charged to 82 %, charging, charger of 94 W",
                       "Security      FileVault on, SIP on, Gatekeeper on, secure boot: Full Security", "              Activation Lock on, XProtect 5329",
                       "Management    enrolled in MDM, approved by the user, assigned by the organisation"],
    "virtual-mac-26": ["Model         Apple Virtual Machine 1, VirtualMac2,1, virtual machine", "System        macOS 26.1 (a) (25B78)",
                       "Memory        8 GB RAM", "Security      FileVault off, SIP off, Gatekeeper off, Activation Lock off"],
}
# The one machine whose extended scan does not learn all: its I/O registry is silent.
INCOMPLETE = "mac-pro-10.5"
# The systems that the scanner's mapping knows, by the kernels that they have.
OLD_NAMES = {"Puma": 5, "Jaguar": 6, "Panther": 7, "Tiger": 8, "Leopard": 9, "Snow Leopard": 10, "Lion": 11, "Cheetah": 1}


@functools.lru_cache(maxsize=None)
def scanned(machine, *arguments):
    return scan(machine, *arguments)


def texts_of(page):
    """What a reader of a page sees of its cards, line by line."""
    return [html.unescape(re.sub(r"<[^>]*>", "", line)) for line in re.findall(r"<p>(.*?)</p>", page)]


def each(test):
    """The test for each machine, scanned the one way and the other."""
    def run(self):
        for machine in MACHINES:
            for arguments in ((), ("/extended",)):
                with self.subTest(machine=machine.name, arguments=arguments):
                    test(self, machine.name, arguments, scanned(machine, *arguments))
    return run


class Overviews(InventoryTestCase):
    maxDiff = None

    @each
    def test_summaries_have_the_facts_of_their_machine(self, name, arguments, path):
        lines = self.check(0, "summary", path).splitlines()
        for line in (EXTENDED if arguments else PLAIN)[name]:
            self.assertIn(line, lines)

    def test_show_keeps_the_recorded_words(self):
        path = scanned(SIMULATOR / "machines" / "macbook-pro-26", "/extended")
        self.assertIn("/OS/os:1  Mac OS X v10.2 (Jaguar)", self.check(0, "show", path, "/OS"))

    @each
    def test_reports_have_the_same_facts_on_cards(self, name, arguments, path):
        shown = "\n".join(texts_of(self.check(0, "report", path)))
        for line in (EXTENDED if arguments else PLAIN)[name]:
            label, text = line[:14].strip(), line[14:]
            if label in ("Processor", "Battery", "Security"):
                for fact in text.split(", "):
                    self.assertIn(fact, shown)
            elif label == "System":
                self.assertIn(text.partition(", 32-bit")[0].partition(", 64-bit")[0], shown)
            elif label in ("Displays", "Graphics", "Management", "Firewall", "Missing") or "display, no details" in text:
                self.assertIn(text, shown)

    def test_what_a_container_shares_is_counted_once(self):
        page = self.check(0, "report", scanned(SIMULATOR / "machines" / "macbook-pro-26", "/extended"))
        self.assertIn("1.7 TB of 3.0 TB free", texts_of(page))
        self.assertEqual(page.count("percent used"), 2)
        self.assertIn("<bdi>Macintosh HD</bdi>, <bdi>Data</bdi>, <bdi>Lab</bdi>, <bdi>Lab - Data</bdi>", page)

    @each
    def test_strict_checks_fail_where_something_is_missing(self, name, arguments, path):
        missing = "\nMissing " in self.check(0, "summary", path)
        told = self.check(1 if missing else 0, "verify", "--strict", path)
        self.assertEqual("valid, but incomplete: " in told, missing)
        self.assertEqual(self.check(0, "verify", path), f"{path}: valid\n")
        if arguments:
            self.assertEqual(missing, name == INCOMPLETE)

    def test_strict_checks_say_what_is_missing(self):
        path = scanned(SIMULATOR / "machines" / "macbook-pro-26")
        self.assertEqual(self.check(1, "verify", "--strict", path),
                         f"{path}: valid, but incomplete: scanned without /extended: disks, processor, volumes, displays\n")
        self.assertEqual(self.check(1, "verify", "--strict", "--quiet", path), "")
        path = scanned(SIMULATOR / "machines" / "macbook-pro-26", "/debug")
        self.assertEqual(self.check(1, "verify", "--strict", path),
                         f"{path}: valid, but incomplete: no snapshot: only the machine's summary\n")

    def check_sense(self, path):
        """Nothing impossible in the summary or on the page."""
        summary = self.check(0, "summary", path)
        page = self.check(0, "report", path)
        kernel = re.search(r"^Kernel +Darwin (\d+)", summary, re.M)
        for text in (summary, "\n".join(texts_of(page))):
            self.assertNotRegex(text, r"(?<!\d)0 MB")
            self.assertNotRegex(text, r"\b0 of \d+ slots? filled")
            self.assertNotRegex(text, r"(?m)(^|, )(,|$)(?<=.)|, $")
            name = re.search(r"Mac OS X v10\.\d+ \(([\w ]+)\)", text)
            if name and kernel:
                self.assertEqual(int(kernel[1]), OLD_NAMES[name[1]], text)
        self.assertEqual("memory slots are filled" in page, " filled\n" in summary)

    @each
    def test_no_machine_contradicts_itself(self, _name, _arguments, path):
        self.check_sense(path)

    @unittest.skipUnless(SAMPLES.is_dir(), "the recordings (../shared/samples/machines) are not beside the repository")
    def test_no_recording_contradicts_itself(self):
        for machine in sorted(SAMPLES.iterdir()):
            for arguments in ((), ("/extended",)):
                with self.subTest(machine=machine.name, arguments=arguments):
                    self.check_sense(scanned(machine, *arguments))


if __name__ == "__main__":
    unittest.main()
