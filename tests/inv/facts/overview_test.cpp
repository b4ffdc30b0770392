#include "inv/facts/overview.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Overview;

Overview overview_of_text(std::string_view lines) {
  return inv::overview_of(
      *maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n")));
}

TEST(Overview, FindsTheFactsOfASmallMac) {
  const Overview overview = inv::overview_of(*maker::open(maker::file()));
  EXPECT_EQ(overview.name, "Office Mac");
  EXPECT_EQ(overview.identity, "C02TEST00001");
  EXPECT_EQ(overview.model, "iMac11,1");
  EXPECT_EQ(overview.serial, "C02TEST00001");
  EXPECT_EQ(overview.processor, "Intel Core i7");
  EXPECT_EQ(overview.cores, "4");
  EXPECT_EQ(overview.applications, 2u);
  ASSERT_EQ(overview.volumes.size(), 1u);
  EXPECT_EQ(overview.volumes[0].name, "Macintosh HD");
  EXPECT_EQ(overview.volumes[0].bytes, 499500000000u);
  EXPECT_FALSE(overview.volumes[0].knows_free);
}

TEST(Overview, WithoutASnapshotTheAssetSummarySpeaks) {
  const Overview overview = inv::overview_of(*maker::open(maker::debug_file("<plist/>")));
  EXPECT_EQ(overview.name, "Office Mac");
  EXPECT_EQ(overview.serial, "C02TEST00001");
  EXPECT_EQ(overview.os, "Mac OS X v10.6 (Snow Leopard)");
  EXPECT_EQ(overview.applications, 0u);
}

TEST(Overview, CountsSlotsFilledAndEmpty) {
  const Overview overview = overview_of_text(
      "+Memory=\n*Memory-slot:1=\nused=1\ncapacity=2048\nmem-type=DDR3\nbank-label=BANK "
      "0\n*Memory-slot:2=\nused=0\n"
      "*General-info=\nphysical-memory=2048\n-\n");
  EXPECT_EQ(overview.memory_megabytes, 2048u);
  ASSERT_EQ(overview.slots.size(), 2u);
  EXPECT_EQ(overview.slots[0].megabytes, 2048u);
  EXPECT_EQ(overview.slots[0].label, "BANK 0");
  EXPECT_EQ(overview.slots[1].megabytes, 0u);
}

TEST(Overview, ReadsDisksDisplaysAndAdapters) {
  const Overview overview = overview_of_text(
      "+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=SIMDISK\ninterface=SATA\nsize=500\n~base-value="
      "500107862016\n"
      "*Removable:1=Stick\ninterface=USB\nsize=8\n-\n-\n"
      "+Video=\n+Monitors=\n+Monitor:1=?APP9CC3|iMac\nname=?APP9CC3|iMac\nmain-monitor=1\n*max-visible-image-"
      "size=\n"
      "diagonal=27\n-\n-\n+Video-devices=\n*Video-adapter:1=Card\nram=512\n*Video-adapter:2=Other\nram=0\n-"
      "\n-\n"
      "+Network=\n+Adapters=\n*net-adapter:1=Ethernet\nbsd-device-name=en0\nip-address=192.0.2.1\n-\n-\n");
  ASSERT_EQ(overview.disks.size(), 2u);
  EXPECT_EQ(overview.disks[0].bytes, 500107862016u);
  EXPECT_EQ(overview.disks[1].kind, "Removable");
  EXPECT_EQ(overview.disks[1].model, "Stick");
  EXPECT_EQ(overview.disks[1].bytes, 8000000000u);
  ASSERT_EQ(overview.displays.size(), 1u);
  EXPECT_EQ(overview.displays[0].model, "?APP9CC3");
  EXPECT_EQ(overview.displays[0].diagonal, "27");
  EXPECT_TRUE(overview.displays[0].main);
  EXPECT_EQ(overview.graphics, (std::vector<std::string>{"Card, 512 MB", "Other"}));
  ASSERT_EQ(overview.adapters.size(), 1u);
  EXPECT_EQ(overview.adapters[0].device, "en0");
}

TEST(Overview, MalformedNumbersCountAsUnknown) {
  const Overview overview = overview_of_text(
      "+Storage=\n+Physical-disks=\n*HDD:1=\nsize=nan\n*HDD:2=\nsize=1e300\n*HDD:3=\nsize=-5\n"
      "*HDD:4=\nsize=1000000000\n-\n-\n"
      "+Memory=\n*General-info=\nphysical-memory=lots\n-\n");
  for (const inv::Disk& disk : overview.disks) EXPECT_EQ(disk.bytes, 0u);
  EXPECT_EQ(overview.memory_megabytes, 0u);
}

TEST(Volume, UsedPercentageNeedsASizeAndLessFreeThanThat) {
  const auto used = [](uint64_t bytes, uint64_t free) {
    inv::Volume volume;
    volume.bytes = bytes;
    volume.free_bytes = free;
    return volume.used_percent();
  };
  EXPECT_EQ(used(1000, 250), 75u);
  EXPECT_EQ(used(1000, 0), 100u);
  EXPECT_EQ(used(1000, 1), 99u);
  EXPECT_EQ(used(0, 0), 0u);
  EXPECT_EQ(used(1000, 2000), 0u);
}

TEST(Readable, TimesAreSpelledOutAndOthersLeftAlone) {
  EXPECT_EQ(inv::readable_time("20120118153045.000000+120"), "2012-01-18 15:30:45 +02:00");
  EXPECT_EQ(inv::readable_time("20120118153045.000000-330"), "2012-01-18 15:30:45 -05:30");
  EXPECT_EQ(inv::readable_time("20120118153045.000000+0"), "2012-01-18 15:30:45 +00:00");
  for (const char* other :
       {"", "2012", "yesterday", "20120118153045.000000+120 or so", "20120118153045.000000*120"}) {
    EXPECT_EQ(inv::readable_time(other), other);
  }
}

TEST(Readable, UptimesAreSpelledOutAndOthersLeftAlone) {
  EXPECT_EQ(inv::readable_uptime("00000002030405.000000:000"), "2 days 3:04:05");
  EXPECT_EQ(inv::readable_uptime("00000001000000.000000:000"), "1 day 0:00:00");
  EXPECT_EQ(inv::readable_uptime("00000000230959.000000:000"), "23:09:59");
  EXPECT_EQ(inv::readable_uptime("long"), "long");
}

TEST(Readable, SizesTakeTheUnitThatFits) {
  EXPECT_EQ(inv::readable_size(0), "0 B");
  EXPECT_EQ(inv::readable_size(999), "999 B");
  EXPECT_EQ(inv::readable_size(1500), "1.5 KB");
  EXPECT_EQ(inv::readable_size(500107862016), "500 GB");
  EXPECT_EQ(inv::readable_size(999999999999), "1.0 TB");
  EXPECT_EQ(inv::readable_size(UINT64_MAX), "18 EB");
  EXPECT_EQ(inv::readable_memory(512), "512 MB");
  EXPECT_EQ(inv::readable_memory(8192), "8 GB");
  EXPECT_EQ(inv::readable_memory(6656), "6.5 GB");
}

TEST(Readable, CountsTakeThePluralOfTheirNoun) {
  EXPECT_EQ(inv::readable_count(0, "slot"), "0 slots");
  EXPECT_EQ(inv::readable_count(1, "process"), "1 process");
  EXPECT_EQ(inv::readable_count(2, "process"), "2 processes");
}

}  // namespace
