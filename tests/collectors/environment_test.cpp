#include "collectors/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs parsed(const char* output) {
  Pairs pairs;
  for (const EnvironmentVariable& variable : parse_environment(output))
    pairs.emplace_back(variable.name.get(), variable.value.get());
  return pairs;
}

TEST(ParseEnvironment, SplitsEveryLineAtItsFirstEqualsSign) {
  EXPECT_EQ((Pairs{{"HOME", "/Users/jdoe"}, {"OPTIONS", "a=1 b=2"}, {"EMPTY", ""}}),
            parsed("HOME=/Users/jdoe\nOPTIONS=a=1 b=2\nEMPTY=\n"));
}

TEST(ParseEnvironment, ReadsALastLineWithoutItsEnd) { EXPECT_EQ((Pairs{{"A", "1"}}), parsed("A=1")); }

TEST(ParseEnvironment, EndsAtTheFirstEmptyLine) {
  EXPECT_EQ((Pairs{{"A", "1"}}), parsed("A=1\n\nB=2\n"));
  EXPECT_EQ(Pairs(), parsed("\nA=1\n"));
  EXPECT_EQ(Pairs(), parsed(""));
}

TEST(ParseEnvironment, IgnoresLinesWithoutEqualsSign) {
  EXPECT_EQ((Pairs{{"f", "() {"}, {"B", "2"}}), parsed("f=() {\n echo\n}\nB=2\n"));
}

TEST(ParseEnvironment, AcceptsAnEmptyName) { EXPECT_EQ((Pairs{{"", "x"}}), parsed("=x\n")); }

std::string environment_of(const char* output) {
  InventoryTree snapshot = empty_snapshot();
  write_environment(snapshot, parse_environment(output));
  return tree_text(snapshot);
}

TEST(Environment, WritesEachVariableAsACompoundField) {
  EXPECT_EQ(environment_of("HOME=/Users/jdoe\nA=1=2\n"),
            "+Snapshot=\n+Environment=\nenv-var:HOME=\n~complex=\nenv-var:A=\n~complex=\n"
            "*env-var:HOME=HOME\nvalue=/Users/jdoe\n*env-var:A=A\nvalue=1=2\n-\n-\n");
}

TEST(Environment, MarksOnlyPathAsSplit) {
  EXPECT_EQ(
      environment_of("PATH=/bin:/usr/bin\nMANPATH=/a:/b\n"),
      "+Snapshot=\n+Environment=\nenv-var:PATH=\n~complex=\nenv-var:MANPATH=\n~complex=\n"
      "*env-var:PATH=PATH\nvalue=/bin:/usr/bin\n~split=:\n*env-var:MANPATH=MANPATH\nvalue=/a:/b\n-\n-\n");
}

TEST(Environment, DropsBlanksAroundNamesAndValues) {
  EXPECT_EQ(environment_of(" A=  1 \n"),
            "+Snapshot=\n+Environment=\nenv-var: A=\n~complex=\n*env-var: A=A\nvalue=1\n-\n-\n");
}

TEST(Environment, KeepsTheLastOfTwoValues) {
  EXPECT_EQ(environment_of("A=1\nA=2\n"),
            "+Snapshot=\n+Environment=\nenv-var:A=\n~complex=\n*env-var:A=A\nvalue=2\n-\n-\n");
}

TEST(Environment, TreatsASlashInANameAsAPath) {
  EXPECT_EQ(environment_of("a/b=1\n"),
            "+Snapshot=\n+Environment=\n+env-var:a=\nb=\n~complex=\n*b=a/b\nvalue=1\n-\n-\n-\n");
}

TEST(Environment, SurvivesNamesThatLeadNowhere) {
  EXPECT_EQ(environment_of(""), "*Snapshot=\n");
  for (const char* output : {"=\n", "/=1\n", "//=1\n", "a//b=1\n", "a/=1\n", "\xff\xfe=\x80\n"}) {
    const std::string text = environment_of(output);
    EXPECT_EQ(text.find("+Snapshot=\n"), 0u) << output << text;
  }
}

TEST(Environment, LeavesOutWhatWouldReadAsAnotherKindOfLine) {
  for (const char* name : {"a/+b", "a/*b", "a/~b", "/+", "a/b/+"}) {
    EXPECT_EQ(environment_of((std::string(name) + "=1\n").c_str()), "*Snapshot=\n") << name;
  }
  EXPECT_NE(environment_of("+a=1\n"), "*Snapshot=\n");
  EXPECT_NE(environment_of("a/b+=1\n"), "*Snapshot=\n");
}

TEST(Environment, ComesFromTheScanItself) {
  ASSERT_EQ(setenv("ENVIRONMENT_TEST", "some value", 1), 0);
  InventoryTree snapshot = empty_snapshot();
  collect_environment(snapshot);
  unsetenv("ENVIRONMENT_TEST");
  const std::string text = tree_text(snapshot);
  EXPECT_NE(text.find("*env-var:ENVIRONMENT_TEST=ENVIRONMENT_TEST\nvalue=some value\n"), std::string::npos);
  EXPECT_NE(text.find("*env-var:PATH=PATH\n"), std::string::npos);
}

// The environment with one variable whose value is left out.
std::string untold(const char* name) {
  std::vector<EnvironmentVariable> variables;
  variables.push_back({copy_text(name), nullptr});
  InventoryTree snapshot = empty_snapshot();
  write_environment(snapshot, variables);
  return tree_text(snapshot);
}

TEST(Environment, MarksAValueThatIsLeftOut) {
  EXPECT_EQ(
      untold("PATH"),
      "+Snapshot=\n+Environment=\nenv-var:PATH=\n~complex=\n*env-var:PATH=PATH\nvalue=\n~left-out=\n-\n-\n");
  EXPECT_EQ(untold("a/b"),
            "+Snapshot=\n+Environment=\n+env-var:a=\nb=\n~complex=\n*b=a/b\nvalue=\n~left-out=\n-\n-\n-\n");
}

TEST(Environment, ListsOnlyTheNamesWithoutRunningEnv) {
  const FakeTools tools;
  tools.write("env", "echo FROM_ENV=1");
  ASSERT_EQ(setenv("ENVIRONMENT_TEST", "first line\nlooks=like a variable", 1), 0);
  InventoryTree snapshot = empty_snapshot();
  collect_environment_names(snapshot);
  unsetenv("ENVIRONMENT_TEST");
  const std::string text = tree_text(snapshot);
  EXPECT_NE(text.find("*env-var:ENVIRONMENT_TEST=ENVIRONMENT_TEST\nvalue=\n~left-out=\n"), std::string::npos)
      << text;
  for (const char* hidden : {"first line", "looks", "FROM_ENV"})
    EXPECT_EQ(text.find(hidden), std::string::npos) << hidden;
}

TEST(Environment, LeavesOutANameOfTwoLines) {
  ASSERT_EQ(setenv("TWO\nLINES", "1", 1), 0);
  InventoryTree snapshot = empty_snapshot();
  collect_environment_names(snapshot);
  unsetenv("TWO\nLINES");
  EXPECT_EQ(tree_text(snapshot).find("LINES"), std::string::npos);
}

TEST(Environment, EndsWhenEnvPrintsForever) {
  const FakeTools tools;
  InventoryTree snapshot = empty_snapshot();
  testing::internal::CaptureStderr();
  tools.write("env", "exec seq -f V%.0f=1 1000000000");
  collect_environment(snapshot);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Output cut off after 2097152 bytes: env\n");
  EXPECT_GT(snapshot.top().find_child("Environment")->children().size(), 150000u);
}

}  // namespace
