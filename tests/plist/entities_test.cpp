#include "plist/entities.h"

#include <gtest/gtest.h>

namespace {

TEST(Entities, StandForOneCharacter) {
  const std::pair<const char*, uint32_t> entities[] = {
      {"&lt;", '<'},  {"&gt;", '>'},   {"&amp;", '&'},           {"&quot;", '"'},          {"&apos;", '\''},
      {"&#65;", 'A'}, {"&#x41;", 'A'}, {"&#xe4;", 0xE4},         {"&#x10FFFF;", 0x10FFFF}, {"&#0;", 0},
      {"&#;", 0},     {"&#x;", 0},     {"&#0000000000065;", 'A'}};
  for (const auto& [text, code_point] : entities) {
    const auto entity = plist::parse_entity(std::string(text) + "rest;");
    ASSERT_TRUE(entity) << text;
    EXPECT_EQ(entity->code_point, code_point) << text;
    EXPECT_EQ(entity->length, std::string(text).size()) << text;
  }
}

TEST(Entities, AreRefusedInOtherForms) {
  for (const char* text : {"&", "&foo;", "&amp", "&AMP;", "&#65", "&#x41", "&#X41;", "&#4A;", "&# 65;",
                           "&#-1;", "&#xD800;", "&#xDFFF;", "&#x110000;", "&#99999999999;", "&;"}) {
    EXPECT_FALSE(plist::parse_entity(text)) << text;
  }
}

TEST(Entities, AreResolvedAndOtherAmpersandsKept) {
  std::string resolved = "start ";
  EXPECT_TRUE(plist::append_resolved(resolved, "a&amp;&#228;b"));
  EXPECT_EQ(resolved,
            "start a&\xC3\xA4"
            "b");
  EXPECT_FALSE(plist::append_resolved(resolved, "&foo;&lt;&"));
  EXPECT_EQ(resolved,
            "start a&\xC3\xA4"
            "b&foo;<&");
}

}  // namespace
