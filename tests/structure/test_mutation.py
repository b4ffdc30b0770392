"""The tables of deliberate faults fit the sources: a mismatch would otherwise be noticed only by the next run of hours."""

import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "mutation"))

from fault_table import TableError, read_tables  # noqa: E402
from run import layers  # noqa: E402


class FaultTables(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.faults = read_tables()

    def test_name_text_that_its_source_has_exactly_once(self):
        wrong = []
        for fault in self.faults:
            try:
                fault.apply((ROOT / fault.source).read_text())
            except (OSError, TableError) as error:
                wrong.append(str(error))
        self.assertEqual("\n".join(wrong), "")

    def test_name_end_to_end_tests_that_exist(self):
        wrong = set()
        for test in {test for fault in self.faults for test in fault.e2e}:
            script, _, case = test.partition(".")
            path = ROOT / "tests" / "e2e" / f"{script}.py"
            if not path.exists() or (case and f"class {case}(" not in path.read_text()):
                wrong.add(test)
        self.assertEqual(wrong, set())

    def test_have_tests_that_can_notice_them(self):
        built = {folder.name for folder in (ROOT / "tests").iterdir() if any(folder.rglob("*_test.cpp"))}
        wrong = {fault.name for fault in self.faults if not (set(layers(fault.source)) <= built and (layers(fault.source) or fault.e2e))}
        self.assertEqual(wrong, set())

    def test_cover_every_folder_of_the_sources(self):
        covered = {Path(fault.source).parent for fault in self.faults}
        folders = {path.parent.relative_to(ROOT) for folder in ("src", "inv") for path in (ROOT / folder).rglob("*.cpp")}
        # The stand-in for the Mac's library has the contract tests; the Mac's own files are not built here.
        self.assertEqual(folders - covered, {Path("src/platform/corefoundation"), Path("src/platform/darwin")})


if __name__ == "__main__":
    unittest.main()
