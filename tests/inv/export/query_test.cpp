#include "inv/export/query.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Json;
using Rows = std::vector<std::vector<Json>>;

class QueryTest : public testing::Test {
 protected:
  QueryTest() {
    EXPECT_TRUE(database.open());
    EXPECT_TRUE(database.add(*maker::open(maker::file())));
  }

  Rows rows(const std::string& sql) {
    const std::optional<inv::QueryResult> result = database.ask(sql);
    EXPECT_TRUE(result) << sql << ": " << database.error();
    return result ? result->rows : Rows();
  }

  std::string refusal(const std::string& sql) {
    EXPECT_FALSE(database.ask(sql)) << sql;
    return database.error();
  }

  inv::QueryDatabase database{std::chrono::seconds(60)};
};

TEST_F(QueryTest, AnswersFromTheViewsAndTables) {
  EXPECT_EQ(rows("SELECT version FROM software WHERE version <> ''"), (Rows{{"5.1.9"}}));
  EXPECT_EQ(rows("SELECT value FROM facts WHERE path = '/Processors/Processor:1/core-count'"), (Rows{{"4"}}));
  EXPECT_EQ(rows("SELECT count(*) FROM latest"), (Rows{{1}}));
}

TEST_F(QueryTest, KeepsTheKindsOfValues) {
  EXPECT_EQ(rows("SELECT 1, 1.5, 'one', NULL, x'41'"), (Rows{{1, 1.5, "one", nullptr, "A"}}));
}

TEST_F(QueryTest, NamesEveryColumnDifferently) {
  EXPECT_EQ(database.ask("SELECT 1 AS a, 2 AS b, 3 AS a, 4 AS a")->columns,
            (std::vector<std::string>{"a", "b", "a_2", "a_3"}));
  EXPECT_EQ(database.ask("SELECT 1 AS a_2, 2 AS a, 3 AS a")->columns,
            (std::vector<std::string>{"a_2", "a", "a_3"}));
}

TEST_F(QueryTest, ReplacesBrokenUtf8) {
  EXPECT_EQ(rows("SELECT CAST(x'41FF' AS TEXT)"), (Rows{{"A\xEF\xBF\xBD"}}));
}

TEST_F(QueryTest, SortsVersionsWhereAsked) {
  const std::string versions = " FROM (VALUES ('5.10'), ('5.9')) ORDER BY column1";
  EXPECT_EQ(rows("SELECT column1" + versions), (Rows{{"5.10"}, {"5.9"}}));
  EXPECT_EQ(rows("SELECT column1" + versions + " COLLATE version"), (Rows{{"5.9"}, {"5.10"}}));
  EXPECT_EQ(rows("SELECT '5.9' < '5.10' COLLATE version"), (Rows{{1}}));
  EXPECT_EQ(rows("SELECT version_key('5.9') < version_key('5.10')"), (Rows{{1}}));
}

TEST_F(QueryTest, OnlyReads) {
  for (const char* sql :
       {"DELETE FROM machines", "UPDATE machines SET name = 'x'",
        "INSERT INTO fact_values SELECT * FROM fact_values", "CREATE TABLE t (a)",
        "CREATE TEMP VIEW v AS SELECT 1", "DROP VIEW software", "ATTACH 'x.db' AS x", "PRAGMA journal_mode",
        "SELECT * FROM pragma_database_list", "VACUUM", "VACUUM INTO 'x.db'", "BEGIN", "COMMIT",
        "SAVEPOINT s", "REINDEX", "ANALYZE", "SELECT load_extension('x')"}) {
    EXPECT_EQ(refusal(sql), "only SELECT is allowed") << sql;
  }
  EXPECT_EQ(rows("SELECT count(*) > 10 FROM facts"), (Rows{{1}}));
}

TEST_F(QueryTest, HasNoFunctionsForFiles) {
  for (const char* name : {"readfile('/etc/passwd')", "writefile('x', 'y')", "edit('x')", "fsdir('/')"}) {
    EXPECT_NE(refusal(std::string("SELECT ") + name).find("no such function"), std::string::npos) << name;
  }
}

TEST_F(QueryTest, SaysWhatIsWrong) {
  EXPECT_EQ(refusal(""), "there is no query in it");
  EXPECT_EQ(refusal(" -- nothing\n;"), "there is no query in it");
  EXPECT_EQ(refusal("SELECT 1; SELECT 2"), "it is more than one statement");
  EXPECT_EQ(rows("SELECT 1; \n;"), (Rows{{1}}));
  EXPECT_EQ(refusal("SELECT colour FROM software"), "no such column: colour");
  EXPECT_EQ(refusal("SELEC 1"), "near \"SELEC\": syntax error");
  EXPECT_EQ(refusal("SELECT abs(-9223372036854775807 - 1)"), "integer overflow");
}

constexpr char kEndless[] = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) ";

TEST_F(QueryTest, EndsWhatTakesTooLong) {
  inv::QueryDatabase hasty{std::chrono::seconds(0)};
  ASSERT_TRUE(hasty.open());
  EXPECT_FALSE(hasty.ask(std::string(kEndless) + "SELECT count(*) FROM n"));
  EXPECT_EQ(hasty.error(), "it takes longer than 0 s");
  EXPECT_TRUE(hasty.ask("SELECT 1"));
}

TEST_F(QueryTest, EndsWhatIsTooLarge) {
  EXPECT_EQ(refusal(std::string(kEndless) + "SELECT hex(zeroblob(1000000)) FROM n"),
            "its result takes more than 134217728 bytes; a larger --max-size allows more");
  EXPECT_EQ(refusal("SELECT zeroblob(20000000)"), "string or blob too big");
  EXPECT_EQ(refusal("SELECT 'x' LIKE replace(hex(zeroblob(600)), '0', '%x')"),
            "LIKE or GLOB pattern too complex");
}

TEST_F(QueryTest, EndsWhatTakesTooMuchMemory) {
  inv::QueryDatabase small{std::chrono::seconds(60), 1 << 20};
  ASSERT_TRUE(small.open());
  const std::string endless =
      "WITH RECURSIVE n(i, t) AS (SELECT 1, hex(zeroblob(1000)) UNION SELECT i + 1, t FROM n) ";
  const char* const complaint =
      "out of memory for this query: it takes more than 16777216 bytes with the files; a larger --max-size "
      "allows more";
  EXPECT_FALSE(small.ask(endless + "SELECT count(*) FROM n"));
  EXPECT_EQ(small.error(), complaint);
  EXPECT_FALSE(small.ask(endless + "SELECT i FROM n ORDER BY t"));
  EXPECT_EQ(small.error(), complaint);
  EXPECT_EQ(small.ask("SELECT count(*) FROM machines")->rows, (Rows{{0}}));
}

TEST_F(QueryTest, TakesNoMoreFilesThanMemoryHolds) {
  inv::QueryDatabase small{std::chrono::seconds(60), 1 << 20};
  ASSERT_TRUE(small.open());
  std::string lines = "\xEF\xBB\xBF?zxml\n+Snapshot=\n";
  for (int i = 0; i < 10'000; ++i) lines += std::string(1000, 'x') + std::to_string(i) + "=\n";
  EXPECT_FALSE(small.add(*maker::open(maker::file_of_text(lines + "-\n"))));
  EXPECT_EQ(
      small.error(),
      "out of memory: the files take more than 16777216 bytes; inv load has room for more, and so has a "
      "larger --max-size");
}

TEST_F(QueryTest, CountsTheMemoryOfAResult) {
  inv::QueryDatabase small{std::chrono::seconds(60), 1 << 20};
  ASSERT_TRUE(small.open());
  const auto numbers = [](int count) {
    return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT " + std::to_string(count) +
           ") SELECT i FROM n";
  };
  const uint64_t row = small.ask("SELECT 1")->size;
  const uint64_t all = row * 1000;
  EXPECT_EQ(small.ask(numbers(1000))->size, all);
  EXPECT_EQ(small.ask("SELECT 'abcd'")->size - small.ask("SELECT 'abc'")->size, 1U);
  EXPECT_GT(small.ask("SELECT ''")->size, row);
  small.keep(inv::kLeastResultMemory - all);
  EXPECT_TRUE(small.ask(numbers(1000)));
  small.keep(1);
  EXPECT_FALSE(small.ask(numbers(1000)));
  EXPECT_EQ(small.error(), "its result takes more than " + std::to_string(all - 1) +
                               " bytes; a larger --max-size allows more");
}

TEST_F(QueryTest, TakesSeveralFiles) {
  inv::QueryDatabase several{std::chrono::seconds(60)};
  ASSERT_TRUE(several.open());
  ASSERT_TRUE(several.add(*maker::open(maker::file())));
  ASSERT_TRUE(several.add(*maker::open(maker::debug_file("<plist/>"))));
  EXPECT_EQ(several.ask("SELECT count(*) FROM machines")->rows.size(), 1u);
}

}  // namespace
