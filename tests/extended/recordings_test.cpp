// What the extended scan must find in the recordings of real Macs, where these are present; the expected
// values were read by hand. Values that identify a machine or its owner are not repeated here.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "collectors/free_numbers.h"
#include "collectors/network_adapters.h"
#include "collectors/storage.h"
#include "collectors/usb.h"
#include "extended/extended.h"
#include "profiler/plist_dump.h"
#include "profiler/property_list.h"
#include "tests/extended/mac.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kAdditionalTypes[] = {"SPStorageDataType",        "SPNVMeDataType",
                                            "SPUSBHostDataType",        "SPThunderboltDataType",
                                            "SPInstallHistoryDataType", "SPiBridgeDataType"};

fs::path recordings() { return fs::path(PROJECT_ROOT) / ".." / "shared" / "samples" / "machines"; }

bool is_additional(const std::string& data_type) {
  for (const char* type : kAdditionalTypes) {
    if (data_type == type) return true;
  }
  return false;
}

void read_plist(const fs::path& path, InventoryTree& tree) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const CFRef<CFArrayRef> list = parse_profiler_output(
      {nullptr, copy_range(bytes.data(), bytes.data() + bytes.size()), static_cast<uint32_t>(bytes.size())});
  ASSERT_TRUE(list) << path;
  dump_profiler(list.get(), tree);
}

void read_recording(const char* name, Mac& mac) {
  for (const auto& entry : fs::directory_iterator(recordings() / name / "profiler"))
    read_plist(entry.path(), is_additional(entry.path().stem()) ? mac.additional : mac.profiler);
}

// The default collectors whose lists are joined or continued.
void collect_default_lists(InventoryTree& snapshot, Mac& mac) {
  collect_storage(snapshot, mac.profiler);
  collect_network_adapters(snapshot, mac.profiler);
  collect_usb(snapshot, mac.profiler);
}

// An attribute of an element, or its value (kValue), or the element itself (kElement) where it must be
// absent.
constexpr char kValue[] = "=";
constexpr char kElement[] = "(element)";
constexpr char kNone[] = "(none)";
struct Fact {
  std::initializer_list<const char*> element;
  const char* name;
  const char* expected;
};

std::string shown(const Value* value) {
  if (!value) return kNone;
  if (value->kind() == Value::Kind::int64) return std::to_string(value->int64());
  return value->text() ? value->text() : "(another kind)";
}

std::string find_fact(const InventoryTree& snapshot, const Fact& fact) {
  const Tag* element = find_element(snapshot, fact.element);
  if (!element) return kNone;
  if (std::string(fact.name) == kElement) return element->name();
  if (std::string(fact.name) == kValue) return shown(element->value());
  const std::string name = fact.name;
  const size_t mark = name.find('~');
  const Attribute* attribute = element->find_attribute(name.substr(0, mark));
  if (!attribute || mark == name.npos) return shown(attribute ? &attribute->value() : nullptr);
  const Annotation* annotation = attribute->find_annotation(name.substr(mark + 1).c_str());
  return annotation ? annotation->text : kNone;
}

void expect_facts(const char* recording, const ToolOutputs* tools, std::initializer_list<Fact> facts) {
  if (!fs::is_directory(recordings())) GTEST_SKIP() << "the recordings are not beside the repository";
  Mac mac;
  read_recording(recording, mac);
  InventoryTree snapshot = empty_snapshot();
  collect_default_lists(snapshot, mac);
  const ExtendedInputs inputs{mac.profiler, mac.additional, tools ? *tools : mac.tools};
  collect_extended(snapshot, inputs);
  for (const Fact& fact : facts) {
    std::string path;
    for (const char* segment : fact.element) path += std::string("/") + segment;
    EXPECT_EQ(find_fact(snapshot, fact), fact.expected) << path << " " << fact.name;
  }
}

TEST(Recordings, AppleSilicon) {
  expect_facts("apple-silicon-12-26", nullptr,
               {
                   {{"Platform"}, "system", "macOS 12.3 (21E230)"},
                   {{"Platform"}, "model-name", "MacBook Pro"},
                   {{"Platform"}, "chip", "Apple M1 Pro"},
                   {{"Platform"}, "core-count", "8"},
                   {{"Platform"}, "gpu-core-count", "14"},
                   {{"Platform"}, "metal", "spdisplays_mtlgpufamilyapple7"},
                   {{"Platform"}, "memory", "48 GB"},
                   {{"Platform"}, "memory-type", "LPDDR5"},
                   {{"Platform"}, "memory-manuf", "Micron"},
                   {{"Platform"}, "virtual-machine", kNone},
                   {{"Platform"}, "laptop", "1"},
                   {{"Platform"}, "ups", "0"},
                   {{"Platform"}, "firmware", "10151.101.3"},
                   {{"Platform"}, "secure-virtual-memory", "1"},
                   {{"Security", "Platform"}, "system-integrity-protection-by-profiler", "1"},
                   {{"Security", "Platform"}, "activation-lock", "0"},
                   {{"Battery"}, "cycle-count", "88"},
                   {{"Battery"}, "condition", "Good"},
                   {{"Battery"}, "maximum-capacity", "83%"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "model", "APPLE SSD AP0512Z"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "size", "500"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "size~base-value", "500277792768"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "smart-status", "Verified"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "partitions", "3"},
                   {{"Storage", "Physical-disks", "HDD:2"}, "interface", "NVMe"},
                   {{"Storage", "Physical-disks", "HDD:2"}, "link-speed", "16.0 GT/s"},
                   {{"Storage", "Physical-disks", "HDD:2"}, "link-width", "x4"},
                   {{"Storage", "Physical-disks", "HDD:2"}, "trim-support", "1"},
                   {{"Storage", "Physical-disks", "HDD:3"}, "model", "APPLE SSD AP1024Z"},
                   {{"Storage", "Physical-disks", "HDD:3"}, "interface", "Apple Fabric"},
                   {{"Storage", "Physical-disks", "HDD:3"}, "medium", "ssd"},
                   {{"Storage", "Physical-disks", "HDD:3"}, "partitions", "2"},
                   {{"Storage", "Physical-disks", "HDD:4"}, kElement, kNone},
                   {{"Storage", "Physical-disks", "Removable:1"}, "interface", "USB"},
                   {{"Storage", "Physical-disks", "Removable:1"}, "internal", "0"},
                   {{"Storage", "Logical-disks", "partition:1"}, kValue, "Macintosh HD - Data"},
                   {{"Storage", "Logical-disks", "partition:1"}, "free~base-value", "437436678144"},
                   {{"Storage", "Logical-disks", "partition:1"}, "used%", "56"},
                   {{"Storage", "Logical-disks", "partition:1"}, "container", "disk3"},
                   {{"Storage", "Logical-disks", "partition:1"}, "writable", "1"},
                   {{"Storage", "Logical-disks", "partition:2"}, "file-sys", "Case-sensitive APFS"},
                   {{"Storage", "Logical-disks", "partition:2"}, "protocol", "USB"},
                   {{"Storage", "Logical-disks", "partition:3"}, "mount-point", "/"},
                   {{"Storage", "Logical-disks", "partition:3"}, "system-volume", "1"},
                   {{"Storage", "Logical-disks", "partition:3"}, "container", "disk3"},
                   {{"Storage", "Logical-disks", "partition:4"}, kElement, kNone},
                   {{"Video", "Displays", "display:1"}, kValue, "Color LCD"},
                   {{"Video", "Displays", "display:1"}, "built-in", "1"},
                   {{"Video", "Displays", "display:1"}, "main", "1"},
                   {{"Video", "Displays", "display:1"}, "pixels", "3024 x 1964"},
                   {{"Video", "Displays", "display:1"}, "refresh-rate", "120.00Hz"},
                   {{"Video", "Displays", "display:2"}, "vendor-id", "10ac"},
                   {{"Video", "Displays", "display:2"}, "year", "2015"},
                   {{"Video", "Displays", "display:3"}, "mirrored", "0"},
                   {{"Video", "Displays", "display:3"}, "adapter", "Apple M1 Pro"},
                   {{"Video", "Displays", "display:4"}, kElement, kNone},
                   {{"Video", "Details", "Video-adapter:1"}, "cores", "14"},
                   {{"Network", "Details", "adapter:5"}, "subnet-masks", "255.255.0.0"},
                   {{"Network", "Details", "adapter:6"}, "dhcp-server", "192.168.1.1"},
                   {{"Network", "Details", "adapter:6"}, "service-order", "5"},
                   {{"Peripherals", "USB", "Device:1"}, kValue, "PSSD T7 Shield"},
                   {{"Peripherals", "USB", "Device:1"}, "link-speed", "10 Gb/s"},
                   {{"Peripherals", "USB", "Device:1"}, "vendor-id", "0x04e8"},
                   {{"Peripherals", "USB", "Device:2"}, kElement, kNone},
                   {{"Software-details", "Soft:1"}, "architecture", "arch_arm_i64"},
                   {{"Software-details", "Soft:1"}, "source", "apple"},
               });
}

TEST(Recordings, IntelWithHardDisk) {
  ToolOutputs tools;
  tools.sysctl = copy_text("machdep.cpu.brand_string: Intel(R) Core(TM) i3\nkern.hv_vmm_present: 0\n");
  tools.csrutil = copy_text("System Integrity Protection status: enabled.\n");
  expect_facts("intel-15.3", &tools,
               {
                   {{"Platform"}, "system", "macOS 15.3 (24D5040f)"},
                   {{"Platform"}, "model-name", "Mac mini"},
                   {{"Platform"}, "chip", kNone},
                   {{"Platform"}, "core-count", "4"},
                   {{"Platform"}, "memory", "8 GB"},
                   {{"Platform"}, "memory-type", kNone},
                   {{"Platform"}, "memory-ecc", "0"},
                   {{"Platform"}, "memory-upgradeable", "1"},
                   {{"Platform"}, "virtual-machine", "0"},
                   {{"Platform"}, "laptop", kNone},
                   {{"Platform"}, "rosetta", kNone},
                   {{"Security", "Platform"}, "system-integrity-protection", "1"},
                   {{"Security", "Platform"}, "system-integrity-protection-by-profiler", "0"},
                   {{"Storage", "Physical-disks", "HDD:3"}, kElement, kNone},
                   {{"Storage", "Details", "HDD:1"}, "medium", "Solid State"},
                   {{"Storage", "Details", "HDD:1"}, "trim-support", "0"},
                   {{"Storage", "Details", "HDD:1"}, "internal", "1"},
                   {{"Storage", "Details", "HDD:2"}, "medium", "Rotational"},
                   {{"Storage", "Details", "HDD:2"}, "rotational-rate", "7200"},
                   {{"Storage", "Details", "HDD:2"}, "bsd-name", "disk1"},
                   {{"Storage", "Details", "partition:4"}, "bsd-name", "disk0s4"},
                   {{"Storage", "Details", "partition:4"}, "disk", "P3-128"},
                   {{"Storage", "Details", "partition:4"}, "writable", "0"},
                   {{"Storage", "Details", "partition:9"}, "content", "Apple_APFS"},
                   {{"Storage", "Details", "partition:11"}, kElement, kNone},
                   {{"Storage", "Logical-disks", "partition:11"}, "mount-point", "/System/Volumes/Data"},
                   {{"Storage", "Logical-disks", "partition:11"}, "disk", "ST1000DM010-2EP102"},
                   {{"Storage", "Logical-disks", "partition:12"}, "mount-point", "/"},
                   {{"Storage", "Logical-disks", "partition:12"}, "bsd-name", "disk2s4s1"},
                   {{"Storage", "Logical-disks", "partition:13"}, kElement, kNone},
                   {{"Video", "Displays", "display:1"}, "vendor-id", "1e6d"},
                   {{"Video", "Displays", "display:1"}, "week", "8"},
                   {{"Video", "Displays", "display:1"}, "built-in", kNone},
                   {{"Video", "Details", "Video-adapter:1"}, "vram-shared", "1536 MB"},
                   {{"Network", "Details", "adapter:1"}, "link-speed", "1000baseT"},
                   {{"Network", "Details", "adapter:1"}, "link-options", "full-duplex, flow-control"},
                   {{"Network", "Details", "adapter:2"}, "config-method", "VPN"},
                   {{"Software-details", "Soft:9"}, "source", "apple"},
               });
}

TEST(Recordings, VirtualMac) {
  expect_facts("virtual-mac-26.6", nullptr,
               {
                   {{"Platform"}, "virtual-machine", "1"},
                   {{"Platform"}, "core-count", "3"},
                   {{"Platform"}, "memory", "7 GB"},
                   {{"Platform"}, "laptop", "0"},
                   {{"Battery"}, kElement, kNone},
                   {{"Storage", "Physical-disks", "HDD:1"}, "medium", "ssd"},
                   {{"Storage", "Physical-disks", "HDD:1"}, "partitions", "2"},
                   {{"Storage", "Physical-disks", "HDD:2"}, kElement, kNone},
                   {{"Storage", "Physical-disks", "Removable:1"}, kElement, kNone},
                   {{"Storage", "Logical-disks", "partition:1"}, kValue, "Data"},
                   {{"Storage", "Logical-disks", "partition:2"}, "mount-point", "/"},
                   {{"Storage", "Logical-disks", "partition:3"}, kElement, kNone},
               });
}

TEST(Recordings, HardwareAndApplicationsAlone) {
  expect_facts("apple-silicon-14.4", nullptr,
               {{{"Platform"}, "chip", "Apple M1 Pro"},
                {{"Platform"}, "boot-loader", "10151.101.3"},
                {{"Security", "Platform"}, "activation-lock", "0"}});
  expect_facts("apps-14.4", nullptr,
               {{{"Software-details", "Soft:2"}, "architecture", "arch_arm_i64"},
                {{"Software-details", "Soft:2"},
                 "signed-by",
                 "Software Signing, Apple Code Signing Certification Authority, Apple Root CA"},
                {{"Platform"}, kElement, kNone}});
}

TEST(Recordings, OldSerialAta) {
  expect_facts("sata-10.10", nullptr,
               {{{"Storage", "Details", "HDD:1"}, "medium", "Rotational"},
                {{"Storage", "Details", "HDD:1"}, "bsd-name", "disk0"},
                {{"Storage", "Details", "partition:2"}, "content", "Apple_HFS"},
                {{"Storage", "Details", "partition:2"}, "writable", "1"},
                {{"Storage", "Details", "partition:4"}, kElement, kNone}});
}

TEST(Recordings, PortableOf2011) {
  expect_facts("macbook-pro-10.7", nullptr,
               {{{"Platform"}, "smc", "1.69f3"},
                {{"Platform"}, "laptop", "1"},
                {{"Battery"}, "cycle-count", "360"},
                {{"Battery"}, "current-capacity", "6628"},
                {{"Battery"}, "fully-charged", "1"},
                {{"Battery"}, "charger-connected", "0"},
                {{"Storage", "Details", "HDD:1"}, "rotational-rate", "5400"},
                {{"Video", "Displays", "display:1"}, "built-in", "1"},
                {{"Network", "Details", "adapter:4"}, "phy-modes", "802.11 a/b/g/n"},
                {{"Network", "Details", "adapter:4"}, "country-code", "US"},
                {{"Peripherals", "Bluetooth"}, "manuf", "Broadcom"}});
}

TEST(Recordings, PortableOf2006) {
  expect_facts("macbook-10.4", nullptr,
               {{{"Platform"}, "smc", "1.17f0"},
                {{"Storage", "Details", "HDD:1"}, "bsd-name", "disk0"},
                {{"Peripherals", "Bluetooth"}, "manuf", "Cambridge Silicon Radio"}});
}

}  // namespace
