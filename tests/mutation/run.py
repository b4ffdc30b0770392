#!/usr/bin/env python3
"""Puts each deliberate fault of the tables into a copy of the sources and reports those that no test notices.

    tests/mutation/run.py                 # all of them: hours
    tests/mutation/run.py 'printers|usb'  # those whose source, or rule, matches
    tests/mutation/run.py --resume        # those without a result from an earlier run

The copy, its build and the results are in build/mutation. For each fault the test program of its layer is built and
run, first the tests that stand beside the source; when they pass, the rest of the program, and then the end-to-end
tests that the table names. The exit status is 0 when every fault was noticed.
"""

import argparse
import fcntl
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

from fault_table import ROOT, TableError, read_tables

WORK = ROOT / "build" / "mutation"
TREE = WORK / "tree"
BUILD = WORK / "build"
RESULTS = WORK / "results.txt"
OUTPUT = WORK / "output.txt"
# A fault may make a test wait, or ask for memory, without end.
SECONDS = 120
MEMORY = 8 << 30
# What may become of a fault.
NOTICED, SURVIVED, BROKEN, MISSING = "noticed", "SURVIVED", "does not compile", "is not there any more"


def run(command, seconds=SECONDS, **options):
    """Whether it succeeded in time; otherwise it and what it started are ended. Its output is in OUTPUT."""
    with OUTPUT.open("wb") as output:
        process = subprocess.Popen(
            command,
            stdout=output,
            stderr=output,
            stdin=subprocess.DEVNULL,
            start_new_session=True,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY)),
            **options,
        )
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


def failed_test():
    """The test that failed in the last run or, if it did not get as far as naming one, the last line of its output."""
    said = OUTPUT.read_text(errors="replace")
    failed = re.search(r"^\[  FAILED  \] ([\w./]+)|^(?:FAIL|ERROR): (\w+)", said, re.MULTILINE)
    running = re.findall(r"^\[ RUN      \] ([\w./]+)", said, re.MULTILINE)
    return (failed[1] or failed[2]) if failed else f"the end of {running[-1]}" if running else "its end"


def claim_copy():
    """An open file that keeps other runs out of the copy. Ends the program where another one is at it."""
    WORK.mkdir(parents=True, exist_ok=True)
    lock = (WORK / "lock").open("w")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit(f"Another run is at work in {WORK}")
    return lock


def copy_tree():
    """The copy as the sources are now; files that are the same stay untouched, so that they are not built again."""
    listed = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, text=True)
    names = {name for name in listed.splitlines() if (ROOT / name).is_file()}
    for path in [path for path in TREE.rglob("*") if path.is_file()]:
        if path.relative_to(TREE).as_posix() not in names:
            path.unlink()
    for name in names:
        source, copy = ROOT / name, TREE / name
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
    # Without them the tests with engines and validators are skipped, and notice nothing.
    for modules in ROOT.glob("tests/*/node_modules"):
        copy = TREE / modules.relative_to(ROOT)
        if not copy.exists():
            copy.symlink_to(modules)


def configure():
    options = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0", "-DVELKARO_TESTS=ON"]
    if shutil.which("ccache"):
        options.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
    if shutil.which("ninja"):
        options.append("-GNinja")
    if shutil.which("ld.lld"):
        options.append("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld")
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, *options], check=True, stdout=subprocess.DEVNULL)


def build(targets, jobs):
    return run(["cmake", "--build", BUILD, "-j", str(jobs), "--target", *targets], seconds=None)


def layers(source):
    """The folders below tests/ that test a source, as the folders there mirror src/; empty for what only end-to-end tests run."""
    parts = Path(source).parts
    if parts[0] not in ("src", "inv") or "main.cpp" in parts or "commands" in parts:
        return []
    if parts[0] == "inv":
        return ["inv"]
    # The contract tests say what CoreFoundation accepts, for the scanner of property lists too.
    return {"plist": ["plist", "contract"], "platform": ["platform", "contract"]}.get(parts[1], [parts[1]])


def program(layer):
    return f"{layer}_tests"


def own_suites(source, layer):
    """The suites of a source's own test file, as a filter of GoogleTest; empty when there are none."""
    files = (TREE / "tests" / layer).rglob(f"{Path(source).stem}*_test.cpp")
    suites = {suite for file in files for suite in re.findall(r"^TEST(?:_[FP])?\((\w+),", file.read_text(), re.MULTILINE)}
    return ":".join(f"*{suite}.*" for suite in sorted(suites))


def run_tests(layer, chosen="*"):
    return run([BUILD / "tests" / program(layer), f"--gtest_filter={chosen}", "--gtest_fail_fast"], cwd=WORK)


class Session:
    """One run over the faults."""

    def __init__(self, jobs):
        self.jobs = jobs

    def try_fault(self, fault):
        """The outcome and, where a test noticed the fault, what noticed it."""
        path = TREE / fault.source
        healthy = path.read_text()
        path.write_text(fault.apply(healthy))
        try:
            return self.judge(fault)
        finally:
            path.write_text(healthy)

    def judge(self, fault):
        for layer in layers(fault.source):
            if not build([program(layer)], self.jobs):
                return BROKEN, ""
            suites = own_suites(fault.source, layer)
            filters = [suites, f"-{suites}"] if suites else ["*"]
            for chosen in filters:
                if not run_tests(layer, chosen):
                    return NOTICED, failed_test()
        if fault.e2e:
            programs = ["velkaro-scanner"] if fault.source.startswith("src/") else ["velkaro-scanner", "inv", "make_fleet"]
            if not build(programs, self.jobs):
                return BROKEN, ""
            for test in fault.e2e:
                if not self.run_script(test):
                    return NOTICED, f"{test}: {failed_test()}"
        return SURVIVED, ""

    @staticmethod
    def run_script(test):
        script, _, case = test.partition(".")
        environment = dict(
            os.environ, VELKARO_SCANNER=str(BUILD / "velkaro-scanner"), VELKARO_BUILD=str(BUILD), PYTHONDONTWRITEBYTECODE="1"
        )
        arguments = [f"{script}.py", "--failfast", *([case] if case else [])]
        return run([sys.executable, *arguments], cwd=TREE / "tests" / "e2e", env=environment)

    def check_health(self, faults):
        """Ends the program unless all that is to notice the faults passes without them."""
        needed = sorted({layer for fault in faults for layer in layers(fault.source)})
        if not build([*map(program, needed), "velkaro-scanner", "inv", "make_fleet"], self.jobs):
            sys.exit("The sources do not compile without a fault")
        for layer in needed:
            if not run_tests(layer):
                sys.exit(f"{program(layer)} fails without a fault: {failed_test()}")
        for test in sorted({test for fault in faults for test in fault.e2e}):
            if not self.run_script(test):
                sys.exit(f"{test} fails without a fault: {failed_test()}")


def read_results():
    """The outcome of each fault's last trial, by its name."""
    lines = RESULTS.read_text().splitlines() if RESULTS.exists() else []
    return {name: outcome for outcome, name, _ in (line.split("\t") for line in lines)}


def print_summary(faults):
    """Prints what became of all faults in the tables; true if each was noticed."""
    results = read_results()
    outcomes = [results.get(fault.name, "not tried") for fault in faults]
    print(f"{len(faults)} faults: " + ", ".join(f"{outcomes.count(outcome)} {outcome}" for outcome in sorted(set(outcomes))))
    return set(outcomes) == {NOTICED}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("pattern", nargs="?", default="", help="only faults whose source or rule matches this expression")
    parser.add_argument("--resume", action="store_true", help="leave out what was noticed in an earlier run")
    parser.add_argument("--unchecked", action="store_true", help="trust that the tests pass without a fault")
    parser.add_argument("--jobs", type=int, default=2, help="compilers at a time")
    options = parser.parse_args()
    os.nice(10)
    # So that what was started ends too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended"))
    try:
        all_faults = read_tables()
    except TableError as error:
        sys.exit(str(error))
    if not options.resume and not options.pattern:
        RESULTS.unlink(missing_ok=True)
    known = read_results() if options.resume else {}
    faults = [fault for fault in all_faults if re.search(options.pattern, fault.name) and known.get(fault.name) != NOTICED]
    _lock = claim_copy()
    copy_tree()
    configure()
    session = Session(options.jobs)
    if not options.unchecked:
        session.check_health(faults)
    with RESULTS.open("a") as results:
        for fault in faults:
            start = time.monotonic()
            try:
                outcome, test = session.try_fault(fault)
            except TableError as error:
                outcome, test = MISSING, str(error)
            print(f"{outcome:9} {time.monotonic() - start:4.0f} s  {fault.place}: {fault.name}  {test}", flush=True)
            print(outcome, fault.name, test, sep="\t", file=results, flush=True)
    sys.exit(0 if print_summary(all_faults) else 1)


if __name__ == "__main__":
    main()
