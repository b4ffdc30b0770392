"""The commands and options that the programs' own help lists, to check other lists against."""

import re
import subprocess

from inventories import INV, ROOT, SCANNER

VERSION = re.search(r"^project\(velkaro-scanner VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.M)[1]

# What `inv export --table` has rows of.
TABLES = ("machines", "software", "disks", "volumes", "memory", "displays", "adapters", "accounts", "processes", "packages", "security")

# The option that every command has, and the program itself.
HELP = {"-h", "--help"}


def help_text(*arguments):
    return subprocess.run([INV, *arguments, "--help"], capture_output=True, check=True, text=True).stdout


def commands():
    """The commands of `inv` with their descriptions, in the order of its help."""
    listed = help_text().split("Subcommands:\n")[1]
    return dict(re.findall(r"^  ([a-z]+) +(\S.*)$", listed, re.M))


def options(*command):
    """The options of `inv`, or of one of its commands."""
    described = help_text(*command).split("Options:\n")[1].split("Subcommands:")[0]
    names = re.findall(r"^  (-[A-Za-z0-9-]+(?:,-[a-z-]+)*)", described, re.M)
    return {name for joined in names for name in joined.split(",")}


def commands_of_files():
    """The commands that open files: all except those that only print something."""
    return {name: text for name, text in commands().items() if name not in ("schema", "help")}


def scanner_options():
    """The options of the scanner; one with a value ends in a colon."""
    text = subprocess.run([SCANNER, "--help"], capture_output=True, check=True, text=True).stdout
    names = re.findall(r"^  (-[a-z-]+:?)(?:,(-[a-z-]+))?", text, re.M)
    return {name for alternatives in names for name in alternatives if name}
