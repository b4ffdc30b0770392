#include "inv/facts/overview_text.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

TEST(OverviewText, ProcessorsAreCounted) {
  inv::Processor processor;
  processor.name = "Quad-Core Intel Xeon";
  processor.packages = 2;
  processor.cores = "8";
  processor.megahertz = "2660";
  EXPECT_EQ(inv::joined(inv::processor_texts(processor)), "2 x Quad-Core Intel Xeon, 8 cores, 2660 MHz");
  processor.packages = 1;
  processor.cores = "1";
  processor.chip = "Intel(R) Xeon(R)";
  EXPECT_EQ(inv::joined(inv::processor_texts(processor)),
            "Quad-Core Intel Xeon, 1 core, 2660 MHz, Intel(R) Xeon(R)");
  EXPECT_EQ(inv::processor_texts(inv::Processor()), Texts());
}

TEST(OverviewText, CoresAreShownByKindIfBothAreKnown) {
  inv::Processor processor;
  processor.name = "Apple M4 Pro";
  processor.cores = "12";
  processor.performance_cores = "8";
  EXPECT_EQ(inv::joined(inv::processor_texts(processor)), "Apple M4 Pro, 12 cores");
  processor.efficiency_cores = "4";
  EXPECT_EQ(inv::joined(inv::processor_texts(processor)), "Apple M4 Pro, 12 cores (8 P + 4 E)");
  processor.cores.clear();
  EXPECT_EQ(inv::joined(inv::processor_texts(processor)), "Apple M4 Pro");
}

TEST(OverviewText, MemoryHasItsKindAndWhetherItStays) {
  inv::Memory memory;
  EXPECT_EQ(inv::memory_text(memory), "");
  memory.megabytes = 49152;
  EXPECT_EQ(inv::memory_text(memory), "48 GB");
  memory.upgradeable = false;
  EXPECT_EQ(inv::memory_text(memory), "48 GB, not upgradeable");
  memory.type = "LPDDR5";
  memory.soldered = true;
  EXPECT_EQ(inv::memory_text(memory), "48 GB LPDDR5, soldered");
}

TEST(OverviewText, ADiskThatIsFailingSaysSo) {
  inv::Disk disk;
  disk.kind = "HDD";
  EXPECT_EQ(inv::disk_text(disk), "disk");
  disk = {"HDD", "SIMDISK", "S1", "SATA", 2000000000000, "hard disk", "Failing"};
  EXPECT_EQ(inv::disk_text(disk), "SIMDISK, 2.0 TB, SATA, hard disk, Failing by SMART");
}

TEST(OverviewText, TheKindOfADiskIsShownOnce) {
  inv::Disk disk;
  disk.kind = "Removable";
  disk.interface = "USB";
  EXPECT_EQ(inv::disk_text(disk), "Removable, USB");
  disk.model = "Stick";
  EXPECT_EQ(inv::disk_text(disk), "Stick, USB, Removable");
}

TEST(OverviewText, ADisplayWithoutFactsSaysThatThereAreNone) {
  inv::Display display;
  display.main = true;
  EXPECT_EQ(inv::display_text(display), "display, no details reported");
  display = {"Color LCD", "1512 x 982", "14", true, "3024 x 1964", true};
  EXPECT_EQ(inv::display_text(display), "Color LCD, built-in, 14 in, 1512 x 982, 3024 x 1964 pixels, main");
}

TEST(OverviewText, AVirtualMachineIsCalledOne) {
  inv::Overview overview;
  EXPECT_EQ(inv::model_text(overview), "");
  overview.model = "VirtualMac2,1";
  overview.model_name = "Apple Virtual Machine 1";
  overview.virtual_machine = true;
  EXPECT_EQ(inv::model_text(overview), "Apple Virtual Machine 1, VirtualMac2,1, virtual machine");
}

TEST(OverviewText, WhatOnlyAnExtendedScanCountsIsLeftOutIfZero) {
  inv::Overview overview;
  EXPECT_EQ(inv::content_counts(overview), Texts());
  overview.has_snapshot = true;
  EXPECT_EQ(inv::joined(inv::content_counts(overview)),
            "0 applications, 0 accounts, 0 processes, 0 printers, 0 USB devices");
  overview.thunderbolt_devices = overview.bluetooth_devices = overview.installed_packages = 1;
  EXPECT_EQ(inv::joined(inv::content_counts(overview)),
            "0 applications, 0 accounts, 0 processes, 0 printers, 0 USB devices, 1 Thunderbolt device, "
            "1 Bluetooth device, 1 installed package");
}

}  // namespace
