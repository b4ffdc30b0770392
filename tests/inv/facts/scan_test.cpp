#include "inv/facts/scan.h"

#include <gtest/gtest.h>

#include "inv/base/sha256.h"
#include "inv/maker.h"

namespace {

TEST(Scan, IsKnownByTheFilesBytesTheMachineAndTheTime) {
  const std::string file = maker::file();
  const inv::Scan scan = inv::scan_of(*maker::open(file));
  EXPECT_EQ(scan.id, inv::hexadecimal(inv::sha256(file)));
  EXPECT_EQ(scan.machine, "C02TEST00001");
  EXPECT_EQ(scan.name, "Office Mac");
  EXPECT_EQ(scan.file, "test.inv");
  EXPECT_EQ(scan.timestamp, "20120118153045.000000+120");
  EXPECT_EQ(scan.time, "2012-01-18T13:30:45Z");
  EXPECT_FALSE(scan.damaged);
}

TEST(Scan, OfAFileWithAFaultIsDamaged) {
  std::string file = maker::file();
  file[20] = static_cast<char>(file[20] ^ 0xFF);
  EXPECT_TRUE(inv::scan_of(*maker::open(file)).damaged);
}

TEST(Scan, HoldsTextWhateverTheFileHolds) {
  EXPECT_EQ(
      inv::scan_of(*maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhostname=caf\xE9\n")))
          .machine,
      "caf\uFFFD");
}

}  // namespace
