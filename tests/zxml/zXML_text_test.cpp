// The text form, line by line, and its computed size; the forms in which a tree is handed over:
// zXML_test.cpp.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "zxml/inflated.h"
#include "zxml/zXML.h"

namespace {

const std::string kMarkLine = "\xEF\xBB\xBF?zxml\n";

std::string zeros(size_t count) { return std::string(count, '\0'); }

std::string written(const Tag& tag, bool no_close = false, bool without_children = false) {
  std::string text(tag.text_size() + 1, '\0');
  text.resize(tag.write_text(text.data(), 0, no_close, without_children));
  return text;
}

// --- lines ---

TEST(WriteText, WritesATreeOfOneLeaf) {
  const InventoryTree tree(1, "Snapshot");
  EXPECT_EQ(written(tree.root()), kMarkLine + "*Snapshot=\n");
}

TEST(WriteText, WritesABranchWithItsClosingLine) {
  InventoryTree tree(1, "Snapshot");
  tree.set_attribute("/Processors/Processor:1/core-count", Value(int64_t{4}));
  EXPECT_EQ(written(tree.root()),
            kMarkLine + "+Snapshot=\n+Processors=\n*Processor:1=\ncore-count=4\n-\n-\n");
}

TEST(WriteText, OrdersTheLinesOfATag) {
  Tag tag("t");
  tag.add_child(std::make_unique<Tag>("child"));
  tag.set_attribute("x", text_value("1"), "type", "bool");
  tag.annotate_attribute("x", "units", "GB");
  tag.set_attribute("y", text_value("2"));
  testing::internal::CaptureStderr();
  tag.annotate("complex", "");
  EXPECT_EQ(written(tag), "+t=\n~complex=\nx=1\n~type=bool\n~units=GB\ny=2\n*child=\n-\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tag >>t<< :\n");
}

TEST(WriteText, TracesOnlyAnnotatedBranches) {
  Tag leaf("leaf");
  leaf.annotate("k", "t");
  Tag branch("branch");
  branch.add_child(std::make_unique<Tag>("child"));
  testing::internal::CaptureStderr();
  EXPECT_EQ(written(leaf), "*leaf=\n~k=t\n");
  EXPECT_EQ(written(branch), "+branch=\n*child=\n-\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WriteText, HidesTheChildrenOfALeaf) {
  InventoryTree tree(1, "Top");
  tree.set_tag_value("/Environment/env-var:PATH", text_value("PATH"));
  EXPECT_EQ(written(tree.root()), kMarkLine + "+Top=\n*Environment=\n-\n");
}

TEST(WriteText, WritesRawBytes) {
  Tag tag("a=b~");
  Value value;
  value.set_string("x=y\r~*+-\xC3\xA4\xFF ");
  tag.set_attribute("*k", value, "~k", "=t");
  tag.set_attribute("tilde", text_value("~starts"));
  EXPECT_EQ(written(tag), "*a=b~=\n*k=x=y\r~*+-\xC3\xA4\xFF \n~~k==t\ntilde=~starts\n");
}

TEST(WriteText, WritesAtTheOffsetAndNowhereElse) {
  const Tag tag("t");
  std::string text = "0123456789";
  EXPECT_EQ(tag.write_text(text.data(), 3), 4u);
  EXPECT_EQ(text, "012*t=\n789");
}

Value boolean(bool flag) {
  Value value;
  value.set_bool(flag);
  return value;
}

TEST(WriteText, WritesEveryKindOfValue) {
  const struct {
    Value value;
    std::string text;
  } cases[] = {
      {Value(), ""},
      {boolean(true), "true"},
      {boolean(false), "false"},
      {Value(int64_t{0}), "0"},
      {Value(int64_t{-5}), "-5"},
      {Value(std::numeric_limits<int64_t>::max()), "9223372036854775807"},
      {Value(std::numeric_limits<int64_t>::min()), "-9223372036854775808"},
      {Value(3.14159), "3.14"},
      {Value(2.0), "2.00"},
      {Value(-0.125), "-0.12"},
      {Value(99.999), "100.00"},
      {Value(std::ldexp(1.0, 70)), "1180591620717411303424.00"},
      {text_value(""), ""},
      {text_value("text"), "text"},
  };
  for (const auto& example : cases) {
    Tag tag("t");
    tag.set_attribute("x", example.value);
    EXPECT_EQ(written(tag), "*t=\nx=" + example.text + "\n");
    EXPECT_EQ(tag.text_size(), 7 + example.text.size());
    InventoryTree tree(1, "t");
    tree.set_tag_value("t", example.value);
    EXPECT_EQ(written(tree.root()), kMarkLine + "*t=" + example.text + "\n");
  }
}

TEST(WriteText, WritesTheLargestNumbersWhole) {
  Tag tag("t");
  tag.set_attribute("x", Value(-std::numeric_limits<double>::max()));
  tag.set_attribute("y", Value(std::numeric_limits<double>::infinity()));
  const std::string text = written(tag);
  EXPECT_EQ(text.size(), tag.text_size());
  EXPECT_EQ(text.size(), std::string("*t=\nx=\ny=inf\n").size() + 1 + 309 + 3);
  EXPECT_EQ(text.substr(0, 12), "*t=\nx=-17976");
}

// --- flags and sizes ---

struct FlagCase {
  bool no_close;
  bool without_children;
  const char* text;
};

TEST(WriteText, AppliesItsFlagsToTheElementAndNotBelow) {
  constexpr FlagCase kCases[] = {
      {false, false, "+Top=\nx=1\n+a=\n*b=\ny=2\n-\n-\n"},
      {true, false, "+Top=\nx=1\n+a=\n*b=\ny=2\n-\n"},
      {false, true, "+Top=\nx=1\n-\n"},
      {true, true, "+Top=\nx=1\n"},
  };
  InventoryTree tree(1, "Top");
  tree.set_attribute("/x", Value(int64_t{1}));
  tree.set_attribute("/a/b/y", Value(int64_t{2}));
  for (const FlagCase& example : kCases) {
    EXPECT_EQ(written(tree.top(), example.no_close, example.without_children), example.text);
    EXPECT_EQ(written(tree.root(), example.no_close, example.without_children), kMarkLine + example.text);
  }
}

TEST(WriteText, WritesALeafAlikeWithAnyFlags) {
  Tag leaf("t");
  leaf.set_attribute("x", text_value("1"));
  for (const bool no_close : {false, true}) {
    for (const bool without_children : {false, true}) {
      EXPECT_EQ(written(leaf, no_close, without_children), "*t=\nx=1\n");
    }
  }
}

TEST(TextSize, LeavesOutAnnotationsAndClosingLineWithTheChildren) {
  Tag tag("name");
  tag.add_child(std::make_unique<Tag>("child"));
  tag.set_attribute("x", text_value("1"), "k", "t");
  tag.annotate("key", "text");
  // The tag's line 7, the attribute 4 and its annotation 5; then the annotation 10, the child 8, the end 2.
  EXPECT_EQ(tag.text_size(true), 16u);
  EXPECT_EQ(tag.text_size(false), 36u);
}

TEST(TextSize, CountsTheChildrenThatALeafHides) {
  Tag tag("t");
  tag.set_tag_value("hidden", text_value("value"));
  EXPECT_EQ(written(tag), "*t=\n");
  EXPECT_EQ(tag.text_size(), 4u + 14u);
}

TEST(TextSize, CountsOnlyTheFirstElementOfADocument) {
  InventoryTree tree(1, "Top");
  tree.set_attribute("second/x", text_value("1"));
  EXPECT_EQ(tree.root().text_size(), (kMarkLine + "*Top=\n").size());
  EXPECT_EQ(Tag("", Tag::Kind::document).text_size(), kMarkLine.size());
}

// A tree without leaves that hide children: only those are measured longer than they are written.
void grow(Tag& tag, std::mt19937& random, int levels) {
  const auto pick = [&](size_t count) { return random() % count; };
  for (size_t i = pick(4); i > 0; --i) {
    const Value values[] = {Value(), boolean(pick(2) == 0),
                            Value(static_cast<int64_t>(random()) - 1000000000),
                            Value(static_cast<double>(random()) / 7), text_value("some text")};
    const std::string name = "attribute" + std::to_string(i);
    tag.set_attribute(name.c_str(), values[pick(5)], pick(2) ? "key" : nullptr, "text");
    if (pick(3) == 0) tag.annotate_attribute(name.c_str(), "more", "");
  }
  if (pick(3) == 0) tag.annotate("own", "annotation");
  if (levels == 0) return;
  for (size_t i = pick(4); i > 0; --i) {
    tag.add_child(std::make_unique<Tag>("child" + std::to_string(i)));
    grow(*tag.children().back(), random, levels - 1);
  }
}

TEST(TextSize, IsWhatIsWrittenForAnyTree) {
  testing::internal::CaptureStderr();
  for (unsigned seed = 0; seed < 500; ++seed) {
    std::mt19937 random(seed);
    InventoryTree tree(1, "Top");
    grow(tree.top(), random, 4);
    EXPECT_EQ(written(tree.root()).size(), tree.root().text_size()) << "seed " << seed;
    EXPECT_EQ(inflated(as_string(tree.top().compressed_text())), written(tree.top())) << "seed " << seed;
  }
  testing::internal::GetCapturedStderr();
}

TEST(CompressedText, CompressesZerosForWhatALeafHides) {
  Tag tag("t");
  tag.set_tag_value("hidden", text_value("value"));
  EXPECT_EQ(inflated(as_string(tag.compressed_text())), "*t=\n" + zeros(14));
}

}  // namespace
