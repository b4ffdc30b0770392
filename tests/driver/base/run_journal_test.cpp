#include "driver/base/run_journal.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>

#include "driver/base/command.h"
#include "fake_tools.h"

namespace {

using std::chrono::milliseconds;

void run(const char* command, uint32_t limit = 1000) {
  uint32_t length = 0;
  run_command(command, &length, 100, limit);
}

// The record of the only command that was run.
CommandRecord only_record(const RunJournal& journal) {
  EXPECT_EQ(journal.commands().size(), 1u);
  return journal.commands().at(0);
}

CommandRecord record_of(const char* command, uint32_t limit = 1000) {
  const RunJournal journal;
  run(command, limit);
  return only_record(journal);
}

TEST(RunJournal, HasEachCommandWithItsOutputAndStatus) {
  const CommandRecord record = record_of("printf abc; exit 3");
  EXPECT_EQ(record.command, "printf abc; exit 3");
  EXPECT_FALSE(record.is_series);
  EXPECT_EQ(record.runs, 1u);
  EXPECT_EQ(record.bytes, 3u);
  EXPECT_EQ(WEXITSTATUS(record.last.status), 3);
  EXPECT_FALSE(record.last.cut || record.last.silent || record.last.refused || record.salvaged);
}

TEST(RunJournal, MeasuresTheTimeUntilACommandHasEnded) {
  EXPECT_GE(record_of("sleep 0.2").seconds, 0.2);
  EXPECT_LT(record_of("true").seconds, 60);
}

TEST(RunJournal, HasTheCommandsInTheOrderOfTheirFirstRuns) {
  const RunJournal journal;
  run("echo one");
  run("true");
  run("echo one");
  ASSERT_EQ(journal.commands().size(), 2u);
  EXPECT_EQ(journal.commands()[0].command, "echo one");
  EXPECT_EQ(journal.commands()[1].command, "true");
}

TEST(RunJournal, CountsTheRunsOfACommandAndKeepsTheLast) {
  const RunJournal journal;
  const FakeTools tools;
  tools.write("twice", "[ -e \"$0.seen\" ] && { printf abcd; exit 0; }; printf a; : >\"$0.seen\"; exit 1");
  run("twice");
  run("twice");
  const CommandRecord record = only_record(journal);
  EXPECT_EQ(record.runs, 2u);
  EXPECT_EQ(record.bytes, 4u);
  EXPECT_EQ(record.last.status, 0);
}

TEST(RunJournal, AddsUpTheTimeOfAllRuns) {
  const RunJournal journal;
  run("sleep 0.1");
  run("sleep 0.1");
  EXPECT_GE(only_record(journal).seconds, 0.2);
}

TEST(RunJournal, HasASeriesAsOneCommandWithAllItsBytes) {
  const RunJournal journal;
  CommandSeries series(100, SeriesLimits(), "printf WORD");
  uint32_t length = 0;
  series.run("printf ab", &length);
  series.run("printf cde", &length);
  const CommandRecord record = only_record(journal);
  EXPECT_EQ(record.command, "printf WORD");
  EXPECT_TRUE(record.is_series);
  EXPECT_EQ(record.runs, 2u);
  EXPECT_EQ(record.bytes, 5u);
}

TEST(RunJournal, HasTheLinesOfANamelessSeriesOneByOne) {
  const RunJournal journal;
  CommandSeries series(100, SeriesLimits());
  uint32_t length = 0;
  series.run("printf ab", &length);
  series.run("printf cde", &length);
  ASSERT_EQ(journal.commands().size(), 2u);
  EXPECT_FALSE(journal.commands()[1].is_series);
}

TEST(RunJournal, HasACommandThatWasLeftOut) {
  const RunJournal journal;
  SeriesLimits limits;
  limits.runs = 0;
  uint32_t length = 0;
  CommandSeries(100, limits).run("echo", &length);
  const CommandRecord record = only_record(journal);
  EXPECT_EQ(record.command, "echo");
  EXPECT_EQ(record.runs, 0u);
}

TEST(RunJournal, RecordsAMissingTool) {
  EXPECT_TRUE(names_no_tool(record_of("there-is-no-such-tool").last));
  EXPECT_TRUE(names_no_tool(record_of("/etc/passwd").last));
  EXPECT_FALSE(names_no_tool(record_of("exit 125").last));
  EXPECT_FALSE(names_no_tool(record_of("true").last));
  EXPECT_FALSE(names_no_tool(record_of("kill -9 $$").last));
}

TEST(RunJournal, RecordsTheSignalThatEndedACommand) {
  EXPECT_EQ(ending_signal(record_of("kill -9 $$").last), 9);
  EXPECT_EQ(ending_signal(record_of("sh -c 'kill -15 $$'; exit $?").last), 15);
  EXPECT_EQ(ending_signal(record_of("exit 128").last), 0);
  EXPECT_EQ(ending_signal(record_of("exit 255").last), 0);
  EXPECT_EQ(ending_signal(record_of("exit 1").last), 0);
}

TEST(RunJournal, RecordsACutOutput) {
  const CommandRecord record = record_of("printf abcdef", 4);
  EXPECT_TRUE(record.last.cut);
  EXPECT_EQ(record.bytes, 4u);
}

TEST(RunJournal, RecordsASilentCommand) {
  set_longest_silence(milliseconds(100));
  const CommandEnd end = record_of("sleep 100").last;
  set_longest_silence(kLongestSilence);
  EXPECT_TRUE(end.silent);
  EXPECT_FALSE(end.cut);
}

TEST(RunJournal, RecognisesARefusalByTheWordsOfAFailure) {
  EXPECT_TRUE(record_of("echo 'must be run as root'; exit 1").last.refused);
  EXPECT_TRUE(record_of("echo 'x: Operation not permitted'; exit 1").last.refused);
  EXPECT_FALSE(record_of("echo 'must be run as root'").last.refused);
  EXPECT_FALSE(record_of("echo 'no'; exit 1").last.refused);
}

TEST(RunJournal, TakesALongAnswerForNoRefusal) {
  const std::string refusal = "must be root";
  EXPECT_TRUE(says_refused((refusal + std::string(988, '.')).c_str(), 1000));
  EXPECT_FALSE(says_refused((refusal + std::string(989, '.')).c_str(), 1001));
}

TEST(RunJournal, RecordsASalvagedOutput) {
  const RunJournal journal;
  run("echo");
  enter_salvage("echo");
  EXPECT_TRUE(only_record(journal).salvaged);
}

TEST(RunJournal, IsOnlyKeptDuringItsLife) {
  run("echo before");
  { const RunJournal journal; }
  run("echo behind");
  enter_salvage("echo behind");
  const RunJournal journal;
  EXPECT_TRUE(journal.commands().empty());
}

TEST(RunIfThere, ReturnsWhatAToolPrints) {
  uint32_t length = 0;
  EXPECT_STREQ(run_if_there("printf abc; exit 1", &length, 100).get(), "abc");
  EXPECT_EQ(length, 3u);
  EXPECT_STREQ(run_if_there("true", &length, 100).get(), "");
}

TEST(RunIfThere, ReturnsNullForAMissingToolWhateverTheShellSays) {
  uint32_t length = 9;
  EXPECT_EQ(run_if_there("there-is-no-such-tool 2>&1", &length, 100), nullptr);
  EXPECT_EQ(length, 0u);
}

}  // namespace
