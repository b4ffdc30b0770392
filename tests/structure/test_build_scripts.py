"""What ./check and ./scan do before a build: find out what is missing, and configure what is not configured yet."""

import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


class BuildScripts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.tools = self.root / "tools"
        self.tools.mkdir()
        self.prefix = self.root / "prefix"

    def write_tool(self, name, script):
        (self.tools / name).write_text("#!/bin/sh\n" + script + "\n")
        (self.tools / name).chmod(0o755)

    def shell(self, commands, **changes):
        """A shell that has read the functions of scripts/packages.sh."""
        script = f'set -euo pipefail; root={self.root}; . "{ROOT}/scripts/packages.sh"; {commands}'
        environment = {**os.environ, "PATH": f"{self.tools}:{os.environ['PATH']}", "CMAKE_PREFIX_PATH": str(self.prefix), **changes}
        return subprocess.run(["bash", "-c", script], env=environment, capture_output=True, text=True, timeout=60)

    def install_library(self, name):
        (self.prefix / "lib" / "cmake" / name).mkdir(parents=True)

    def configured(self):
        """Whether building the preset "dev" configures it first."""
        self.write_tool("cmake", 'echo "$*" >>"$root/calls"')
        (self.root / "calls").unlink(missing_ok=True)
        result = self.shell("export root; build_preset dev")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        calls = (self.root / "calls").read_text().splitlines()
        self.assertTrue(calls[-1].startswith("--build --preset dev -j "))
        self.assertIn(calls[:-1], ([], ["--preset dev"]))
        return len(calls) == 2

    def test_a_new_folder_is_configured(self):
        self.assertTrue(self.configured())

    def test_a_configuration_that_failed_is_made_anew(self):
        (self.root / "build" / "dev").mkdir(parents=True)
        (self.root / "build" / "dev" / "CMakeCache.txt").touch()
        self.assertTrue(self.configured())

    def test_a_configured_folder_is_built_as_it_is(self):
        for file in ("Makefile", "build.ninja"):
            with self.subTest(file=file):
                folder = self.root / "build" / "dev"
                folder.mkdir(parents=True, exist_ok=True)
                (folder / file).touch()
                self.assertFalse(self.configured())
                (folder / file).unlink()

    def test_what_failed_is_shown(self):
        self.write_tool("cmake", "echo no such compiler; exit 1")
        result = self.shell("build_preset dev")
        self.assertEqual((result.returncode, result.stderr), (1, "no such compiler\n"))

    def on_a_mac(self, packages, **changes):
        self.write_tool("uname", "echo Darwin")
        result = self.shell(f"install_packages {packages}; echo goes on", **changes)
        self.assertEqual(result.stdout, "goes on\n" if result.returncode == 0 else "")
        return result.stderr

    def test_on_a_mac_one_line_says_what_is_missing(self):
        self.write_tool("xcode-select", "exit 2")
        message = self.on_a_mac("g++ $test_packages $bench_packages")
        self.assertEqual(message, "Please install the command line tools (xcode-select --install) and "
                                  "benchmark (Homebrew: google-benchmark)\n")

    def test_a_mac_that_lacks_nothing_goes_on(self):
        self.write_tool("xcode-select", "exit 0")
        self.write_tool("cmake", "exit 0")
        self.install_library("benchmark")
        self.assertEqual(self.on_a_mac("$build_packages $test_packages $bench_packages"), "")

    def test_a_mac_needs_no_test_library_for_a_scan(self):
        self.write_tool("xcode-select", "exit 0")
        self.write_tool("cmake", "exit 0")
        self.assertEqual(self.on_a_mac("$build_packages"), "")

    def check(self, can_fuzz):
        """Runs ./check without building anything; the presets built, and the folders that ctest is given."""
        (self.root / "scripts").mkdir(exist_ok=True)
        (self.root / "build").mkdir(exist_ok=True)
        (self.root / "scripts" / "packages.sh").write_text(
            "build_packages= test_packages= bench_packages=\n"
            "install_packages() { :; }\ninstall_npm_packages() { :; }\n"
            f"can_fuzz() {{ {can_fuzz}; }}\n"
            'build_preset() { echo "$1"; }\n')
        (self.root / "check").unlink(missing_ok=True)
        (self.root / "check").symlink_to(ROOT / "check")
        self.write_tool("ctest", "cat CTestTestfile.cmake")
        environment = {**os.environ, "PATH": f"{self.tools}:{os.environ['PATH']}"}
        return subprocess.run([self.root / "check"], env=environment, capture_output=True, text=True, timeout=60, check=True)

    def test_everything_is_built_and_tested_where_clang_can_fuzz(self):
        result = self.check("true")
        self.assertEqual((result.stdout, result.stderr), ("release\ndev\nsanitize\nfuzz\nsubdirs(dev sanitize fuzz)\n", ""))

    def test_the_fuzz_targets_are_left_out_where_clang_cannot(self):
        result = self.check("false")
        self.assertEqual(result.stdout, "release\ndev\nsanitize\nsubdirs(dev sanitize)\n")
        self.assertEqual(result.stderr, "This clang has no libFuzzer: the fuzz targets are left out\n")

    def test_a_clang_without_libfuzzer_is_noticed(self):
        self.write_tool("clang++", 'case "$*" in *-fsanitize=fuzzer*) echo "no libFuzzer" >&2; exit 1 ;; esac')
        result = self.shell("can_fuzz")
        self.assertEqual((result.returncode, result.stderr), (1, ""))


class Presets(unittest.TestCase):
    def setUp(self):
        text = json.loads((ROOT / "CMakePresets.json").read_text(encoding="utf-8"))
        self.configured = {preset["name"]: preset for preset in text["configurePresets"]}
        self.built = {preset["name"] for preset in text["buildPresets"]}

    def test_every_preset_can_be_built(self):
        self.assertEqual(self.built, {name for name, preset in self.configured.items() if not preset.get("hidden")})

    def test_the_universal_release_is_the_release_for_both_kinds_of_mac(self):
        preset = self.configured["release-universal"]
        self.assertEqual(preset["inherits"], "release")
        self.assertEqual(preset["cacheVariables"], {"CMAKE_OSX_ARCHITECTURES": "x86_64;arm64", "VELKARO_INV": "OFF"})
        self.assertEqual(self.configured["base"]["cacheVariables"]["CMAKE_OSX_DEPLOYMENT_TARGET"], "10.13")

    @unittest.skipUnless(Path("/usr/src/googletest").is_dir(), "Debian's sources of GoogleTest are not installed")
    def test_googletest_is_built_from_its_sources_where_it_is_not_installed(self):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "CMakeLists.txt").write_text(
                "cmake_minimum_required(VERSION 3.25)\nproject(tests CXX)\n"
                f"include({ROOT}/cmake/googletest.cmake)\n"
                "file(WRITE ${CMAKE_BINARY_DIR}/test.cpp [[#include <gmock/gmock.h>\nTEST(A, B) { EXPECT_THAT(1, testing::Gt(0)); }]])\n"
                "add_executable(tests ${CMAKE_BINARY_DIR}/test.cpp)\ntarget_link_libraries(tests GTest::gtest_main GTest::gmock)\n")
            # This machine's copy of what would be fetched: nothing uses the network.
            result = subprocess.run(["cmake", "-B", folder, "-S", folder, "-DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON", "-DFETCHCONTENT_FULLY_DISCONNECTED=ON",
                                   "-DFETCHCONTENT_SOURCE_DIR_GOOGLETEST=/usr/src/googletest"], check=True, capture_output=True, text=True)
            self.assertIn("GoogleTest is not installed, fetching it", result.stdout)
            targets = subprocess.run(["cmake", "--build", folder, "--target", "help"], check=True, capture_output=True, text=True)
            self.assertLessEqual({"tests", "gtest_main", "gmock"}, set(targets.stdout.split()))

    def test_what_is_fetched_has_a_checksum(self):
        text = (ROOT / "cmake" / "googletest.cmake").read_text()
        self.assertRegex(text, r"URL_HASH SHA256=[0-9a-f]{64}\n")
        self.assertIn("release-1.12.1.tar.gz", text)

    def test_the_reader_can_be_left_out(self):
        has_libraries = (Path(os.environ["VELKARO_BUILD"]) / "inv").is_file()
        with tempfile.TemporaryDirectory() as folder:
            for switch in ("ON", "OFF"):
                with self.subTest(switch=switch):
                    subprocess.run(["cmake", "-S", ROOT, "-B", folder, f"-DVELKARO_INV={switch}"], check=True, capture_output=True)
                    targets = subprocess.run(["cmake", "--build", folder, "--target", "help"], check=True, capture_output=True, text=True)
                    self.assertIn("velkaro-scanner", targets.stdout.split())
                    self.assertEqual("inv" in targets.stdout.split(), switch == "ON" and has_libraries)


if __name__ == "__main__":
    unittest.main()
