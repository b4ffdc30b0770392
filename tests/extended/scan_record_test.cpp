#include "extended/scan_record.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <string>

#include "contract/environment.h"
#include "driver/base/version.h"
#include "tests/collectors/tree_helpers.h"

namespace {

// The status that waitpid gives for this exit status.
constexpr int exited(int status) { return status << 8; }

CommandRecord record(const char* command) {
  CommandRecord record;
  record.command = command;
  record.runs = 1;
  record.bytes = 12;
  record.seconds = 1.5;
  return record;
}

// The lines written for a command, after the first.
std::string recorded(const CommandRecord& record) {
  InventoryTree snapshot = empty_snapshot();
  collect_scan_record(snapshot, "", {record});
  const std::string text = tree_text(snapshot);
  const std::string start = "*Command:1=" + record.command + "\n";
  const size_t from = text.find(start);
  if (from == text.npos) return text;
  return text.substr(from + start.size(), text.find("-\n", from) - from - start.size());
}

TEST(ScanRecord, HasACommandThatSucceeded) {
  EXPECT_EQ(recorded(record("tool")), "run=1\nexit-status=0\nbytes=12\nseconds=1.50\nretries=0\n");
}

TEST(ScanRecord, SaysHowACommandFailed) {
  CommandRecord failed = record("tool");
  failed.last.status = exited(3);
  EXPECT_EQ(recorded(failed), "run=1\nexit-status=3\nbytes=12\nseconds=1.50\nretries=0\n");
  failed.last.status = 9;
  EXPECT_EQ(recorded(failed), "run=1\nsignal=9\nbytes=12\nseconds=1.50\nretries=0\n");
}

TEST(ScanRecord, CountsRetriesOfACommandAndRunsOfASeries) {
  CommandRecord repeated = record("tool");
  repeated.runs = 3;
  EXPECT_EQ(recorded(repeated), "run=1\nexit-status=0\nbytes=12\nseconds=1.50\nretries=2\n");
  repeated.is_series = true;
  EXPECT_EQ(recorded(repeated), "run=1\nexit-status=0\nbytes=12\nseconds=1.50\nruns=3\n");
}

TEST(ScanRecord, HasACommandThatWasLeftOut) {
  CommandRecord left_out;
  left_out.command = "tool";
  EXPECT_EQ(recorded(left_out), "run=0\n");
}

TEST(ScanRecord, SaysWhatIsUnusualOnlyWhereItIs) {
  const std::string usual = "run=1\nexit-status=0\nbytes=12\nseconds=1.50\nretries=0\n";
  CommandRecord salvaged = record("tool");
  salvaged.salvaged = true;
  EXPECT_EQ(recorded(salvaged), usual + "salvaged=1\n");
  CommandRecord refused = record("tool");
  refused.last.refused = true;
  EXPECT_EQ(recorded(refused), usual + "refused=1\n");
  CommandRecord missing = record("tool");
  missing.last.status = exited(127);
  EXPECT_EQ(recorded(missing), "run=1\nexit-status=127\nbytes=12\nseconds=1.50\nretries=0\nmissing=1\n");
}

TEST(ScanRecord, HasNoStatusForACommandThatHadToBeEnded) {
  CommandRecord cut = record("tool");
  cut.last.cut = true;
  EXPECT_EQ(recorded(cut), "run=1\nbytes=12\nseconds=1.50\nretries=0\ncut=1\n");
  CommandRecord silent = record("tool");
  silent.last.silent = true;
  EXPECT_EQ(recorded(silent), "run=1\nbytes=12\nseconds=1.50\nretries=0\nsilent=1\n");
}

TEST(ScanRecord, NumbersTheCommands) {
  InventoryTree snapshot = empty_snapshot();
  collect_scan_record(snapshot, "", {record("one"), record("two")});
  const Tag& scan = *snapshot.top().find_child("Scan");
  ASSERT_EQ(scan.children().size(), 2u);
  EXPECT_EQ(scan.children()[1]->name(), "Command:2");
  EXPECT_STREQ(scan.children()[1]->value()->text(), "two");
}

TEST(ScanRecord, NamesWhatWasLeftOut) {
  Omissions omitted;
  omitted.arguments = omitted.accounts = true;
  InventoryTree snapshot = empty_snapshot();
  collect_scan_record(snapshot, "", {}, omitted);
  EXPECT_STREQ(snapshot.top().find_child("Scan")->find_attribute("left-out")->value().text(),
               "arguments, accounts");
}

TEST(ScanRecord, WritesNoUserWithoutPeople) {
  Omissions omitted;
  omitted.people = true;
  InventoryTree snapshot = empty_snapshot();
  collect_scan_record(snapshot, "", {}, omitted);
  EXPECT_EQ(tree_text(snapshot).find("effective-"), std::string::npos);
}

TEST(ScanRecord, DescribesTheScanItself) {
  const EnvironmentVariable locale("LC_ALL", "th_TH.UTF-8"), zone("TZ", "Asia/Bangkok");
  InventoryTree snapshot = empty_snapshot();
  collect_scan_record(snapshot, "/silent /extended", {});
  std::string user;
  if (const passwd* entry = getpwuid(geteuid()))
    user = std::string("effective-user=") + entry->pw_name + "\n";
  EXPECT_EQ(tree_text(snapshot), std::string("+Snapshot=\n*Scan=\nscanner-version=") + kVersion +
                                     "\noptions=/silent /extended\n" + user +
                                     "effective-uid=" + std::to_string(geteuid()) +
                                     "\nlocale=th_TH\ncalendar=buddhist\ntime-zone=Asia/Bangkok\n-\n");
}

// Only an administrator can become somebody else; for others the test above has a user that is not root.
TEST(ScanRecord, NamesTheUserWithWhoseRightsTheScanRuns) {
  const passwd* entry = getpwnam("nobody");
  if (geteuid() != 0 || !entry) GTEST_SKIP() << "needs root, and a user nobody";
  const uid_t nobody = entry->pw_uid;
  InventoryTree snapshot = empty_snapshot();
  ASSERT_EQ(seteuid(nobody), 0);
  collect_scan_record(snapshot, "", {});
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_NE(tree_text(snapshot).find("effective-user=nobody\neffective-uid=" + std::to_string(nobody) + "\n"),
            std::string::npos);
}

}  // namespace
