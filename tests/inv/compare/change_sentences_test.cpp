#include "inv/compare/change_sentences.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

std::string snapshot(std::string_view lines) {
  return maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n");
}

// The sentences about what changed in a snapshot, one per line.
std::string told(std::string_view old_lines, std::string_view new_lines,
                 inv::Facts facts = inv::Facts::lasting) {
  const auto old_inventory = maker::open(snapshot(old_lines));
  const auto new_inventory = maker::open(snapshot(new_lines));
  std::string sentences;
  for (const inv::ChangeSentence& change :
       inv::ChangeSentences(inv::diff(*old_inventory, *new_inventory, facts))) {
    sentences += change.sentence + "\n";
  }
  return sentences;
}

std::string application(const std::string& name, const std::string& facts) {
  return "*Soft:1=" + name + "\n" + facts + "location=/Applications/" + name + ".app\n";
}

std::string software(const std::string& applications) { return "+Software=\n" + applications + "-\n"; }

std::string disks(const std::string& lines) { return "+Storage=\n+Physical-disks=\n" + lines + "-\n-\n"; }

TEST(ChangeSentences, ANewVersionIsShownByItself) {
  EXPECT_EQ(told(software(application("Safari", "version=5.1.10\n")),
                 software(application("Safari", "version=6.0\n"))),
            "Safari 5.1.10 to 6.0\n");
}

TEST(ChangeSentences, WhatChangesWithTheVersionIsNotRepeated) {
  EXPECT_EQ(
      told(software(application("Safari", "version=5\ninst-date=20110101\ninfo=5, 2011\n64bit-app=0\n")),
           software(application("Safari", "version=6\ninst-date=20120101\ninfo=6, 2012\n64bit-app=1\n"))),
      "Safari 5 to 6, 64-bit 0 to 1\n");
  EXPECT_EQ(told(software(application("Safari", "version=5\ninfo=a\n")),
                 software(application("Safari", "version=5\ninfo=b\n"))),
            "Application Safari (/Applications/Safari.app): info a to b\n");
}

TEST(ChangeSentences, ThingsOfOneNameHaveTheirBrackets) {
  const std::string other = "location=/Old/Safari.app\n";
  EXPECT_EQ(told(software(application("Safari", "version=5\n") + "*Soft:2=Safari\nversion=4\n" + other),
                 software(application("Safari", "version=6\n") + "*Soft:2=Safari\nversion=5\n" + other)),
            "Safari (/Applications/Safari.app) 5 to 6\nSafari (/Old/Safari.app) 4 to 5\n");
}

TEST(ChangeSentences, AnApplicationCameOrWent) {
  const std::string mail = application("Mail", "version=4\n");
  const std::string firefox = "*Soft:2=Firefox\nversion=14.0.1\nlocation=/Applications/Firefox.app\n";
  EXPECT_EQ(told(software(mail), software(mail + firefox)),
            "Application added: Firefox 14.0.1 (/Applications/Firefox.app)\n");
  EXPECT_EQ(told(software(mail + firefox), software(mail)),
            "Application removed: Firefox 14.0.1 (/Applications/Firefox.app)\n");
}

TEST(ChangeSentences, DetailsBelongToWhatTheyAreAbout) {
  const std::string mail = application("Mail", "version=4\n");
  EXPECT_EQ(
      told(software(mail) + "+Software-details=\n*Soft:1=\nsource=a\n-\n",
           software(application("Mail", "version=5\n")) + "+Software-details=\n*Soft:1=\nsource=b\n-\n"),
      "Mail 4 to 5, source a to b\n");
  EXPECT_EQ(told(software(mail + "*Soft:2=X\nlocation=/X\n") +
                     "+Software-details=\n*Soft:1=\nsource=a\n*Soft:2=\nsource=a\n-\n",
                 software(mail) + "+Software-details=\n*Soft:1=\nsource=a\n-\n"),
            "Application removed: X (/X)\n");
}

TEST(ChangeSentences, ADiskWasReplaced) {
  const auto disk = [](const std::string& serial, const std::string& bytes) {
    return disks("*HDD:1=\nmodel=SIMDISK\nsize=1000\n~base-value=" + bytes + "\nserial=" + serial + "\n");
  };
  EXPECT_EQ(told(disk("A", "1000204886016"), disk("B", "2000398934016")),
            "Disk replaced: SIMDISK 1 TB (A) by SIMDISK 2 TB (B)\n");
}

TEST(ChangeSentences, OfSeveralDisksTheFirstThatWentIsReplacedByTheFirstThatCame) {
  EXPECT_EQ(
      told(disks("*HDD:1=\nserial=A\n*HDD:2=\nserial=B\n"), disks("*HDD:1=\nserial=C\n*HDD:2=\nserial=D\n")),
      "Disk replaced: (A) by (C)\nDisk replaced: (B) by (D)\n");
  EXPECT_EQ(told(disks("*HDD:1=\nserial=A\n*HDD:2=\nserial=B\n"), disks("*HDD:1=\nserial=C\n")),
            "Disk replaced: (A) by (C)\nDisk removed: (B)\n");
  EXPECT_EQ(told(disks("*HDD:1=\nserial=A\n"), disks("*CD:1=\nmodel=C\n")),
            "Disk removed: (A)\nOptical drive added: C\n");
}

TEST(ChangeSentences, AnApplicationIsNotReplacedByAnother) {
  EXPECT_EQ(told(software("*Soft:1=A\nlocation=/A\n"), software("*Soft:1=B\nlocation=/B\n")),
            "Application removed: A (/A)\nApplication added: B (/B)\n");
}

TEST(ChangeSentences, MemoryCameOrWentByItsSlot) {
  const std::string full =
      "+Memory=\n*Memory-slot:3=\nused=1\ncapacity=1024\nmem-type=DDR3\n*General-info=\nphysical-memory="
      "2048\n-\n";
  const std::string empty = "+Memory=\n*Memory-slot:3=\nused=0\n*General-info=\nphysical-memory=1024\n-\n";
  EXPECT_EQ(told(full, empty), "Memory removed: slot 3, 1 GB DDR3\n");
  EXPECT_EQ(told(empty, full), "Memory added: slot 3, 1 GB DDR3\n");
}

TEST(ChangeSentences, AnotherModuleInASlotReplacedTheFirst) {
  const auto slot = [](const std::string& facts) {
    return "+Memory=\n*Memory-slot:3=\nused=1\n" + facts + "mem-type=DDR3\n-\n";
  };
  EXPECT_EQ(told(slot("capacity=1024\n"), slot("capacity=2048\n")),
            "Memory replaced: slot 3, 1 GB DDR3 by 2 GB DDR3\n");
  EXPECT_EQ(told(slot("speed=1066\n"), slot("speed=1333\n")), "Memory slot 3: speed 1066 MHz to 1333 MHz\n");
}

TEST(ChangeSentences, AnEmptySlotIsNoMemory) {
  const std::string one = "+Memory=\n*Memory-slot:1=\nused=1\n";
  EXPECT_EQ(told(one + "-\n", one + "*Memory-slot:2=\nused=0\n-\n"), "Memory slot 2 added, empty\n");
}

TEST(ChangeSentences, AListThatCameHasASentenceForEachThing) {
  EXPECT_EQ(
      told("+Peripherals=\n*x=\na=1\n-\n",
           "+Peripherals=\n*x=\na=1\n+Printers=\n*Printer:1=Laser\nuri=lpd://x\n*Printer:2=Ink\n-\n-\n"),
      "Printer added: Laser (lpd://x)\nPrinter added: Ink\n");
}

TEST(ChangeSentences, WhatHasNoWordIsShownByItsPath) {
  EXPECT_EQ(told("", "+Later=\n*x:1=A\n-\n"), "/Later added\n");
  EXPECT_EQ(told("+Later=\n*x:1=A\n*x:2=B\n-\n", "+Later=\n*x:1=A\n-\n"), "/Later/x:2 removed: B\n");
  EXPECT_EQ(told("+Later=\n*x:1=\ny=1\n-\n", "+Later=\n*x:1=\ny=2\n-\n"), "/Later/x:1: y 1 to 2\n");
  EXPECT_EQ(told("hostname=A\n", "hostname=B\n"), "Snapshot: hostname A to B\n");
}

TEST(ChangeSentences, SayHowAValueIsRead) {
  const auto volume = [](const std::string& facts) {
    return "+Storage=\n+Logical-disks=\n*partition:1=HD\nmount-point=/\n" + facts + "-\n-\n";
  };
  EXPECT_EQ(told(volume("size=99.50\n~base-value=99500000000\n"),
                 volume("size=499.50\n~base-value=499500000000\n")),
            "Volume HD (/): size 100 GB to 500 GB\n");
  EXPECT_EQ(told(volume("writable=1\n"), volume("writable=0\n")), "Volume HD (/): writable yes to no\n");
  EXPECT_EQ(told(volume("file-sys=HFS+\n"), volume("file-sys=\n")),
            "Volume HD (/): file system HFS+ to nothing\n");
  EXPECT_EQ(told(volume(""), volume("file-sys=HFS+\n")), "Volume HD (/): file system HFS+ added\n");
  EXPECT_EQ(told(volume("file-sys=HFS+\n"), volume("")), "Volume HD (/): file system HFS+ removed\n");
  const std::string start = "+Storage=\n+Logical-disks=\n*partition:1=HD\n~kind=";
  EXPECT_EQ(told(start + "a\nmount-point=/\n-\n-\n", start + "b\nmount-point=/\n-\n-\n"),
            "Volume HD (/): kind a to b\n");
}

TEST(ChangeSentences, PartsBelongToTheirThing) {
  const auto display = [](const std::string& lines) {
    return "+Video=\n+Monitors=\n+Monitor:1=\nid=X\nmodel=Wide\n" + lines + "-\n-\n-\n";
  };
  EXPECT_EQ(told(display("*h-freq=\nmax=80\n"), display("*h-freq=\nmax=90\n")),
            "Display Wide: h freq max 80 kHz to 90 kHz\n");
  EXPECT_EQ(told(display("+Video-Modes=\n*v-mode:1=\nres=A\n*v-mode:2=\nres=B\n-\n"),
                 display("+Video-Modes=\n*v-mode:1=\nres=B\n-\n")),
            "Display Wide: Video Modes v mode 1 removed\n");
}

TEST(ChangeSentences, ANewNameIsShownWithTheVersion) {
  EXPECT_EQ(told("+OS=\n*os:1=Lion\nname=Lion\nversion=10.7\nkernel=11\n-\n",
                 "+OS=\n*os:1=Tiger\nname=Tiger\nversion=10.4\nkernel=8\n-\n"),
            "System Lion 10.7 to Tiger 10.4\n");
}

TEST(ChangeSentences, WhatRepeatsAnotherFactIsShownOnce) {
  EXPECT_EQ(told("+System=\n*Mem-slots=\n-\n+Memory=\n*Memory-slot:1=\nused=1\ncapacity=1024\n-\n",
                 "+System=\n+Mem-slots=\n*mem-slot:1=\nused=1\n-\n-\n+Memory=\n*Memory-slot:1=\nused="
                 "1\ncapacity=2048\n-\n"),
            "Memory replaced: slot 1, 1 GB by 2 GB\n");
  EXPECT_EQ(told("+System=\n+Mem-slots=\n*mem-slot:1=\nused=1\n-\n-\n",
                 "+System=\n+Mem-slots=\n*mem-slot:1=\nused=0\n-\n-\n"),
            "/System/Mem-slots/mem-slot:1: used yes to no\n");
}

TEST(ChangeSentences, OfManyChangesTheFirstAreShown) {
  std::string old_lines = "+Later=\n*x=\n", new_lines = old_lines;
  for (int i = 0; i < 10; ++i) {
    old_lines += "a" + std::to_string(i) + "=1\n";
    new_lines += "a" + std::to_string(i) + "=2\n";
  }
  EXPECT_EQ(
      told(old_lines + "-\n", new_lines + "-\n"),
      "/Later/x: a0 1 to 2, a1 1 to 2, a2 1 to 2, a3 1 to 2, a4 1 to 2, a5 1 to 2, a6 1 to 2, a7 1 to 2 "
      "and 2 more\n");
}

TEST(ChangeSentences, LongAndOddValuesAreCutOffAndShownSafely) {
  const std::string line = told("a=1\n", "a=" + std::string(500, 'x') + "\n");
  EXPECT_LT(line.size(), 150U);
  EXPECT_EQ(told("a=1\n", "a=\x1B[31m\xE2\x80\xAE\n"), "Snapshot: a 1 to \xEF\xBF\xBD[31m\xEF\xBF\xBD\n");
}

TEST(ChangeSentences, SerialNumbersEndWhereTheirLineEnds) {
  EXPECT_EQ(told(disks("*HDD:1=\nserial=A\n*HDD:2=\nserial=B\r\n"), disks("*HDD:1=\nserial=A\n")),
            "Disk removed: (B)\n");
}

TEST(ChangeSentences, EveryChangeBelongsToASentenceOrFollowsOne) {
  const auto old_inventory = maker::open(snapshot(disks("*HDD:1=\nserial=A\n")));
  const auto new_inventory = maker::open(snapshot(disks("*HDD:1=\nserial=B\n")));
  const inv::ChangeSentences sentences(inv::diff(*old_inventory, *new_inventory, inv::Facts::lasting));
  ASSERT_EQ(sentences.size(), 1U);
  EXPECT_EQ(sentences[0].kind, inv::ChangeSentence::Kind::replaced);
  EXPECT_STREQ(inv::kind_text(sentences[0].kind), "replaced");
  EXPECT_EQ(sentences[0].thing, "Disk");
  EXPECT_EQ(sentences.changes_of(0), std::vector<size_t>({0, 1}));
}

TEST(ChangeSentences, WhatIsDeeperThanKnownFollowsAsWhatItIsBelow) {
  const auto memory = [](const std::string& in_slot, const std::string& in_old_slot) {
    return "+Memory=\n+Memory-slot:1=\n+x=\na=" + in_slot +
           "\n-\n-\n-\n+System=\n+Mem-slots=\n+mem-slot:1=\n+y=\nb=" + in_old_slot + "\nc=" + in_old_slot +
           "\n-\n-\n-\n-\n";
  };
  EXPECT_EQ(told(memory("1", "1"), memory("2", "2")), "Memory slot 1: x a 1 to 2\n");
  EXPECT_NE(told(memory("1", "1"), memory("1", "2")), "");
}

TEST(ChangeSentences, StaysLinearWithManyChangesOfOneThing) {
  std::string old_lines = "+AssetInfo-like=\n", new_lines = old_lines;
  for (int i = 0; i < 100'000; ++i) {
    old_lines += "disk" + std::to_string(i) + "=1\n";
    new_lines += "disk" + std::to_string(i) + "=2\n";
  }
  EXPECT_NE(told(old_lines + "-\n", new_lines + "-\n").find(" and 99992 more\n"), std::string::npos);
}

}  // namespace
