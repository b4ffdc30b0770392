#include "inv/file/machine.h"

#include <gtest/gtest.h>

#include "inv/maker.h"
#include "zxml/deflate.h"

namespace {

std::string identity_of_text(const std::string& text) {
  return inv::machine_identity(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n" + text)));
}

// A debug file whose short tree and profiler's output hold these lines.
std::string debug_identity(const std::string& asset_lines, const std::string& hardware) {
  const std::string asset =
      maker::deflated("\xEF\xBB\xBF?zxml\n*AssetInfo=\n" + asset_lines) + std::string("\0\1ZXML", 6);
  const std::string raw = maker::deflated(
      "<plist><array><dict><key>_dataType</key><string>SPSoftwareDataType</string><key>serial_number</key>"
      "<string>OTHER</string></dict><dict><key>_dataType</key><string>SPHardwareDataType</string>"
      "<key>_items</key><array><dict>" +
      hardware + "</dict></array></dict></array></plist>");
  const std::string file = maker::container(
      asset + raw, "[H]\ncount=2\nsnapshotcount=0\n[0]\noffset=0\nlength=" + std::to_string(asset.size()) +
                       "\ntype=assetinfo\n[1]\noffset=" + std::to_string(asset.size()) +
                       "\nlength=" + std::to_string(raw.size()) + "\ntype=customdata\nID=rawdata\n");
  return inv::machine_identity(*maker::open(file));
}

std::string key(const std::string& name, const std::string& value) {
  return "<key>" + name + "</key>\n<string>" + value + "</string>\n";
}

TEST(Machine, IdentityPrefersWhatStaysTheSame) {
  EXPECT_EQ(inv::machine_identity(*maker::open(maker::file())), "C02TEST00001");
  EXPECT_EQ(inv::machine_name(*maker::open(maker::file())), "Office Mac");
  EXPECT_EQ(inv::scan_timestamp(*maker::open(maker::file())), "20120118153045.000000+120");
  const auto empty = maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\n"));
  EXPECT_EQ(inv::machine_identity(*empty), "test.inv");
  EXPECT_EQ(inv::scan_timestamp(*empty), "");
}

TEST(Machine, IdentityPrefersTheSerialNumberToTheUuid) {
  const auto identity = [](const std::string& lines) {
    return inv::machine_identity(*maker::open(
        maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=mac\n+System=\n" + lines + "-\n-\n")));
  };
  const std::string uuid = "*Computer-system=\nuuid=U-1\n", serial = "*Chassis=\nserial=S-1\n";
  EXPECT_EQ(identity(uuid + serial), "S-1");
  EXPECT_EQ(identity(uuid), "U-1");
  EXPECT_EQ(identity(""), "mac");
}

TEST(Machine, ADebugFileHasTheTimeOfItsAttempt) {
  const std::string section =
      maker::deflated("\xEF\xBB\xBF?zxml\n*AssetInfo=\nlast-scan=\nscan-attempt=now\n") +
      std::string("\0\1ZXML", 6);
  const auto inventory =
      maker::open(maker::container(section, "[H]\ncount=1\nsnapshotcount=0\n[0]\noffset=0\nlength=" +
                                                std::to_string(section.size()) + "\ntype=assetinfo\n"));
  EXPECT_EQ(inv::scan_timestamp(*inventory), "now");
}

constexpr const char* kPlaceholders[] = {"Not Available",
                                         "System Serial#",
                                         "NOT AVAILABLE",
                                         "Not Specified",
                                         "not applicable",
                                         "System Serial Number",
                                         "Serial Number",
                                         "Default string",
                                         "none",
                                         "n/a",
                                         "To Be Filled By O.E.M.",
                                         "Unknown",
                                         "INVALID",
                                         "(null)",
                                         "0",
                                         "000000000000",
                                         "0000-0000",
                                         "0.0",
                                         "0 0",
                                         "0123456789",
                                         "123456789",
                                         "1234567890",
                                         "FFFF-FFFF",
                                         "ffff",
                                         ""};

TEST(IsPlaceholder, KnowsWhatMakersLeaveWhereASerialNumberBelongs) {
  for (const char* text : kPlaceholders) EXPECT_TRUE(inv::is_placeholder(text)) << text;
}

TEST(IsPlaceholder, AcceptsWhatOnlyResemblesOne) {
  for (const char* text : {"C02TEST00001", "12345678", "01234567890", "0F0", "None1", "(null"}) {
    EXPECT_FALSE(inv::is_placeholder(text)) << text;
  }
}

TEST(Machine, APlaceholderIdentifiesNothing) {
  for (const char* serial : {"Not Available", " none ", "000000000000", "123456789", "   "}) {
    EXPECT_EQ(identity_of_text(
                  "+Snapshot=\nhostname=mac\n+System=\n*Computer-system=\nuuid=U-1\n*Chassis=\nserial=" +
                  std::string(serial) + "\n-\n-\n"),
              "U-1")
        << serial;
  }
  EXPECT_EQ(identity_of_text("+Snapshot=\nhostname=mac\n+System=\n*Computer-system=\n"
                             "uuid=00000000-0000-0000-0000-000000000000\n-\n-\n"),
            "mac");
  EXPECT_EQ(identity_of_text("+Snapshot=\nhostname=mac\n+System=\n*Computer-system=\n"
                             "uuid=FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF\n-\n-\n"),
            "mac");
}

TEST(Machine, ASerialNumberThatBeginsLikeAPlaceholderIsOne) {
  for (const char* serial : {"None1", "000000000001", "Unknow", "F00"}) {
    EXPECT_EQ(identity_of_text("+Snapshot=\n+System=\n*Chassis=\nserial=" + std::string(serial) + "\n-\n-\n"),
              serial);
  }
}

TEST(Machine, WithoutSerialNumberAndUuidItIsNameAndAddress) {
  EXPECT_EQ(debug_identity("hostname=STUDIO\nint-name=Studio iMac\nmac-address=00-00-5E-00-53-1A\n", ""),
            "STUDIO 00-00-5E-00-53-1A");
  EXPECT_EQ(debug_identity("hostname=\nint-name=Studio iMac\nmac-address=00-00-5E-00-53-1A\n", ""),
            "Studio iMac 00-00-5E-00-53-1A");
  EXPECT_EQ(debug_identity("mac-address=00-00-5E-00-53-1A\n", ""), "00-00-5E-00-53-1A");
}

TEST(Machine, ADebugFileHasTheIdentityOfAScan) {
  const std::string asset = "hostname=STUDIO\nmac-address=00-00-5E-00-53-1A\nserial-number=\nuuid=\n";
  EXPECT_EQ(debug_identity(asset, key("platform_UUID", "U-1") + key("serial_number", " S-1 ")), "S-1");
  EXPECT_EQ(debug_identity(asset, key("serial_number", "System Serial#") + key("platform_UUID", "U-1")),
            "U-1");
  EXPECT_EQ(
      debug_identity(asset, "<key>serial_number</key><integer>5</integer><key>x</key><string>S</string>"),
      "STUDIO 00-00-5E-00-53-1A");
}

TEST(Machine, TheTimeIsInUtc) {
  const auto time = [](const std::string& lines) {
    return inv::scan_time(
        *maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n")));
  };
  EXPECT_EQ(time("timestamp=20120118153045.000000+120\n"), "2012-01-18T13:30:45Z");
  EXPECT_EQ(time("timestamp=25550118153045.000000+420\n"), "2012-01-18T08:30:45Z");
  EXPECT_EQ(time("timestamp=20190312120000.000000+180\n*Scan=\ncalendar=ethiopic\n"), "2026-11-21T09:00:00Z");
  EXPECT_EQ(time("timestamp=yesterday\n"), "");
  EXPECT_EQ(time(""), "");
}

}  // namespace
