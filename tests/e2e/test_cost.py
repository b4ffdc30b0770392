#!/usr/bin/env python3
"""What a scan costs, measured so that every run gives the same figure: the instructions of the scanner's own code, without its
libraries and its children, on a machine of 1,000 applications. Needs valgrind.

A change that is worth its cost raises the figure in bench/instructions in the same commit. It belongs to the `dev`
preset; the test's message has the new figure."""

import os
import re
import shutil
import sys
import unittest

import namespaces
import scans

sys.path.insert(0, str(scans.ROOT / "bench"))
import generate_machine  # noqa: E402

RECORD = scans.ROOT / "bench/instructions"
APPLICATIONS = 1000
MOST_GROWTH = 1.10


def own_instructions(profile, program):
    """The sum over a callgrind profile's functions of one program, calls to others left out."""
    names = {}
    counted = called = False
    total = 0
    for line in profile.splitlines():
        # Of a function, or of one that it calls; only the first mention of a program spells it out.
        name = re.match(r"(c?)ob=(\(\d+\))(?: (.*))?", line)
        if name:
            names.setdefault(name[2], name[3])
            counted = counted if name[1] else names[name[2]] == program
        elif line.startswith("calls="):
            called = True
        elif re.match(r"[-+*\d]", line):
            # The line after a call is what the called function took.
            total += int(line.split()[1]) if counted and not called else 0
            called = False
    return total


class OwnInstructions(unittest.TestCase):
    def test_leaves_out_other_programs_and_calls(self):
        profile = "\n".join([
            "ob=(2) /lib/c", "fn=(4) start", "1 50", "cob=(1) /bin/scanner", "cfn=(1) main", "calls=1 5", "1 5024",
            "ob=(1)", "fn=(1)", "5 100", "+1 20", "cob=(2)", "cfn=(2) read", "calls=3 10", "* 4000", "-2 3",
            "ob=(2)", "fn=(2)", "7 900", "ob=(1)", "fn=(3) end", "8 1", "totals: 5074",
        ])
        self.assertEqual(own_instructions(profile, "/bin/scanner"), 124)


@unittest.skipUnless(shutil.which("valgrind"), "valgrind is not installed")
class Cost(scans.ScanTestCase):
    def test_stays_within_a_tenth_of_the_recorded_figure(self):
        machine, profile = self.folder / "machine", self.folder / "profile"
        generate_machine.generate(machine, APPLICATIONS)
        callgrind = ["valgrind", "--quiet", "--tool=callgrind", f"--callgrind-out-file={profile}"]
        result = self.scan("/silent", machine=machine, prefix=[*namespaces.own_processes(), *callgrind])
        self.assertEqual(result.returncode, 0, result.stderr)
        counted = own_instructions(profile.read_text(), os.path.realpath(scans.SCANNER))
        recorded = int(RECORD.read_text())
        print(f"{counted} instructions, {recorded} recorded")
        self.assertGreater(counted, 0)
        self.assertLessEqual(counted, recorded * MOST_GROWTH, f"bench/instructions says {recorded}; it is {counted} now")


if __name__ == "__main__":
    unittest.main()
