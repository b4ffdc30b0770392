"""The list of what is linked is sound by its schema, and agrees with the programs themselves."""

import json
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import release
from release import output_of

VALIDATORS = release.ROOT / "tests" / "validators"
# The compiler's own libraries and the system's are in no list.
OF_THE_SYSTEM = r"(libstdc\+\+|libgcc_s|libc|libm|ld-linux[^.]*)\.so"
# How a loaded file is called in the list.
NAMES = {"libicui18n": "ICU", "libicuuc": "ICU", "libsqlite3": "SQLite", "libz": "zlib"}


def sbom(program):
    return json.loads(program.with_name(program.name + ".cdx.json").read_text())


def versions(program):
    return {component["name"]: component.get("version") for component in sbom(program)["components"]}


@release.needed
class Sbom(unittest.TestCase):
    def test_names_the_program_and_its_version(self):
        for program in release.PROGRAMS:
            about = sbom(program)["metadata"]["component"]
            self.assertEqual((about["name"], about["version"]), (program.name, release.VERSION))
            self.assertEqual(about["type"], "application")

    def test_lists_what_the_reader_says_it_runs_with(self):
        lines = output_of(release.RELEASE / "inv", "--version").splitlines()[1:]
        self.assertEqual(versions(release.RELEASE / "inv"), dict(line.split(" ") for line in lines))

    def test_lists_what_the_scanner_is_made_of(self):
        self.assertEqual(set(versions(release.RELEASE / "velkaro-scanner")), {"ICU", "zlib"})
        for version in versions(release.RELEASE / "velkaro-scanner").values():
            self.assertRegex(version, r"^\d+(\.\d+)+$")

    @unittest.skipUnless(shutil.which("readelf"), "readelf is not installed")
    def test_leaves_out_no_library_that_is_loaded(self):
        for program in release.PROGRAMS:
            loaded = re.findall(r"NEEDED.*\[(.*)\]", output_of("readelf", "-d", program))
            stems = {name.split(".so")[0] for name in loaded if not re.match(OF_THE_SYSTEM, name)}
            self.assertGreater(len(stems), 1)
            self.assertLessEqual({NAMES.get(stem, stem) for stem in stems}, set(versions(program)))

    def test_refers_to_every_component_once(self):
        for program in release.PROGRAMS:
            listed = [component["bom-ref"] for component in sbom(program)["components"]]
            self.assertEqual(sbom(program)["dependencies"], [{"ref": program.name, "dependsOn": listed}])
            self.assertEqual(len(set(listed)), len(listed))

    def test_a_library_that_nobody_described_ends_the_configuration(self):
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "main.cpp").write_text("int main() {}\n")
            Path(folder, "CMakeLists.txt").write_text(
                "cmake_minimum_required(VERSION 3.25)\nproject(sbom CXX)\n"
                f"include({release.ROOT}/cmake/sbom.cmake)\n"
                "add_executable(program main.cpp)\nadd_library(own INTERFACE)\n"
                "target_link_libraries(own INTERFACE known unknown)\ntarget_link_libraries(program PRIVATE own)\n"
                'velkaro_describe_library(known Known 1.0 "")\nvelkaro_sbom(program)\n')
            result = subprocess.run(["cmake", "-S", folder, "-B", f"{folder}/build"], capture_output=True, text=True, timeout=120)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("program links unknown, which velkaro_describe_library does not describe", " ".join(result.stderr.split()))

    @unittest.skipUnless((VALIDATORS / "node_modules").exists() and shutil.which("node"), "run npm ci in tests/validators first")
    def test_is_valid_by_its_schema(self):
        lists = [f"{program}.cdx.json" for program in release.PROGRAMS]
        result = subprocess.run(["node", VALIDATORS / "sbom.mjs", *lists], capture_output=True, text=True, timeout=120)
        self.assertEqual((result.stdout, result.stderr, result.returncode), ("", "", 0))


if __name__ == "__main__":
    unittest.main()
