// docs/inv-format.md is what developers of consoles work from: its example must be what the library makes.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "support/temporary_directory.h"
#include "zxml/INVfile.h"
#include "zxml/inflated.h"

namespace {

// The text of the page's code block of this language, without its fences.
std::string code_block(const std::string& language) {
  static const std::string kPage = file_bytes(PROJECT_ROOT "/docs/inv-format.md");
  const std::string fence = "\n```" + language + "\n";
  const size_t start = kPage.find(fence);
  EXPECT_NE(start, std::string::npos) << language;
  const size_t text = start + fence.size();
  return kPage.substr(text, kPage.find("```", text) - text);
}

// The bytes that a dump shows: an offset, sixteen bytes in hexadecimal, and the same as characters.
std::string dumped_bytes() {
  std::string bytes;
  std::istringstream dump(code_block("hexdump"));
  for (std::string line; std::getline(dump, line);) {
    EXPECT_EQ(std::stoul(line.substr(0, 8), nullptr, 16), bytes.size());
    std::istringstream numbers(line.substr(8, line.find('|') - 8));
    for (unsigned number = 0; numbers >> std::hex >> number;) bytes += static_cast<char>(number);
  }
  return bytes;
}

std::unique_ptr<InventoryTree> example_snapshot() {
  auto tree = std::make_unique<InventoryTree>(1, "Snapshot");
  tree->set_attribute("/timestamp", text_value("20240607120000.000000+120"));
  tree->set_attribute("/Processors/Processor:1/core-count", Value(int64_t{4}));
  tree->set_attribute("/Processors/Processor:1/speed", Value(2.66), "units", "GHz");
  return tree;
}

std::unique_ptr<InventoryTree> example_asset_info() {
  auto tree = std::make_unique<InventoryTree>(1, "AssetInfo");
  tree->set_attribute("/hostname", text_value("IMAC"));
  return tree;
}

// What a whole, plain form shows of the tree: its text without the mark's bytes, which no page can show.
std::string shown_text(InventoryTree& tree) {
  const std::string bytes = as_string(tree.serialize(Layout::whole_plain));
  return bytes.substr(3, bytes.size() - 5);
}

TEST(FormatDocument, ShowsTheTextsOfItsExample) {
  EXPECT_EQ(code_block("snapshot"), shown_text(*example_snapshot()));
  EXPECT_EQ(code_block("assetinfo"), shown_text(*example_asset_info()));
}

// zlib may pack the same text into other bytes elsewhere, so streams are compared inflated.
TEST(FormatDocument, DumpsTheFileOfItsExample) {
  constexpr size_t kSnapshotEnd = 121, kHeaderStart = 170, kTrailerStart = 289;
  const std::string file = dumped_bytes();
  ASSERT_EQ(file.size(), kTrailerStart + 14);
  const std::string mark = "\xEF\xBB\xBF";
  const std::string end_of_section("\0\1ZXML", 6);

  EXPECT_EQ(inflated(file.substr(0, kSnapshotEnd - 6)), mark + code_block("snapshot"));
  EXPECT_EQ(file.substr(kSnapshotEnd - 6, 6), end_of_section);
  EXPECT_EQ(inflated(file.substr(kSnapshotEnd, kHeaderStart - 6 - kSnapshotEnd)),
            mark + code_block("assetinfo"));
  EXPECT_EQ(file.substr(kHeaderStart - 6, 6), end_of_section);
  EXPECT_EQ(inflated(file.substr(kHeaderStart, kTrailerStart - kHeaderStart)), code_block("header"));
  INVfile written(1);
  written.add_raw_section(nullptr, 0);
  const std::string trailer = as_string(written.build(HeaderForm::compressed));
  EXPECT_EQ(file.substr(kTrailerStart),
            std::string("\0\0\0\0\0\0\0\xAA", 8) + trailer.substr(trailer.size() - 6));
}

// Where zlib packs the texts into other bytes, only the offsets and lengths may differ from the page.
TEST(FormatDocument, ShowsTheHeaderThatTheLibraryWrites) {
  INVfile file(1);
  file.add_section(example_snapshot(), kSnapshot, Layout::whole_compressed);
  file.add_section(example_asset_info(), kAssetInfo, Layout::whole_compressed);
  const std::string bytes = as_string(file.build(HeaderForm::plain));
  const std::string header = bytes.substr(bytes.find("[H]\n"));
  std::istringstream shown(code_block("header"));
  std::istringstream made(header.substr(0, header.size() - 14));
  for (std::string line, expected; std::getline(shown, line);) {
    ASSERT_TRUE(std::getline(made, expected));
    const bool measured = line.rfind("offset=", 0) == 0 || line.rfind("length=", 0) == 0;
    EXPECT_EQ(measured ? line.substr(0, 7) : line, measured ? expected.substr(0, 7) : expected);
  }
  EXPECT_EQ(made.peek(), EOF);
}

}  // namespace
