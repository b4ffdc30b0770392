"""The completions of the three shells offer the commands and options that the programs have, and no others."""

import re
import shutil
import subprocess
import unittest

import options_of
from inventories import ROOT, InventoryTestCase

FOLDER = ROOT / "packaging" / "completions"
CHOICES = {"diff": {"--format": ["json", "markdown", "text"]}, "export": {"--format": ["csv", "json", "ndjson", "zxml"], "--table": sorted(options_of.TABLES)}, "query": {"--format": ["csv", "json", "table"]},
           "policy": {"--format": ["json", "junit", "table"]}, "show": {"--section": ["asset", "snapshot"]},
           "schema": {"--format": sorted(("json-schema", "sql", "duckdb", "clickhouse", "postgresql")), "--table": sorted(options_of.TABLES)},
           "get": {"--color": ["always", "auto", "never"]}, "help": {"--color": ["always", "auto", "never"]}}


def output_of(*command):
    result = subprocess.run(command, capture_output=True, text=True, timeout=60)
    if result.stderr:
        raise AssertionError(result.stderr)
    return result.stdout.splitlines()


def bash_offers(program, *words):
    """What the function that is registered with bash for the program offers for the last word."""
    script = """source "$1"; shift
        [[ $(complete -p "$1") =~ -F\\ ([^\\ ]+) ]] || exit
        COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        "${BASH_REMATCH[1]}"
        printf '%s\\n' "${COMPREPLY[@]}" """
    return set(output_of("bash", "-c", script, "bash", FOLDER / f"{program}.bash", program, *words)) - {""}


def zsh_arguments(program, *words):
    """What the function hands to zsh's own ones."""
    script = """function _arguments { print -rl -- "$@" }
        function _describe { print -rl -- ${(P)4} }
        function _files { : }
        file=$1; shift
        words=("$@"); CURRENT=$#
        source $file"""
    return output_of("zsh", "-f", "-c", script, "zsh", FOLDER / f"_{program}", program, *words)


def zsh_options(program, *words):
    found = (re.match(r"(?:\([^)]*\))?\*?(-[\w-]+(?:\\:)?)", argument) for argument in zsh_arguments(program, *words))
    return {match[1].replace("\\", "") for match in found if match}


def fish_offers(program, line):
    script = 'source $argv[1]; complete -C $argv[2]'
    lines = output_of("fish", "--no-config", "-c", script, FOLDER / f"{program}.fish", f"{program} {line}")
    return dict((line + "\t").split("\t")[:2] for line in lines)


class Completions:
    """The cases of all shells. Each shell says what it offers after some words."""

    def test_commands(self):
        self.assertEqual(self.commands_offered(), options_of.commands())

    def test_options_of_the_program(self):
        self.assertEqual(self.options_offered("inv"), options_of.options())

    def test_options_of_every_command(self):
        for command in options_of.commands():
            with self.subTest(command=command):
                self.assertEqual(self.options_offered("inv", command), options_of.options(command))

    def test_choices(self):
        for command, option in [(command, option) for command, options in CHOICES.items() for option in options]:
            for choice in CHOICES[command][option]:
                self.assertIn(choice, options_of.help_text(command))
            self.assertEqual(self.choices_offered(command, option), CHOICES[command][option])
            self.assertEqual(self.choices_offered_after_equals(command, option), CHOICES[command][option])

    def test_help_knows_the_commands(self):
        self.assertTrue(self.commands_offered_after_help() >= set(options_of.commands_of_files()))

    def test_options_of_the_scanner(self):
        self.assertEqual(self.options_offered("velkaro-scanner"), options_of.scanner_options())


class Bash(Completions, InventoryTestCase):
    def commands_offered(self):
        names = {name for name in bash_offers("inv", "") if not name.startswith("-")}
        described = options_of.commands()  # bash shows no descriptions
        return {name: described.get(name) for name in names}

    def options_offered(self, program, *words):
        return bash_offers(program, *words, "-")

    def choices_offered(self, command, option):
        return sorted(bash_offers("inv", command, option, ""))

    def choices_offered_after_equals(self, command, option):
        first = CHOICES[command][option][0]
        self.assertEqual(bash_offers("inv", command, option, "=", first[:-1]), {first})
        return sorted(bash_offers("inv", command, option, "="))

    def commands_offered_after_help(self):
        return bash_offers("inv", "help", "")

    def test_completes_what_was_begun(self):
        self.assertEqual(bash_offers("inv", "re"), {"report", "redact"})
        self.assertEqual(bash_offers("inv", "export", "--fo"), {"--format", "--force"})
        self.assertEqual(bash_offers("velkaro-scanner", "-lo"), {"-log", "-login:"})

    def test_leaves_files_to_bash(self):
        for words in [("get", ""), ("show", "MAC"), ("report", "-o", ""), ("redact", "--key", ""), ("unknown", "-")]:
            self.assertEqual(bash_offers("inv", *words), set(), words)
        registered = output_of("bash", "-c", 'source "$1"; complete -p inv', "bash", FOLDER / "inv.bash")
        self.assertEqual(registered, ["complete -o default -F _inv inv"])


@unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
class Zsh(Completions, InventoryTestCase):
    def commands_offered(self):
        arguments = (argument.partition(":") for argument in zsh_arguments("inv", "") if re.match("[a-z]", argument))
        return {name: text[0].upper() + text[1:] for name, _, text in arguments}

    def options_offered(self, program, *words):
        return zsh_options(program, *words, "")

    def choices_offered(self, command, option):
        (argument,) = [argument for argument in zsh_arguments("inv", command, "") if argument.lstrip("*").startswith(option + "=[")]
        return sorted(re.search(r":\((.*)\)$", argument)[1].split())

    # An option that ends in "=" takes its value in both ways.
    choices_offered_after_equals = choices_offered

    def commands_offered_after_help(self):
        return {argument.partition(":")[0] for argument in zsh_arguments("inv", "help", "")}

    def test_every_argument_is_one_that_zsh_can_read(self):
        for command in options_of.commands_of_files():
            for argument in zsh_arguments("inv", command, "")[1:-1]:
                self.assertRegex(argument, r"^(\([^)]*\))?\*?-[\w-]+[=+]?\[[^\[\]]+\](:[a-z]+:(_files|\([a-z ]+\))?)?$")


@unittest.skipUnless(shutil.which("fish"), "fish is not installed")
class Fish(Completions, InventoryTestCase):
    def commands_offered(self):
        return fish_offers("inv", "")

    def options_offered(self, program, *words):
        return set(fish_offers(program, " ".join([*words, "-"])))

    def choices_offered(self, command, option):
        return sorted(fish_offers("inv", f"{command} {option} "))

    def choices_offered_after_equals(self, command, option):
        return sorted(word.replace(option + "=", "") for word in fish_offers("inv", f"{command} {option}="))

    def commands_offered_after_help(self):
        return set(fish_offers("inv", "help "))


if __name__ == "__main__":
    unittest.main()
