#include "inv/compare/diff.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Facts;

std::string snapshot(std::string_view lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n");
}

// The changes, one per line.
std::string changes(const std::string& old_file, const std::string& new_file, Facts facts = Facts::lasting) {
  const auto old_inventory = maker::open(old_file);
  const auto new_inventory = maker::open(new_file);
  std::string lines;
  for (const inv::Change& change : inv::diff(*old_inventory, *new_inventory, facts)) {
    lines += std::string(inv::kind_text(change.kind)) + " " + change.path();
    if (change.kind == inv::Change::Kind::changed)
      lines.append(" ").append(change.old_value()).append(" to ").append(change.new_value());
    lines += "\n";
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

TEST(Diff, AnElementIsNotPairedWithAListOfItsName) {
  EXPECT_EQ(changes(snapshot("+Box=\n*Thing:1=\na=1\n-\n"), snapshot("+Box=\n*Thing=\na=2\n-\n")),
            "removed /Box/Thing:1\nadded /Box/Thing\n");
}

TEST(Diff, DetailsMoveWithTheirElement) {
  EXPECT_EQ(
      changes(snapshot(std::string(kTwoApplications) +
                       "+Software-details=\n*Soft:1=\nsource=apple\n*Soft:2=\nsource=unknown\n-\n"),
              snapshot("+Software=\n*Soft:1=Mail\nversion=4\nlocation=/Applications/Mail.app\n"
                       "*Soft:2=Safari\nversion=5\nlocation=/Applications/Safari.app\n-\n"
                       "+Software-details=\n*Soft:1=\nsource=mac_app_store\n*Soft:2=\nsource=apple\n-\n")),
      "changed /Software-details/Soft:1/source unknown to mac_app_store\n");
}

TEST(Diff, ReportsAddedRemovedAndChanged) {
  EXPECT_EQ(changes(snapshot(kTwoApplications),
                    snapshot("+Software=\n*Soft:1=Chess\nversion=2\nlocation=/Applications/Chess.app\n"
                             "*Soft:2=Mail\nversion=4.1\nlocation=/Applications/Mail.app\ninfo=new\n-\n")),
            "removed /Software/Soft:1\nadded /Software/Soft:1\n"
            "changed /Software/Soft:2/version 4 to 4.1\nadded /Software/Soft:2/info\n");
}

TEST(Diff, ReportsAValueOfAnElementItself) {
  EXPECT_EQ(changes(snapshot("+OS=\n*os:1=Lion\n-\n"), snapshot("+OS=\n*os:1=Tiger\n-\n")),
            "changed /OS/os:1 Lion to Tiger\n");
}

TEST(Diff, PairsTheFirstOfEqualIdentityWithTheFirst) {
  const std::string two =
      "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\nbus-power=5\n"
      "*Device:2=Hub\nvendor-id=1\nbus-power=6\n-\n-\n";
  EXPECT_EQ(changes(snapshot(two), snapshot(two)), "");
}

TEST(Diff, ReportsAnAttributeThatIsGone) {
  const std::string one = "+Software=\n*Soft:1=Mail\nlocation=/M\n";
  EXPECT_EQ(changes(snapshot(one + "info=x\n-\n"), snapshot(one + "-\n")), "removed /Software/Soft:1/info\n");
}

TEST(Diff, NoticesAnnotationsOfElements) {
  EXPECT_EQ(
      changes(
          snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\nmount-point=/\n-\n-\n"),
          snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\n~kind=encrypted\nmount-point=/\n-\n-\n")),
      "added /Storage/Logical-disks/partition:1/~kind\n");
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
            "changed /OS/os:1/later 1 to 2\n");
  EXPECT_EQ(changes(snapshot("later=1\n"), snapshot("later=2\n")), "changed /later 1 to 2\n");
}

TEST(Diff, ElementsOfEqualIdentityPairInOrder) {
  const char* two = "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\n*Device:2=Hub\nvendor-id=1\n-\n-\n";
  const char* one = "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\n-\n-\n";
  EXPECT_EQ(changes(snapshot(two), snapshot(two)), "");
  EXPECT_EQ(changes(snapshot(two), snapshot(one)), "removed /Peripherals/USB/Device:2\n");
  EXPECT_EQ(changes(snapshot(one), snapshot(two)), "added /Peripherals/USB/Device:2\n");
}

TEST(Diff, ARepeatedNameCountsOnce) {
  const std::string file = snapshot("a=1\na=2\n");
  EXPECT_EQ(changes(file, file), "");
  EXPECT_EQ(changes(file, snapshot("a=3\n")), "changed /a 1 to 3\n");
}

TEST(Diff, AMissingTreeIsOneChange) {
  EXPECT_EQ(changes(maker::file(), maker::debug_file("<plist/>")), "removed /\n");
}

TEST(Diff, ACompoundFactIsThereOnce) {
  const std::string without = "+Video=\n+Monitors=\n+Monitor:1=\nid=X\n";
  const std::string with = without + "h-freq=\n~complex=\n*h-freq=\nmin=30\nmax=80\n";
  const std::string end = "-\n-\n-\n";
  EXPECT_EQ(changes(snapshot(without + end), snapshot(with + end)),
            "added /Video/Monitors/Monitor:1/h-freq\n");
}

TEST(Diff, OfAListWithoutIdentityOneLessIsOneChange) {
  const auto list = [](const std::string& names) {
    std::string lines = "+Later=\n";
    int number = 0;
    for (const char name : names)
      lines += "*x:" + std::to_string(++number) + "=" + name + "\nsize=" + name + "\n";
    return snapshot(lines + "-\n");
  };
  EXPECT_EQ(changes(list("ABC"), list("BC")), "removed /Later/x:1\n");
  EXPECT_EQ(changes(list("BC"), list("ABC")), "added /Later/x:1\n");
  EXPECT_EQ(changes(list("ABC"), list("AXC")), "changed /Later/x:2 B to X\nchanged /Later/x:2/size B to X\n");
  EXPECT_EQ(changes(list("A"), list("X")), "changed /Later/x:1 A to X\nchanged /Later/x:1/size A to X\n");
}

TEST(Diff, ApplicationsWithoutALocationAreAList) {
  EXPECT_EQ(changes(snapshot("+Software=\n*Soft:1=A\n*Soft:2=B\n*Soft:3=C\n-\n"),
                    snapshot("+Software=\n*Soft:1=B\n*Soft:2=C\n-\n")),
            "removed /Software/Soft:1\n");
}

TEST(Diff, OfEqualIdentityThoseOfEqualContentsArePaired) {
  const char* two =
      "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\nbus-power=5\n*Device:2=Hub\nvendor-id=1\nbus-power="
      "6\n-\n-\n";
  const char* second = "+Peripherals=\n+USB=\n*Device:1=Hub\nvendor-id=1\nbus-power=6\n-\n-\n";
  EXPECT_EQ(changes(snapshot(two), snapshot(second)), "removed /Peripherals/USB/Device:1\n");
}

TEST(Diff, PassingFactsDoNotDistinguishElements) {
  const auto devices = [](const std::string& first, const std::string& second) {
    return snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\nfile-sys=a\n" + first +
                    "*partition:2=HD\nfile-sys=b\n" + second + "-\n-\n");
  };
  EXPECT_EQ(changes(devices("free=1\n", "free=2\n"),
                    snapshot("+Storage=\n+Logical-disks=\n*partition:1=HD\nfile-sys=b\nfree=1\n-\n-\n")),
            "removed /Storage/Logical-disks/partition:1\n");
}

TEST(Diff, MemoryStaysInItsSlot) {
  const char* first = "+Memory=\n*Memory-slot:1=\nused=1\n*Memory-slot:2=\nused=0\n-\n";
  const char* second = "+Memory=\n*Memory-slot:1=\nused=0\n*Memory-slot:2=\nused=1\n-\n";
  EXPECT_EQ(changes(snapshot(first), snapshot(second)),
            "changed /Memory/Memory-slot:1/used 1 to 0\nchanged /Memory/Memory-slot:2/used 0 to 1\n");
}

TEST(Diff, NumberedAttributesAreAList) {
  EXPECT_EQ(changes(snapshot("x:1=A\nx:2=B\nx:3=C\n"), snapshot("x:1=B\nx:2=C\n")), "removed /x:1\n");
  EXPECT_EQ(changes(snapshot("x:1=A\nx:2=B\n"), snapshot("x:1=A\nx:2=Y\n")), "changed /x:2 B to Y\n");
  EXPECT_EQ(changes(snapshot("x:a=A\nx:b=B\n"), snapshot("x:a=B\n")), "changed /x:a A to B\nremoved /x:b\n");
}

TEST(Diff, DetailsFollowWhatTheyAreAbout) {
  const std::string end = "-\n";
  const char* safari = "*Soft:1=\nsource=apple\n";
  const std::string both =
      kTwoApplications + ("+Software-details=\n" + std::string(safari)) + "*Soft:2=\nsource=store\n" + end;
  const std::string mail =
      "+Software=\n*Soft:1=Mail\nversion=4\nlocation=/Applications/Mail.app\n-\n"
      "+Software-details=\n*Soft:1=\nsource=store\n-\n";
  EXPECT_EQ(changes(snapshot(both), snapshot(mail)),
            "removed /Software/Soft:1\nremoved /Software-details/Soft:1\n");
}

TEST(Diff, SaysWhereItHappened) {
  const auto old_inventory = maker::open(snapshot(kTwoApplications));
  const auto new_inventory =
      maker::open(snapshot("+Software=\n*Soft:1=Mail\nversion=5\nlocation=/Applications/Mail.app\n-\n"));
  const std::vector<inv::Change> found = inv::diff(*old_inventory, *new_inventory, Facts::lasting);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].old_element.value(), "Safari");
  EXPECT_FALSE(found[0].new_element);
  EXPECT_EQ(found[0].new_above.name(), "Software");
  EXPECT_EQ(found[0].old_path(), "/Software/Soft:1");
  EXPECT_EQ(found[0].label(), "Safari");
  EXPECT_EQ(found[1].old_path(), "/Software/Soft:2/version");
  EXPECT_EQ(found[1].path(), "/Software/Soft:1/version");
  EXPECT_EQ(found[1].label(), "Mail");
}

TEST(Diff, StaysLinearWithListsWithoutIdentity) {
  std::string old_lines = "+Later=\n", new_lines = "+Later=\n";
  for (int i = 0; i < 100'000; ++i) {
    old_lines += "*x:" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    if (i > 0) new_lines += "*x:" + std::to_string(i - 1) + "=" + std::to_string(i) + "\n";
  }
  EXPECT_EQ(changes(snapshot(old_lines + "-\n"), snapshot(new_lines + "-\n")), "removed /Later/x:0\n");
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
