#include "inv/file/inventory.h"

#include <gtest/gtest.h>

#include "inv/file/zxml_parser.h"
#include "inv/maker.h"
#include "tests/zxml/layouts.h"

namespace {

TEST(Inventory, OpensBothTreesInEveryForm) {
  for (const int byte_order : {0, 1}) {
    for (const Layout layout : kLayouts) {
      for (const HeaderForm header : {HeaderForm::plain, HeaderForm::compressed}) {
        const auto inventory = maker::open(maker::file({byte_order, layout, header}));
        ASSERT_TRUE(inventory->snapshot());
        ASSERT_TRUE(inventory->asset());
        EXPECT_TRUE(inventory->faults.empty());
        EXPECT_EQ(inventory->snapshot()->text(), maker::text_of(*maker::snapshot()));
        EXPECT_EQ(inventory->asset()->text(), maker::text_of(*maker::asset()));
      }
    }
  }
}

TEST(Inventory, DamageInOneSectionLeavesTheOther) {
  std::string file = maker::file();
  file[40] = static_cast<char>(file[40] ^ 0x55);
  const auto inventory = maker::open(file);
  EXPECT_FALSE(inventory->snapshot());
  ASSERT_TRUE(inventory->asset());
  EXPECT_EQ(inventory->asset_top().text("hostname"), "OFFICE-MAC");
  ASSERT_EQ(inventory->faults.size(), 1u);
  EXPECT_EQ(inventory->faults[0].message.substr(0, 42), "snapshot section: the zlib stream is damag");
}

TEST(Inventory, AFaultInAPlainTextHasItsPlaceInTheFile) {
  const std::string text = "\xEF\xBB\xBF?zxml\n*Snapshot=\nbroken\n";
  const std::string section = "some bytes" + text + std::string(2, '\0');
  const auto inventory = maker::open(maker::container(
      section, "[H]\ncount=2\nsnapshotcount=1\n[0]\noffset=0\nlength=10\ntype=x\n[1]\noffset=10\nlength=" +
                   std::to_string(text.size() + 2) + "\ntype=snapshot\n"));
  ASSERT_EQ(inventory->faults.size(), 1u);
  EXPECT_EQ(inv::describe(inventory->faults[0]),
            "at byte 30 (line 3, byte 20 of the text): snapshot section: a line has no \"=\"");
}

TEST(Inventory, AFaultInACompressedTextHasItsSectionsPlace) {
  const auto inventory = maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nbroken\n"));
  ASSERT_EQ(inventory->faults.size(), 1u);
  EXPECT_EQ(inv::describe(inventory->faults[0]),
            "at byte 0 (line 3, byte 20 of the text): snapshot section: a line has no \"=\"");
}

TEST(Inventory, OpensTheRawDataOfADebugRun) {
  const auto inventory = maker::open(maker::debug_file("<plist/>"));
  EXPECT_FALSE(inventory->snapshot());
  ASSERT_TRUE(inventory->raw_data());
  EXPECT_EQ(*inventory->raw_data(), "<plist/>");
}

TEST(Inventory, OnlyRawDataWithoutASnapshotIsADebugFile) {
  EXPECT_TRUE(inv::is_debug_file(*maker::open(maker::debug_file("<plist/>"))));
  EXPECT_FALSE(inv::is_debug_file(*maker::open(maker::file())));
  EXPECT_FALSE(inv::is_debug_file(*maker::open(maker::container("", "[H]\ncount=0\nsnapshotcount=0\n"))));
  const std::string both =
      "[H]\ncount=2\nsnapshotcount=1\n[0]\noffset=0\nlength=0\ntype=snapshot\n"
      "[1]\noffset=0\nlength=0\ntype=customdata\nID=rawdata\n";
  EXPECT_FALSE(inv::is_debug_file(*maker::open(maker::container("", both))));
}

TEST(Inventory, RawDataThatIsDamagedOrTooLargeIsAFault) {
  const std::string file = maker::debug_file(std::string(100'000, 'x'));
  const auto inventory = inv::open_inventory("x", file, 99'999);
  EXPECT_FALSE(inventory->raw_data());
  ASSERT_EQ(inventory->faults.size(), 1u);
  // The asset section before it has taken its share.
  EXPECT_EQ(inventory->faults[0].message, "raw data section: it inflates to more than 99861 bytes");
}

TEST(Inventory, SectionsShareTheLimit) {
  const std::string raw = maker::deflated(std::string(60'000, 'x'));
  const std::string block =
      "offset=0\nlength=" + std::to_string(raw.size()) + "\ntype=customdata\nID=rawdata\n";
  const std::string file =
      maker::container(raw, "[H]\ncount=2\nsnapshotcount=0\n[0]\n" + block + "[1]\n" + block);
  const auto inventory = inv::open_inventory("x", file, 100'000);
  EXPECT_TRUE(inventory->contents[0].raw);
  EXPECT_FALSE(inventory->contents[1].raw);
  EXPECT_EQ(inventory->faults.back().message, "raw data section: it inflates to more than 40000 bytes");
}

TEST(Inventory, PlainSectionsShareTheLimitToo) {
  const std::string text = maker::text_of(*maker::snapshot()) + std::string(2, '\0');
  const std::string block = "offset=0\nlength=" + std::to_string(text.size()) + "\ntype=snapshot\n";
  const std::string file =
      maker::container(text, "[H]\ncount=2\nsnapshotcount=2\n[0]\n" + block + "[1]\n" + block);
  const auto inventory = inv::open_inventory("x", file, text.size() + 100);
  EXPECT_TRUE(inventory->contents[0].document);
  EXPECT_FALSE(inventory->contents[1].document);
  EXPECT_EQ(inventory->faults.back().message, "snapshot section: the text is larger than 102 bytes");
}

TEST(Inventory, SectionsShareTheLinesThatAFileMayHave) {
  std::string text = "\xEF\xBB\xBF?zxml\n*Snapshot=\n";
  for (size_t i = 0; i < inv::kFewestLines / 2; ++i) text += "~=\n";
  text += std::string(2, '\0');
  const std::string block = "offset=0\nlength=" + std::to_string(text.size()) + "\ntype=snapshot\n";
  const auto inventory = inv::open_inventory(
      "x", maker::container(text, "[H]\ncount=2\nsnapshotcount=2\n[0]\n" + block + "[1]\n" + block), 1 << 20);
  EXPECT_TRUE(inventory->contents[0].document);
  EXPECT_FALSE(inventory->contents[1].document);
  EXPECT_EQ(inventory->faults.back().message,
            "snapshot section: the text has more than 32767 lines; a larger --max-size allows more");
}

TEST(Inventory, BytesAfterRawDataAreAFault) {
  const std::string stream = maker::deflated("<plist/>");
  const auto inventory = maker::open(maker::container(
      stream + "x", "[H]\ncount=1\nsnapshotcount=0\n[0]\noffset=0\nlength=" +
                        std::to_string(stream.size() + 1) + "\ntype=customdata\nID=rawdata\n"));
  EXPECT_FALSE(inventory->raw_data());
  ASSERT_EQ(inventory->faults.size(), 1u);
  EXPECT_EQ(inv::describe(inventory->faults[0]),
            "at byte " + std::to_string(stream.size()) +
                ": raw data section: there are bytes after the zlib stream");
}

TEST(Inventory, AFileThatCannotBeReadGivesTheReason) {
  std::string error;
  EXPECT_FALSE(inv::open_file("/nowhere/at/all.inv", inv::kUsualMaxSize, &error));
  EXPECT_EQ(error, "cannot be read: No such file or directory");
  EXPECT_FALSE(inv::open_file("/", inv::kUsualMaxSize, &error));
  EXPECT_EQ(error, "cannot be read: Is a directory");
  EXPECT_FALSE(inv::open_file("/dev/zero", 1000, &error));
  EXPECT_EQ(error, "is larger than 268435456 bytes");
}

}  // namespace
