#include "extended/network_details.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kNetwork[] = "SPNetworkDataType";
constexpr char kAirPort[] = "SPAirPortDataType";

std::string adapters(const std::string& lines) {
  return in_snapshot("+Network=\n+Details=\n" + lines + "-\n-\n");
}

TEST(NetworkDetails, HaveAddressesServersAndLink) {
  Mac mac;
  add_item(mac.profiler, kNetwork,
           {{"interface", "en0"},
            {"IPv4/Addresses/item0", "192.0.2.1"},
            {"IPv4/Addresses/item1", "192.0.2.2"},
            {"IPv4/SubnetMasks/item0", "255.255.255.0"},
            {"IPv4/SubnetMasks/item1", "255.255.0.0"},
            {"IPv4/ConfigMethod", "DHCP"},
            {"IPv6/Addresses/item0", "2001:db8::1"},
            {"IPv6/ConfigMethod", "Automatic"},
            {"DNS/ServerAddresses/item0", "192.0.2.53"},
            {"DNS/SearchDomains/item0", "example.com"},
            {"dhcp/dhcp_server_identifier", "192.0.2.254"},
            {"Ethernet/MediaSubType", "1000baseT"},
            {"Ethernet/MediaOptions/item0", "full-duplex"},
            {"Ethernet/MediaOptions/item1", "flow-control"},
            {"spnetwork_service_order", 0}});
  EXPECT_EQ(written(collect_network_details, mac), adapters("*adapter:1=\n"
                                                            "ipv4-addresses=192.0.2.1, 192.0.2.2\n"
                                                            "subnet-masks=255.255.255.0, 255.255.0.0\n"
                                                            "config-method=DHCP\n"
                                                            "ipv6-addresses=2001:db8::1\n"
                                                            "ipv6-config-method=Automatic\n"
                                                            "dns-servers=192.0.2.53\n"
                                                            "search-domains=example.com\n"
                                                            "dhcp-server=192.0.2.254\n"
                                                            "link-options=full-duplex, flow-control\n"
                                                            "link-speed=1000baseT\n"
                                                            "service-order=0\n"));
}

TEST(NetworkDetails, KeepTheNumbersOfTheAdapters) {
  Mac mac;
  add_item(mac.profiler, kNetwork, {{"interface", "en0"}});
  add_item(mac.profiler, kNetwork, {{"spnetwork_service_order", 4}});
  EXPECT_EQ(written(collect_network_details, mac), adapters("*adapter:2=\nservice-order=4\n"));
}

TEST(NetworkDetails, JoinAWirelessCardByItsInterface) {
  Mac mac;
  add_item(mac.profiler, kNetwork, {{"interface", "en0"}});
  add_item(mac.profiler, kNetwork, {{"interface", "en1"}});
  add_item(mac.profiler, kAirPort, {{"spairport_software_information/spairport_family_version", "4.2"}});
  add_item(mac.profiler, kAirPort,
           holding("spairport_airport_interfaces",
                   {{{"spairport_wireless_locale", "no interface"}},
                    {{"_name", "en1"},
                     {"spairport_wireless_card_type", "card"},
                     {"spairport_wireless_firmware_version", "1.0"},
                     {"spairport_wireless_country_code", "US"},
                     {"spairport_supported_phymodes", "802.11 a/b/g/n"},
                     {"spairport_wireless_locale", "FCC"}},
                    {{"_name", "awdl0"}, {"spairport_wireless_card_type", "other"}}}));
  EXPECT_EQ(written(collect_network_details, mac),
            adapters("*adapter:2=\ncard-type=card\nfirmware=1.0\ncountry-code=US\nphy-modes=802.11 "
                     "a/b/g/n\nlocale=FCC\n"));
}

TEST(NetworkDetails, SkipWhatIsNotAList) {
  Mac mac;
  add_item(mac.profiler, kNetwork,
           {{"IPv4/Addresses", "192.0.2.1"},
            {"DNS/ServerAddresses/first", "192.0.2.53"},
            {"IPv6/Addresses/item0", 5},
            {"Ethernet", "none"}});
  EXPECT_EQ(written(collect_network_details, mac), kEmptySnapshot);
}

}  // namespace
