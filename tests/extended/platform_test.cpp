#include "extended/platform.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

std::string platform(const std::string& lines) { return in_snapshot("*Platform=\n" + lines); }

std::string written_for(std::initializer_list<Item> items, const char* data_type) {
  Mac mac;
  for (const Item& item : items) add_item(mac.profiler, data_type, item);
  return written(collect_platform, mac);
}

TEST(Platform, DescribesACurrentNotebook) {
  Mac mac;
  add_item(mac.profiler, "SPHardwareDataType",
           {{"machine_name", "MacBook Pro"},
            {"model_number", "ABC12LL/A"},
            {"chip_type", "Apple M9"},
            {"number_processors", "proc 10:8:2"},
            {"physical_memory", "16 GB"},
            {"boot_rom_version", "1.2"},
            {"os_loader_version", "1.3"},
            {"machine_model", "Mac99,1"}});
  add_item(mac.profiler, "SPSoftwareDataType",
           {{"os_version", "macOS 26.1 (25B1)"},
            {"boot_mode", "normal_boot"},
            {"boot_volume", "Main"},
            {"secure_vm", "secure_vm_enabled"}});
  add_item(mac.profiler, "SPMemoryDataType",
           {{"SPMemoryDataType", "18 GB"}, {"dimm_type", "LPDDR5"}, {"dimm_manufacturer", "Maker"}});
  add_item(mac.profiler, "SPDisplaysDataType",
           {{"sppci_cores", "14"}, {"spdisplays_mtlgpufamilysupport", "spdisplays_metal3"}});
  add_item(mac.profiler, "SPPowerDataType", {{"_name", "spbattery_information"}});
  add_item(mac.profiler, "SPPowerDataType",
           {{"_name", "sppower_hwconfig_information"}, {"sppower_ups_installed", "FALSE"}});
  mac.tools.sw_vers =
      copy_text("ProductName: macOS\nProductVersion: 26.1\nProductVersionExtra: (a)\nBuildVersion: 25B1\n");
  mac.tools.sysctl = copy_text(
      "hw.physicalcpu: 10\nhw.logicalcpu: 11\nhw.perflevel0.physicalcpu: 8\nhw.perflevel1.physicalcpu: 2\n"
      "machdep.cpu.brand_string: Apple M9\nkern.hv_vmm_present: 0\n");
  mac.tools.rosetta = copy_text("/Library/Apple/usr/libexec/oah/libRosettaRuntime\n");
  EXPECT_EQ(written(collect_platform, mac), platform("system=macOS 26.1 (25B1)\n"
                                                     "system-name=macOS\n"
                                                     "system-version=26.1\n"
                                                     "system-version-extra=(a)\n"
                                                     "system-build=25B1\n"
                                                     "model-name=MacBook Pro\n"
                                                     "model-number=ABC12LL/A\n"
                                                     "chip=Apple M9\n"
                                                     "processor=Apple M9\n"
                                                     "core-count=10\n"
                                                     "physical-cores=10\n"
                                                     "logical-cores=11\n"
                                                     "performance-cores=8\n"
                                                     "efficiency-cores=2\n"
                                                     "gpu-core-count=14\n"
                                                     "metal=spdisplays_metal3\n"
                                                     "memory=18 GB\n"
                                                     "memory-type=LPDDR5\n"
                                                     "memory-manuf=Maker\n"
                                                     "virtual-machine=0\n"
                                                     "laptop=1\n"
                                                     "ups=0\n"
                                                     "firmware=1.2\n"
                                                     "boot-loader=1.3\n"
                                                     "boot-mode=normal_boot\n"
                                                     "boot-volume=Main\n"
                                                     "secure-virtual-memory=1\n"
                                                     "rosetta=1\n"));
}

TEST(Platform, IsEmptyWithoutData) {
  Mac mac;
  EXPECT_EQ(written(collect_platform, mac), kEmptySnapshot);
}

TEST(Platform, TakesTheFirstNumberAsTheCountOfAllCores) {
  for (const char* text : {"proc 24:16:8:0", "proc 24", "24"})
    EXPECT_EQ(written_for({{{"number_processors", text}}}, "SPHardwareDataType"), platform("core-count=24\n"))
        << text;
  EXPECT_EQ(written_for({{{"number_processors", 3}}}, "SPHardwareDataType"), platform("core-count=3\n"));
  for (const char* odd : {"proc :6:2", "proc", "8:6:2", "many", "proc  8"})
    EXPECT_EQ(written_for({{{"number_processors", odd}}}, "SPHardwareDataType"), kEmptySnapshot) << odd;
}

TEST(Platform, TakesTheMemoryFromTheHardwareDataWithoutMemoryData) {
  Mac mac;
  add_item(mac.profiler, "SPHardwareDataType", {{"physical_memory", "8 GB"}});
  add_item(mac.profiler, "SPMemoryDataType",
           {{"global_ecc_state", "ecc_disabled"}, {"is_memory_upgradeable", "Yes"}});
  EXPECT_EQ(written(collect_platform, mac), platform("memory=8 GB\nmemory-upgradeable=1\nmemory-ecc=0\n"));
}

TEST(Platform, DoesNotMistakeTheFirstModuleForAllMemory) {
  EXPECT_EQ(written_for({{{"dimm_status", "ok"}, {"dimm_type", "DDR2"}, {"dimm_manufacturer", "Maker"}}},
                        "SPMemoryDataType"),
            kEmptySnapshot);
}

TEST(Platform, TakesTheFirstGraphicsAdapterWithTheFact) {
  EXPECT_EQ(written_for({{{"sppci_model", "none"}, {"spdisplays_metalfamily", "family"}},
                         {{"sppci_cores", "5"}, {"spdisplays_metal", "metal"}},
                         {{"sppci_cores", "7"}}},
                        "SPDisplaysDataType"),
            platform("gpu-core-count=5\nmetal=family\n"));
}

TEST(Platform, PrefersTheNewestKeyForMetal) {
  EXPECT_EQ(written_for({{{"spdisplays_mtlgpufamilysupport", "newest"},
                          {"spdisplays_metalfamily", "newer"},
                          {"spdisplays_metal", "old"}}},
                        "SPDisplaysDataType"),
            platform("metal=newest\n"));
}

TEST(Platform, RecognisesApplesVirtualMacByItsModel) {
  Mac mac;
  add_item(mac.profiler, "SPHardwareDataType", {{"machine_model", "VirtualMac2,1"}});
  mac.tools.sysctl = copy_text("kern.hv_vmm_present: 0\n");
  EXPECT_EQ(written(collect_platform, mac), platform("virtual-machine=1\n"));
  mac.tools.sysctl = nullptr;
  EXPECT_EQ(written(collect_platform, mac), platform("virtual-machine=1\n"));
}

TEST(Platform, RecognisesAVirtualMachineByItsHypervisor) {
  Mac mac;
  mac.tools.sysctl = copy_text("kern.hv_vmm_present: 1\n");
  EXPECT_EQ(written(collect_platform, mac), platform("virtual-machine=1\n"));
}

TEST(Platform, IsNotALaptopWithoutABattery) {
  EXPECT_EQ(written_for({{{"_name", "sppower_hwconfig_information"}, {"sppower_ups_installed", "TRUE"}}},
                        "SPPowerDataType"),
            platform("laptop=0\nups=1\n"));
}

TEST(Platform, HasRosettaOnlyWithApplesProcessors) {
  Mac mac;
  mac.tools.rosetta = copy_text("ls: x: No such file or directory\n");
  mac.tools.sysctl = copy_text("machdep.cpu.brand_string: Intel(R) Core(TM) i3\n");
  EXPECT_EQ(written(collect_platform, mac), platform("processor=Intel(R) Core(TM) i3\n"));
  mac.tools.sysctl = nullptr;
  add_item(mac.profiler, "SPHardwareDataType", {{"chip_type", "Apple M9"}});
  EXPECT_EQ(written(collect_platform, mac), platform("chip=Apple M9\nrosetta=0\n"));
}

TEST(Platform, ReadsTheManagementControllerFromEitherKey) {
  EXPECT_EQ(written_for({{{"SMC_version", "1.17f0"}}}, "SPHardwareDataType"), platform("smc=1.17f0\n"));
  EXPECT_EQ(written_for({{{"SMC_version_system", "1.69f3"}}}, "SPHardwareDataType"),
            platform("smc=1.69f3\n"));
}

}  // namespace
