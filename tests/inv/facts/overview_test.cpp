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
  EXPECT_EQ(overview.processor.name, "Intel Core i7");
  EXPECT_EQ(overview.processor.cores, "4");
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
  EXPECT_EQ(overview.memory.megabytes, 2048u);
  ASSERT_EQ(overview.memory.slots.size(), 2u);
  EXPECT_EQ(overview.memory.slots[0].megabytes, 2048u);
  EXPECT_EQ(overview.memory.slots[0].label, "BANK 0");
  EXPECT_EQ(overview.memory.slots[1].megabytes, 0u);
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
  EXPECT_EQ(overview.memory.megabytes, 0u);
}

TEST(Overview, SlotsWithoutAnyKnownStateAreLeftOut) {
  EXPECT_EQ(overview_of_text("+Memory=\n*Memory-slot:1=\nused=0\n*General-info=\nphysical-memory=49152\n-\n")
                .memory.slots.size(),
            0u);
}

TEST(Overview, ReadsTheChipAndItsCores) {
  const Overview overview = overview_of_text(
      "*Platform=\nchip=Apple M4 Pro\nprocessor=M4\ncore-count=12\nphysical-cores=11\nperformance-cores=8\n"
      "efficiency-cores=4\nmodel-name=MacBook Pro\nvirtual-machine=1\n");
  EXPECT_EQ(overview.processor.name, "Apple M4 Pro");
  EXPECT_EQ(overview.processor.chip, "");
  EXPECT_EQ(overview.processor.cores, "12");
  EXPECT_EQ(overview.processor.performance_cores, "8");
  EXPECT_EQ(overview.processor.efficiency_cores, "4");
  EXPECT_EQ(overview.model_name, "MacBook Pro");
  EXPECT_TRUE(overview.virtual_machine);
}

TEST(Overview, TheProfilersProcessorNameComesBeforeTheChips) {
  const Overview overview = overview_of_text(
      "+Processors=\n*Processor:1=6-Core Intel Core i7\ncore-count=6\n-\n"
      "*Platform=\nprocessor=i7-9750H\ncore-count=7\nphysical-cores=8\n");
  EXPECT_EQ(overview.processor.name, "6-Core Intel Core i7");
  EXPECT_EQ(overview.processor.chip, "i7-9750H");
  EXPECT_EQ(overview.processor.cores, "6");
  EXPECT_EQ(overview_of_text("*Platform=\nphysical-cores=8\n").processor.cores, "8");
}

TEST(Overview, MemoryWithoutSlotsIsSolderedButNotInAVirtualMachine) {
  const inv::Memory memory =
      overview_of_text("*Platform=\nmemory=48 GB\nmemory-type=LPDDR5\nmemory-upgradeable=0\n").memory;
  EXPECT_EQ(memory.megabytes, 49152u);
  EXPECT_EQ(memory.type, "LPDDR5");
  EXPECT_TRUE(memory.soldered);
  EXPECT_FALSE(memory.upgradeable);
  EXPECT_FALSE(overview_of_text("*Platform=\nmemory-type=RAM\nvirtual-machine=1\n").memory.soldered);
  EXPECT_FALSE(overview_of_text("*Platform=\nmemory=48 GB\n").memory.soldered);
  EXPECT_TRUE(overview_of_text("*Platform=\nmemory=48 GB\n").memory.upgradeable);
  for (const char* other : {"48", "48 MB", "GB", "99999999999999 GB", "many GB"}) {
    EXPECT_EQ(overview_of_text(std::string("*Platform=\nmemory=") + other + "\n").memory.megabytes, 0u)
        << other;
  }
}

TEST(Overview, TheSystemIsWhatItsToolsReport) {
  EXPECT_EQ(
      overview_of_text("+OS=\n*os:1=Mac OS X v10.2 (Jaguar)\nversion=1 (25B78)\nkernel=Darwin 25.1.0\n-\n"
                       "*Platform=\nsystem=macOS 26.1\nsystem-name=macOS\nsystem-version=26.1\n"
                       "system-version-extra=(a)\nsystem-build=25B78\n")
          .os,
      "macOS 26.1 (a) (25B78)");
  EXPECT_EQ(overview_of_text("*Platform=\nsystem=macOS 26.1\n").os, "macOS 26.1");
}

TEST(Overview, DisksHaveTheDetailsOfTheirOwnNumber) {
  const Overview overview = overview_of_text(
      "+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=A\n*HDD:2=\nmodel=B\nmedium=ssd\nsmart-status=Verified\n"
      "*Removable:1=C\ninterface=USB\n-\n"
      "+Details=\n*HDD:1=\nmedium=Rotational\nsmart-status=Failing\n*HDD:2=\nmedium=Rotational\n-\n-\n");
  ASSERT_EQ(overview.disks.size(), 3u);
  EXPECT_EQ(overview.disks[0].medium, "hard disk");
  EXPECT_EQ(overview.disks[0].problem, "Failing");
  EXPECT_EQ(overview.disks[1].medium, "SSD");
  EXPECT_EQ(overview.disks[1].problem, "");
  EXPECT_EQ(overview.disks[2].medium, "");
}

TEST(Overview, VolumesOfAContainerAreAdjacent) {
  const Overview overview = overview_of_text(
      "+Storage=\n+Logical-disks=\n*partition:1=A\ncontainer=disk3\nsize=100\nfree=40\n"
      "*partition:2=B\nsize=10\nfree=5\n*partition:3=C\ncontainer=disk3\nsize=100\nfree=40\n"
      "*partition:4=D\nsize=10\n-\n-\n");
  std::string names;
  for (const inv::Volume& volume : overview.volumes) names += volume.name;
  EXPECT_EQ(names, "ACBD");
}

TEST(Overview, APartitionThatHoldsAContainerIsThereAsItsVolumes) {
  const std::string details =
      "+Details=\n*partition:1=\ncontent=Apple_APFS\n*partition:2=\ncontent=Apple_HFS\n-\n-\n";
  const std::string lists =
      "+Storage=\n+Logical-disks=\n*partition:1=disk0s2\nsize=100\n*partition:2=B\nsize=10\n";
  EXPECT_EQ(
      overview_of_text(lists + "*partition:3=Mac\ncontainer=disk1\nsize=100\n-\n" + details).volumes.size(),
      2u);
  EXPECT_EQ(overview_of_text(lists + "-\n" + details).volumes.size(), 2u);
}

TEST(Overview, DisplaysOfAnExtendedScanReplaceMonitorsAndKeepTheirFacts) {
  const Overview overview = overview_of_text(
      "+Video=\n+Monitors=\n+Monitor:1=\nmax-resolution=1440 x 900\nname=?APP9CC3|x\nmain-monitor=1\n"
      "*max-visible-image-size=\ndiagonal=15\n-\n*Monitor:2=\nmodel=PANORA\nmax-resolution=800 x 600\n-\n"
      "+Displays=\n*display:1=Color LCD\nresolution=1512 x 982 @ 120.00Hz\npixels=3024 x 1964\nbuilt-in=1\n"
      "*display:2=spdisplays_display\nresolution=1920 x 1200 @ 60 Hz\npixels=1920 x 1200\nmain=1\n"
      "*display:3=spdisplays_display\nbuilt-in=0\n-\n-\n");
  ASSERT_EQ(overview.displays.size(), 3u);
  const inv::Display& first = overview.displays[0];
  EXPECT_EQ(first.model, "Color LCD");
  EXPECT_EQ(first.resolution, "1512 x 982 @ 120.00Hz");
  EXPECT_EQ(first.pixels, "3024 x 1964");
  EXPECT_EQ(first.diagonal, "15");
  EXPECT_TRUE(first.built_in);
  EXPECT_TRUE(first.main);
  EXPECT_EQ(overview.displays[1].model, "PANORA");
  EXPECT_EQ(overview.displays[1].pixels, "");
  EXPECT_FALSE(overview.displays[1].built_in);
  EXPECT_TRUE(overview.displays[1].main);
  EXPECT_EQ(overview.displays[2].model, "");
}

TEST(Overview, GraphicsMemoryIsShownOnlyIfThereIsAny) {
  const Overview overview = overview_of_text(
      "+Video=\n+Video-devices=\n*Video-adapter:1=A\nram=512\n*Video-adapter:2=B\nram=0\n*Video-adapter:3="
      "C\nram=0\n"
      "*Video-adapter:4=D\nram=0\n-\n+Details=\n*Video-adapter:1=\nvram=999 MB\nmetal=spdisplays_metal3\n"
      "*Video-adapter:2=\nvram=1536 MB\nvram-shared=1536 MB\nmetal=spdisplays_metalfeaturesetfamily\n"
      "*Video-adapter:3=\nvram=256 MB\nvram-shared=0 MB\ncores=16\n*Video-adapter:4=\nvram=0 MB\n-\n-\n");
  EXPECT_EQ(overview.graphics, (std::vector<std::string>{"A, 512 MB, Metal 3", "B, 1536 MB shared",
                                                         "C, 256 MB, 16 cores", "D"}));
}

TEST(Overview, ProtectionIsDescribedInWords) {
  const auto security = [](const std::string& lines) {
    return overview_of_text("+Security=\n*Platform=\n" + lines + "-\n").security;
  };
  using Texts = std::vector<std::string>;
  EXPECT_EQ(
      security("filevault=1\nfilevault-status=FileVault is On.\nsystem-integrity-protection=0\ngatekeeper=0\n"
               "secure-boot=Full Security\nactivation-lock=1\nxprotect-version=5329\n"),
      (Texts{"FileVault on", "SIP off", "Gatekeeper off", "secure boot: Full Security", "Activation Lock on",
             "XProtect 5329"}));
  EXPECT_EQ(security("system-integrity-protection-status=Status: unknown (Custom).\n"),
            Texts{"SIP unknown (Custom)"});
  EXPECT_EQ(security("system-integrity-protection=1\nsystem-integrity-protection-by-profiler=1\n"),
            Texts{"SIP on"});
  EXPECT_EQ(security("system-integrity-protection=1\nsystem-integrity-protection-by-profiler=0\n"),
            Texts{"SIP on (the profiler: off)"});
  EXPECT_EQ(security("system-integrity-protection-by-profiler=1\n"), Texts{"SIP on"});
  EXPECT_EQ(security("filevault=2\n"), Texts());
}

TEST(Overview, ManagementAndFirewallAreDescribedInWords) {
  const auto management = [](const std::string& lines) {
    return overview_of_text("+Security=\n*Platform=\n" + lines + "-\n").management;
  };
  EXPECT_EQ(management("mdm-enrolled=0\nenrolled-by-dep=0\n"), "not enrolled in MDM");
  EXPECT_EQ(management("mdm-enrolled=1\nmdm-user-approved=1\nenrolled-by-dep=1\n"),
            "enrolled in MDM, approved by the user, assigned by the organisation");
  EXPECT_EQ(management("mdm-enrolled=1\nmdm-user-approved=0\n"), "enrolled in MDM, not approved by the user");
  const auto firewall = [](const std::string& lines) {
    return overview_of_text("+Security=\n*Firewall=\n" + lines + "-\n").firewall;
  };
  EXPECT_EQ(firewall("status=0\nstealth-mode=0\n"), "off");
  EXPECT_EQ(firewall("status=1\nstealth-mode=1\n"), "on, stealth mode");
  EXPECT_EQ(firewall("status=2\n"), "on, blocks all connections");
  EXPECT_EQ(firewall("status=3\n"), "");
}

TEST(Overview, ABatteryIsQuoted) {
  EXPECT_EQ(overview_of_text(
                "*Battery=\ncondition=Good\ncycle-count=61\nmaximum-capacity=94%\ncharge=82\ncharging=1\n"
                "charger-watts=94\n")
                .battery,
            (std::vector<std::string>{"condition Good", "61 cycles", "maximum capacity 94%",
                                      "charged to 82 %", "charging", "charger of 94 W"}));
  EXPECT_EQ(overview_of_text("*Battery=\ncharging=0\n").battery, std::vector<std::string>());
}

TEST(Overview, CountsWhatOnlyAnExtendedScanLists) {
  const Overview overview = overview_of_text(
      "+Peripherals=\n+Thunderbolt=\n*Bus:1=A\na=b\n*Device:1=B\na=b\n-\n+Bluetooth=\n*Device:1=A\na=b\n"
      "*Device:2=B\na=b\n-\n-\n+Packages=\n*Package:1=A\na=b\n*Package:2=B\na=b\n*Package:3=C\na=b\n-\n");
  EXPECT_EQ(overview.thunderbolt_devices, 1u);
  EXPECT_EQ(overview.bluetooth_devices, 2u);
  EXPECT_EQ(overview.installed_packages, 3u);
}

TEST(Space, SharedSpaceIsCountedOnce) {
  inv::Volume own, shared, unknown;
  own.bytes = 1000;
  own.free_bytes = 100;
  own.knows_free = true;
  shared = own;
  shared.container = "disk3";
  unknown.bytes = 1000000;
  const inv::Space space = inv::space_of({shared, own, shared, own, unknown});
  EXPECT_EQ(space.bytes, 3000u);
  EXPECT_EQ(space.free_bytes, 300u);
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

}  // namespace
