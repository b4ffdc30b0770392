"""The Linux packages of the reader: their contents, and that they install, run, and uninstall without a trace.

The fresh root is a folder with a database of dpkg's own and nothing else; the program is run by its path there, on the libraries of this
machine, which are the ones that the package depends on."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import release
from release import output_of

# What lintian finds, and why it is accepted.
KNOWN = {
    "copyright-without-copyright-notice": "the owner has yet to choose a licence, and with it the notice",
}
LICENCE = "proprietary, see the owner"
AS_ROOT = [] if os.geteuid() == 0 else ["fakeroot"]


def packed(name):
    """The files of each package, and how its kind of system wants them otherwise."""
    files = {
        *release.DOCUMENTATION,
        *release.FLEET,
        "bin/inv",
        "share/man/man1/inv.1",
        "share/bash-completion/completions/inv",
        "share/zsh/site-functions/_inv",
        "share/fish/vendor_completions.d/inv.fish",
        "share/velkaro-scanner/policies/starter.json",
    }
    if name == "deb":
        files -= {"share/man/man1/inv.1", "share/zsh/site-functions/_inv"}
        files |= {"share/man/man1/inv.1.gz", "share/zsh/vendor-completions/_inv"}
        files |= {"share/doc/velkaro-inv/copyright", "share/doc/velkaro-inv/changelog.gz"}
    return files


@release.needed
@unittest.skipUnless(shutil.which("dpkg-deb") and shutil.which("rpm"), "dpkg and rpm are not both installed")
class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        # A private umask must not affect the packages.
        output_of(release.ROOT / "packaging" / "linux" / "package", release.RELEASE, cls.folder, umask=0o077)
        (cls.deb,) = cls.folder.glob("*.deb")
        (cls.rpm,) = cls.folder.glob("*.rpm")
        (cls.tgz,) = cls.folder.glob("*.tar.gz")

    def test_are_named_after_program_version_and_machine(self):
        names = sorted(path.name for path in self.folder.iterdir() if path.is_file())
        self.assertEqual([re.sub(r"x86_64|amd64|aarch64|arm64", "MACHINE", name) for name in names],
                         [f"velkaro-inv-{release.VERSION}-1.MACHINE.rpm", f"velkaro-inv-{release.VERSION}-MACHINE.tar.gz",
                          f"velkaro-inv_{release.VERSION}_MACHINE.deb"])

    def test_hold_the_reader_and_its_pages(self):
        deb = output_of("sh", "-c", 'dpkg-deb --fsys-tarfile "$0" | tar t', self.deb).splitlines()
        self.assertEqual({name[len("./usr/"):] for name in deb if not name.endswith("/")}, packed("deb"))
        rpm = output_of("rpm", "-qp", "--qf", "[%{FILEMODES:perms} %{FILENAMES}\n]", self.rpm).splitlines()
        self.assertEqual({line.split(" ")[1][len("/usr/"):] for line in rpm if not line.startswith("d")}, packed("rpm"))
        top = self.tgz.name[: -len(".tar.gz")] + "/"
        tgz = output_of("tar", "tzf", self.tgz).splitlines()
        self.assertEqual({name[len(top):] for name in tgz if not name.endswith("/")}, packed("tgz"))

    def test_take_no_folder_that_belongs_to_others(self):
        folders = output_of("rpm", "-qp", "--qf", "[%{FILEMODES:perms} %{FILENAMES}\n]", self.rpm).splitlines()
        own = {line.split(" ")[1] for line in folders if line.startswith("d")}
        pages, fleet = (f"/usr/share/{name}velkaro-scanner" for name in ("doc/", ""))
        below = {folder for folder in own if folder.startswith(f"{fleet}/fleet")}
        self.assertEqual(own - below, {pages, f"{pages}/docs", f"{pages}/docs/schema", fleet, f"{fleet}/policies"})
        self.assertIn(f"{fleet}/fleet/scripts", below)

    def test_belong_to_root_and_nobody_else_may_write_them(self):
        for listing in (output_of("dpkg-deb", "-c", self.deb), output_of("tar", "tvzf", self.tgz)):
            for line in listing.splitlines():
                self.assertRegex(line, r"^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--) root/root ")

    def test_are_dated_as_the_sources_are(self):
        """Here from the future, so that no file is younger and every one has to be given the date. (The program alone is younger in any case, since rpmbuild
        strips it once more, and it brings forward what is younger than the sources.)"""
        date, out = 2000000000, self.folder / "dated"
        output_of(release.ROOT / "packaging" / "linux" / "package", release.RELEASE, out, env=release.environment(SOURCE_DATE_EPOCH=str(date)))
        (deb,), (rpm,), (tgz,) = out.glob("*.deb"), out.glob("*.rpm"), out.glob("*.tar.gz")
        dates = dict(line.split(" ") for line in output_of("rpm", "-qp", "--qf", "[%{FILENAMES} %{FILEMTIMES}\n]", rpm).splitlines())
        self.assertEqual({day for name, day in dates.items() if name != "/usr/bin/inv"}, {str(date)})
        for listing in (output_of("dpkg-deb", "-c", deb, env=release.environment(TZ="UTC")), output_of("tar", "tvzf", tgz, env=release.environment(TZ="UTC"))):
            self.assertEqual(set(re.findall(r" (\d{4}-\d\d-\d\d \d\d:\d\d) ", listing)), {"2033-05-18 03:33"})
        changelog = output_of("sh", "-c", 'dpkg-deb --fsys-tarfile "$0" | tar xO ./usr/share/doc/velkaro-inv/changelog.gz | gunzip', deb)
        self.assertIn("  Wed, 18 May 2033 03:33:20 +0000\n", changelog)

    def test_say_whose_they_are(self):
        self.assertEqual(output_of("rpm", "-qp", "--qf", "%{LICENSE}", self.rpm), LICENCE)
        copyright_page = output_of("sh", "-c", 'dpkg-deb --fsys-tarfile "$0" | tar xO ./usr/share/doc/velkaro-inv/copyright', self.deb)
        self.assertEqual(copyright_page, f"License: {LICENCE}\n")

    def test_depend_on_the_libraries_that_the_program_loads(self):
        depends = output_of("dpkg-deb", "-f", self.deb, "Depends")
        loaded = re.findall(r"NEEDED.*\[(.*)\]", output_of("readelf", "-d", release.RELEASE / "inv"))
        self.assertIn("libsqlite3.so.0", loaded)
        for library in loaded:
            owner = output_of("sh", "-c", 'dpkg -S "*/$0" | head -1', library).split(":")[0]
            self.assertRegex(depends, rf"(^|, ){re.escape(owner)} \(>= ")

    @unittest.skipUnless(shutil.which("lintian"), "lintian is not installed")
    def test_lintian_finds_nothing_that_has_no_reason(self):
        result = subprocess.run(["lintian", "--no-cfg", "--allow-root", self.deb], capture_output=True, text=True, timeout=300)
        found = re.findall(r"^([A-Z]): \S+: (\S+)", result.stdout, re.M)
        self.assertEqual([(kind, tag) for kind, tag in found if tag not in KNOWN], [], result.stderr)
        self.assertEqual({tag for _, tag in found}, set(KNOWN), "what is no longer found needs no reason")

    def test_install_run_and_go_without_a_trace(self):
        root = self.folder / "root"
        (root / "var/lib/dpkg/updates").mkdir(parents=True)
        (root / "var/lib/dpkg/info").mkdir()
        (root / "var/lib/dpkg/status").touch()
        dpkg = [*AS_ROOT, "dpkg", f"--root={root}", "--force-depends", "--force-not-root", f"--log={root}/var/lib/dpkg/log"]
        output_of(*dpkg, "--install", self.deb)
        self.assertEqual(release.files_below(root / "usr"), packed("deb"))
        self.assert_works(root / "usr/bin/inv")
        output_of(*dpkg, "--purge", "velkaro-inv")
        self.assertEqual([path.name for path in root.iterdir()], ["var"])
        self.assertEqual({name for name in release.files_below(root) if not name.startswith("var/lib/dpkg/")}, set())

    def test_the_archive_runs_where_it_is_unpacked(self):
        output_of("tar", "xzf", self.tgz, "-C", self.folder)
        self.assert_works(self.folder / self.tgz.name[: -len(".tar.gz")] / "bin/inv")

    def assert_works(self, program):
        import inventories

        self.assertEqual(output_of(program, "--version").splitlines()[0], f"inv {release.VERSION}")
        file = inventories.scanned("imac-10.6")
        self.assertEqual(output_of(program, "get", file, "/System/Chassis/serial"), "SIM0IMAC106\n")
        output_of(program, "verify", file)


if __name__ == "__main__":
    unittest.main()
