#!/usr/bin/env python3
"""What a scan is to leave out is neither collected nor in its file."""

import re
import shutil
import sys
import unittest
from itertools import combinations

import namespaces
import scans
from scans import ALL_MACHINES, IMAC, PERCENTAGES, ROOT, SIMULATOR
from test_catalogue import facts_in

sys.path.insert(0, str(ROOT / "inv/facts"))

import catalogue  # noqa: E402

WORDS = ("processes", "arguments", "environment", "values", "accounts")
# What each word hides, where the machine of these tests has it and nothing else reveals it.
PLANTED = {
    "processes": [b"daemon-of-robin"],
    "arguments": [b"--planted-argument"],
    "environment": [b"PLANTED_NAME"],
    "values": [b"planted value", b"env-var:second="],
    "accounts": [b"Planted Full Name"],
}
HIDDEN = {
    **{word: {word} for word in WORDS},
    "processes": {"processes", "arguments"},
    "environment": {"environment", "values"},
}
TOOLS = ("ps", "env", "dscl", "ls")
# How the tools are called; ps is asked only for the user if arguments are left out.
CALLS = {
    "processes": {"ps user", "ps user command"},
    "arguments": {"ps user command"},
    "environment": {"env"},
    "values": {"env"},
    "accounts": {"dscl", "ls"},
}
PEOPLE = ("Device:", "signed-by", "effective-user", "effective-uid")


class Without(scans.ScanTestCase):
    def setUp(self):
        super().setUp()
        self.log = self.folder / "calls"
        self.write_tool("ps", self.logging() + "case $* in *command*) rest=' daemon --planted-argument';; esac\nprintf 'root%s\\n' \"$rest\"\n")
        self.write_tool("dscl", self.logging() + "printf 'NFSHomeDirectory: /\\nNFSHomeDirectory: /\\nRealName: Planted Full Name\\nRecordName: planted\\nRecordType: x\\n'\n")
        self.write_tool("ls", f'{self.logging()}exec {SIMULATOR}/bin/ls "$@"\n')
        self.write_tool("env", f'{self.logging()}exec {shutil.which("env")} "$@"\n')

    def logging(self):
        return f'printf "%s\\n" "${{0##*/}} $*" >>"{self.log}"\n'

    def scan_without(self, *words, options=()):
        """The container, with a process and a variable that have something to hide."""
        self.log.write_text("")
        lists = [f"/without:{','.join(words)}"] if words else []
        before = set(self.files())
        planted = {"PLANTED_NAME": "planted value\nsecond=line"}
        # The shell stays, beside the scanner, under the name of its script.
        script = self.folder / "daemon-of-robin"
        script.write_text('#!/bin/sh\n"$@"\nexit $?\n')
        script.chmod(0o755)
        result = self.scan("/silent", *lists, *options, prefix=[*namespaces.own_processes(), script], **planted)
        self.assertEqual((result.returncode, result.stderr, result.stdout[: len(PERCENTAGES)]), (0, "", PERCENTAGES))
        (name,) = set(self.files()) - before
        return self.decode(name)

    def calls(self):
        """The tools that were called, of ps with what it was asked for."""
        lines = [line.split() for line in self.log.read_text().splitlines()]
        return {" ".join([tool, *(word.rstrip("=") for word in words if word.endswith("="))]) for tool, *words in lines}

    def text_of(self, container):
        return b"".join(section.tree.text for section in container.sections)

    def assert_hidden(self, container, words):
        hidden = set().union(*(HIDDEN[word] for word in words))
        for word, traces in PLANTED.items():
            for trace in traces:
                self.assertEqual(trace in self.text_of(container), word not in hidden, (words, trace))


class Words(Without):
    @unittest.skipUnless(namespaces.own_processes(), "this machine lets nobody have processes of his own")
    def test_and_their_combinations_leave_no_trace_and_run_no_command(self):
        for count in range(len(WORDS) + 1):
            for words in combinations(WORDS, count):
                with self.subTest(words=words):
                    container = self.scan_without(*words)
                    self.assert_hidden(container, words)
                    unwanted = set().union(*(CALLS[word] for word in words))
                    usual = {"ps user" if "arguments" in words else "ps user command", "env", "dscl", "ls"}
                    self.assertEqual(self.calls(), usual - unwanted)

    def test_leave_all_other_facts_as_they_are(self):
        usual = self.scan_without().snapshot
        for words, gone in ((("processes",), "Processes"), (("environment",), "Environment"), (("accounts",), "User-accounts")):
            names = [child.name for child in self.scan_without(*words).snapshot.children]
            self.assertEqual(names, [child.name for child in usual.children if child.name != gone])

    def test_keep_the_names(self):
        container = self.scan_without("arguments", "values")
        processes = container.snapshot.find("Processes").children
        self.assertIn("daemon-of-robin"[:15], {process.value for process in processes})
        for process in processes:
            self.assertEqual([attribute.name for attribute in process.attributes], ["pid", "ppid", "user"])
        variables = {variable.value: variable for variable in container.snapshot.find("Environment").children}
        self.assertIn("PLANTED_NAME", variables)
        self.assertNotIn("second", variables)
        for variable in variables.values():
            (value,) = variable.attributes
            self.assertEqual((value.name, value.value, value.annotations), ("value", "", [("left-out", "")]))

    def test_add_up_over_several_options(self):
        container = self.scan_without("arguments", options=["-without:accounts", "/without:environment"])
        self.assert_hidden(container, ("arguments", "accounts", "environment"))

    def test_change_no_step_and_no_banner(self):
        printed = [self.scan("/log", "/silent", *lists).stdout for lists in ([], [f"/without:{','.join(WORDS)}"])]
        usual, short = (re.sub(r">>>.*", ">>>", text) for text in printed)
        self.assertEqual(usual, short)

    def test_cut_nothing_in_a_debug_file(self):
        everything = f"/without:{','.join(WORDS)},people"
        usual, short = self.scan_silently(IMAC, "/debug", "/extended"), self.scan_silently(IMAC, "/debug", "/extended", everything)
        self.assertEqual([section.content for section in usual.sections if section.kind == "customdata"], [section.content for section in short.sections if section.kind == "customdata"])


class Extended(Without):
    def test_record_names_what_was_left_out(self):
        scan = self.scan_without("values", "people", options=["/extended", "-without:arguments"]).snapshot.find("Scan")
        self.assertEqual(scan.get("left-out"), "arguments, values, people")
        self.assertEqual(scan.get("options"), "/silent /without:values,people /extended -without:arguments")
        self.assertIsNone(self.scan_without(options=["/extended"]).snapshot.find("Scan").attribute("left-out"))

    def test_record_has_no_command_that_was_not_run(self):
        scan = self.scan_without("processes", "environment", "accounts", options=["/extended"]).snapshot.find("Scan")
        tools = {command.value.split()[0] for command in scan.children if "Rosetta" not in command.value}
        self.assertEqual(tools & set(TOOLS), set())

    def test_record_has_what_ps_was_asked_for(self):
        scan = self.scan_without("arguments", options=["/extended"]).snapshot.find("Scan")
        self.assertIn('ps -pN -o user=""', [command.value for command in scan.children])


class People(scans.ScanTestCase):
    def test_are_in_no_fact_that_an_extended_scan_adds(self):
        paths = self.paths_of_people()
        for name in PEOPLE:
            self.assertTrue([path for path in paths if name in path], name)
        seen = set()
        for machine in ALL_MACHINES:
            with self.subTest(machine=machine.name):
                seen |= self.paths(machine, "/extended") & paths
                self.assertEqual(self.paths(machine, "/extended", "/without:people") & paths, set())
        self.assertEqual(seen, paths)

    def paths_of_people(self):
        """Of the facts that the catalogue says are a person's, those that the default scan has not."""
        facts = catalogue.Catalogue(catalogue.CATALOGUE.read_text(encoding="utf-8")).facts
        told = {fact.path for fact in facts if (fact.tree, fact.owner) == ("Snapshot", "person")}
        return told - set().union(*(self.paths(machine) for machine in ALL_MACHINES))

    def paths(self, machine, *options):
        return {path for _, path, key, _ in facts_in(self.scan_silently(machine, *options).snapshot) if key is None}


class Refusals(Without):
    def refuse(self, *arguments):
        """The message on standard error; nothing is asked, run or saved."""
        result = self.scan(*arguments, answer="y")
        self.assertEqual((result.returncode, result.stdout, self.files()), (1, "", []))
        self.assertFalse(self.log.exists())
        return result.stderr

    def test_an_unknown_word_ends_the_run_in_one_line(self):
        expected = "velkaro-scanner: /without:argument: can leave out processes, arguments, environment, values, accounts and, with /extended, people, with commas between\n"
        for options in ([], ["/silent"], ["/debug", "-silent"], ["/log", "/extended"]):
            for arguments in ([*options, "/without:argument"], ["/without:argument", *options]):
                with self.subTest(arguments=arguments):
                    self.assertEqual(self.refuse(*arguments), expected)

    def test_so_does_an_empty_or_malformed_list(self):
        for argument in ("/without:", "-without", "--without:values", "/without:values,", "/without=values", "/without:a\nb",
                         "/Without:values", "-WITHOUT", "\\without:values", "\u2013without:values"):
            with self.subTest(argument=argument):
                self.assertEqual(self.refuse("/silent", argument, "/without:accounts").count("\n"), 1)

    def test_people_need_an_extended_scan(self):
        self.assertIn("/without:people: needs /extended;", self.refuse("/silent", "/without:people"))
        self.assertIn("/without:people: needs /extended;", self.refuse("/debug", "/without:accounts,people"))

    def test_help_is_printed_all_the_same(self):
        result = self.scan("--help", "/without:nothing")
        self.assertEqual((result.returncode, result.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
