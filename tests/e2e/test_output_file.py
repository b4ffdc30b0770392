"""The file that a scan leaves: whole, reported once and replacing no other, however many scans save at the same time and whenever one is
killed. With VELKARO_SAVE_ROUNDS=50 these are 400 simultaneous scans, and 300 killed ones."""

import errno
import os
import random
import shutil
import signal
import stat
import subprocess
import time
import unittest
from pathlib import Path

import inv_decoder
from namespaces import own_processes
from quick_scans import QUICK_PROFILER, QUICK_PS
from scans import IMAC, SCANNER, ScanTestCase
from system_calls import KILL, LINK, RENAME, UNLINK, all_of, available, fates, refused

NAME = "STUDIO-IMAC_00005E00531A.inv"
NAME_OF_DEBUG_RUN = "STUDIO IMAC_.inv"
ROUNDS = int(os.environ.get("VELKARO_SAVE_ROUNDS", "2"))
INV = Path(os.environ["VELKARO_BUILD"]) / "inv"
TEMPORARY = r"^\.velkaro-scanner-[0-9]+(-[0-9]+)?\.part$"

# On a file system without hard links, and on one that cannot even rename a file without replacing another.
NO_LINKS = all_of(LINK, refused(errno.EPERM))
NO_SINGLE_STEP = {**NO_LINKS, "renameat2": refused(errno.EINVAL)}


def is_whole(path):
    try:
        return inv_decoder.read_file(path).asset_info is not None
    except inv_decoder.FormatError:
        return False


class SaveTestCase(ScanTestCase):
    """Scans of an iMac by the quickest tools there are."""

    def setUp(self):
        super().setUp()
        self.write_tool("ps", QUICK_PS.split("\n", 1)[1])
        # A debug run asks for everything at once; part of that is enough for a file.
        quick = QUICK_PROFILER.split("\n", 1)[1]
        self.write_tool("system_profiler", f'[ $# -gt 3 ] || set -- "$@" SPNetworkDataType\n{quick}')

    def start(self, *arguments, prefix=(), **options):
        return subprocess.Popen(
            [*prefix, SCANNER, "/silent", *arguments], cwd=self.out, env=self.environment(IMAC), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            text=True, **options
        )  # fmt: skip

    def reported(self, scan):
        """The name that a scan reports at its end."""
        output, _ = scan.communicate(timeout=300)
        self.assertEqual(scan.returncode, 0)
        return output.splitlines()[-1].removeprefix(">>>")

    def check_inventories(self, names):
        """These files are there, each with an inventory, and no other."""
        self.assertEqual(self.files(), sorted(names))
        self.assertEqual([name for name in names if not is_whole(self.out / name)], [])
        self.verify(names)

    def verify(self, names):
        if INV.is_file() and names:
            result = subprocess.run([INV, "verify", *names], cwd=self.out, capture_output=True, text=True)
            self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def kept(self):
        """The inventories in the folder; everything else in it has a temporary file's name."""
        inventories = [name for name in self.files() if name.endswith(".inv")]
        for name in set(self.files()) - set(inventories):
            self.assertRegex(name, TEMPORARY)
        return inventories

    def clear(self):
        for path in self.out.iterdir():
            path.unlink()


class ScansAtTheSameTime(SaveTestCase):
    def save_in_rounds(self, rounds, *arguments, **options):
        names = []
        for _ in range(rounds):
            scans = [self.start(*arguments, **options) for _ in range(8)]
            names += [self.reported(scan) for scan in scans]
        self.assertEqual(len(set(names)), 8 * rounds)
        self.check_inventories(names)

    def test_leave_a_file_each(self):
        self.save_in_rounds(ROUNDS)

    def test_leave_a_file_each_after_debug_runs(self):
        self.save_in_rounds(2 * ROUNDS, "/debug")

    @unittest.skipUnless(own_processes(), "this user may not have a namespace")
    def test_leave_a_file_each_on_machines_that_share_a_folder(self):
        """Each has the same process number."""
        self.save_in_rounds(2 * ROUNDS, "/debug", prefix=own_processes())

    @unittest.skipUnless(available(), "this system cannot refuse a system call")
    def test_leave_a_file_each_without_hard_links(self):
        for calls in (NO_LINKS, NO_SINGLE_STEP):
            self.clear()
            self.save_in_rounds(ROUNDS, "/debug", preexec_fn=fates(**calls))


class KilledScans(SaveTestCase):
    def duration(self, *arguments):
        start = time.monotonic()
        self.reported(self.start(*arguments))
        return time.monotonic() - start

    def kill_at_random(self, rounds, *arguments, **options):
        longest = max(self.duration(*arguments) for _ in range(3)) * 1.1
        reported = 0
        for _ in range(rounds):
            scan = self.start(*arguments, start_new_session=True, **options)
            time.sleep(random.uniform(0, longest))
            os.killpg(scan.pid, signal.SIGKILL)
            reported += ">>>" in scan.communicate(timeout=300)[0]
        inventories = self.kept()
        self.assertGreaterEqual(len(inventories), 3 + reported)
        self.verify(inventories)
        self.assertEqual([name for name in inventories if not is_whole(self.out / name)], [])

    def killed_at(self, **calls):
        """The inventories and the temporary files that a scan leaves when it is killed at these calls."""
        self.clear()
        scan = self.start("/debug", preexec_fn=fates(**calls))
        scan.communicate(timeout=300)
        self.assertEqual(scan.returncode, -signal.SIGSYS)
        inventories = self.kept()
        return inventories, [self.out / name for name in self.files() if name not in inventories]

    def test_leave_only_whole_inventories(self):
        self.kill_at_random(6 * ROUNDS)

    def test_leave_only_whole_inventories_of_debug_runs(self):
        self.kill_at_random(20 * ROUNDS, "/debug")

    @unittest.skipUnless(available(), "this system cannot refuse a system call")
    def test_leave_only_whole_inventories_without_hard_links(self):
        self.kill_at_random(10 * ROUNDS, "/debug", preexec_fn=fates(**NO_LINKS))

    @unittest.skipUnless(available(), "this system cannot kill at a system call")
    def test_leave_no_inventory_before_it_is_whole_and_on_the_disk(self):
        for calls in (all_of(["fsync"], KILL), all_of(LINK, KILL), {**NO_LINKS, "renameat2": KILL}):
            with self.subTest(calls=calls):
                inventories, (temporary,) = self.killed_at(**calls)
                self.assertEqual(inventories, [])
                self.assertTrue(is_whole(temporary))

    @unittest.skipUnless(available(), "this system cannot kill at a system call")
    def test_have_their_inventory_when_only_its_temporary_name_is_left(self):
        inventories, (temporary,) = self.killed_at(**all_of(UNLINK, KILL))
        self.assertEqual(inventories, [NAME_OF_DEBUG_RUN])
        self.assertTrue(is_whole(self.out / NAME_OF_DEBUG_RUN))
        self.assertTrue(temporary.samefile(self.out / NAME_OF_DEBUG_RUN))

    @unittest.skipUnless(own_processes(), "this user may not have a namespace")
    def test_do_not_disturb_a_later_one_of_the_same_process_number(self):
        (self.out / ".velkaro-scanner-1.part").write_text("half an inv")
        self.assertEqual(self.reported(self.start(prefix=own_processes())), NAME)
        self.assertEqual(self.files(), [".velkaro-scanner-1.part", NAME])
        self.assertEqual((self.out / ".velkaro-scanner-1.part").read_text(), "half an inv")


class NamesThatAreTaken(SaveTestCase):
    """A file under the first name is left alone, and the scan takes the next name."""

    def check_passed_over(self):
        self.assertEqual(self.reported(self.start()), NAME.replace(".inv", "(1).inv"))
        self.assertTrue(is_whole(self.out / NAME.replace(".inv", "(1).inv")))

    def test_by_a_link(self):
        target = self.folder / "target"
        target.write_text("mine")
        (self.out / NAME).symlink_to(target)
        self.check_passed_over()
        self.assertEqual(target.read_text(), "mine")
        self.assertTrue((self.out / NAME).is_symlink())

    def test_by_a_link_that_leads_nowhere(self):
        (self.out / NAME).symlink_to(self.folder / "target")
        self.check_passed_over()
        self.assertFalse((self.folder / "target").exists())

    def test_by_a_pipe(self):
        os.mkfifo(self.out / NAME)
        self.check_passed_over()
        self.assertTrue((self.out / NAME).is_fifo())

    def test_by_a_folder(self):
        (self.out / NAME).mkdir()
        self.check_passed_over()
        self.assertEqual(list((self.out / NAME).iterdir()), [])

    def test_by_a_file_that_cannot_be_read(self):
        (self.out / NAME).write_text("mine")
        (self.out / NAME).chmod(0)
        self.check_passed_over()
        self.assertEqual(stat.S_IMODE((self.out / NAME).stat().st_mode), 0)
        (self.out / NAME).chmod(0o600)
        self.assertEqual((self.out / NAME).read_text(), "mine")


class Permissions(SaveTestCase):
    def test_are_only_the_owners(self):
        for mask in (0, 0o022, 0o077):
            with self.subTest(mask=oct(mask)):
                name = self.reported(self.start(preexec_fn=lambda: os.umask(mask)))
                self.assertEqual(stat.S_IMODE((self.out / name).stat().st_mode), 0o600)

    @unittest.skipUnless(os.geteuid() == 0 and shutil.which("setpriv"), "needs root to become another user")
    def test_are_not_needed_for_the_folders_above(self):
        """A folder that a user may write is in one that this user may not even search."""
        self.folder.chmod(0o711)
        closed = self.folder / "closed"
        closed.mkdir(mode=0o700)
        inner = closed / "inner"
        inner.mkdir()
        inner.chmod(0o777)
        user = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups")
        result = subprocess.run([*user, SCANNER, "/silent"], cwd=inner, env=self.environment(IMAC), capture_output=True, text=True)
        self.assertTrue(result.stdout.endswith(f">>>{NAME}\n"), result)
        self.assertTrue(is_whole(inner / NAME))


@unittest.skipUnless(available(), "this system cannot refuse a system call")
class FileSystems(SaveTestCase):
    def test_without_hard_links_keep_every_rule(self):
        reasons = (errno.EPERM, errno.EOPNOTSUPP, errno.ENOSYS, errno.EMLINK)
        for calls in (*(all_of(LINK, refused(reason)) for reason in reasons), NO_SINGLE_STEP):
            with self.subTest(calls=calls):
                self.clear()
                names = [self.reported(self.start("/debug", preexec_fn=fates(**calls))) for _ in range(3)]
                self.assertEqual(names, [NAME_OF_DEBUG_RUN, *(f"{NAME_OF_DEBUG_RUN[:-4]}({n}).inv" for n in (1, 2))])
                self.check_inventories(names)
                self.assertEqual({stat.S_IMODE((self.out / name).stat().st_mode) for name in names}, {0o600})

    def check_refused(self, **calls):
        scan = subprocess.run(
            [SCANNER, "/debug"], cwd=self.out, env=self.environment(IMAC), input="y\n", capture_output=True, text=True,
            preexec_fn=fates(**calls), timeout=300
        )  # fmt: skip
        self.assertEqual((scan.returncode, self.files()), (0, []))
        self.assertEqual(scan.stderr, f"Cannot create file :{self.out.resolve()}/{NAME_OF_DEBUG_RUN}\n")
        self.assertNotIn("Scan finished", scan.stdout)

    def test_that_cannot_write_what_they_accepted_leave_nothing(self):
        self.check_refused(fsync=refused(errno.EIO))

    def test_that_give_no_name_leave_nothing(self):
        for reason in (errno.EIO, errno.EEXIST):
            with self.subTest(reason=errno.errorcode[reason]):
                self.check_refused(**NO_LINKS, **all_of(RENAME, refused(reason)))

    def test_that_hide_the_working_directory_get_the_file(self):
        scan = subprocess.run(
            [SCANNER, "/debug"], cwd=self.out, env=self.environment(IMAC), input="y\n", capture_output=True, text=True,
            preexec_fn=fates(getcwd=refused(errno.EACCES))
        )  # fmt: skip
        self.assertIn(f'Results saved to file "{NAME_OF_DEBUG_RUN}"\n', scan.stdout)
        self.check_inventories([NAME_OF_DEBUG_RUN])


del ScanTestCase, SaveTestCase

if __name__ == "__main__":
    unittest.main()
