#include "zxml/zXML.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temporary_directory.h"
#include "zxml/inflated.h"
#include "zxml/layouts.h"
#include "zxml/outline.h"

namespace {

const std::string kMarkLine = "\xEF\xBB\xBF?zxml\n";

std::string zeros(size_t count) { return std::string(count, '\0'); }

// --- the four forms ---

const std::string kRoot = kMarkLine +              // 9 bytes
                          "+Snapshot=\n"           // 11
                          "timestamp=20240607\n";  // 19
const std::string kStorage =
    "+Storage=\n"         // 10
    "*Disk:1=Big disk\n"  // 17
    "size=500.11\n"       // 12
    "~units=GB\n"         // 10
    "-\n";                // 2
const std::string kUsb =
    "*USB=\n"     // 6
    "count=2\n";  // 8
const std::string kPlainIndex =
    "[Root]\noffset=0\nlength=39\n"
    "[Storage]\noffset=39\nlength=51\n"
    "[USB]\noffset=90\nlength=14\n";

InventoryTree small_tree(int32_t byte_order_flag) {
  InventoryTree tree(byte_order_flag, "Snapshot");
  tree.set_attribute("/timestamp", text_value("20240607"));
  tree.set_attribute("/Storage/Disk:1/size", Value(500.107), "units", "GB");
  tree.set_tag_value("/Storage/Disk:1", text_value("Big disk"));
  tree.set_attribute("/USB/count", Value(int64_t{2}));
  return tree;
}

TEST(Serialize, WholeAndPlainIsTheTextAndTwoZeros) {
  EXPECT_EQ(as_string(small_tree(1).serialize(Layout::whole_plain)),
            kRoot + kStorage + kUsb + "-\n" + zeros(1) +  // not sectioned
                zeros(1));                                // not compressed
}

TEST(Serialize, WholeAndCompressedIsOneStreamAndTheMarker) {
  const std::string bytes = as_string(small_tree(1).serialize(Layout::whole_compressed));
  ASSERT_GT(bytes.size(), 6u);
  const size_t end = bytes.size() - 6;
  EXPECT_EQ(inflated(bytes.substr(0, end)), kRoot + kStorage + kUsb + "-\n");
  EXPECT_EQ(bytes.substr(end), zeros(1) +  // not sectioned
                                   "\x01"  // compressed
                                   "ZXML");
}

TEST(Serialize, SplitAndPlainIsTheTextWithoutItsLastLineAndTheIndex) {
  EXPECT_EQ(as_string(small_tree(1).serialize(Layout::split_plain)),
            kRoot + kStorage + kUsb + kPlainIndex + zeros(3) + "\x68" +  // the index begins at 104
                "\x01" +                                                 // sectioned
                zeros(1));                                               // not compressed
}

TEST(Serialize, SplitFormsWriteTheIndexOffsetInTheTreesByteOrder) {
  const std::string big = as_string(small_tree(1).serialize(Layout::split_plain));
  const std::string little = as_string(small_tree(0).serialize(Layout::split_plain));
  EXPECT_EQ(big.substr(big.size() - 6), zeros(3) + "\x68\x01" + zeros(1));
  EXPECT_EQ(little.substr(little.size() - 6), "\x68" + zeros(3) + "\x01" + zeros(1));
  EXPECT_EQ(big.substr(0, big.size() - 6), little.substr(0, little.size() - 6));
}

TEST(Serialize, ACopyWritesInTheByteOrderOfItsOriginal) {
  for (const int32_t byte_order_flag : {1, 0}) {
    InventoryTree tree = small_tree(byte_order_flag);
    InventoryTree copy(tree);
    EXPECT_EQ(as_string(copy.serialize(Layout::split_plain)), as_string(tree.serialize(Layout::split_plain)));
  }
}

// The record that an index should hold for a section of this length, following the others.
std::string index_record(const char* name, size_t* offset, size_t length) {
  const std::string record = std::string("[") + name + "]\noffset=" + std::to_string(*offset) +
                             "\nlength=" + std::to_string(length) + "\n";
  *offset += length;
  return record;
}

TEST(Serialize, SplitAndCompressedIsAStreamForEachSectionAndTheIndex) {
  for (const int32_t byte_order_flag : {1, 0}) {
    InventoryTree tree = small_tree(byte_order_flag);
    const std::string bytes = as_string(tree.serialize(Layout::split_compressed));
    const struct {
      const char* name;
      std::string text;
    } sections[] = {{"Root", kRoot}, {"Storage", kStorage}, {"USB", kUsb}};
    size_t offset = 0;
    std::string index;
    for (const auto& section : sections) {
      size_t length = 0;
      EXPECT_EQ(inflated_first(bytes.substr(offset), &length), section.text);
      index += index_record(section.name, &offset, length);
    }
    ASSERT_LT(offset, 256u);
    size_t index_length = 0;
    EXPECT_EQ(inflated_first(bytes.substr(offset), &index_length), index);
    const std::string low_byte(1, static_cast<char>(offset));
    EXPECT_EQ(bytes.substr(offset + index_length),
              (byte_order_flag ? zeros(3) + low_byte : low_byte + zeros(3)) +  // the index offset
                  "\x01"                                                       // sectioned
                  "\x01");                                                     // compressed
  }
}

TEST(Serialize, KeepsTheRecordsOfTheLastSplitFormOnly) {
  InventoryTree tree = small_tree(1);
  tree.serialize(Layout::whole_compressed);
  EXPECT_TRUE(tree.sections().empty());
  tree.serialize(Layout::split_compressed);
  tree.serialize(Layout::split_plain);
  ASSERT_EQ(tree.sections().size(), 3u);
  EXPECT_EQ(tree.sections()[0].name, "Root");
  EXPECT_EQ(tree.sections()[2].name, "USB");
  EXPECT_EQ(tree.sections()[2].offset, 90u);
  EXPECT_EQ(tree.sections()[2].length, 14u);
  EXPECT_TRUE(InventoryTree(tree).sections().empty());
}

TEST(Serialize, DoesNotChangeTheTree) {
  InventoryTree tree = small_tree(1);
  const std::string before = outline(tree.root());
  const std::string first = as_string(tree.serialize(Layout::split_compressed));
  tree.serialize(Layout::split_plain);
  tree.serialize(Layout::whole_plain);
  EXPECT_EQ(as_string(tree.serialize(Layout::split_compressed)), first);
  EXPECT_EQ(outline(tree.root()), before);
}

TEST(Serialize, SplitsATreeOfOneLeafIntoItsHeader) {
  InventoryTree tree(1, "Top");
  EXPECT_EQ(as_string(tree.serialize(Layout::split_plain)),
            kMarkLine + "*Top=\n[Root]\noffset=0\nlength=15\n" + zeros(3) + "\x0F\x01" + zeros(1));
}

TEST(Serialize, FillsUpWithZerosForWhatALeafHides) {
  InventoryTree tree(1, "t");
  tree.set_tag_value("/hidden", text_value("value"));
  EXPECT_EQ(as_string(tree.serialize(Layout::whole_plain)), kMarkLine + "*t=\n" + zeros(14 + 2));
  const std::string compressed = as_string(tree.serialize(Layout::whole_compressed));
  EXPECT_EQ(inflated(compressed.substr(0, compressed.size() - 6)), kMarkLine + "*t=\n");
}

TEST(Serialize, LeavesTheTopsAnnotationsOutOfTheHeadersLength) {
  InventoryTree tree(1, "t");
  tree.set_attribute("/a/x", text_value("1"));
  tree.top().annotate("k", "t");
  testing::internal::CaptureStderr();
  EXPECT_EQ(as_string(tree.serialize(Layout::split_plain)),
            kMarkLine + "+t=\n~k=t\n*a=\nx=1\n" +
                "[Root]\noffset=0\nlength=13\n[a]\noffset=13\nlength=8\n" +  // 5 short of the text
                zeros(3) + "\x1A\x01" + zeros(1));
  const std::string bytes = as_string(tree.serialize(Layout::split_compressed));
  testing::internal::GetCapturedStderr();
  size_t length = 0;
  EXPECT_EQ(inflated_first(bytes, &length), kMarkLine + "+t=\n") << "cut at the computed length";
}

TEST(Serialize, HasRoomForElementsNextToTheTop) {
  InventoryTree tree(1, "t");
  const std::string name(1000, 'n');
  tree.set_attribute((name + "/x").c_str(), text_value("1"));
  const std::string text = kMarkLine + "*t=\n*" + name + "=\nx=1\n";
  const std::string whole = as_string(tree.serialize(Layout::whole_compressed));
  EXPECT_EQ(inflated(whole.substr(0, whole.size() - 6)), text);
  EXPECT_EQ(as_string(tree.serialize(Layout::whole_plain)), kMarkLine + "*t=\n" + zeros(2));
  EXPECT_EQ(as_string(tree.serialize(Layout::split_plain)).substr(0, text.size()), text);
  size_t length = 0;
  EXPECT_EQ(inflated_first(as_string(tree.serialize(Layout::split_compressed)), &length),
            kMarkLine + "*t=\n");
  EXPECT_EQ(inflated(as_string(tree.root().compressed_text())), kMarkLine + "*t=\n");
}

TEST(Serialize, HasRoomForARootThatBecameABranch) {
  InventoryTree tree(1, "t");
  tree.root().add_child(std::make_unique<Tag>("u"));
  const std::string value(1000, 'v');
  tree.set_attribute("x", text_value(value.c_str()));
  const std::string text = "+=\nx=" + value + "\n*t=\n*u=\n-\n";
  const std::string whole = as_string(tree.serialize(Layout::whole_compressed));
  EXPECT_EQ(inflated(whole.substr(0, whole.size() - 6)), text);
  EXPECT_EQ(as_string(tree.serialize(Layout::whole_plain)), text + zeros(2));
}

// --- saving ---

TEST(SaveTree, WritesTheSerializedBytes) {
  const TemporaryDirectory directory;
  const std::string path = directory.file("tree");
  InventoryTree tree = small_tree(1);
  for (const Layout layout : kLayouts) {
    tree.save(path.c_str(), layout);
    EXPECT_EQ(file_bytes(path), as_string(tree.serialize(layout)));
  }
}

TEST(SaveTree, DoesNothingWhenTheFileCannotBeOpened) {
  const TemporaryDirectory directory;
  const std::string path = directory.file("missing/tree");
  small_tree(1).save(path.c_str(), Layout::whole_compressed);
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
