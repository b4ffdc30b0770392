"""The documentation shows what the programs print: every transcript is run again, every example in the manual pages works.

In a page, "    $ COMMAND" begins a transcript, and the lines below it are the output; "..." stands for any number of lines. A command
without any output below it has to succeed."""

import functools
import os
import re
import shutil
import subprocess
import unittest

import inventories
import same_host
from inventories import FOLDER, ROOT, SCANNER, SIMULATOR, InventoryTestCase

PAGES = ["README.md", "docs/inv-tool.md", "docs/fleet.md", "docs/privacy.md", "simulator/README.md"]
MANUAL_PAGES = ["docs/man/inv.1", "docs/man/velkaro-scanner.1"]
MACHINES = SIMULATOR / "machines"

# What differs in every scan: its time, and the processes of the machine that runs the tests.
VARYING = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d [+-]\d\d:\d\d|\b\d{4}-\d\d-\d\d$|\d+ process(es)?"
# Commands that count bytes, which vary a little: a text with a time in it is compressed.
COUNTING = ("inv list ", "inv verify ")
# The scanner on PATH: it scans the simulated iMac, unless another machine is chosen.
SCANNER_HERE = f"""#!/bin/sh
[ -n "$VELKARO_MACHINE" ] || exec '{SIMULATOR}/run' '{MACHINES}/imac-10.6' '{SCANNER}' "$@"
exec '{SCANNER}' "$@"
"""


def transcripts(text):
    """(command, the lines shown below it) of a page, in order."""
    found = []
    for line in text.splitlines():
        if line.startswith("    $ "):
            found.append((line[6:], []))
            inside = True
        elif line and not line.startswith("    "):
            inside = False
        elif found and inside:
            found[-1][1].append(line[4:])
    return [(command, "\n".join(lines).strip("\n")) for command, lines in found]


def examples(page):
    """The commands that a manual page shows, except those that need a real Mac: its access control lists."""
    shown = [line.replace(r"\(dq", '"').replace(r"\e", "\\") for line in re.findall(r"^\.Dl (.*)$", page, re.M)]
    return [command for command in shown if not command.startswith("chmod +a ")]


def pattern(shown):
    """A pattern that matches an output as shown."""
    return "".join(r"(?:.*\n)*?" if line == "..." else re.escape(line) + r"\n" for line in shown.split("\n"))


def settled(command, text):
    """A text without what varies, including the blanks that pad its column."""
    text = re.sub(VARYING, "(varies)", text.replace("\r\n", "\n"), flags=re.M)
    if command.startswith(COUNTING):
        text = re.sub(r"(?<![\w.])\d+(?!\w)", "(varies)", text)
    return re.sub(r" +\(varies\)", " (varies)", text)


def changed_imac(folder):
    """The iMac some days later: a game is gone, and Safari is newer."""
    shutil.copytree(MACHINES / "imac-10.6", folder)
    applications = folder / "profiler" / "SPApplicationsDataType.plist"
    items = re.split(r"(?=^\t\t\t<dict>\n)", applications.read_text(encoding="utf-8"), flags=re.M)
    items = [item for item in items if "<string>Chess</string>" not in item]
    items = [item.replace("<string>5.1</string>", "<string>5.1.10</string>") if "<string>Safari</string>" in item else item
             for item in items]
    applications.write_text("".join(items), encoding="utf-8")
    return folder


@functools.lru_cache(maxsize=None)
def files():
    """The files that the pages mention, by their names there."""
    monday, friday = same_host.scan(MACHINES / "imac-10.6"), same_host.scan(changed_imac(FOLDER / "friday"))
    render, debug = same_host.scan(MACHINES / "mac-pro-10.5"), same_host.scan(MACHINES / "imac-10.6", "/debug")
    return {"monday.inv": monday, "MAC.inv": monday, "friday.inv": friday, "render.inv": render, "debug.inv": debug, "DEBUG.inv": debug,
            "starter.json": ROOT / "packaging" / "policies" / "starter.json"}


def make_checkout(folder):
    """A folder as after building the programs in it."""
    release = folder / "build" / "release"
    release.mkdir(parents=True)
    (release / "inv").symlink_to(inventories.INV)
    (release / "velkaro-scanner").write_text(SCANNER_HERE)
    (release / "velkaro-scanner").chmod(0o755)
    (folder / "scripts").mkdir()
    (folder / "scripts" / "packages.sh").write_text("install_packages() { :; }\nbuild_preset() { :; }\nbuild_packages=\n")
    (folder / "scan").symlink_to(ROOT / "scan")
    (folder / "simulator").symlink_to(SIMULATOR)
    (folder / "fleet").symlink_to(ROOT / "fleet")
    return folder


class Pages(InventoryTestCase):
    maxDiff = None

    def prepare(self, page):
        self.folder = make_checkout(FOLDER / page.replace("/", "-"))
        for name, file in files().items():
            shutil.copy(file, self.folder / name)
        path = f"{self.folder / 'build' / 'release'}:{inventories.host_tools()}:{os.environ['PATH']}"
        self.environment = {**os.environ, "PATH": path, "TZ": "UTC", "LC_ALL": "C.UTF-8"}

    def run_command(self, command):
        """The status and the output for an operator who answers the scanner's question in the folder /home/mira."""
        for tool in ("sqlite3", "jq", "ssh-keygen"):
            if re.search(rf"\b{tool} -?", command) and not shutil.which(tool):
                self.skipTest(f"{tool} is not installed")
        result = subprocess.run([*same_host.ALONE, "bash", "-c", command], cwd=self.folder, env=self.environment, input=b"y\n",
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300)
        output = result.stdout.decode().replace("(y/n)\n", "(y/n)\ny\n")
        return result.returncode, output.replace(str(self.folder.resolve()), "/home/mira")

    def test_show_what_the_programs_print(self):
        for page in PAGES:
            shown = transcripts((ROOT / page).read_text(encoding="utf-8"))
            self.assertTrue(shown, page)
            self.prepare(page)
            (self.folder / "cut.inv").write_bytes(files()["monday.inv"].read_bytes()[:-1])
            for command, output in shown:
                with self.subTest(page=page, command=command):
                    self.check_transcript(command, output)

    def check_transcript(self, command, shown):
        status, printed = self.run_command(command)
        if not shown:
            self.assertEqual(status, 0, printed)
            return
        shown, printed = settled(command, shown), settled(command, printed)
        if not re.fullmatch(pattern(shown), printed):
            self.assertEqual(shown + "\n", printed)

    def test_examples_of_the_manual_pages_work(self):
        for page in MANUAL_PAGES:
            self.prepare(page)
            for command in examples((ROOT / page).read_text(encoding="utf-8")):
                with self.subTest(page=page, command=command):
                    status, printed = self.run_command(command)
                    self.assertEqual(status, 0, printed)


if __name__ == "__main__":
    unittest.main()
