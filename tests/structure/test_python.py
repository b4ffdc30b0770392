"""Every script runs with Python 3.9, which comes with Apple's command line tools."""

import ast
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What came later and could tempt a script: modules; functions, methods and constants; keywords by their function.
NEWER_MODULES = {"tomllib"}
NEWER_NAMES = {
    "aiter", "anext", "pairwise", "bit_count", "NoneType", "assertNoLogs", "hardlink_to", "correlation", "linear_regression",  # 3.10
    "ExceptionGroup", "add_note", "file_digest", "StrEnum", "TaskGroup", "UTC", "NOFLAG", "cbrt", "exp2", "chdir",  # 3.11
    "enterContext", "enterClassContext", "enterModuleContext",  # 3.11
    "batched", "override",  # 3.12
}
NEWER_KEYWORDS = {
    "zip": {"strict"}, "dataclass": {"slots", "kw_only"}, "TemporaryDirectory": {"ignore_cleanup_errors", "delete"},
    "bisect": {"key"}, "bisect_left": {"key"}, "bisect_right": {"key"}, "insort": {"key"},
    "glob": {"root_dir", "dir_fd", "case_sensitive"}, "rglob": {"case_sensitive"},
    "run": {"process_group"}, "Popen": {"process_group"}, "NamedTemporaryFile": {"delete_on_close"}, "rmtree": {"onexc"},
    "relative_to": {"walk_up"}, "exists": {"follow_symlinks"}, "is_file": {"follow_symlinks"}, "is_dir": {"follow_symlinks"},
}
# Names of the above that an older module has as well: "os.chdir".
OLD_AFTER_ALL = {("os", "chdir")}


def scripts():
    """Every script in Python, also those without an ending."""
    for path in sorted(ROOT.rglob("*")):
        parts = path.relative_to(ROOT).parts
        if parts[0] in ("build", ".git") or "node_modules" in parts or not path.is_file() or path.suffix not in ("", ".py"):
            continue
        if path.suffix == ".py" or b"python" in path.read_bytes().split(b"\n", 1)[0]:
            yield path


def name_of(node):
    return node.attr if isinstance(node, ast.Attribute) else node.id if isinstance(node, ast.Name) else None


def is_union(node):
    return any(isinstance(each, ast.BinOp) and isinstance(each.op, ast.BitOr) for each in ast.walk(node)) if node else False


def newer_things(text):
    """What Python 3.9 lacks, each as (line, what)."""
    try:
        tree = ast.parse(text, feature_version=(3, 9))
    except SyntaxError as error:
        return [(error.lineno, "syntax")]
    found = []
    for node in ast.walk(tree):
        found += [(node.lineno, what) for what in newer_in(node)]
    return found


def newer_in(node):
    if isinstance(node, (ast.Import, ast.ImportFrom)):
        names = {alias.name for alias in node.names}
        yield from (names | {getattr(node, "module", None)}) & NEWER_MODULES
        if isinstance(node, ast.ImportFrom):
            yield from names & NEWER_NAMES
    elif isinstance(node, ast.Call):
        yield from {keyword.arg for keyword in node.keywords} & NEWER_KEYWORDS.get(name_of(node.func), set())
        if name_of(node.func) in ("isinstance", "issubclass") and is_union(node.args[1]):
            yield "X | Y"
    elif isinstance(node, (ast.AnnAssign, ast.arg)) and is_union(node.annotation):
        yield "X | Y"
    elif isinstance(node, ast.FunctionDef) and is_union(node.returns):
        yield "X | Y"
    elif isinstance(node, (ast.Attribute, ast.Name)) and name_of(node) in NEWER_NAMES:
        if not isinstance(node, ast.Attribute) or (name_of(node.value), node.attr) not in OLD_AFTER_ALL:
            yield name_of(node)


class Python(unittest.TestCase):
    def test_no_script_needs_a_newer_one(self):
        paths = list(scripts())
        self.assertGreater(len(paths), 30)
        found = [f"{path.relative_to(ROOT)}:{line}: {what}" for path in paths for line, what in newer_things(path.read_text("utf-8"))]
        self.assertEqual(found, [])

    def test_newer_things_are_noticed(self):
        for text in ("match x:\n    case 1: pass", "zip(a, b, strict=True)", "x: int | None = 1", "def f(a: int | str): pass",
                     "def f() -> int | str: pass", "isinstance(x, int | str)", "import tomllib", "from datetime import UTC",
                     "datetime.UTC", "from contextlib import chdir", "self.enterContext(x)", "try: pass\nexcept* OSError: pass"):
            with self.subTest(text=text):
                self.assertEqual(len(newer_things(text)), 1)

    def test_older_things_are_left_alone(self):
        for text in ("x = a | b", "zip(a, b)", "os.chdir(x)", "text.removeprefix('a')", "x: list[int] = []",
                     "with (open(a) as x, open(b) as y): pass", "if (match := f()): pass"):
            with self.subTest(text=text):
                self.assertEqual(newer_things(text), [])


if __name__ == "__main__":
    unittest.main()
