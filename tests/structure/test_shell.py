"""The shell scripts are sound, and run with what a Mac has: bash 3.2, and tools without the options of GNU."""

import re
import shutil
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What bash has only since 4.0 or later, each with an example.
NEWER_BASH = {
    "associative array": (r"\b(declare|local|typeset)\s+-\w*A", "declare -A names"),
    "name reference": (r"\b(declare|local|typeset)\s+-\w*n\b", "local -n other=$1"),
    "global declaration": (r"\b(declare|typeset)\s+-\w*g", "declare -g name"),
    "case of a value": (r"\$\{\w+(\[[^]]*\])?(\^|,)", 'echo "${name^^}"'),
    "transformed value": (r"\$\{[\w@*]+(\[[^]]*\])?@[A-Za-z]\}", 'echo "${name@Q}"'),
    "reading lines at once": (r"\b(mapfile|readarray)\b", "mapfile -t lines"),
    "pipe of both outputs": (r"\|&", "make |& cat"),
    "appending both outputs": (r"&>>", "make &>>log"),
    "falling through a case": (r";;?&", "a) echo ;;& b) echo ;;"),
    "element from the end": (r"\$\{\w+\[-", 'echo "${list[-1]}"'),
    "length from the end": (r"\$\{\w+:[^}:]+:\s*-", 'echo "${name:1:-1}"'),
    "is it set": (r"\[\[\s+(!\s+)?-v\s", "[[ -v name ]]"),
    "coprocess": (r"^\s*coproc\b", "coproc cat"),
    "glob over folders": (r"\bglobstar\b", "shopt -s globstar"),
    "last of a pipe": (r"\blastpipe\b", "shopt -s lastpipe"),
    "time by printf": (r"%\([^)]*\)T", "printf '%(%s)T'"),
    "time by variable": (r"\$\{?EPOCH(SECONDS|REALTIME)", "echo $EPOCHSECONDS"),
    "waiting for any": (r"\bwait\s+-n\b", "wait -n"),
    "padded steps": (r"\{0\d+\.\.|\{\w+\.\.\w+\.\.", "echo {01..10}"),
    "descriptor in a variable": (r"\{\w+\}[<>]", "exec {log}>file"),
}

# What GNU's tools accept and a Mac's do not.
GNU_OPTIONS = {
    "sed in place": (r"\bsed\b[^|;]*\s-i\b(?!\s+'')", "sed -i s/a/b/ file"),
    "sed's other expressions": (r"\bsed\b[^|;]*\s(-r\b|--)", "sed -r s/a+/b/"),
    "Perl's expressions": (r"\bgrep\b[^|;]*\s-\w*P", "grep -oP a"),
    "the whole of a link": (r"\breadlink\s+-[fem]|\brealpath\b", 'readlink -f "$0"'),
    "a file's facts": (r"\bstat\s+(-c|--)", "stat -c %s file"),
    "a date of one's own": (r"\bdate\s+(-d|--)", "date -d yesterday"),
    "nothing to run on": (r"\bxargs\b[^|;]*\s(-r\b|--no-run)", "xargs -r rm"),
    "sorting versions": (r"\bsort\b[^|;]*\s-\w*V", "sort -V"),
    "printing what was found": (r"\bfind\b[^|;]*\s-printf", "find . -printf %p"),
    "processors": (r"\bnproc\b", "make -j$(nproc)"),
    "commands a Mac lacks": (r"(^|[|;&(]\s*)(timeout|tac|sha256sum|setsid)\s", "timeout 5 make"),
    "long options": (r"(^|[|;&(]\s*)(cp|mv|rm|ln|ls|mkdir|mktemp|head|tail|wc|cut|tr)\s[^|;]*--\w", "mkdir --parents a"),
}

# Those that only ever run on Linux.
FOR_LINUX = {"packaging/linux", "bench"}


def scripts():
    """Every shell script, with the shell it is for."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, capture_output=True, text=True, check=True)
    for name in sorted(listed.stdout.splitlines()):
        path = ROOT / name
        if not path.is_file() or path.suffix in (".inv", ".db"):
            continue
        with path.open("rb") as file:
            beginning = file.read(600).decode("utf-8", "replace")
        shell = re.match(r"#!\s*(?:/usr/bin/env |/bin/)(bash|sh)\b", beginning) or re.search(r"# shellcheck shell=(\w+)", beginning)
        if shell:
            yield path, shell[1]
        elif path.suffix in (".bash", ".sh"):
            yield path, path.suffix[1:]


def code_lines(path):
    """The lines with their numbers; comments are prose."""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        yield number, re.sub(r"(^|\s)#.*", "", line)


def breaches(rules, paths):
    return [
        f"{path.relative_to(ROOT)}:{number}: {rule}"
        for path in paths
        for number, line in code_lines(path)
        for rule, (pattern, _) in rules.items()
        if re.search(pattern, line)
    ]


class Shell(unittest.TestCase):
    def test_the_scripts_are_found(self):
        found = {path.relative_to(ROOT).as_posix(): shell for path, shell in scripts()}
        for name, shell in (("scan", "bash"), ("scripts/packages.sh", "bash"), ("packaging/completions/inv.bash", "bash"),
                            ("simulator/run", "sh"), ("simulator/replay.sh", "sh"), ("packaging/macos/common.sh", "sh")):
            self.assertEqual(found[name], shell)

    @unittest.skipUnless(shutil.which("shellcheck"), "shellcheck is not installed")
    def test_shellcheck_finds_nothing(self):
        for shell in ("bash", "sh"):
            paths = [path for path, own in scripts() if own == shell]
            result = subprocess.run(["shellcheck", f"--shell={shell}", *paths], cwd=ROOT, capture_output=True, text=True, timeout=300)
            self.assertEqual(result.stdout + result.stderr, "")

    def test_nothing_is_newer_than_the_bash_of_a_mac(self):
        self.assertEqual(breaches(NEWER_BASH, [path for path, _ in scripts()]), [])

    def test_no_tool_gets_an_option_that_only_gnu_has(self):
        for_macs = [path for path, _ in scripts() if not any(folder in path.as_posix() for folder in FOR_LINUX)]
        self.assertEqual(breaches(GNU_OPTIONS, for_macs), [])

    def test_the_simulator_needs_no_bash(self):
        for path, shell in scripts():
            if "simulator/" in path.as_posix():
                self.assertEqual(shell, "sh", path)

    def test_each_rule_catches_its_example(self):
        for rule, (pattern, example) in {**NEWER_BASH, **GNU_OPTIONS}.items():
            self.assertRegex(example, pattern, rule)


if __name__ == "__main__":
    unittest.main()
