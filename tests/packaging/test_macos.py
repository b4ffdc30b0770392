"""The steps that make the package for Macs, with recorded tools instead of Apple's: which commands they run, and in which order."""

import os
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import release

SCRIPTS = release.ROOT / "packaging" / "macos"
BUILD = release.ROOT / "build" / "release-universal"
RECORDED = "cmake codesign curl install lipo make otool pkgbuild pkgutil productbuild shasum spctl tar xcrun".split()
SECRETS = {
    "VELKARO_SIGN_APPLICATION": "Developer ID Application: Someone (TEAM)",
    "VELKARO_SIGN_INSTALLER": "Developer ID Installer: Someone (TEAM)",
    "VELKARO_NOTARY_KEY": "/keys/key.p8",
    "VELKARO_NOTARY_KEY_ID": "KEYID",
    "VELKARO_NOTARY_ISSUER": "issuer-uuid",
}


class MacTestCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.out = self.folder / "out"
        self.log = self.folder / "log"
        tools = self.folder / "tools"
        tools.mkdir()
        for name in RECORDED:
            self.record(tools / name)
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("VELKARO_")}
        self.environment["PATH"] = f"{tools}:{os.environ['PATH']}"

    def record(self, tool, answer=""):
        """A tool that only records its name and its arguments, one per line."""
        tool.write_text(f"#!/bin/sh\n{{ printf '%s' {tool.name}; printf '|%s' \"$@\"; echo; }} >>'{self.log}'\n{answer}")
        tool.chmod(0o755)

    def run_step(self, step, *options, expected=0, **variables):
        result = subprocess.run(
            [SCRIPTS / step, *options, self.out], capture_output=True, text=True, env={**self.environment, **variables}, timeout=60
        )
        self.assertEqual(result.returncode, expected, result.stdout + result.stderr)
        return result.stdout

    def commands(self):
        """What the recorded tools were called with, the test's own folder written as OUT."""
        text = self.log.read_text() if self.log.exists() else ""
        return [line.split("|") for line in text.replace(str(self.out), "OUT").splitlines()]


class Steps(MacTestCase):
    def test_build_makes_both_programs_for_both_kinds_of_mac(self):
        output = self.run_step("build", "--dry-run")
        self.assertEqual(self.commands(), [])
        lines = [line[2:] for line in output.replace(str(self.out), "OUT").replace(str(release.ROOT), "ROOT").splitlines() if line.startswith("+ ")]
        after_sodium = lines[lines.index("env ZERO_AR_DATE=1 cmake --preset release-universal -S ROOT -DVELKARO_INV=ON "
                                         "-DSODIUM_INCLUDE_DIR=OUT/libsodium/include -DSODIUM_LIBRARY=OUT/libsodium/libsodium.a"):]
        self.assertEqual(after_sodium[1:], [
            "env ZERO_AR_DATE=1 cmake --build ROOT/build/release-universal --parallel",
            "cmake --install ROOT/build/release-universal --prefix OUT/root --strip",
            "mkdir -p OUT/root/libexec/velkaro-scanner",
            "install -m 755 ROOT/packaging/macos/uninstall OUT/root/libexec/velkaro-scanner/uninstall",
            "lipo OUT/root/bin/velkaro-scanner -verify_arch x86_64 arm64",
            "ROOT/packaging/macos/only-system-libraries OUT/root/bin/velkaro-scanner",
            "lipo OUT/root/bin/inv -verify_arch x86_64 arm64",
            "ROOT/packaging/macos/only-system-libraries OUT/root/bin/inv",
        ])
        self.assertRegex("\n".join(lines[: lines.index("lipo -create OUT/libsodium/x86_64/installed/lib/libsodium.a "
            "OUT/libsodium/arm64/installed/lib/libsodium.a -output OUT/libsodium/libsodium.a")]),
            r"(?s)curl .*shasum .*tar .*-arch x86_64 -mmacosx-version-min=10\.13.*make .*-arch arm64 -mmacosx-version-min=11\.0.*make ")

    def test_a_release_runs_to_its_end(self):
        self.record(self.folder / "tools" / "tar", 'mkdir "$4/libsodium-1.0.20"; echo "#!/bin/sh" >"$4/libsodium-1.0.20/configure"\n'
                                                   'chmod +x "$4/libsodium-1.0.20/configure"')
        self.record(self.folder / "tools" / "make", 'mkdir -p "$2/installed/include"')
        output = self.run_step("release")
        self.assertEqual([command[0] for command in self.commands()], (
            "curl shasum tar make make lipo cmake cmake cmake install lipo otool lipo otool "
            "codesign codesign codesign codesign pkgbuild productbuild").split())
        self.assertTrue((self.out / "libsodium" / "include").is_dir())
        self.assertTrue(output.endswith("not notarised: VELKARO_NOTARY_KEY names no key\n"))

    def loading(self, *libraries):
        lines = "".join(f"\t{library} (compatibility version 1.0.0, current version 2.0.0)\n" for library in libraries)
        text = "".join(f"PROGRAM (architecture {name}):\n{lines}" for name in ("x86_64", "arm64"))
        self.record(self.folder / "tools" / "otool", f"cat <<'END'\n{text}END\n")
        command = [SCRIPTS / "only-system-libraries", "PROGRAM"]
        result = subprocess.run(command, capture_output=True, text=True, env=self.environment, timeout=60)
        return result.returncode, result.stderr

    def test_a_program_loads_the_systems_libraries_and_no_others(self):
        system = ("/usr/lib/libz.1.dylib", "/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation")
        self.assertEqual(self.loading(*system), (0, ""))
        for other in ("/opt/homebrew/opt/libsodium/lib/libsodium.26.dylib", "@rpath/libsodium.26.dylib", "/usr/local/lib/libz.1.dylib"):
            status, message = self.loading(system[0], other)
            self.assertEqual(status, 1)
            self.assertIn(f"PROGRAM loads {other}\n", message)

    def test_the_download_is_checked_before_it_is_unpacked(self):
        (self.folder / "tools" / "shasum").write_text("#!/bin/sh\nexit 1\n")
        self.run_step("libsodium", expected=1)
        self.assertEqual([command[0] for command in self.commands()], ["curl"])
        self.assertIn("--proto|=https", "|".join(self.commands()[0]))

    def test_without_a_certificate_programs_are_signed_ad_hoc(self):
        self.run_step("sign")
        self.assertEqual(self.commands(), [
            ["codesign", "--force", "--sign", "-", "--identifier", "com.velkaro.scanner.velkaro-scanner", "OUT/root/bin/velkaro-scanner"],
            ["codesign", "--verify", "--strict", "OUT/root/bin/velkaro-scanner"],
            ["codesign", "--force", "--sign", "-", "--identifier", "com.velkaro.scanner.inv", "OUT/root/bin/inv"],
            ["codesign", "--verify", "--strict", "OUT/root/bin/inv"],
        ])

    def test_with_a_certificate_they_are_hardened_and_stamped_as_notarising_wants(self):
        self.run_step("sign", **SECRETS)
        self.assertEqual(self.commands()[0], [
            "codesign", "--force", "--sign", SECRETS["VELKARO_SIGN_APPLICATION"], "--identifier", "com.velkaro.scanner.velkaro-scanner",
            "--options", "runtime", "--timestamp", "OUT/root/bin/velkaro-scanner",
        ])

    def test_the_package_has_identifier_version_and_place_and_no_scripts(self):
        self.run_step("package")
        self.assertEqual(self.commands(), [
            ["pkgbuild", "--root", "OUT/root", "--identifier", "com.velkaro.scanner", "--version", release.VERSION,
             "--install-location", "/usr/local", "--ownership", "recommended", "OUT/parts/velkaro-scanner.pkg"],
            ["productbuild", "--distribution", "OUT/parts/distribution.xml", "--package-path", "OUT/parts",
             f"OUT/velkaro-scanner-{release.VERSION}.pkg"],
        ])

    def test_a_certificate_signs_the_package_too(self):
        self.run_step("package", **SECRETS)
        self.assertEqual(self.commands()[1][5:], [
            "--sign", SECRETS["VELKARO_SIGN_INSTALLER"], "--timestamp", f"OUT/velkaro-scanner-{release.VERSION}.pkg"
        ])

    def test_the_installer_knows_both_kinds_of_mac_and_the_oldest_system(self):
        self.run_step("package")
        page = ElementTree.parse(self.out / "parts" / "distribution.xml").getroot()
        self.assertEqual(page.find("options").get("hostArchitectures"), "x86_64,arm64")
        self.assertEqual(page.find("volume-check/allowed-os-versions/os-version").get("min"), "10.13")
        package = page.find("pkg-ref[@version]")
        self.assertEqual((package.get("id"), package.get("version"), package.text), ("com.velkaro.scanner", release.VERSION, "velkaro-scanner.pkg"))

    def test_the_oldest_system_is_the_one_that_is_built_for(self):
        presets = (release.ROOT / "CMakePresets.json").read_text()
        (built,) = re.findall(r'"CMAKE_OSX_DEPLOYMENT_TARGET": "([\d.]+)"', presets)
        for name in ("distribution.xml.in", "libsodium"):
            self.assertIn(built, (SCRIPTS / name).read_text())

    def test_with_a_key_the_package_is_notarised_and_stapled(self):
        self.run_step("notarize", **SECRETS)
        package = f"OUT/velkaro-scanner-{release.VERSION}.pkg"
        self.assertEqual(self.commands(), [
            ["xcrun", "notarytool", "submit", package, "--key", "/keys/key.p8", "--key-id", "KEYID", "--issuer", "issuer-uuid", "--wait"],
            ["xcrun", "stapler", "staple", package],
            ["spctl", "--assess", "--type", "install", package],
        ])

    def test_without_a_key_it_says_that_it_is_not(self):
        self.assertEqual(self.run_step("notarize"), "not notarised: VELKARO_NOTARY_KEY names no key\n")
        self.assertEqual(self.commands(), [])

    def test_a_release_takes_the_steps_in_order(self):
        output = self.run_step("release", "--dry-run", **SECRETS)
        order = [output.index(part) for part in ("+ curl", "+ cmake --install", "+ codesign", "+ pkgbuild", "+ productbuild", "+ xcrun")]
        self.assertEqual(order, sorted(order))
        self.assertEqual(self.commands(), [])
        self.assertFalse(self.out.exists())

    def test_a_step_that_fails_ends_the_release(self):
        (self.folder / "tools" / "curl").write_text("#!/bin/sh\nexit 22\n")
        self.run_step("release", expected=22)
        self.assertEqual(self.commands(), [])

    def test_what_is_printed_can_be_given_to_a_shell(self):
        output = self.run_step("sign", "--dry-run", VELKARO_SIGN_APPLICATION="Some'one (T)")
        self.assertIn("--sign 'Some'\\''one (T)' --identifier", output)

    def test_each_step_says_how_it_is_used(self):
        for step in ("build", "libsodium", "sign", "package", "notarize", "release"):
            result = subprocess.run([SCRIPTS / step], capture_output=True, text=True, env=self.environment, timeout=60)
            self.assertEqual((result.returncode, result.stderr), (2, f"usage: {SCRIPTS / step} [--dry-run] FOLDER\n"))


class Uninstall(MacTestCase):
    FILES = ["bin/inv", "share/doc/velkaro-scanner/READ ME.md"]

    def setUp(self):
        super().setUp()
        for name in self.FILES:
            (self.out / name).parent.mkdir(parents=True)
            (self.out / name).touch()
        (self.out / "bin/other").touch()
        self.record(self.folder / "tools" / "pkgutil", f"""case $1,$2 in
            --pkg-info,*) printf 'package-id: x\\nvolume: {self.folder}/\\nlocation: out\\n' ;;
            --only-files,*) printf '%s\\n' '{self.FILES[0]}' '{self.FILES[1]}' ;;
            --only-dirs,*) printf '%s\\n' bin share share/doc share/doc/velkaro-scanner ;;
        esac
        """)

    def uninstall(self, *options):
        return subprocess.run([SCRIPTS / "uninstall", *options], capture_output=True, text=True, env=self.environment, timeout=60)

    def test_removes_the_files_and_the_folders_of_its_own_and_forgets_the_package(self):
        self.assertEqual(self.uninstall().returncode, 0)
        self.assertEqual(release.files_below(self.out), {"bin/other"})
        self.assertEqual(sorted(path.name for path in (self.out / "share").iterdir()), ["doc"])
        self.assertFalse((self.out / "share/doc/velkaro-scanner").exists())
        self.assertEqual(self.commands()[-1], ["pkgutil", "--forget", "com.velkaro.scanner"])

    def test_only_says_what_it_would_remove_when_asked_to(self):
        output = self.uninstall("--dry-run").stdout
        self.assertIn(f"+ rm -f {self.out}/{self.FILES[1]}\n", output)
        self.assertEqual(release.files_below(self.out), {"bin/other", *self.FILES})
        self.assertNotIn(["pkgutil", "--forget", "com.velkaro.scanner"], self.commands())

    def test_says_when_the_package_is_not_installed(self):
        (self.folder / "tools" / "pkgutil").write_text("#!/bin/sh\nexit 1\n")
        result = self.uninstall()
        self.assertEqual((result.returncode, result.stderr), (1, "com.velkaro.scanner is not installed\n"))


if __name__ == "__main__":
    unittest.main()
