"""What is shipped: the build of the preset "release", which ./check makes before it runs any test."""

import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
RELEASE = ROOT / "build" / "release"
PROGRAMS = [RELEASE / "velkaro-scanner", RELEASE / "inv"]
VERSION = re.search(r"^project\(velkaro-scanner VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text(), re.M)[1]
sys.path.insert(0, str(ROOT / "tests" / "e2e"))

# The installed documentation: all pages except those for people with the sources.
FOR_DEVELOPERS = {"architecture.md", "porting.md", "releasing.md"}
PAGES = {f"docs/{path.name}" for path in (ROOT / "docs").glob("*.md") if path.name not in FOR_DEVELOPERS}
PAGES |= {f"docs/schema/{path.name}" for path in (ROOT / "docs" / "schema").iterdir()}
DOCUMENTATION = {f"share/doc/velkaro-scanner/{page}" for page in {"README.md", "SECURITY.md", "CHANGELOG.md"} | PAGES}
FLEET = {f"share/velkaro-scanner/fleet/{path.relative_to(ROOT / 'fleet').as_posix()}" for path in (ROOT / "fleet").rglob("*") if path.is_file()}

needed = unittest.skipUnless(all(program.exists() for program in PROGRAMS), "the preset release is not built")


def output_of(*command, **options):
    """What a command prints; the test fails with what it complains of when the command does."""
    result = subprocess.run(command, capture_output=True, text=True, timeout=600, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def files_below(folder):
    """The paths of all files below a folder, relative to it."""
    return {path.relative_to(folder).as_posix() for path in Path(folder).rglob("*") if not path.is_dir()}


def environment(**changes):
    return {**os.environ, **changes}
