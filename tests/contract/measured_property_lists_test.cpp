// Against what Apple's library was measured to make of some 250 lists, where those measurements stand beside
// the project.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "contract/outcome.h"

namespace {

const std::filesystem::path measurements =
    std::filesystem::path(PROJECT_ROOT) / ".." / "shared" / "cf-behaviour";

// Where ours differs on purpose.
struct Difference {
  const char* reason;
  const char* outcome;  // ours
};
const char* const other_encoding = "only UTF-8 is read: the profiler prints nothing else";
const char* const other_format = "only XML lists are read: the profiler prints nothing else";
const char* const hash_order =
    "dictionaries keep document order here, and the measured line, in the order of a hash, is cut";

const std::map<std::string, Difference> differences = {
    {"047", {other_format, "NULL"}},     {"226", {other_encoding, "NULL"}},
    {"228", {other_encoding, "NULL"}},   {"242", {other_encoding, "NULL"}},
    {"243", {other_encoding, "NULL"}},   {"246", {other_encoding, "NULL"}},
    {"247", {other_encoding, "NULL"}},   {"250", {other_format, "NULL"}},
    {"259", {hash_order, "dict 10 / "}}, {"260", {hash_order, "dict 10 / "}},
    {"261", {hash_order, "dict 9 / "}},
};

struct Row {
  std::string name, what, outcome;
};

std::string read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Without what is not compared: error texts, and how a number is held and described, which differs between
// Macs.
std::string comparable(const std::string& outcome) {
  static const std::regex incidental(R"re( type=\d\(\w+\)| size=\d| desc="[^"]*"|^(NULL) error.*)re");
  return std::regex_replace(outcome, incidental, "$1");
}

std::vector<Row> read_rows() {
  std::vector<Row> rows;
  std::ifstream table(measurements / "expected.tsv");
  std::string line;
  std::getline(table, line);
  while (std::getline(table, line)) {
    const std::regex columns("([^\t]*)\t[^\t]*\t([^\t]*)\t(.*)");
    std::smatch column;
    EXPECT_TRUE(std::regex_match(line, column, columns)) << line;
    rows.push_back({column[1], column[2], column[3]});
  }
  return rows;
}

std::string shape_of_nested_arrays(const std::string& outcome) {
  const std::regex array("array ");
  return "nodes " +
         std::to_string(std::distance(std::sregex_iterator(outcome.begin(), outcome.end(), array), {}));
}

}  // namespace

TEST(MeasuredPropertyLists, AreReadAsMeasuredOrDifferForAReason) {
  if (!std::filesystem::exists(measurements)) GTEST_SKIP() << "no measurements at " << measurements;
  const std::vector<Row> rows = read_rows();
  ASSERT_GE(rows.size(), 256u);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name + ": " + row.what);
    const std::string ours = outcome_of(read_file(measurements / "cases" / (row.name + ".plist")));
    const auto difference = differences.find(row.name);
    if (difference != differences.end()) {
      EXPECT_EQ(ours.substr(0, std::string(difference->second.outcome).size()), difference->second.outcome)
          << difference->second.reason;
      EXPECT_NE(ours, comparable(row.outcome)) << "no longer a difference";
    } else if (row.outcome.rfind("nodes ", 0) == 0) {
      EXPECT_EQ(shape_of_nested_arrays(ours), row.outcome);
    } else {
      EXPECT_EQ(ours, comparable(row.outcome));
    }
  }
}
