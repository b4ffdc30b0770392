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
            "its result is larger than 268435456 bytes");
  EXPECT_EQ(refusal("SELECT zeroblob(20000000)"), "string or blob too big");
  EXPECT_EQ(refusal("SELECT 'x' LIKE replace(hex(zeroblob(600)), '0', '%x')"),
            "LIKE or GLOB pattern too complex");
}

TEST_F(QueryTest, TakesSeveralFiles) {
  inv::QueryDatabase several{std::chrono::seconds(60)};
  ASSERT_TRUE(several.open());
  ASSERT_TRUE(several.add(*maker::open(maker::file())));
  ASSERT_TRUE(several.add(*maker::open(maker::debug_file("<plist/>"))));
  EXPECT_EQ(several.ask("SELECT count(*) FROM machines")->rows.size(), 1u);
}

}  // namespace
