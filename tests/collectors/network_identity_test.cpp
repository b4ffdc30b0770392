#include "collectors/network_identity.h"

#include <gtest/gtest.h>

#include "tests/collectors/list_helpers.h"

namespace {

constexpr char kAddress[] = "00:1e:c2:0a:11:2b";
constexpr char kOtherAddress[] = "00:1e:c2:0a:11:2c";

Xml adapter(const char* interface, const char* ip, const char* address = kAddress,
            const char* method = "DHCP") {
  return dict({{"interface", text(interface)},
               {"ip_address", array({text(ip), text("169.254.3.1")})},
               {"IPv4", dict({{"ConfigMethod", text(method)}})},
               {"Ethernet", dict({{"MAC Address", text(address)}})}});
}

Xml idle_adapter(const char* interface) {
  return dict({{"interface", text(interface)}, {"Ethernet", dict({{"MAC Address", text(kAddress)}})}});
}

Xml network(std::initializer_list<Xml> adapters) { return data_type("SPNetworkDataType", adapters); }

Xml service(const char* address,
            const Xml& smb = dict({{"Workgroup", text("studio")}, {"NetBIOSName", text("office-mac")}})) {
  return dict({{"hardware_address", text(address)}, {"SMB", smb}});
}

Xml location(const char* active, std::initializer_list<Xml> services) {
  return dict(
      {{"spnetworklocation_isActive", text(active)}, {"spnetworklocation_services", array(services)}});
}

Xml locations(std::initializer_list<Xml> list) { return data_type("SPNetworkLocationDataType", list); }

NetworkIdentity identity_of(std::initializer_list<Xml> data_types, const char* given_ip = nullptr) {
  const CFRef<CFArrayRef> list = list_of(data_types);
  EXPECT_TRUE(list);
  return query_network_identity(list.get(), given_ip);
}

NetworkIdentity identity_among(std::initializer_list<Xml> adapters, const char* given_ip = nullptr) {
  return identity_of({network(adapters), locations({location("yes", {service(kAddress)})})}, given_ip);
}

TEST(NetworkIdentity, ComesFromTheAdapterAndItsService) {
  const NetworkIdentity identity = identity_among({adapter("en0", "10.0.0.5")});
  EXPECT_STREQ(identity.ip_address.get(), "10.0.0.5");
  EXPECT_STREQ(identity.hardware_address.get(), "00-1E-C2-0A-11-2B");
  EXPECT_STREQ(identity.workgroup.get(), "STUDIO");
  EXPECT_STREQ(identity.netbios_name.get(), "office-mac");
  EXPECT_FALSE(identity.manual);
}

// ---- Which adapter.

TEST(NetworkIdentity, PrefersTheFirstEthernetAdapter) {
  EXPECT_STREQ(identity_among({adapter("en1", "10.0.0.6"), adapter("en0", "10.0.0.5")}).ip_address.get(),
               "10.0.0.5");
  EXPECT_STREQ(identity_among({adapter("en0", "10.0.0.5"), adapter("en1", "10.0.0.6")}).ip_address.get(),
               "10.0.0.5");
}

TEST(NetworkIdentity, TriesTheNextAdapterAfterOneWithoutAddress) {
  EXPECT_STREQ(identity_among({idle_adapter("en0"), adapter("en1", "10.0.0.6")}).ip_address.get(),
               "10.0.0.6");
  EXPECT_STREQ(identity_among({idle_adapter("en0"), adapter("fw0", "10.0.0.9"), idle_adapter("en1"),
                               adapter("en2", "10.0.0.7")})
                   .ip_address.get(),
               "10.0.0.7");
}

// What the query prints to standard error.
std::string complaint_of(const char* given_ip) {
  testing::internal::CaptureStderr();
  identity_among({adapter("en0", "10.0.0.5"), adapter("en1", "10.0.0.6")}, given_ip);
  return testing::internal::GetCapturedStderr();
}

TEST(NetworkIdentity, ReportsAnAddressThatNoAdapterHas) {
  EXPECT_EQ(complaint_of("10.0.0.7"),
            "No network adapter has the address 10.0.0.7; the machine's identity stays empty\n");
  EXPECT_EQ(complaint_of(""), "No network adapter has the address ; the machine's identity stays empty\n");
}

TEST(NetworkIdentity, SaysNothingAboutAnAddressThatIsFoundOrNotGiven) {
  EXPECT_EQ(complaint_of("10.0.0.6"), "");
  EXPECT_EQ(complaint_of(nullptr), "");
  testing::internal::CaptureStderr();
  identity_among({idle_adapter("en0")});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(NetworkIdentity, DoesNotGoBackToAnEarlierAdapter) {
  EXPECT_EQ(identity_among({adapter("en1", "10.0.0.6"), idle_adapter("en0")}).ip_address, nullptr);
}

TEST(NetworkIdentity, ComparesInterfaceNamesWhole) {
  EXPECT_EQ(identity_among({adapter("en00", "10.0.0.6"), adapter("EN0", "10.0.0.7")}).ip_address, nullptr);
}

TEST(NetworkIdentity, TreatsAnythingButAListOfTextsAsNoAddress) {
  for (const Xml& addresses : {array({}), array({integer(10)}), array({text("10.0.0.5"), integer(10)}),
                               text("10.0.0.5"), dict({{"item0", text("10.0.0.5")}})}) {
    const Xml en0 = dict({{"interface", text("en0")}, {"ip_address", addresses}});
    EXPECT_STREQ(identity_among({en0, adapter("en1", "10.0.0.6")}).ip_address.get(), "10.0.0.6");
    EXPECT_EQ(identity_among({en0}, "10.0.0.5").hardware_address, nullptr) << addresses;
  }
}

TEST(NetworkIdentity, TakesTheAdapterWithTheGivenAddress) {
  const NetworkIdentity identity = identity_among(
      {adapter("en0", "10.0.0.5", kOtherAddress), adapter("ppp0", "10.0.0.6", kAddress, "Manual")},
      "10.0.0.6");
  EXPECT_STREQ(identity.ip_address.get(), "10.0.0.6");
  EXPECT_STREQ(identity.hardware_address.get(), "00-1E-C2-0A-11-2B");
  EXPECT_TRUE(identity.manual);
}

TEST(NetworkIdentity, ComparesTheGivenAddressWithTheFirstOfEach) {
  EXPECT_EQ(identity_among({adapter("en0", "10.0.0.5")}, "169.254.3.1").workgroup, nullptr);
}

TEST(NetworkIdentity, KeepsAGivenAddressThatNoAdapterHas) {
  const NetworkIdentity identity = identity_of({network({adapter("en0", "10.0.0.5", kAddress, "Manual")}),
                                                locations({location("yes", {service(kAddress)})})},
                                               "192.0.2.1");
  EXPECT_STREQ(identity.ip_address.get(), "192.0.2.1");
  EXPECT_FALSE(identity.manual);
  EXPECT_EQ(identity.hardware_address, nullptr);
  EXPECT_EQ(identity.workgroup, nullptr);
}

TEST(NetworkIdentity, TreatsAnEmptyAddressAsOneThatNoAdapterHas) {
  const NetworkIdentity identity = identity_among({adapter("en0", "10.0.0.5")}, "");
  EXPECT_STREQ(identity.ip_address.get(), "");
  EXPECT_EQ(identity.hardware_address, nullptr);
}

TEST(NetworkIdentity, IsManualOnlyByThatWord) {
  EXPECT_TRUE(identity_among({adapter("en0", "10.0.0.5", kAddress, "Manual")}).manual);
  for (const char* method : {"manual", "DHCP", "ManualDHCP", ""})
    EXPECT_FALSE(identity_among({adapter("en0", "10.0.0.5", kAddress, method)}).manual) << method;
}

// ---- Which service.

TEST(NetworkIdentity, ReadsTheFirstActiveLocation) {
  const Xml adapters = network({adapter("en0", "10.0.0.5")});
  const Xml home = service(kAddress, dict({{"Workgroup", text("home")}}));
  EXPECT_STREQ(identity_of({adapters, locations({location("no", {home}), location("yes", {service(kAddress)}),
                                                 location("yes", {home})})})
                   .workgroup.get(),
               "STUDIO");
  EXPECT_EQ(identity_of({adapters, locations({location("no", {home}), location("YES", {home})})}).workgroup,
            nullptr);
  // Once a location is active, the others do not count.
  EXPECT_EQ(identity_of({adapters, locations({location("yes", {}), location("yes", {home})})}).workgroup,
            nullptr);
}

TEST(NetworkIdentity, TakesTheServiceOfTheAdaptersAddress) {
  const Xml other = service(kOtherAddress, dict({{"Workgroup", text("other")}}));
  const Xml unnamed = dict({{"SMB", dict({{"Workgroup", text("vpn")}})}});
  EXPECT_STREQ(identity_of({network({adapter("en0", "10.0.0.5")}),
                            locations({location("yes", {unnamed, other, service(kAddress)})})})
                   .workgroup.get(),
               "STUDIO");
  // The two addresses are compared as the profiler writes them.
  EXPECT_EQ(identity_of({network({adapter("en0", "10.0.0.5")}),
                         locations({location("yes", {service("00:1E:C2:0A:11:2B")})})})
                .hardware_address,
            nullptr);
}

TEST(NetworkIdentity, HandsOutTheHardwareAddressOnlyOfAServicesAdapter) {
  const NetworkIdentity identity = identity_of(
      {network({adapter("en0", "10.0.0.5")}), locations({location("yes", {service(kOtherAddress)})})});
  EXPECT_STREQ(identity.ip_address.get(), "10.0.0.5");
  EXPECT_EQ(identity.hardware_address, nullptr);
  EXPECT_EQ(identity.workgroup, nullptr);
  EXPECT_EQ(identity.netbios_name, nullptr);
}

TEST(NetworkIdentity, MatchesAnEmptyAddressForAnAdapterWithoutOne) {
  const Xml en0 = dict({{"interface", text("en0")}, {"ip_address", array({text("10.0.0.5")})}});
  const NetworkIdentity identity = identity_of({network({en0}), locations({location("yes", {service("")})})});
  EXPECT_STREQ(identity.hardware_address.get(), "");
  EXPECT_STREQ(identity.workgroup.get(), "STUDIO");
}

TEST(NetworkIdentity, NamesNoComputerWithoutAWorkgroup) {
  const NetworkIdentity identity = identity_of(
      {network({adapter("en0", "10.0.0.5")}),
       locations({location("yes", {service(kAddress, dict({{"NetBIOSName", text("office-mac")}}))})})});
  EXPECT_STREQ(identity.hardware_address.get(), "00-1E-C2-0A-11-2B");
  EXPECT_EQ(identity.workgroup, nullptr);
  EXPECT_EQ(identity.netbios_name, nullptr);
}

TEST(NetworkIdentity, AcceptsAWorkgroupWithoutAComputersName) {
  const NetworkIdentity identity = identity_of(
      {network({adapter("en0", "10.0.0.5")}),
       locations({location("yes", {service(kAddress, dict({{"Workgroup", text("b\xC3\xBCro 2")}}))})})});
  // Only the letters a to z have an upper case here.
  EXPECT_STREQ(identity.workgroup.get(), "B\xC3\xBCRO 2");
  EXPECT_EQ(identity.netbios_name, nullptr);
}

// ---- Lists of another shape.

void expect_nothing(const NetworkIdentity& identity) {
  EXPECT_EQ(identity.ip_address, nullptr);
  EXPECT_EQ(identity.hardware_address, nullptr);
  EXPECT_EQ(identity.workgroup, nullptr);
  EXPECT_EQ(identity.netbios_name, nullptr);
  EXPECT_FALSE(identity.manual);
}

TEST(NetworkIdentity, IsEmptyWithoutItsDataTypes) {
  expect_nothing(query_network_identity(nullptr, nullptr));
  expect_nothing(identity_of({}));
  expect_nothing(identity_of({network({})}));
  expect_nothing(identity_of({locations({location("yes", {service(kAddress)})})}));
}

TEST(NetworkIdentity, SkipsWhatIsOfTheWrongKind) {
  expect_nothing(identity_of({text("SPNetworkDataType"), dict({{"_dataType", integer(1)}}),
                              dict({{"_dataType", text("SPNetworkDataType")}, {"_items", text("none")}}),
                              dict({{"_dataType", text("SPNetworkLocationDataType")},
                                    {"_items", dict({{"spnetworklocation_isActive", text("yes")}})}})}));
  const Xml odd = dict({{"interface", integer(0)}, {"ip_address", array({text("10.0.0.9")})}});
  const Xml bare = dict({{"interface", text("en0")},
                         {"ip_address", array({text("10.0.0.5")})},
                         {"IPv4", text("Manual")},
                         {"Ethernet", text(kAddress)}});
  const Xml odd_service = dict({{"hardware_address", integer(0)}, {"SMB", text("studio")}});
  const NetworkIdentity identity =
      identity_of({network({text("en0"), odd, bare}),
                   locations({text("yes"), dict({{"spnetworklocation_isActive", integer(1)}}),
                              location("yes", {text(""), odd_service, service("", text("studio"))})})});
  EXPECT_STREQ(identity.ip_address.get(), "10.0.0.5");
  EXPECT_STREQ(identity.hardware_address.get(), "");
  EXPECT_EQ(identity.workgroup, nullptr);
}

}  // namespace
