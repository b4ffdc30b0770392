#include "inv/file/section_text.h"

#include <gtest/gtest.h>

#include "inv/file/container_reader.h"
#include "inv/maker.h"
#include "tests/zxml/layouts.h"

namespace {

using inv::Fault;
using inv::layout_name;
using inv::SectionText;

std::optional<SectionText> read(std::string_view data, Fault* fault, bool big_endian = true) {
  return inv::read_section_text(data, big_endian, inv::kUsualMaxSize, fault);
}

std::string fault_of(std::string_view data, uint64_t max_size = inv::kUsualMaxSize) {
  Fault fault;
  if (inv::read_section_text(data, true, max_size, &fault)) return "read";
  return inv::describe(fault);
}

TEST(SectionText, GivesTheSameTextInAllFourLayoutsAndBothByteOrders) {
  const auto source = maker::snapshot();
  for (const int byte_order : {0, 1}) {
    InventoryTree tree(byte_order, "Snapshot");
    for (const auto& child : source->top().children()) tree.top().add_child(std::make_unique<Tag>(*child));
    for (const Layout layout : kLayouts) {
      const std::string data = maker::bytes_of(tree.serialize(layout));
      for (const bool container_order : {false, true}) {
        Fault fault;
        const auto text = read(data, &fault, container_order);
        ASSERT_TRUE(text) << layout_name(layout) << ": " << inv::describe(fault);
        EXPECT_EQ(text->layout, layout);
        EXPECT_EQ(text->text, maker::text_of(tree)) << layout_name(layout);
      }
    }
  }
}

TEST(SectionText, ReadsATreeOfATopElementAlone) {
  InventoryTree tree(1, "Snapshot");
  for (const Layout layout : kLayouts) {
    Fault fault;
    const auto text = read(maker::bytes_of(tree.serialize(layout)), &fault);
    ASSERT_TRUE(text) << inv::describe(fault);
    EXPECT_EQ(text->text, "\xEF\xBB\xBF?zxml\n*Snapshot=\n");
  }
}

TEST(SectionText, DropsTheNulsAfterALeafThatWasGivenChildren) {
  InventoryTree tree(1, "Snapshot");
  tree.set_attribute("/System/model", text_value("iMac"));
  tree.set_tag_value("/System/never-written", text_value("x"));
  for (const Layout layout : kLayouts) {
    Fault fault;
    const auto text = read(maker::bytes_of(tree.serialize(layout)), &fault);
    ASSERT_TRUE(text) << inv::describe(fault);
    EXPECT_EQ(text->text, "\xEF\xBB\xBF?zxml\n+Snapshot=\n*System=\nmodel=iMac\n-\n");
  }
}

TEST(SectionText, SaysWhereALayoutIsBroken) {
  EXPECT_EQ(fault_of(""), "at byte 0: the section has none of the four known endings");
  EXPECT_EQ(fault_of("text"), "at byte 4: the section has none of the four known endings");
  EXPECT_EQ(fault_of(std::string("\1\1", 2)), "at byte 2: the section is too short for its index");
  EXPECT_EQ(fault_of(std::string("\xFF\xFF\xFF\xFF\1\0", 6)),
            "at byte 0: the section's index cannot be found or read");
  EXPECT_EQ(fault_of(std::string("abcd\0\1ZXML", 10)),
            "at byte 2: the zlib stream is damaged (incorrect header check)");
  const std::string stream = maker::deflated("some text that is long enough to have an end");
  const std::string end("\0\1ZXML", 6);
  EXPECT_EQ(fault_of(stream + "!" + end),
            "at byte " + std::to_string(stream.size()) + ": there are bytes after the zlib stream");
  EXPECT_EQ(fault_of(stream.substr(0, 20) + end), "at byte 20: the zlib stream is cut short");
}

TEST(SectionText, RefusesASplitSectionWhosePartsAreNotWhereTheIndexSays) {
  const std::string part = maker::deflated("\xEF\xBB\xBF?zxml\n*Snapshot=\n");
  const auto section = [&](const std::string& index) {
    return part + maker::deflated(index) + std::string("\0\0\0", 3) + static_cast<char>(part.size()) + "\1\1";
  };
  const std::string length = std::to_string(part.size());
  EXPECT_EQ(fault_of(section("[Root]\noffset=0\nlength=" + length + "\n")), "read");
  EXPECT_EQ(fault_of(section("[Root]\noffset=1\nlength=" + length + "\n")),
            "at byte 0: a part of the section is not where its index says");
  EXPECT_EQ(fault_of(section("[Root]\noffset=1\nlength=1\n")),
            "at byte 0: a part of the section is not where its index says");
  EXPECT_EQ(fault_of(section("[Root]\noffset=0\nlength=999\n")),
            "at byte 0: a part of the section is not where its index says");
  EXPECT_EQ(fault_of(section("[Root]\noffset=0\n")),
            "at byte " + length + ": the section's index is malformed");
  EXPECT_EQ(fault_of(section("[Root]\noffset=0\nlength=0\n")),
            "at byte 0: bytes of the section are outside every part");
}

TEST(SectionText, RefusesTextsAboveTheLimit) {
  const std::string section = maker::deflated(std::string(100'000, 'a')) + std::string("\0\1ZXML", 6);
  EXPECT_EQ(fault_of(section, 100'000), "read");
  EXPECT_NE(fault_of(section, 99'999).find("it inflates to more than 99999 bytes"), std::string::npos);
  const std::string plain = std::string(100'000, 'a') + std::string(2, '\0');
  EXPECT_EQ(fault_of(plain, 100'000), "read");
  EXPECT_EQ(fault_of(plain, 99'999), "at byte 0: the text is larger than 99999 bytes");
}

}  // namespace
