#include "plist/tags.h"

#include <gtest/gtest.h>

#include "plist/damaged_tags.h"

using plist::Element;

namespace {

TEST(Tags, AreKnownByTheirExactNames) {
  for (int i = 0; i < static_cast<int>(Element::unknown); ++i) {
    const Element element = static_cast<Element>(i);
    EXPECT_EQ(plist::element_named(plist::name_of(element)), element) << plist::name_of(element);
  }
  for (const char* name : {"", "Dict", "dic", "dicts", "string ", "foo"}) {
    EXPECT_EQ(plist::element_named(name), Element::unknown) << name;
  }
}

TEST(DamagedTags, AreFoundWithTheirLength) {
  struct Row {
    const char* text;
    Element element;
    bool closes, empty;
    size_t length;
  };
  const Row rows[] = {
      {"<dict>x", Element::dictionary, false, false, 6},
      {"</dict >x", Element::dictionary, true, false, 8},
      {"<key a=\"b\">", Element::key, false, false, 11},
      {"<array/>", Element::array, false, true, 8},
      {"?dict>", Element::dictionary, false, false, 6},
      {"<di?t>", Element::dictionary, false, false, 6},
      {"<dict?\n<key>", Element::dictionary, false, false, 6},
      {"<?dict>", Element::dictionary, true, false, 7},
      {"?/array>", Element::array, true, false, 8},
      {"<true?>", Element::true_value, false, true, 7},
      {" array>", Element::array, false, false, 7},
      {"dict>x", Element::dictionary, false, false, 5},
      {"<dct>x", Element::dictionary, false, false, 5},
      {"<di?ct>", Element::dictionary, false, false, 7},
      {"</?dict>", Element::dictionary, true, false, 8},
      {"/dict>\n", Element::dictionary, true, false, 6},
  };
  for (const Row& row : rows) {
    const auto found = plist::find_tag_at_start(row.text);
    ASSERT_TRUE(found) << row.text;
    EXPECT_EQ(found->tag.element, row.element) << row.text;
    EXPECT_EQ(found->tag.closes, row.closes) << row.text;
    EXPECT_EQ(found->tag.empty, row.empty) << row.text;
    EXPECT_EQ(found->length, row.length) << row.text;
  }
}

TEST(DamagedTags, AreNotFoundInOtherTexts) {
  for (const char* text : {"", "<", "<>", "</>", "<foo>", "<d??t>", "<d??ict>", "<dt>", "<<dict>", "<dict",
                           "<true/", "text", "<?xml version=\"1.0\"?>"}) {
    EXPECT_FALSE(plist::find_tag_at_start(text)) << text;
  }
}

TEST(DamagedTags, AreTakenFromTheEndOfATextTheyShouldHaveClosed) {
  std::string_view text = "abc?/string>\n\t";
  EXPECT_TRUE(plist::remove_damaged_close_tag(text, Element::string));
  EXPECT_EQ(text, "abc");
  for (const char* damaged : {"abc</sting>", "abc</str?ing>", "abc</string?>\n", "abc</string\n"}) {
    text = damaged;
    EXPECT_TRUE(plist::remove_damaged_close_tag(text, Element::string)) << damaged;
    EXPECT_EQ(text, "abc");
  }
  for (const char* other : {"abc", "abc?/string> x", "abc?/integer>", "", "?"}) {
    std::string_view kept = other;
    EXPECT_FALSE(plist::remove_damaged_close_tag(kept, Element::string)) << other;
    EXPECT_EQ(kept, other);
  }
}

}  // namespace
