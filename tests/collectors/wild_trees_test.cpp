// The collectors over random trees, in which keys are missing, of the wrong kind, nested and absurd.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <random>
#include <string>

#include "collectors/applications.h"
#include "collectors/memory.h"
#include "collectors/network_adapters.h"
#include "collectors/operating_system.h"
#include "collectors/processors.h"
#include "tests/collectors/tree_helpers.h"

namespace {

constexpr const char* kDataTypes[] = {"SPHardwareDataType", "SPMemoryDataType", "SPNetworkDataType",
                                      "SPSoftwareDataType", "SPApplicationsDataType"};

constexpr const char* kKeys[] = {"_items",
                                 "_name",
                                 "packages",
                                 "number_processors",
                                 "cpu_type",
                                 "l2_cache",
                                 "l2_cache_core",
                                 "l3_cache",
                                 "l3_cache_core",
                                 "current_processor_speed",
                                 "dimm_status",
                                 "dimm_size",
                                 "dimm_speed",
                                 "dimm_type",
                                 "dimm_manufacturer",
                                 "physical_memory",
                                 "interface",
                                 "type",
                                 "ip_address",
                                 "SubnetMasks",
                                 "Ethernet",
                                 "MAC_Address",
                                 "IPv4",
                                 "Router",
                                 "item0",
                                 "item1",
                                 "os_version",
                                 "kernel_version",
                                 "uptime",
                                 "64bit_kernel_and_kexts",
                                 "version",
                                 "lastModified",
                                 "info",
                                 "path",
                                 "runtime_environment",
                                 "has64BitIntelCode"};

constexpr const char* kTexts[] = {"",
                                  " ",
                                  "ok",
                                  "yes",
                                  "4 GB",
                                  "1,5 GB",
                                  "nan GB",
                                  "1e40 TB",
                                  "GB",
                                  "inf GHz",
                                  "2.4 GHz",
                                  "00:1e:c2",
                                  "\xff",
                                  "a\nb\r\nc",
                                  "up 2:03:04:05",
                                  "Mac OS X 10.6.8 (10K549)",
                                  "20110112153045.000000+060"};

constexpr int64_t kNumbers[] = {0, 1, 2, -1, 1025, 2000000000, INT64_MAX, INT64_MIN};

class WildTree {
 public:
  explicit WildTree(unsigned seed) : random_(seed), tree_(empty_profiler()) {
    for (const char* data_type : kDataTypes) {
      const int fields = number_below(30);
      for (int i = 0; i < fields; ++i) tree_.set_attribute(wild_path(data_type).c_str(), wild_value());
    }
  }

  InventoryTree& tree() { return tree_; }

 private:
  int number_below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  template <typename Element, size_t count>
  Element one_of(const Element (&elements)[count]) {
    return elements[random_() % count];
  }

  std::string wild_path(const char* data_type) {
    std::string path = std::string("/") + data_type + "/_items/item" + std::to_string(number_below(3));
    for (int depth = number_below(3); depth >= 0; --depth) path += std::string("/") + one_of(kKeys);
    return path;
  }

  Value wild_value() {
    Value value(one_of(kNumbers));
    if (number_below(4) > 0) value.set_string(one_of(kTexts));
    return value;
  }

  std::mt19937 random_;
  InventoryTree tree_;
};

using Collector = void (*)(InventoryTree&, InventoryTree&);
constexpr Collector kCollectors[] = {collect_processors, collect_memory, collect_network_adapters, collect_os,
                                     collect_applications};

// What a collector shortens in the profiler tree it reads just so again.
TEST(WildTrees, GiveTheSameSnapshotTwice) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    WildTree wild(seed);
    for (const Collector collect : kCollectors) {
      const std::string text = collected(collect, wild.tree());
      EXPECT_EQ(collected(collect, wild.tree()), text) << seed;
    }
  }
}

}  // namespace
