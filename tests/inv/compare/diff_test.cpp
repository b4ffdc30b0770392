#include "inv/compare/diff.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "inv/maker.h"

namespace {

using inv::Facts;

std::string snapshot(std::string_view lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n");
}

// The changes, a line each, as a person is shown them.
std::string changes(const std::string& old_file, const std::string& new_file, Facts facts = Facts::lasting) {
  std::string lines;
  for (const inv::Change& change : inv::diff(*maker::open(old_file), *maker::open(new_file), facts)) {
    lines += inv::describe(change, inv::Terminal());
  }
  return lines;
}

constexpr char kTwoApplications[] =
    "+Software=\n*Soft:1=Safari\nversion=5\nlocation=/Applications/Safari.app\n"
    "*Soft:2=Mail\nversion=4\nlocation=/Applications/Mail.app\n-\n";

TEST(Diff, AFileDoesNotDifferFromItself) {
  EXPECT_EQ(changes(maker::file(), maker::file(), Facts::all), "");
  EXPECT_EQ(changes(maker::file(), maker::file({0, Layout::split_plain, HeaderForm::plain}), Facts::all), "");
}

TEST(Diff, ElementsThatMovedAreTheSame) {
  EXPECT_EQ(changes(snapshot(kTwoApplications),
                    snapshot("+Software=\n*Soft:1=Mail\nversion=4\nlocation=/Applications/Mail.app\n"
                             "*Soft:2=Safari\nversion=5\nlocation=/Applications/Safari.app\n-\n")),
            "");
}

TEST(Diff, WhatTellsMoreOfAnElementMovesWithIt) {
  EXPECT_EQ(
      changes(snapshot(std::string(kTwoApplications) +
                       "+Software-details=\n*Soft:1=\nsource=apple\n*Soft:2=\nsource=unknown\n-\n"),
              snapshot("+Software=\n*Soft:1=Mail\nversion=4\nlocation=/Applications/Mail.app\n"
                       "*Soft:2=Safari\nversion=5\nlocation=/Applications/Safari.app\n-\n"
                       "+Software-details=\n*Soft:1=\nsource=mac_app_store\n*Soft:2=\nsource=apple\n-\n")),
      "~ /Software-details/Soft:1/source  Soft:1 (/Applications/Mail.app)  unknown -> mac_app_store\n");
}

TEST(Diff, ReportsAddedRemovedAndChanged) {
  EXPECT_EQ(changes(snapshot(kTwoApplications),
                    snapshot("+Software=\n*Soft:1=Chess\nversion=2\nlocation=/Applications/Chess.app\n"
                             "*Soft:2=Mail\nversion=4.1\nlocation=/Applications/Mail.app\ninfo=new\n-\n")),
            "- /Software/Soft:1  Safari (/Applications/Safari.app)\n"
            "+ /Software/Soft:1  Chess (/Applications/Chess.app)\n"
            "~ /Software/Soft:2/version  Mail (/Applications/Mail.app)  4 -> 4.1\n"
            "+ /Software/Soft:2/info  Mail (/Applications/Mail.app)  new\n");
}

TEST(Diff, ReportsAValueOfAnElementItself) {
  EXPECT_EQ(changes(snapshot("+OS=\n*os:1=Lion\n-\n"), snapshot("+OS=\n*os:1=Tiger\n-\n")),
            "~ /OS/os:1  Tiger (os:1)  Lion -> Tiger\n");
}

TEST(Diff, PairsTheFirstOfEqualIdentityWithTheFirst) {
  const std::string two =
      "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\nbus-power=5\n"
      "*Device:2=Hub\nvendor-id=1\nbus-power=6\n-\n-\n";
  EXPECT_EQ(changes(snapshot(two), snapshot(two)), "");
}

TEST(Diff, ReportsAnAttributeThatIsGone) {
  const std::string one = "+Software=\n*Soft:1=Mail\nlocation=/M\n";
  EXPECT_EQ(changes(snapshot(one + "info=x\n-\n"), snapshot(one + "-\n")),
            "- /Software/Soft:1/info  Mail (/M)  x\n");
}

TEST(Diff, NoticesAnnotationsOfElements) {
  EXPECT_EQ(
      changes(
          snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\nmount-point=/\n-\n-\n"),
          snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\n~kind=encrypted\nmount-point=/\n-\n-\n")),
      "+ /Storage/Logical-disks/partition:1/~kind  HD (/ HD)  encrypted\n");
}

TEST(Diff, LeavesOutWhatChangesInEveryScan) {
  const std::string old_file = snapshot(
      "timestamp=1\nscan-time=1\n+OS=\n*os:1=Lion\nuptime=1\n-\n+Storage=\n+Logical-disks=\n*partition:1="
      "HD\nfree=1\n"
      "used%=1\n-\n-\n+Processes=\n*process:1=launchd\npid=1\n-\n+Environment=\n*env-var:A=A\nvalue=1\n-\n");
  const std::string new_file = snapshot(
      "timestamp=2\nscan-time=2\n+OS=\n*os:1=Lion\nuptime=2\n-\n+Storage=\n+Logical-disks=\n*partition:1="
      "HD\nfree=2\n"
      "used%=2\n-\n-\n+Processes=\n*process:2=ls\npid=2\n-\n+Environment=\n*env-var:A=A\nvalue=2\n-\n");
  EXPECT_EQ(changes(old_file, new_file), "");
  const std::string all = changes(old_file, new_file, Facts::all);
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 8) << all;
}

TEST(Diff, LeavesOutWhatItDoesNotKnowBelowWhatChangesInEveryScan) {
  const auto below = [](const std::string& lines) {
    return snapshot("+Processes=\n~note=" + lines + "*process:1=ls\npid=1\nlater=" + lines + "-\n");
  };
  EXPECT_EQ(changes(below("1\n"), below("2\n")), "");
  EXPECT_EQ(changes(snapshot("+OS=\n*os:1=Lion\nlater=1\n-\n"), snapshot("+OS=\n*os:1=Lion\nlater=2\n-\n")),
            "~ /OS/os:1/later  Lion (os:1)  1 -> 2\n");
  EXPECT_EQ(changes(snapshot("later=1\n"), snapshot("later=2\n")), "~ /later  1 -> 2\n");
}

TEST(Diff, ElementsOfEqualIdentityPairInOrder) {
  const char* two = "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\n*Device:2=Hub\nvendor-id=1\n-\n-\n";
  const char* one = "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\n-\n-\n";
  EXPECT_EQ(changes(snapshot(two), snapshot(two)), "");
  EXPECT_EQ(changes(snapshot(two), snapshot(one)), "- /Peripherals/USB/Device:2  Hub (1)\n");
  EXPECT_EQ(changes(snapshot(one), snapshot(two)), "+ /Peripherals/USB/Device:2  Hub (1)\n");
}

TEST(Diff, ARepeatedNameCountsOnce) {
  const std::string file = snapshot("a=1\na=2\n");
  EXPECT_EQ(changes(file, file), "");
  EXPECT_EQ(changes(file, snapshot("a=3\n")), "~ /a  1 -> 3\n");
}

TEST(Diff, AMissingTreeIsOneChange) {
  EXPECT_EQ(changes(maker::file(), maker::debug_file("<plist/>")), "- /  Snapshot\n");
}

TEST(Diff, JsonSaysTheSame) {
  const auto list = nlohmann::json::parse(inv::changes_json(inv::diff(
      *maker::open(snapshot(kTwoApplications)),
      *maker::open(snapshot("+Software=\n*Soft:1=Mail\nversion=5\nlocation=/Applications/Mail.app\n-\n")),
      Facts::lasting)));
  EXPECT_EQ(list, nlohmann::json::parse(R"([
    {"change": "removed", "path": "/Software/Soft:1", "old_path": "/Software/Soft:1",
     "identity": "/Applications/Safari.app", "label": "Safari", "name": "", "old": "Safari", "new": ""},
    {"change": "changed", "path": "/Software/Soft:1/version", "old_path": "/Software/Soft:2/version",
     "identity": "/Applications/Mail.app", "label": "Mail", "name": "version", "old": "4", "new": "5"}])"));
}

TEST(Diff, StaysLinearWithManyElements) {
  std::string lines = "+Software=\n";
  for (int i = 0; i < 100'000; ++i) {
    lines += "*Soft:" + std::to_string(i) + "=A\nlocation=/" + std::to_string(i) + "\n";
  }
  const std::string file = snapshot(lines + "-\n");
  EXPECT_EQ(changes(file, file), "");
}

}  // namespace
