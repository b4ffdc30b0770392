"""`cmake --install` puts every file where its readers look for it, and `uninstall` takes all of them away again."""

import subprocess
import tempfile
import unittest
from pathlib import Path

import release


def of_program(name):
    return {
        f"bin/{name}",
        f"share/man/man1/{name}.1",
        f"share/bash-completion/completions/{name}",
        f"share/zsh/site-functions/_{name}",
        f"share/fish/vendor_completions.d/{name}.fish",
    }


COMPONENTS = {
    "scanner": of_program("velkaro-scanner"),
    "reader": of_program("inv") | {"share/velkaro-scanner/policies/starter.json"},
    "fleet": release.FLEET,
    "documentation": release.DOCUMENTATION,
}


@release.needed
class Install(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.addCleanup(self.forget)

    def forget(self):
        """Keeps installations into the test's folder out of the developer's list."""
        for manifest in release.RELEASE.glob("install_manifest*.txt"):
            manifest.unlink()

    def install(self, *arguments, **variables):
        release.output_of("cmake", "--install", release.RELEASE, *arguments, env=release.environment(**variables))

    def uninstall(self, **variables):
        command = ["cmake", "--build", release.RELEASE, "--target", "uninstall"]
        return subprocess.run(command, capture_output=True, text=True, env=release.environment(**variables), timeout=300)

    def test_each_component_has_its_files(self):
        for component, files in COMPONENTS.items():
            with self.subTest(component=component):
                place = self.folder / component
                self.install("--component", component, "--prefix", place)
                self.assertEqual(release.files_below(place), files)

    def test_all_components_are_all_there_is(self):
        self.install("--prefix", self.folder)
        self.assertEqual(release.files_below(self.folder), set.union(*COMPONENTS.values()))

    def test_a_staging_folder_is_put_before_the_prefix(self):
        self.install("--component", "scanner", "--prefix", "/opt/velkaro", DESTDIR=str(self.folder))
        self.assertEqual(release.files_below(self.folder / "opt/velkaro"), COMPONENTS["scanner"])
        self.assertEqual([path.name for path in self.folder.iterdir()], ["opt"])

    def test_installed_programs_run(self):
        self.install("--prefix", self.folder)
        for name in ("inv", "velkaro-scanner"):
            first = release.output_of(self.folder / "bin" / name, "--version").splitlines()[0]
            self.assertEqual(first, f"{name} {release.VERSION}")

    def test_of_the_files_for_fleets_the_programs_can_be_started_and_no_others(self):
        self.install("--component", "fleet", "--prefix", self.folder)
        for name in release.FLEET:
            path = self.folder / name
            script = path.read_bytes().startswith(b"#!")
            self.assertEqual(path.stat().st_mode & 0o777, 0o755 if script else 0o644, name)

    def test_uninstall_removes_what_was_installed_and_nothing_else(self):
        for component in COMPONENTS:
            self.install("--component", component, "--prefix", "/opt", DESTDIR=str(self.folder))
        (self.folder / "opt/bin/other").touch()
        self.assertEqual(self.uninstall(DESTDIR=str(self.folder)).returncode, 0)
        self.assertEqual(release.files_below(self.folder), {"opt/bin/other"})
        self.assertFalse((self.folder / "opt/share/doc/velkaro-scanner").exists())
        self.assertTrue((self.folder / "opt/share/man/man1").exists())

    def test_uninstall_keeps_a_folder_that_holds_a_file_of_someone_elses(self):
        self.install("--component", "documentation", "--prefix", self.folder)
        note = self.folder / "share/doc/velkaro-scanner/docs/note.txt"
        note.touch()
        self.assertEqual(self.uninstall().returncode, 0)
        self.assertEqual(release.files_below(self.folder), {note.relative_to(self.folder).as_posix()})

    def test_uninstall_says_when_there_is_nothing_to_remove(self):
        result = self.uninstall()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(f"Nothing was installed from {release.RELEASE}", result.stderr)


if __name__ == "__main__":
    unittest.main()
