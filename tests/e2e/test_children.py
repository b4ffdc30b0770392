#!/usr/bin/env python3
"""The processes that a scan starts: which, how, and what they get from the scanner."""

import re
import shutil
import subprocess
import unittest

import namespaces
import scans

DATA_TYPES = """
    SPHardware SPNetwork SPSoftware SPParallelATA SPAudio SPBluetooth SPFireWire SPDisplays SPMemory SPPrinters
    SPSerialATA SPParallelSCSI SPUSB SPAirPort SPFirewall SPNetworkLocation SPNetworkVolume SPApplications SPStartupItem
    SPDiscBurning SPPower
""".split()

# Of the iMac, in their order; ps, once per process, is left out.
COMMANDS = [
    *(f"system_profiler -detailLevel full -xml {name}DataType" for name in DATA_TYPES),
    "ioreg -rd1 -c IOPlatformExpertDevice | awk '/IOPlatformUUID/ { split($0, line, \"\\\"\"); printf(\"%s\", line[4]); }'",
    "diskutil info /dev/disk1",
    "ls -1 /Users/",
    *(f'dscl . -read "/users/{name}"' for name in ["Shared", "mira", "robin"]),
    "env",
]
COMPUTER_NAME = ["scutil", "--get", "ComputerName"]
TOOLS = ["system_profiler", "ioreg", "diskutil", "ls", "dscl", "env", "ps", "scutil"]


class Trace:
    """What strace saw of a program and its children."""

    def __init__(self, text):
        lines = [line.split(None, 1) for line in text.splitlines()]
        self.program = lines[0][0]
        own = [rest for process, rest in lines if process == self.program]
        self.starts = [line for line in own if re.match(r"(clone3?|v?fork)\(", line)]
        children = [match[1] for line in own if (match := re.match(r"(?:<\.\.\. )?(?:clone|v?fork).* = (\d+)$", line))]
        self.commands = [self.first_program(lines, child) for child in children]

    @staticmethod
    def first_program(lines, child):
        """The arguments of the first program that a process ran."""
        line = next(rest for process, rest in lines if process == child and rest.startswith("execve("))
        arguments = re.match(r'execve\("[^"]*", \[(.*)\], 0x', line)[1]
        return [re.sub(r"\\(.)", r"\1", text) for text in re.findall(r'"((?:[^"\\]|\\.)*)"', arguments)]


def can_trace():
    command = ["strace", "-f", "-o", "/dev/null", "true"]
    return bool(shutil.which("strace")) and subprocess.run(command, capture_output=True).returncode == 0


class Children(scans.ScanTestCase):
    def trace(self):
        log = self.folder / "trace"
        strace = ["strace", "-f", "-qq", "-s", "400", "-e", "trace=execve,clone,clone3,fork,vfork", "-o", str(log)]
        result = self.scan("/silent", prefix=[*namespaces.own_processes(), *strace])
        self.assertEqual(result.returncode, 0, result.stderr)
        return Trace(log.read_text())

    @unittest.skipUnless(can_trace(), "strace is not installed, or not allowed here")
    def test_only_the_documented_commands_are_started(self):
        commands = self.trace().commands
        self.assertEqual(commands.pop(), COMPUTER_NAME)
        for command in commands:
            self.assertEqual(command[:-1], ["sh", "-c"])
        lines = [command[-1] for command in commands]
        processes = [line for line in lines if re.fullmatch(r'ps -p\d+ -o user="" -o command=""', line)]
        self.assertEqual([line for line in lines if line not in processes], COMMANDS)
        self.assertEqual(len(set(processes)), len(processes), "each process is asked for once")

    @unittest.skipUnless(can_trace(), "strace is not installed, or not allowed here")
    def test_children_start_without_a_copy_of_the_scanners_memory(self):
        starts = self.trace().starts
        self.assertGreater(len(starts), len(COMMANDS))
        for start in starts:
            self.assertTrue(start.startswith("vfork(") or "CLONE_VM|CLONE_VFORK" in start, start)

    def test_children_inherit_only_the_standard_streams(self):
        log = self.folder / "descriptors"
        # What lists the descriptors opens one to do so.
        lister = f"import os; names = os.listdir('/proc/self/fd'); print(*sorted(names), file=open('{log}', 'a'))"
        for tool in TOOLS:
            path = f"{self.tools}:{scans.SIMULATOR / 'bin'}:{self.environment(scans.IMAC)['PATH']}"
            real = shutil.which(tool, path=path)
            self.write_tool(tool, f'python3 -c "{lister}"\nexec {real} "$@"\n')
        result = self.scan("/silent", prefix=namespaces.own_processes())
        self.assertEqual(result.returncode, 0, result.stderr)
        listed = log.read_text().splitlines()
        self.assertGreater(len(listed), len(COMMANDS))
        self.assertEqual(set(listed), {"0 1 2 3"})


if __name__ == "__main__":
    unittest.main()
