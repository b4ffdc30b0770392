#include "zxml/INVfile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "support/temporary_directory.h"
#include "zxml/inflated.h"
#include "zxml/layouts.h"

namespace {

namespace fs = std::filesystem;

constexpr HeaderForm kPlain = HeaderForm::plain;
constexpr HeaderForm kCompressed = HeaderForm::compressed;

std::unique_ptr<InventoryTree> tree(const char* top_name) {
  return std::make_unique<InventoryTree>(1, top_name);
}

std::unique_ptr<InventoryTree> snapshot() {
  auto made = tree("Snapshot");
  made->set_attribute("/timestamp", text_value("20240607120000.000000+120"));
  return made;
}

unsigned char* block(const std::string& bytes) {
  unsigned char* data = new unsigned char[bytes.size()];
  std::memcpy(data, bytes.data(), bytes.size());
  return data;
}

// The parts of a file's end.
struct Trailer {
  explicit Trailer(const std::string& file) : bytes(file.substr(file.size() - 14)) {}
  size_t header_offset() const {
    size_t offset = 0;
    for (int i = 0; i < 8; ++i)
      offset = offset << 8 | static_cast<unsigned char>(bytes[static_cast<size_t>(i)]);
    return offset;
  }
  std::string bytes;
};

// What follows the offset. docs/inv-format.md has these bytes in full, and its test compares them.
std::string trailer_end(char header_compressed) {
  return std::string(1, char{kTrailerVersion}) + header_compressed + "INV!";
}

std::string header(const std::string& file) {
  const size_t offset = Trailer(file).header_offset();
  return file.substr(offset, file.size() - 14 - offset);
}

std::string plain_header(INVfile& file) { return header(as_string(file.build(kPlain))); }

// --- layout ---

const std::string kSnapshotData = std::string("\xEF\xBB\xBF?zxml\n") +               // 9 bytes
                                  "*Snapshot=\n"                                     // 11
                                  "timestamp=20240607120000.000000+120\n" +          // 36
                                  std::string("\0\0", 2);                            // whole, plain
const std::string kAssetData = std::string("\xEF\xBB\xBF?zxml\n") + "*AssetInfo=\n"  // 9 and 12
                               + std::string("\0\0", 2);                             // whole, plain
const std::string kTwoSectionHeader =
    "[H]\n"
    "count=2\n"
    "snapshotcount=1\n"
    "[0]\n"
    "offset=0\n"
    "length=58\n"
    "type=snapshot\n"
    "timestamp=20240607120000.000000+120\n"
    "snaptype=mac:1\n"
    "[1]\n"
    "offset=58\n"
    "length=23\n"
    "type=assetinfo\n";

void add_two_sections(INVfile& file, Layout layout) {
  file.add_section(snapshot(), kSnapshot, layout);
  file.add_section(tree("AssetInfo"), kAssetInfo, layout);
}

TEST(Container, IsLaidOutFieldByFieldInBothByteOrders) {
  const std::string header_offsets[] = {std::string("\x51\0\0\0\0\0\0\0", 8),   // 81, least significant first
                                        std::string("\0\0\0\0\0\0\0\x51", 8)};  // and most significant first
  for (const int32_t byte_order_flag : {0, 1}) {
    INVfile file(byte_order_flag);
    add_two_sections(file, Layout::whole_plain);
    EXPECT_EQ(as_string(file.build(kPlain)), kSnapshotData + kAssetData + kTwoSectionHeader +
                                                 header_offsets[byte_order_flag] + trailer_end(0));
  }
}

TEST(Container, CompressesItsHeader) {
  INVfile file(1);
  add_two_sections(file, Layout::whole_plain);
  const std::string bytes = as_string(file.build(kCompressed));
  EXPECT_EQ(bytes.substr(0, 81), kSnapshotData + kAssetData);
  EXPECT_EQ(inflated(header(bytes)), kTwoSectionHeader);
  EXPECT_EQ(Trailer(bytes).bytes, std::string("\0\0\0\0\0\0\0\x51", 8) + trailer_end(1));
}

TEST(Container, StoresSectionsAsTheirTreesEncodeThem) {
  INVfile file(1);
  add_two_sections(file, Layout::whole_compressed);
  const std::string bytes = as_string(file.build(kCompressed));
  const std::string first = as_string(snapshot()->serialize(Layout::whole_compressed));
  const std::string second = as_string(tree("AssetInfo")->serialize(Layout::whole_compressed));
  EXPECT_EQ(bytes.substr(0, first.size() + second.size()), first + second);
  EXPECT_EQ(bytes.size(), first.size() + second.size() + header(bytes).size() + 14);
  EXPECT_EQ(Trailer(bytes).header_offset(), first.size() + second.size());
  EXPECT_EQ(inflated(header(bytes)),
            "[H]\ncount=2\nsnapshotcount=1\n"
            "[0]\noffset=0\nlength=" +
                std::to_string(first.size()) +
                "\ntype=snapshot\ntimestamp=20240607120000.000000+120\nsnaptype=mac:1\n"
                "[1]\noffset=" +
                std::to_string(first.size()) + "\nlength=" + std::to_string(second.size()) +
                "\ntype=assetinfo\n");
}

TEST(Container, StoresAnyFormOfATree) {
  for (const Layout layout : kLayouts) {
    INVfile file(1);
    file.add_section(snapshot(), kSnapshot, layout);
    const std::string bytes = as_string(file.build(kPlain));
    EXPECT_EQ(bytes.substr(0, Trailer(bytes).header_offset()), as_string(snapshot()->serialize(layout)));
  }
}

TEST(Container, MayBeEmpty) {
  INVfile file(1);
  EXPECT_EQ(as_string(file.build(kPlain)),
            "[H]\ncount=0\nsnapshotcount=0\n" + std::string(8, '\0') + trailer_end(0));
}

TEST(Container, WritesALargeHeaderOffset) {
  INVfile file(1);
  file.frees_borrowed_data = true;
  file.add_raw_section(block(std::string(1000, 'x')), 1000);
  EXPECT_EQ(Trailer(as_string(file.build(kPlain))).bytes.substr(0, 8),
            std::string("\0\0\0\0\0\0\x03\xE8", 8));
}

TEST(Container, GivesAnUnknownKindItsPlaceAndItsNumberButNoEntry) {
  INVfile file(1);
  file.add_section(tree("Other"), 7, Layout::whole_plain);  // 19 bytes
  file.add_section(tree("AssetInfo"), kAssetInfo, Layout::whole_plain);
  file.add_section(tree("Other"), -1, Layout::whole_plain);
  EXPECT_EQ(plain_header(file), "[H]\ncount=3\nsnapshotcount=0\n[1]\noffset=19\nlength=23\ntype=assetinfo\n");
  EXPECT_EQ(as_string(file.build(kPlain)).substr(19, 23), kAssetData);
}

TEST(Container, PutsEachSectionAfterAllBeforeIt) {
  INVfile file(1);
  for (int i = 0; i < 3; ++i) file.add_section(tree("AssetInfo"), kAssetInfo, Layout::whole_plain);
  EXPECT_EQ(plain_header(file),
            "[H]\ncount=3\nsnapshotcount=0\n"
            "[0]\noffset=0\nlength=23\ntype=assetinfo\n"
            "[1]\noffset=23\nlength=23\ntype=assetinfo\n"
            "[2]\noffset=46\nlength=23\ntype=assetinfo\n");
}

TEST(Container, CountsSnapshotsByTheirTreesAndNotByTheirKind) {
  INVfile file(1);
  file.add_section(tree("Snapshot"), 7, Layout::whole_plain);
  file.add_section(tree("Snapshot"), kAssetInfo, Layout::whole_plain);
  file.add_section(tree("Shot"), kSnapshot, Layout::whole_plain);
  EXPECT_EQ(plain_header(file).substr(0, 28), "[H]\ncount=3\nsnapshotcount=2\n");
}

TEST(Container, LeavesTheTimestampEmptyWhenTheTreeHasNoneInTextForm) {
  const auto numbered = [] {
    auto made = tree("Snapshot");
    made->set_attribute("/timestamp", Value(int64_t{20240607}));
    return made;
  };
  INVfile file(1);
  file.add_section(tree("Snapshot"), kSnapshot, Layout::whole_plain);  // 22 bytes
  file.add_section(numbered(), kSnapshot, Layout::whole_plain);        // 41 bytes
  EXPECT_EQ(plain_header(file),
            "[H]\ncount=2\nsnapshotcount=2\n"
            "[0]\noffset=0\nlength=22\ntype=snapshot\ntimestamp=\nsnaptype=mac:1\n"
            "[1]\noffset=22\nlength=41\ntype=snapshot\ntimestamp=\nsnaptype=mac:1\n");
}

TEST(Container, HoldsTheTreeAsItWasWhenAdded) {
  INVfile file(1);
  auto later_changed = tree("AssetInfo");
  InventoryTree* held = later_changed.get();
  file.add_section(std::move(later_changed), kAssetInfo, Layout::whole_plain);
  held->set_attribute("/x", text_value("late"));
  EXPECT_EQ(as_string(file.build(kPlain)).substr(0, kAssetData.size()), kAssetData);
}

TEST(Container, GivesTheSameBytesEachTime) {
  INVfile file(1);
  add_two_sections(file, Layout::whole_compressed);
  const std::string first = as_string(file.build(kCompressed));
  EXPECT_EQ(as_string(file.build(kCompressed)), first);
}

// --- raw data ---

TEST(RawSection, IsStoredUnchanged) {
  const std::string raw("\x78\xDA\0raw", 6);
  INVfile file(1);
  file.frees_borrowed_data = true;
  file.add_section(tree("AssetInfo"), kAssetInfo, Layout::whole_plain);
  file.add_raw_section(block(raw), raw.size());
  EXPECT_EQ(as_string(file.build(kPlain)).substr(0, 29), kAssetData + raw);
  EXPECT_EQ(plain_header(file),
            "[H]\ncount=2\nsnapshotcount=0\n"
            "[0]\noffset=0\nlength=23\ntype=assetinfo\n"
            "[1]\noffset=23\nlength=6\ntype=customdata\nID=rawdata\n");
}

TEST(RawSection, MayBeEmpty) {
  INVfile file(1);
  file.add_raw_section(nullptr, 0);
  EXPECT_EQ(plain_header(file),
            "[H]\ncount=1\nsnapshotcount=0\n[0]\noffset=0\nlength=0\ntype=customdata\nID=rawdata\n");
}

TEST(RawSection, IsOnlyBorrowedUnlessSaidOtherwise) {
  const std::unique_ptr<unsigned char[]> mine(block("raw"));
  {
    INVfile file(1);
    file.add_raw_section(mine.get(), 3);
  }
  EXPECT_EQ(mine[2], 'w');  // under AddressSanitizer: neither freed before nor twice
}

TEST(RawSection, IsFreedWhenSaidSoAfterAddingIt) {
  INVfile file(1);
  file.add_raw_section(block("raw"), 3);
  file.frees_borrowed_data = true;  // under LeakSanitizer: or else the block is left
}

// --- saving ---

TEST(Save, WritesTheFile) {
  const TemporaryDirectory directory;
  INVfile file(1);
  add_two_sections(file, Layout::whole_compressed);
  for (const HeaderForm form : {kPlain, kCompressed}) {
    const std::string path = directory.file(form == kPlain ? "plain.inv" : "compressed.inv");
    EXPECT_TRUE(file.save(path.c_str(), form));
    EXPECT_EQ(file_bytes(path), as_string(file.build(form)));
  }
}

TEST(Save, NeverReplacesAFile) {
  const TemporaryDirectory directory;
  const std::string path = directory.file("file");
  std::ofstream(path) << "mine";
  EXPECT_FALSE(INVfile(1).save(path.c_str(), kPlain));
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(file_bytes(path), "mine");
}

TEST(Save, FailsInAMissingDirectoryAndCreatesNothing) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(INVfile(1).save(directory.file("missing/file").c_str(), kCompressed));
  EXPECT_TRUE(fs::is_empty(directory.file("")));
}

}  // namespace
