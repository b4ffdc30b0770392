#include "zxml/asset_info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <climits>
#include <string>

#include "tests/collectors/tree_helpers.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

AssetSummary imac_summary() {
  AssetSummary summary = {};
  summary.user_name = "jdoe";
  summary.platform_uuid = "00000000-0000-1000-8000-001EC20A112B";
  summary.os_name = "Mac OS X v10.6 (Snow Leopard)";
  summary.os_update = "Update 8";
  summary.os_version = "10.6.8 (10K549)";
  summary.processor_packages = "1";
  summary.processor_cores = "2";
  summary.clock_speed = "3060";
  summary.processor_type = "Intel Core i3";
  summary.processor_vendor = "GenuineIntel";
  summary.machine_model = "iMac11,2";
  summary.manufacturer = "Apple Inc.";
  summary.physical_memory = "4096";
  summary.video_memory = "256";
  summary.display_resolution = "1920 x 1080";
  summary.display_diagonal = "21";
  summary.disk_size = "500";
  return summary;
}

AssetNetwork office_network() {
  AssetNetwork network = {};
  network.workgroup = "OFFICE";
  network.host_name = "office-imac";
  network.hardware_address = "00-1E-C2-0A-11-2B";
  network.ip_address = "10.0.0.5";
  network.manual = true;
  return network;
}

// The text of the tree that a normal scan with this snapshot and model gives.
std::string asset_info(const InventoryTree& snapshot, const char* machine_model = "iMac11,2") {
  AssetSummary summary = imac_summary();
  summary.machine_model = machine_model;
  const AssetNetwork network = office_network();
  const auto tree = build_asset_info(
      {1, snapshot, "20120118153045.000000+120", summary, network, "Office iMac", "W80000000AA", "scanner"});
  return tree_text(*tree);
}

// The tree of a normal scan that learned nothing but this snapshot.
std::unique_ptr<InventoryTree> bare_asset_info(const InventoryTree& snapshot) {
  const AssetSummary summary = {};
  const AssetNetwork network = {};
  return build_asset_info({1, snapshot, nullptr, summary, network, nullptr, nullptr, nullptr});
}

const Value& monitor_count(const InventoryTree& tree) {
  return tree.top().find_child("control")->find_attribute("monitor-count")->value();
}

TEST(AssetInfo, WritesAllFactsInTheirOrder) {
  EXPECT_EQ(asset_info(empty_snapshot()),
            "+AssetInfo=\n"
            "hostname=office-imac\n"
            "ip-address=10.0.0.5\n"
            "static-ip=1\n"
            "int-name=Office iMac\n"
            "alias=Office iMac\n"
            "description=\n"
            "comment=\n"
            "inv-number=\n"
            "login=scanner\n"
            "user-name=jdoe\n"
            "asset-type=natMacOS\n"
            "virtual-type=nvtPhysical\n"
            "scan-type=nstSSH\n"
            "scan-subtype=sstService\n"
            "auto-icon-type=nitMacDesktop\n"
            "icon-type=nitMacDesktop\n"
            "first-scan=20120118153045.000000+120\n"
            "last-scan=20120118153045.000000+120\n"
            "snapshot-list=20120118153045.000000+120\n"
            "snapshot-types=mac:1\n"
            "mac-address=00-1E-C2-0A-11-2B\n"
            "uuid=00000000-0000-1000-8000-001EC20A112B\n"
            "serial-number=W80000000AA\n"
            "asset-tag=1234567890000\n"
            "*control=\n"
            "domain=OFFICE\n"
            "os-name=Mac OS X v10.6 (Snow Leopard)\n"
            "os-sp=Update 8\n"
            "os-ver=10.6.8 (10K549)\n"
            "os-manuf=Apple Inc.\n"
            "cpu-count=1\n"
            "cpu-count-virtual=2\n"
            "cpu-speed=3060\n"
            "cpu-model=Intel Core i3\n"
            "cpu-manuf=GenuineIntel\n"
            "system-model=iMac11,2\n"
            "system-manuf=Apple Inc.\n"
            "chassis-manuf=Apple Inc.\n"
            "mb-manuf=Apple Inc.\n"
            "phys-memory=4096\n"
            "video-ram=256\n"
            "video-res=1920 x 1080\n"
            "monitor-count=0\n"
            "monitor-diag=21\n"
            "hdd-capacity=500\n"
            "fw-status=5\n"
            "-\n");
}

TEST(AssetInfo, WritesAbsentTextsAsEmptyOnes) {
  const auto tree = bare_asset_info(empty_snapshot());
  for (const auto& attribute : tree->top().attributes()) {
    EXPECT_EQ(attribute->value().kind(), Value::Kind::text) << attribute->name();
  }
  const std::string text = tree_text(*tree);
  EXPECT_THAT(text, HasSubstr("hostname=\nip-address=\nstatic-ip=0\nint-name=\nalias=\n"));
  EXPECT_THAT(text, HasSubstr("virtual-type=nvtPhysical\n"));
  EXPECT_THAT(text, HasSubstr("domain=\nos-name=\nos-sp=\nos-ver=\nos-manuf=Apple Inc.\n"));
}

TEST(AssetInfo, RecognisesVirtualMachinesByTheirModelInAnyCase) {
  const struct {
    const char* model;
    const char* type;
  } cases[] = {
      {"VMware7,1", "nvtVMware"},
      {"vIrTuAlBoX", "nvtVirtualBox"},
      {"Parallels12,1", "nvtParallels"},
      {"parallels on vmware", "nvtVMware"},
      {"Parallels VirtualBox", "nvtVirtualBox"},
      {"MacBookPro8,1", "nvtPhysical"},
      {"", "nvtPhysical"},
      {nullptr, "nvtPhysical"},
  };
  for (const auto& expected : cases) {
    EXPECT_THAT(asset_info(empty_snapshot(), expected.model),
                HasSubstr(std::string("\nvirtual-type=") + expected.type + "\n"))
        << (expected.model ? expected.model : "(none)");
  }
}

TEST(AssetInfo, CountsMonitorsAsAnInteger) {
  InventoryTree snapshot = empty_snapshot();
  for (const char* path :
       {"/Video/Monitors/Monitor:1", "/Video/Monitors/Monitor:2", "/Video/Monitors/Monitor:3"})
    snapshot.set_tag_value(path, Value());
  const auto tree = bare_asset_info(snapshot);
  EXPECT_EQ(monitor_count(*tree).kind(), Value::Kind::int64);
  EXPECT_EQ(monitor_count(*tree).int64(), 3);
}

TEST(AssetInfo, CountsNoMonitorsAsAText) {
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_tag_value("/Video/Adapters", Value());
  const auto tree = bare_asset_info(snapshot);
  EXPECT_STREQ(monitor_count(*tree).text(), "0");
}

// Adds a partition to a snapshot: its free space in bytes and the used percentage.
void add_partition(InventoryTree& snapshot, const std::string& path, const char* name, const char* free_bytes,
                   int64_t used) {
  snapshot.set_tag_value(path.c_str(), text_value(name));
  snapshot.set_attribute((path + "/free").c_str(), Value(int64_t{1}), "base-value", free_bytes);
  snapshot.set_attribute((path + "/used%").c_str(), Value(used));
}

// What is between the last figure and the end of the control summary.
std::string disks_of(const InventoryTree& snapshot) {
  const std::string text = asset_info(snapshot);
  const std::string before = "\nhdd-capacity=500\n";
  const size_t start = text.find(before) + before.size();
  return text.substr(start, text.find("fw-status=", start) - start);
}

constexpr char kFirst[] = "/Storage/Logical-disks/partition:1";
constexpr char kSecond[] = "/Storage/Logical-disks/partition:2";
constexpr char kThird[] = "/Storage/Logical-disks/partition:3";

TEST(AssetInfo, NumbersDisksByTheirPositionAmongAllPartitions) {
  InventoryTree snapshot = empty_snapshot();
  add_partition(snapshot, kFirst, "Macintosh HD", "1000", 37);
  snapshot.set_attribute((std::string(kFirst) + "/mount-point").c_str(), text_value("/"));
  snapshot.set_tag_value(kSecond, text_value("No free space"));
  add_partition(snapshot, kThird, "Data", "2000", 0);
  snapshot.set_attribute((std::string(kThird) + "/mount-point").c_str(), text_value("/Volumes/Data"));
  EXPECT_EQ(disks_of(snapshot),
            "disk:1=Macintosh HD\n"
            "~free=1000\n"
            "~free%=0\n"
            "~sys=1\n"
            "disk:3=Data\n"
            "~free=2000\n"
            "~free%=0\n");
}

TEST(AssetInfo, WritesTheUpperHalfOfTheFreePercentage) {
  const struct {
    int64_t used;
    const char* text;
  } cases[] = {
      {0, "0"},
      {37, "0"},
      {100, "0"},
      {101, "-1"},
      {INT64_MAX, "-2147483648"},
      {-1, "0"},
      {100 - (int64_t{7} << 32), "7"},
      {INT64_MIN, "-2147483648"},
  };
  for (const auto& expected : cases) {
    InventoryTree snapshot = empty_snapshot();
    add_partition(snapshot, kFirst, "HD", "1000", expected.used);
    EXPECT_EQ(disks_of(snapshot), std::string("disk:1=HD\n~free=1000\n~free%=") + expected.text + "\n")
        << expected.used;
  }
}

TEST(AssetInfo, LacksOnlyWhatAPartitionDoesNotSay) {
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute((std::string(kFirst) + "/free").c_str(), text_value("1"));
  snapshot.set_attribute((std::string(kFirst) + "/used%").c_str(), text_value("200"));
  snapshot.set_attribute((std::string(kFirst) + "/mount-point").c_str(), Value(int64_t{47}));
  EXPECT_EQ(disks_of(snapshot), "disk:1=\n~free%=0\n");
}

TEST(AssetInfo, ListsNoDisksWithoutStorage) {
  InventoryTree snapshot = empty_snapshot();
  EXPECT_EQ(disks_of(snapshot), "");
  snapshot.set_tag_value("/Storage/Physical-disks", Value());
  EXPECT_EQ(disks_of(snapshot), "");
}

// A debug scan's file, with its header in plain text.
class DebugScan : public testing::Test {
 protected:
  void build(const char* name, const AssetNetwork& network, const std::string& raw_output) {
    INVfile container(1);
    build_debug_asset_info(container, name, network, raw_output.data(), raw_output.size());
    EXPECT_TRUE(container.frees_borrowed_data);
    const Bytes bytes = container.build(HeaderForm::plain);
    file_.assign(reinterpret_cast<const char*>(bytes.data()), bytes.length());
    header_ = file_.substr(file_.find("[H]\n"));
    header_.resize(header_.size() - 14);
  }
  // A section, decompressed.
  std::string section(int number) const {
    unsigned offset = 0;
    unsigned length = 0;
    const size_t entry = header_.find("[" + std::to_string(number) + "]\n");
    EXPECT_EQ(std::sscanf(header_.c_str() + entry, "[%*d]\noffset=%u\nlength=%u\n", &offset, &length), 2);
    std::string text(1 << 16, '\0');
    uLongf size = text.size();
    // The trailer after a tree's stream is ignored.
    z_stream stream = {};
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(file_.data() + offset));
    stream.avail_in = length;
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(size);
    EXPECT_EQ(inflateInit(&stream), Z_OK);
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    text.resize(stream.total_out);
    inflateEnd(&stream);
    return text;
  }

  std::string file_;
  std::string header_;
};

TEST_F(DebugScan, HoldsAReducedTreeAndTheUntouchedOutput) {
  const std::string raw("<?xml version=\"1.0\"?>\n\0\xFF<plist/>", 33);
  build("office-imac", office_network(), raw);
  EXPECT_THAT(header_, MatchesRegex("\\[H\\]\ncount=2\nsnapshotcount=0\n"
                                    "\\[0\\]\noffset=0\nlength=[0-9]+\ntype=assetinfo\n"
                                    "\\[1\\]\noffset=[0-9]+\nlength=[0-9]+\ntype=customdata\nID=rawdata\n"));
  EXPECT_THAT(section(0), MatchesRegex("\xEF\xBB\xBF\\?zxml\n"
                                       "\\*AssetInfo=\n"
                                       "hostname=office-imac\n"
                                       "ip-address=10\\.0\\.0\\.5\n"
                                       "static-ip=1\n"
                                       "int-name=office-imac\n"
                                       "alias=office-imac\n"
                                       "description=\n"
                                       "comment=\n"
                                       "inv-number=\n"
                                       "login=\n"
                                       "user-name=\n"
                                       "asset-type=natMacOS\n"
                                       "virtual-type=nvtPhysical\n"
                                       "scan-type=nstNone\n"
                                       "scan-subtype=sstNone\n"
                                       "auto-icon-type=nitMacDesktop\n"
                                       "icon-type=nitMacDesktop\n"
                                       "first-scan=\n"
                                       "last-scan=\n"
                                       "snapshot-list=\n"
                                       "snapshot-types=\n"
                                       "mac-address=00-1E-C2-0A-11-2B\n"
                                       "uuid=\n"
                                       "serial-number=\n"
                                       "asset-tag=\n"
                                       "scan-attempt=[0-9]{14}\\.000000[+-][0-9]+\n"
                                       "error-message=Debug scan\n"));
  EXPECT_EQ(section(1), raw);
}

TEST_F(DebugScan, KeepsEmptyOutput) {
  build(nullptr, AssetNetwork{}, "");
  EXPECT_THAT(section(0), HasSubstr("hostname=\nip-address=\nstatic-ip=0\nint-name=\n"));
  EXPECT_THAT(section(0), Not(HasSubstr("control")));
  EXPECT_EQ(section(1), "");
}

}  // namespace
