"""Names are spelt the same way everywhere: .clang-tidy says how, for editors and for the headers; the rules below are quick enough for all files.

Functions and variables are lower_case, types CapitalisedWords, constants kName. The enumerators of an "enum class" are lower_case, since
its name is written before them; those of a plain "enum" are constants.
"""

import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("src", "inv", "tests", "fuzz", "bench")

# Files with Apple's names, and files that need Apple's headers.
FOREIGN = "src/platform/corefoundation/include/"
MAC_ONLY = "src/platform/darwin/"

LITERAL_OR_COMMENT = re.compile(r'R"([^(\s"]*)\((?:.|\n)*?\)\1"|"(?:[^"\\\n]|\\.)*"|(?<![0-9])\'(?:[^\'\\\n]|\\.)+\'|//[^\n]*')

# What no line may contain: (name of the fault, pattern).
FAULTS = [
    ("constant that is no kName",
     re.compile(r"\bconstexpr (?:static )?[\w:<>, *&]*?[ *&](?!k[A-Z]|operator)\w+(?:\[[^\]]*\])* ?(?:=|\{)")),
    ("constant that is no kName", re.compile(r"^(?:static |inline )*const [\w:<>, *&()]*?[ *&](?!k[A-Z])\w+(?:\[\])? =")),
    ("constant that is no kName", re.compile(r"^ +static const [\w:<>, *&()]*?[ *&](?!k[A-Z])\w+(?:\[\])? =")),
    ('"class" for "typename"', re.compile(r"\btemplate <.*\bclass\b")),
    ("static function at file level", re.compile(r"^static .*\)(?: const)? \{")),
    ("expected value before the actual one", re.compile(r'^ *(?:EXPECT|ASSERT)_(?:STR|DOUBLE_)?(?:EQ|NE)\((?:-?\d[\w.\']*|""|nullptr|k[A-Z]\w*), ')),
]
ENUM = re.compile(r"\benum (class )?(\w*)[^;{(]*\{([^}]*)\}")
SCOPED = re.compile(r"[a-z][a-z0-9_]*")
UNSCOPED = re.compile(r"k[A-Z]\w*")


def sources():
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).rglob("*")):
            name = path.relative_to(ROOT).as_posix()
            if path.suffix in (".h", ".cpp") and "node_modules" not in path.parts and not name.startswith(FOREIGN):
                yield name, path.read_text("utf-8")


def without_literals(text):
    """The text with empty literals and without comments, with the same lines."""
    def blank(match):
        found = match.group(0)
        return ("" if found.startswith("//") else found[0] * 2 if found[0] in "\"'" else '""') + "\n" * found.count("\n")
    return LITERAL_OR_COMMENT.sub(blank, text)


def faults(text):
    """What breaks the rules, each as (line, what)."""
    code = without_literals(text)
    found = [(number, what) for number, line in enumerate(code.split("\n"), 1) for what, fault in FAULTS if fault.search(line)]
    for enum in ENUM.finditer(code):
        names = re.findall(r"(?:^|,)\s*(\w+)", enum.group(3))
        form = SCOPED if enum.group(1) else UNSCOPED
        found += [(code.count("\n", 0, enum.start()) + 1, f"enumerator {name}") for name in names if not form.fullmatch(name)]
    return found


class Names(unittest.TestCase):
    def test_follow_the_rules(self):
        self.assertEqual([f"{name}:{line}: {what}" for name, text in sources() for line, what in faults(text)], [])

    def test_slips_are_noticed(self):
        for text in ("constexpr size_t longest = 3;", "  constexpr int sizes[] = {1};", "  static constexpr char a{1};",
                     "const std::string name = make(1);", "const char* const text = \"\";", "  static const std::vector<T> rows = {};",
                     "template <class T>", "template <typename A, class B>", "static int f() {", "EXPECT_EQ(\"a\", f());",
                     "  ASSERT_EQ(0, f(1)) << x;", "EXPECT_STREQ(nullptr, f());", "EXPECT_NE(kNothing, f());",
                     "enum class Kind { kFirst };", "enum class Kind : int {\n  first = 1,  // a, b\n  Second,\n};", "enum Flags { first };"):
            with self.subTest(text=text):
                self.assertEqual(len(faults(text)), 1)

    def test_good_names_are_left_alone(self):
        for text in ("constexpr size_t kLongest = 3;", "constexpr bool is_big(int x) { return x > 2; }", "  const size_t count = 3;",
                     "  static const auto kRows = rows();", "const char* name(int i) {", "template <typename T>", "// static int f() {",
                     "EXPECT_EQ(f(1), 0);", "EXPECT_EQ(f(\"a\", 2), \"a\");", "enum class Kind { first, second_one };",
                     "enum Flags : int { kFirst = 1, kSecond = 2 };", "const char kText[] = \"constexpr int a = 1;\";"):
            with self.subTest(text=text):
                self.assertEqual(faults(text), [])

    @unittest.skipUnless(shutil.which("clang-tidy"), "no clang-tidy")
    def test_of_the_headers_satisfy_clang_tidy(self):
        headers = [name for name, _ in sources() if name.endswith(".h") and name.startswith(("src/", "inv/")) and not name.startswith(MAC_ONLY)]
        self.assertGreater(len(headers), 100)
        with tempfile.TemporaryDirectory() as folder:
            everything = Path(folder, "headers.cpp")
            everything.write_text("".join(f'#include "{name}"\n' for name in headers))
            run = subprocess.run(["clang-tidy", "--quiet", "--warnings-as-errors=*", f"--config-file={ROOT}/.clang-tidy", str(everything), "--",
                                  "-std=c++17", f"-I{ROOT}", f"-I{ROOT}/src", f"-I{ROOT}/src/platform/corefoundation/include"],
                                 capture_output=True, text=True)
        self.assertEqual((run.returncode, run.stdout), (0, ""))


if __name__ == "__main__":
    unittest.main()
