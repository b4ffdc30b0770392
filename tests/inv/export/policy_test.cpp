#include "inv/export/policy.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Json;

constexpr char kRule[] = R"({"name": "n", "severity": "low", "message": "m", "sql": "SELECT 1"})";

std::string policy_of(const std::string& rules) { return "{\"rules\": [" + rules + "]}"; }

std::string refusal(const std::string& text) {
  std::string error;
  EXPECT_FALSE(inv::read_policy(text, &error)) << text;
  return error;
}

TEST(ReadPolicy, ReadsRulesWithCommentsAndLines) {
  std::string error;
  const auto rules = inv::read_policy(
      "// about\n" +
          policy_of(std::string(kRule) +
                    R"(,{"name": "two", "severity": "high", "message": "m", "sql": ["SELECT 2", "FROM x"]})"),
      &error);
  ASSERT_TRUE(rules) << error;
  ASSERT_EQ(rules->size(), 2u);
  EXPECT_EQ(rules->front().name, "n");
  EXPECT_EQ(rules->front().severity, "low");
  EXPECT_EQ(rules->front().message, "m");
  EXPECT_EQ(rules->front().sql, "SELECT 1");
  EXPECT_EQ(rules->back().sql, "SELECT 2\nFROM x\n");
}

TEST(ReadPolicy, RefusesWhatIsNoPolicy) {
  for (const char* text :
       {"[]", "1", "{}", "{\"rules\": []}", "{\"rules\": 1}", "{\"rules\": [], \"x\": 1}"}) {
    EXPECT_EQ(refusal(text), "needs a list of \"rules\" and nothing else") << text;
  }
  EXPECT_EQ(refusal("").substr(0, 12), "is not JSON:");
  EXPECT_EQ(refusal(std::string(100'000, '[')).substr(0, 12), "is not JSON:");
  EXPECT_EQ(refusal(std::string(100, '[') + std::string(100, ']')), "is nested too deeply");
}

TEST(ReadPolicy, NamesTheRuleThatIsWrong) {
  EXPECT_EQ(refusal(policy_of("1")), "rule 1 is not an object");
  EXPECT_EQ(refusal(policy_of(std::string(kRule) + "," + kRule)), "rule 2 has the name of another rule");
  EXPECT_EQ(refusal(policy_of(R"({"severity": "low", "message": "m", "sql": "s"})")),
            "rule 1 has no \"name\"");
  EXPECT_EQ(refusal(policy_of(R"({"name": "", "severity": "low", "message": "m", "sql": "s"})")),
            "rule 1 has a \"name\" that is not a text");
  EXPECT_EQ(refusal(policy_of(R"({"name": "n", "severity": "low", "message": "m", "sql": ["s", 1]})")),
            "rule 1 has a \"sql\" that is not a text");
  EXPECT_EQ(refusal(policy_of(R"({"name": "n", "severity": "urgent", "message": "m", "sql": "s"})")),
            "rule 1 has a severity that is not high, medium or low");
  EXPECT_EQ(
      refusal(policy_of(R"({"name": "n", "severity": "low", "message": "m", "sql": "s", "sqll": "s"})")),
      "rule 1 has an unknown \"sqll\"");
}

TEST(ReadPolicy, SurvivesBeingCutAnywhere) {
  const std::string whole = policy_of(kRule);
  for (size_t length = 0; length < whole.size(); ++length) refusal(whole.substr(0, length));
}

class CheckRule : public testing::Test {
 protected:
  CheckRule() {
    EXPECT_TRUE(database.open());
    EXPECT_TRUE(database.add(*maker::open(maker::file())));
  }

  inv::PolicyVerdict verdict(const std::string& sql, const std::string& message = "m") {
    return inv::check_rule({"rule", "high", message, sql}, database);
  }

  inv::QueryDatabase database{std::chrono::seconds(60)};
};

TEST_F(CheckRule, EveryRowIsABreach) {
  EXPECT_TRUE(verdict("SELECT 1 WHERE 0").breaches.empty());
  EXPECT_EQ(verdict("SELECT 1 UNION SELECT 2").breaches.size(), 2u);
  EXPECT_EQ(verdict("SELECT 1 AS one").breaches.front().row, (Json{{"one", 1}}));
}

TEST_F(CheckRule, FillsTheMessageFromTheRow) {
  const std::string sql = "SELECT 'Mac' AS name, 90 AS used, NULL AS none, '{used}' AS odd";
  const auto message = [&](const std::string& pattern) {
    return verdict(sql, pattern).breaches.front().message;
  };
  EXPECT_EQ(message("{name}: {used} %"), "Mac: 90 %");
  EXPECT_EQ(message("{none}|{odd}"), "|{used}");
  EXPECT_EQ(message("{unknown} {name"), "{unknown} {name");
  EXPECT_EQ(message("{{name}}"), "{Mac}");
  EXPECT_EQ(message("}{"), "}{");
}

TEST_F(CheckRule, CutsAMessageThatNobodyWouldRead) {
  const std::string sql = "SELECT replace(hex(zeroblob(20000)), '0', 'x') AS x";
  EXPECT_EQ(verdict(sql, "{x}").breaches.front().message, std::string(40'000, 'x'));
  EXPECT_EQ(verdict(sql, "{x}{x}{x}").breaches.front().message, std::string(65'536, 'x'));
}

TEST_F(CheckRule, VerdictsShareTheMemoryOfResults) {
  inv::QueryDatabase small{std::chrono::seconds(60), 1 << 20};
  ASSERT_TRUE(small.open());
  const inv::PolicyRule rule = {
      "rule", "high", "m",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 19000) SELECT i FROM n"};
  EXPECT_EQ(inv::check_rule(rule, small).breaches.size(), 19'000u);
  const inv::PolicyVerdict second = inv::check_rule(rule, small);
  EXPECT_EQ(second.error.rfind("its result takes more than 1002304 bytes", 0), 0u) << second.error;
  EXPECT_TRUE(second.breaches.empty());
}

TEST_F(CheckRule, AQuestionWithoutAnAnswerIsAnError) {
  const inv::PolicyVerdict none = verdict("DROP TABLE facts");
  EXPECT_EQ(none.error, "only SELECT is allowed");
  EXPECT_TRUE(none.breaches.empty());
}

TEST_F(CheckRule, WritesJson) {
  const Json list = Json::parse(inv::verdicts_json(
      {verdict("SELECT 1 AS one", "broken"), verdict("SELECT 1 WHERE 0"), verdict("SELEC")}));
  EXPECT_EQ(list[0], Json::parse(R"({"rule": "rule", "severity": "high", "kept": false,
                                     "breaches": [{"message": "broken", "row": {"one": 1}}]})"));
  EXPECT_EQ(list[1], Json::parse(R"({"rule": "rule", "severity": "high", "kept": true, "breaches": []})"));
  EXPECT_EQ(list[2]["error"], "near \"SELEC\": syntax error");
  EXPECT_EQ(list[2]["kept"], false);
}

TEST_F(CheckRule, WritesJUnit) {
  EXPECT_EQ(inv::verdicts_junit({verdict("SELECT 1 UNION SELECT 2", "<\"a\" & 'b'>\x1B"),
                                 verdict("SELECT 1 WHERE 0"), verdict("SELEC")}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<testsuite name=\"policy\" tests=\"3\" failures=\"1\" errors=\"1\">\n"
            "  <testcase classname=\"policy\" name=\"rule\">\n"
            "    <failure type=\"high\" message=\"&lt;&quot;a&quot; &amp; 'b'&gt; \">"
            "&lt;&quot;a&quot; &amp; 'b'&gt; \n&lt;&quot;a&quot; &amp; 'b'&gt; \n</failure>\n"
            "  </testcase>\n"
            "  <testcase classname=\"policy\" name=\"rule\">\n  </testcase>\n"
            "  <testcase classname=\"policy\" name=\"rule\">\n"
            "    <error message=\"near &quot;SELEC&quot;: syntax error\"/>\n"
            "  </testcase>\n"
            "</testsuite>\n");
}

}  // namespace
