#include "collectors/network_adapters.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

std::string adapters_of(std::initializer_list<Item> items) {
  InventoryTree profiler = profiler_with("SPNetworkDataType", items);
  return collected(collect_network_adapters, profiler);
}

std::string network(const std::string& lines) {
  return "+Snapshot=\n+Network=\n+Adapters=\n" + lines + "-\n-\n-\n";
}

TEST(HardwareAddress, IsInUpperCaseAndJoinedByDashes) {
  EXPECT_STREQ(hardware_address_text("00:1e:c2:0a:11:2b").get(), "00-1E-C2-0A-11-2B");
  EXPECT_STREQ(hardware_address_text("").get(), "");
}

TEST(NetworkAdapters, WritesEveryFactOfEach) {
  EXPECT_EQ(network("*net-adapter:1=Ethernet\nbsd-device-name=en0\ntype=Ethernet\n"
                    "ip-address=10.0.0.5, 169.254.3.1\nip-subnet=255.255.255.0, 255.255.0.0\n"
                    "manuf-by-mac=00-1E-C2\nmac-address=00-1E-C2-0A-11-2B\ndefault-gateway=10.0.0.1\n"
                    "*net-adapter:2=Bluetooth\ntype=PPP (PPPSerial)\n"),
            adapters_of({{{"_name", "Ethernet"},
                          {"interface", "en0"},
                          {"type", "Ethernet"},
                          {"ip_address/item0", "10.0.0.5"},
                          {"ip_address/item1", "169.254.3.1"},
                          {"SubnetMasks/item0", "255.255.255.0"},
                          {"SubnetMasks/item1", "255.255.0.0"},
                          {"Ethernet/MAC_Address", "00:1e:c2:0a:11:2b"},
                          {"IPv4/Router", "10.0.0.1"}},
                         {{"_name", "Bluetooth"}, {"type", "PPP (PPPSerial)"}}}));
}

TEST(NetworkAdapters, CountsEveryItem) {
  EXPECT_EQ(network("*net-adapter:1=\ntype=a\n*net-adapter:2=\n*net-adapter:3=c\n"),
            adapters_of({{{"type", "a"}}, {}, {{"_name", "c"}}}));
}

TEST(NetworkAdapters, LooksForMasksOnlyNextToTheAddresses) {
  EXPECT_EQ(network("*net-adapter:1=\ntype=a\n"),
            adapters_of({{{"type", "a"}, {"IPv4/SubnetMasks/item0", "255.0.0.0"}}}));
}

TEST(NetworkAdapters, UsesAShortHardwareAddressWholeAsItsMaker) {
  EXPECT_EQ(network("*net-adapter:1=\nmanuf-by-mac=00-1E\nmac-address=00-1E\n"),
            adapters_of({{{"Ethernet/MAC_Address", "00:1e"}}}));
}

TEST(NetworkAdapters, WritesNoHardwareAddressWithoutOne) {
  EXPECT_EQ(network("*net-adapter:1=\ntype=a\n"),
            adapters_of({{{"type", "a"}, {"Ethernet/MediaSubType", "none"}, {"IPv4/ConfigMethod", "DHCP"}}}));
}

TEST(NetworkAdapters, JoinsEmptyElementsToo) {
  EXPECT_EQ(network("*net-adapter:1=\nip-address=, 10.0.0.5\n"),
            adapters_of({{{"ip_address/item0", ""}, {"ip_address/item1", "10.0.0.5"}}}));
}

TEST(NetworkAdapters, TreatsAnythingButAListOfTextsAsNoAddress) {
  for (const Item& item : {
           Item{{"ip_address", "10.0.0.5"}},
           Item{{"ip_address/item0", 10}},
           Item{{"ip_address/item0", "10.0.0.5"}, {"ip_address/item1", 10}},
           Item{{"ip_address/item0", "10.0.0.5"}, {"ip_address/item1", "20120118133045.000000+0"}},
           Item{{"ip_address/address", "10.0.0.5"}},
           Item{{"ip_address/item0/item0", "10.0.0.5"}},
           Item{{"ip_address/item0", "10.0.0.5"}, {"ip_address/item1/a", "b"}},
       }) {
    Item adapter = item;
    adapter.push_back({"type", "a"});
    EXPECT_EQ(network("*net-adapter:1=\ntype=a\n"), adapters_of({adapter})) << item[0].name;
  }
  InventoryTree profiler = profiler_with("SPNetworkDataType", {{{"type", "a"}}});
  profiler.set_tag_value("/SPNetworkDataType/_items/item0/ip_address", Value());
  EXPECT_EQ(network("*net-adapter:1=\ntype=a\n"), collected(collect_network_adapters, profiler));
}

TEST(NetworkAdapters, JoinsTheAddressesAroundWhatLeavesNothingInTheTree) {
  EXPECT_EQ(network("*net-adapter:1=\nip-address=10.0.0.5, 169.254.3.1\n"),
            adapters_of({{{"ip_address/item1", "10.0.0.5"}, {"ip_address/item10", "169.254.3.1"}}}));
}

TEST(NetworkAdapters, JoinsTheTextsAmongTheMasks) {
  EXPECT_EQ(network("*net-adapter:1=\nip-subnet=255.255.255.0, 255.0.0.0\n"),
            adapters_of({{{"SubnetMasks/item0", 24},
                          {"SubnetMasks/item1", "255.255.255.0"},
                          {"SubnetMasks/item2", "20120118133045.000000+0"},
                          {"SubnetMasks/item3/mask", "255.255.0.0"},
                          {"SubnetMasks/item4", "255.0.0.0"}}}));
  EXPECT_EQ(network("*net-adapter:1=\ntype=a\n"),
            adapters_of({{{"type", "a"}, {"SubnetMasks/item0", 24}, {"SubnetMasks/mask", "255.0.0.0"}}}));
}

TEST(NetworkAdapters, LeavesOutOnlyTheValuesOfTheWrongKind) {
  EXPECT_EQ(network("*net-adapter:1=\nbsd-device-name=0\ntype=Ethernet\n"),
            adapters_of({{{"_name/item0", "Ethernet"},
                          {"interface", 0},
                          {"type", "Ethernet"},
                          {"Ethernet/MAC_Address", 12},
                          {"IPv4/Router/item0", "10.0.0.1"}}}));
  EXPECT_EQ(network("*net-adapter:1=\ntype=Ethernet\n"),
            adapters_of({{{"type", "Ethernet"}, {"Ethernet", "00:1e"}, {"IPv4", "10.0.0.1"}}}));
}

TEST(NetworkAdapters, WritesNothingWithoutItsDataType) {
  InventoryTree empty = empty_profiler();
  EXPECT_EQ(collected(collect_network_adapters, empty), "*Snapshot=\n");
  EXPECT_EQ(adapters_of({}), "*Snapshot=\n");
}

}  // namespace
