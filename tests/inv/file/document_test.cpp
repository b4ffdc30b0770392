#include "inv/file/document.h"

#include <gtest/gtest.h>

#include "inv/file/zxml_parser.h"
#include "inv/maker.h"

namespace {

using inv::Document;
using inv::Element;

Document parsed(std::string text) {
  inv::Fault fault;
  return std::move(inv::parse_text(std::move(text), &fault)).value();
}

TEST(Document, LookupsOfWhatIsMissingChainToNothing) {
  const Document document = parsed(maker::text_of(*maker::snapshot()));
  const Element missing = document.top().child("Nothing").child("here").first_child();
  EXPECT_FALSE(missing);
  EXPECT_EQ(missing.name(), "");
  EXPECT_EQ(missing.value(), "");
  EXPECT_EQ(missing.text("name"), "");
  EXPECT_EQ(missing.attribute("name"), nullptr);
  EXPECT_EQ(missing.annotation("key"), "");
  EXPECT_EQ(missing.child_count(), 0u);
  EXPECT_TRUE(missing.subtree().empty());
  EXPECT_FALSE(missing.parent());
  EXPECT_FALSE(missing.next_sibling());
}

TEST(Document, ChildrenComeInOrderWithoutTheirOwnChildren) {
  const Document document = parsed(maker::text_of(*maker::snapshot()));
  std::vector<std::string> names;
  for (const Element child : document.top().children()) names.emplace_back(child.name());
  EXPECT_EQ(names, (std::vector<std::string>{"System", "Processors", "Storage", "Software", "Environment"}));
  EXPECT_EQ(document.top().child("Software").child_count(), 2u);
}

TEST(Document, TheLastChildHasNoSiblingAndTheTopNoParent) {
  const Document document = parsed(maker::text_of(*maker::snapshot()));
  const Element software = document.top().child("Software");
  EXPECT_FALSE(software.child("Soft:2").next_sibling());
  EXPECT_FALSE(document.top().next_sibling());
  EXPECT_FALSE(document.top().parent());
  EXPECT_EQ(software.child("Soft:2").parent(), software);
  EXPECT_EQ(software.parent(), document.top());
}

TEST(Document, WritesTheTextItWasParsedFrom) {
  for (const std::string& text : {maker::text_of(*maker::snapshot()), maker::text_of(*maker::asset()),
                                  std::string(kTextMark) + "*Snapshot=\n",
                                  std::string(kTextMark) + "+a==\n~k=t\n=\n+b=\n-\n*c=\n~x=\n-\n"}) {
    EXPECT_EQ(inv::write_text(parsed(text)), text);
  }
}

}  // namespace
