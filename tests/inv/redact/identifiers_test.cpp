#include "inv/redact/identifiers.h"

#include <gtest/gtest.h>

#include <string>

#include "inv/maker.h"

namespace {

using inv::IdentifierKind;
using Texts = std::vector<std::string_view>;

// The kind at the end of a path of tags from the tree's top on.
std::optional<IdentifierKind> kind_at(std::vector<std::string> tags, std::string_view attribute) {
  const inv::Document document = maker::document_of_tags(tags);
  return inv::Places().kind(maker::last_tag(document), attribute);
}

struct PlaceCase {
  std::vector<std::string> tags;
  const char* attribute;
  IdentifierKind kind;
};

TEST(IdentifierKind, KnowsThePlaces) {
  const PlaceCase cases[] = {
      {{"Snapshot"}, "hostname", IdentifierKind::text},
      {{"Snapshot"}, "domain", IdentifierKind::text},
      {{"Snapshot"}, "user-name", IdentifierKind::account},
      {{"Snapshot"}, "ip-address", IdentifierKind::addresses},
      {{"AssetInfo"}, "hostname", IdentifierKind::text},
      {{"AssetInfo"}, "user-name", IdentifierKind::account},
      {{"AssetInfo"}, "ip-address", IdentifierKind::addresses},
      {{"AssetInfo"}, "int-name", IdentifierKind::text},
      {{"AssetInfo"}, "alias", IdentifierKind::text},
      {{"AssetInfo"}, "description", IdentifierKind::text},
      {{"AssetInfo"}, "comment", IdentifierKind::text},
      {{"AssetInfo"}, "inv-number", IdentifierKind::text},
      {{"AssetInfo"}, "login", IdentifierKind::account},
      {{"AssetInfo"}, "mac-address", IdentifierKind::text},
      {{"AssetInfo"}, "uuid", IdentifierKind::text},
      {{"AssetInfo"}, "serial-number", IdentifierKind::serial},
      {{"AssetInfo", "control"}, "domain", IdentifierKind::text},
      {{"AssetInfo", "control"}, "disk:2", IdentifierKind::text},
      {{"Snapshot", "System", "Chassis"}, "serial", IdentifierKind::serial},
      {{"Snapshot", "System", "Computer-system"}, "uuid", IdentifierKind::text},
      {{"Snapshot", "Storage", "Physical-disks", "HDD:1"}, "serial", IdentifierKind::serial},
      {{"Snapshot", "Storage", "Physical-disks", "Removable:1"}, "serial", IdentifierKind::serial},
      {{"Snapshot", "Storage", "Logical-disks", "partition:12"}, "", IdentifierKind::text},
      {{"Snapshot", "Video", "Monitors", "Monitor:2"}, "serial", IdentifierKind::serial},
      {{"Snapshot", "Video", "Monitors", "Monitor:2"}, "serial-digital", IdentifierKind::number},
      {{"Snapshot", "Peripherals", "USB", "Device:3"}, "serial-number", IdentifierKind::serial},
      {{"Snapshot", "Network", "Adapters", "net-adapter:1"}, "", IdentifierKind::network_name},
      {{"Snapshot", "Network", "Adapters", "net-adapter:1"}, "ip-address", IdentifierKind::addresses},
      {{"Snapshot", "Network", "Adapters", "net-adapter:1"}, "default-gateway", IdentifierKind::addresses},
      {{"Snapshot", "Network", "Adapters", "net-adapter:1"}, "mac-address", IdentifierKind::text},
      {{"Snapshot", "Peripherals", "Printers", "Printer:1"}, "", IdentifierKind::text},
      {{"Snapshot", "Peripherals", "Printers", "Printer:1"}, "uri", IdentifierKind::uri},
      {{"Snapshot", "Peripherals", "Printers", "Printer:1"}, "print-server", IdentifierKind::addresses},
      {{"Snapshot", "Peripherals", "Printers", "Printer:1"}, "scanner-uuid", IdentifierKind::text},
      {{"Snapshot", "User-accounts", "usr-acc:jane"}, "", IdentifierKind::account},
      {{"Snapshot", "User-accounts", "usr-acc:jane"}, "fullname", IdentifierKind::full_name},
      {{"Snapshot", "User-accounts", "usr-acc:jane"}, "id", IdentifierKind::account_id},
      {{"Snapshot", "User-accounts", "usr-acc:jane"}, "group", IdentifierKind::account_id},
      {{"Snapshot", "Processes", "process:1"}, "user", IdentifierKind::account},
      {{"Snapshot", "Processes", "process:1"}, "cmd-line", IdentifierKind::secret},
      {{"Snapshot", "Environment", "env-var:HOME"}, "value", IdentifierKind::secret},
  };
  for (const PlaceCase& place : cases) {
    EXPECT_EQ(kind_at(place.tags, place.attribute), place.kind)
        << place.tags.back() << " " << place.attribute;
  }
}

TEST(IdentifierKind, IsNulloptForWhatAnyMachineCouldHave) {
  const std::pair<std::vector<std::string>, const char*> places[] = {
      {{"Snapshot"}, ""},
      {{"Snapshot"}, "timestamp"},
      {{"Snapshot", "Software", "Soft:1"}, ""},
      {{"Snapshot", "Software", "Soft:1"}, "version"},
      {{"Snapshot", "Storage", "Physical-disks", "HDD:1"}, "model"},
      {{"Snapshot", "Storage", "Logical-disks", "partition:1"}, "free"},
      {{"Snapshot", "Processes", "process:1"}, ""},
      {{"Snapshot", "OS", "os:1"}, "name"},
      {{"Snapshot", "Network", "Adapters", "net-adapter:1"}, "manuf-by-mac"},
      {{"Snapshot", "Video", "Monitors", "Monitor:1"}, "id"},
  };
  for (const auto& [tags, attribute] : places) {
    EXPECT_FALSE(kind_at(tags, attribute)) << tags.back() << " " << attribute;
  }
}

// The values of accounts and disks name folders, which are found in all texts.
TEST(IdentifierKind, IsNulloptForWhatIsFoundByItsPath) {
  EXPECT_FALSE(kind_at({"Snapshot", "User-accounts", "usr-acc:jane"}, "hdir"));
  EXPECT_FALSE(kind_at({"Snapshot", "Storage", "Logical-disks", "partition:1"}, "mount-point"));
}

TEST(IdentifierKind, OfAnUnknownPlaceIsThatOfTheSameNameElsewhere) {
  EXPECT_EQ(kind_at({"Snapshot", "Later", "thing:1"}, "serial"), IdentifierKind::serial);
  EXPECT_EQ(kind_at({"Snapshot", "Later", "thing:1"}, "disk:7"), IdentifierKind::text);
  EXPECT_EQ(kind_at({"Snapshot", "Later", "usr-acc:jane"}, ""), IdentifierKind::account);
  EXPECT_EQ(kind_at({"Snapshot", "Later", "usr-acc:jane"}, "id"), IdentifierKind::account_id);
  EXPECT_EQ(kind_at({"Other"}, "hostname"), IdentifierKind::text);
  EXPECT_FALSE(kind_at({"Snapshot", "Later", "thing:1"}, "model"));
  EXPECT_FALSE(kind_at({"Snapshot", "Later", "thing:1"}, ""));
}

TEST(Places, KnowTheTagOfEachLine) {
  const inv::Document first = maker::document_of_tags({"Snapshot", "User-accounts", "usr-acc:jane"});
  const inv::Document second = maker::document_of_tags({"Snapshot", "Processes", "process:1"});
  inv::Places places;
  EXPECT_EQ(places.kind(maker::last_tag(first), "group"), IdentifierKind::account_id);
  EXPECT_EQ(places.kind(maker::last_tag(second), "cmd-line"), IdentifierKind::secret);
  EXPECT_FALSE(places.kind(maker::last_tag(second), "pid"));
  EXPECT_EQ(places.kind(maker::last_tag(first), ""), IdentifierKind::account);
}

TEST(IdentifiersIn, SeparatesAtControlCharacters) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::serial, "QX24-000417\r  \x01 tail "),
            (Texts{"QX24-000417", "tail"}));
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::text, " Jane's iMac, 2nd "), Texts{"Jane's iMac, 2nd"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::text, ""), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::text, " \r "), Texts{});
}

TEST(IdentifiersIn, TakesNamesOfAccountsApart) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account, "jane com.example.jane"),
            (Texts{"jane", "com.example.jane"}));
}

TEST(IdentifiersIn, LeavesTheSystemsAccounts) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account, "root"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account, "_www"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account, "rooty"), Texts{"rooty"});
}

TEST(IdentifiersIn, TakesTheWordsOfFullNamesToo) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::full_name, "Jane Q. van Doe-Example"),
            (Texts{"Jane Q. van Doe-Example", "Jane", "Doe-Example"}));
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::full_name, "Doe, Zo\u00EB (Sales)"),
            (Texts{"Doe, Zo\u00EB (Sales)", "Doe", "Zo\u00EB"}));
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::full_name, "Jane"), Texts{"Jane"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::full_name, "Al 2024"), Texts{"Al 2024"});
}

TEST(IdentifiersIn, LeavesCommonWordsInEveryKindOfPlaceButSecrets) {
  for (const IdentifierKind kind : {IdentifierKind::text, IdentifierKind::account, IdentifierKind::full_name,
                                    IdentifierKind::network_name, IdentifierKind::addresses}) {
    EXPECT_EQ(inv::identifiers_in(kind, "Admin"), Texts{});
  }
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::secret, "Admin"), Texts{"Admin"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::text, "Macintosh HD"), Texts{});
}

TEST(IdentifiersIn, IgnoresPlaceholdersOfSerialNumbers) {
  for (const char* none : {"000000", "Not Available", "System Serial#", "None", "0.0", "-"}) {
    EXPECT_EQ(inv::identifiers_in(IdentifierKind::serial, none), Texts{}) << none;
  }
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::serial, "000001"), Texts{"000001"});
}

TEST(IdentifiersIn, LeavesIdsThatEveryMacCounts) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account_id, "501"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account_id, "999"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account_id, "1000"), Texts{"1000"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::account_id, "-2"), Texts{"-2"});
}

TEST(IdentifiersIn, TakesAddressesApart) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::addresses, "192.0.2.17, fe80::1%en0,127.0.0.1"),
            (Texts{"192.0.2.17", "fe80::1"}));
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::addresses, "::1, localhost, local, printer.example"),
            Texts{"printer.example"});
}

TEST(IdentifiersIn, TakesWhatFollowsAScheme) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::uri, "ipp://192.0.2.5/queue"), Texts{"192.0.2.5/queue"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::uri, "mdns:Office"), Texts{"Office"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::uri, "queue"), Texts{"queue"});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::uri, "file:///"), Texts{});
}

TEST(IdentifiersIn, NumbersOfZerosAreIgnored) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::number, "0"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::number, "10"), Texts{"10"});
}

TEST(IdentifiersIn, LeavesTheUsualNetworkNames) {
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::network_name, "Ethernet 1"), Texts{});
  EXPECT_EQ(inv::identifiers_in(IdentifierKind::network_name, "VPN (Example Ltd)"),
            Texts{"VPN (Example Ltd)"});
}

TEST(IsScannerWord, KnowsConstantsAndTimes) {
  for (const char* word :
       {"mac", "mac:1", "Apple Inc.", "20120118153045.000000+120", "20120118153045.000000-060",
        "20120118153045.000000+0", "20120118153045.000000-60", "00000003042109.000000:000"}) {
    EXPECT_TRUE(inv::is_scanner_word(word)) << word;
  }
  for (const char* text :
       {"", "Mac", "apple", "20120118153045.000000", "20120118153045.000000+", "20120118153045.000000+1200",
        "2012011815304x.000000+120", "20120118153045.000000 120", "20120118153045.000000+1x0",
        "20120118153045:000000+120"}) {
    EXPECT_FALSE(inv::is_scanner_word(text)) << text;
  }
}

}  // namespace
