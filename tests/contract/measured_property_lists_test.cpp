// Compares with how Apple's library was measured to read some 250 lists, where those measurements are next to
// the project.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "contract/outcome.h"

namespace {

const std::filesystem::path kMeasurements =
    std::filesystem::path(PROJECT_ROOT) / ".." / "shared" / "cf-behaviour";

// Where ours differs on purpose.
struct Difference {
  const char* reason;
  const char* outcome;  // ours
};
const char* const kOtherEncoding = "only UTF-8 is read: the profiler prints nothing else";
const char* const kOtherFormat = "only XML lists are read: the profiler prints nothing else";
const char* const kHashOrder =
    "dictionaries keep document order here, and the measured line, in the order of a hash, is cut";

const std::map<std::string, Difference> kDifferences = {
    {"047", {kOtherFormat, "NULL"}},     {"226", {kOtherEncoding, "NULL"}},
    {"228", {kOtherEncoding, "NULL"}},   {"242", {kOtherEncoding, "NULL"}},
    {"243", {kOtherEncoding, "NULL"}},   {"246", {kOtherEncoding, "NULL"}},
    {"247", {kOtherEncoding, "NULL"}},   {"250", {kOtherFormat, "NULL"}},
    {"259", {kHashOrder, "dict 10 / "}}, {"260", {kHashOrder, "dict 10 / "}},
    {"261", {kHashOrder, "dict 9 / "}},
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
  std::ifstream table(kMeasurements / "expected.tsv");
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

TEST(MeasuredPropertyLists, AreReadAsMeasuredOrDifferForAReason) {
  if (!std::filesystem::exists(kMeasurements)) GTEST_SKIP() << "no measurements at " << kMeasurements;
  const std::vector<Row> rows = read_rows();
  ASSERT_GE(rows.size(), 256u);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name + ": " + row.what);
    const std::string ours = outcome_of(read_file(kMeasurements / "cases" / (row.name + ".plist")));
    const auto difference = kDifferences.find(row.name);
    if (difference != kDifferences.end()) {
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

}  // namespace
