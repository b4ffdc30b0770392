#include "collectors/processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "tests/collectors/tool_helpers.h"
#include "tests/collectors/tree_helpers.h"

namespace {

// The user and the command line in ps's output, between bars; "no process" when it holds none.
std::string parsed(std::string_view output) {
  // At the very end of its own block, so that a read beyond it is caught.
  const std::vector<char> block(output.begin(), output.end());
  const std::optional<ProcessLine> line = parse_process_line({block.data(), block.size()});
  if (!line) return "no process";
  return std::string(line->user.get()) + "|" + line->command_line.get();
}

TEST(ParseProcessLine, SeparatesUserAndCommandLine) {
  EXPECT_EQ(parsed("root     /sbin/launchd\n"), "root|/sbin/launchd");
  EXPECT_EQ(parsed("jdoe /Applications/My App.app/x -psn_0 1\n"), "jdoe|/Applications/My App.app/x -psn_0 1");
  EXPECT_EQ(parsed("_www httpd"), "_www|httpd");
}

TEST(ParseProcessLine, ReadsTheFirstLineOnly) {
  EXPECT_EQ(parsed("root init\nroot other\n"), "root|init");
  EXPECT_EQ(parsed("root\nroot other\n"), "no process");
}

TEST(ParseProcessLine, IsNulloptWithoutACommandLine) {
  EXPECT_EQ(parsed(""), "no process");
  EXPECT_EQ(parsed("\n"), "no process");
  EXPECT_EQ(parsed("root"), "no process");
  EXPECT_EQ(parsed("root\n"), "no process");
  EXPECT_EQ(parsed("root    "), "no process");
  EXPECT_EQ(parsed("root    \n"), "no process");
  EXPECT_EQ(parsed("    \n"), "no process");
}

TEST(ParseProcessLine, TreatsALineThatBeginsWithABlankAsOneWithoutUser) {
  EXPECT_EQ(parsed(" init\n"), "|init");
}

TEST(ParseProcessLine, CutsATextAtANulByte) { EXPECT_EQ(parsed({"ro\0ot in\0it\n", 12}), "ro|in"); }

TEST(CopyProcesses, AppendsTheElementToTheTop) {
  InventoryTree profiler = empty_profiler();
  profiler.set_attribute("/Other/x", text_value("1"));
  profiler.set_attribute("/Processes/process:1/pid", Value(int64_t{1}));
  const std::string before = tree_text(profiler);
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/Earlier/x", text_value("1"));
  copy_processes(snapshot, profiler);
  EXPECT_EQ(tree_text(snapshot), "+Snapshot=\n*Earlier=\nx=1\n+Processes=\n*process:1=\npid=1\n-\n-\n");
  EXPECT_EQ(tree_text(profiler), before);
}

TEST(CopyProcesses, DoesNothingWithoutProcesses) {
  InventoryTree profiler = empty_profiler();
  InventoryTree snapshot = empty_snapshot();
  copy_processes(snapshot, profiler);
  EXPECT_EQ(tree_text(snapshot), "*Snapshot=\n");
}

TEST(ParseUserLine, ReadsTheUserAlone) {
  const auto user_in = [](std::string_view output) {
    const std::optional<ProcessLine> line = parse_user_line(output);
    EXPECT_TRUE(!line || !line->command_line);
    return line ? std::string(line->user.get()) : "no process";
  };
  EXPECT_EQ(user_in("root\n"), "root");
  EXPECT_EQ(user_in("jdoe   \nroot\n"), "jdoe");
  EXPECT_EQ(user_in("_www"), "_www");
  for (const char* nobody : {"", "\n", "  \n"}) EXPECT_EQ(user_in(nobody), "no process");
}

ProcessTable complete_table(std::vector<ProcessRecord> records) {
  return {ProcessTableStatus::complete, std::move(records)};
}

// A machine on which ps knows the processes that are added.
class Processes : public testing::Test {
 protected:
  void SetUp() override {
    tools_.write("ps", keeping_arguments(tools_) + "cat '" + tools_.file("process") + "'\"$1\" 2> /dev/null");
  }
  void add_process(int pid, const std::string& line) {
    write_file(tools_, "process-p" + std::to_string(pid), line);
  }
  // The text of the "Processes" element after the tables were read one after another; "none" without it.
  std::string collect(std::vector<ProcessTable> tables, const Omissions& omitted = {}) {
    InventoryTree profiler = empty_profiler();
    readings_ = 0;
    collect_processes(profiler, omitted, [&] { return tables.at(readings_++); });
    const Tag* processes = profiler.top().find_child("Processes");
    if (!processes) return "none";
    std::string text(processes->text_size(), '\0');
    text.resize(processes->write_text(text.data(), 0));
    return text;
  }

  FakeTools tools_;
  size_t readings_ = 0;
};

TEST_F(Processes, AsksPsAboutEveryProcessButTheKernel) {
  add_process(0, "root kernel_task\n");
  add_process(1, "root     /sbin/launchd -x\n");
  EXPECT_EQ(collect({complete_table({{1, 0, "launchd"}, {0, 0, "kernel_task"}, {7, 1, "gone"}})}),
            "+Processes=\n"
            "*process:1=launchd\n"
            "pid=1\n"
            "ppid=0\n"
            "user=root\n"
            "cmd-line=/sbin/launchd -x\n"
            "-\n");
  EXPECT_EQ(tools_.read("arguments"), "<-p1><-o><user=><-o><command=><-p7><-o><user=><-o><command=>");
}

TEST_F(Processes, AsksPsForTheUserAloneWithoutArguments) {
  Omissions omitted;
  omitted.arguments = true;
  add_process(1, "root\n");
  EXPECT_EQ(collect({complete_table({{1, 0, "launchd"}, {7, 1, "gone"}})}, omitted),
            "+Processes=\n*process:1=launchd\npid=1\nppid=0\nuser=root\n-\n");
  EXPECT_EQ(tools_.read("arguments"), "<-p1><-o><user=><-p7><-o><user=>");
}

TEST_F(Processes, AsksNobodyWithoutProcesses) {
  Omissions omitted;
  omitted.processes = true;
  add_process(1, "root init\n");
  EXPECT_EQ(collect({complete_table({{1, 0, "init"}})}, omitted), "none");
  EXPECT_EQ(readings_, 0u);
}

TEST_F(Processes, NumbersThemByTheirPositionInTheTable) {
  add_process(90, "root a\n");
  add_process(91, "root   \n");
  add_process(92, "jdoe c");
  EXPECT_EQ(collect({complete_table({{0, 0, "kernel_task"}, {90, 1, "a"}, {91, 1, "b"}, {92, 90, "c"}})}),
            "+Processes=\n"
            "*process:2=a\n"
            "pid=90\n"
            "ppid=1\n"
            "user=root\n"
            "cmd-line=a\n"
            "*process:4=c\n"
            "pid=92\n"
            "ppid=90\n"
            "user=jdoe\n"
            "cmd-line=c\n"
            "-\n");
}

TEST_F(Processes, ReadsATableThatGrewAgainAndReplacesWhatItWrote) {
  add_process(1, "root init\n");
  add_process(2, "root two\n");
  add_process(3, "root three\n");
  EXPECT_EQ(collect({{ProcessTableStatus::grew, {{1, 0, "init"}, {2, 1, "two"}}},
                     complete_table({{1, 0, "init"}, {3, 1, "three"}, {2, 1, "two"}})}),
            "+Processes=\n"
            "*process:1=init\n"
            "pid=1\n"
            "ppid=0\n"
            "user=root\n"
            "cmd-line=init\n"
            "*process:2=three\n"
            "pid=3\n"
            "ppid=1\n"
            "user=root\n"
            "cmd-line=three\n"
            "*process:3=two\n"
            "pid=2\n"
            "ppid=1\n"
            "user=root\n"
            "cmd-line=two\n"
            "-\n");
  EXPECT_EQ(readings_, 2u);
}

TEST_F(Processes, StopsReadingATableThatNeverStopsGrowing) {
  add_process(1, "root init\n");
  const ProcessTable growing = {ProcessTableStatus::grew, {{1, 0, "init"}}};
  EXPECT_EQ(collect(std::vector<ProcessTable>(100, growing)),
            "+Processes=\n*process:1=init\npid=1\nppid=0\nuser=root\ncmd-line=init\n-\n");
  EXPECT_EQ(readings_, 5u);
}

TEST_F(Processes, KeepsWhatCameBeforeTheTableBecameUnavailable) {
  add_process(1, "root init\n");
  EXPECT_EQ(collect({{ProcessTableStatus::grew, {{1, 0, "init"}}}, {ProcessTableStatus::unavailable, {}}}),
            "+Processes=\n*process:1=init\npid=1\nppid=0\nuser=root\ncmd-line=init\n-\n");
}

TEST_F(Processes, WritesNoElementWithoutProcesses) {
  EXPECT_EQ(collect({{ProcessTableStatus::unavailable, {}}}), "none");
  EXPECT_EQ(collect({complete_table({})}), "none");
  EXPECT_EQ(collect({complete_table({{5, 1, "gone"}})}), "none");
}

// What ps prints is not a process, so none has to be kept alive.
TEST_F(Processes, CutsTheLinesThatPsPrintsAtTheirLimits) {
  tools_.write("ps", "exec head -c 4194305 /dev/zero");
  std::vector<ProcessRecord> records;
  for (int32_t pid = 1; pid <= 66; ++pid) records.push_back({pid, 0, "x"});
  testing::internal::CaptureStderr();
  EXPECT_EQ(collect({complete_table(records)}), "none");
  const std::string complaints = testing::internal::GetCapturedStderr();
  EXPECT_THAT(complaints, testing::StartsWith("Output cut off after 4194304 bytes: ps -p1 "));
  EXPECT_THAT(complaints, testing::HasSubstr("\nOutput cut off after 4194304 bytes: ps -p64 "));
  EXPECT_THAT(complaints, testing::EndsWith("\nNo longer run: ps -p65 -o user=\"\" -o command=\"\"\n"));
}

TEST_F(Processes, StampsTheTime) {
  InventoryTree profiler = empty_profiler();
  collect_processes(profiler, {}, [] { return complete_table({}); });
  EXPECT_THAT(
      tree_text(profiler),
      testing::MatchesRegex("\\+Macintosh=\n\\*SystemProcess=\n"
                            "_timeStamp=[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} [^\n]+\n-\n"));
}

TEST_F(Processes, FindsThisVeryProcessInTheTableOfTheKernel) {
  add_process(getpid(), "tester this very test\n");
  InventoryTree profiler = empty_profiler();
  collect_processes(profiler);
  EXPECT_THAT(tree_text(profiler),
              testing::HasSubstr("\npid=" + std::to_string(getpid()) + "\nppid=" + std::to_string(getppid()) +
                                 "\nuser=tester\ncmd-line=this very test\n"));
}

}  // namespace
