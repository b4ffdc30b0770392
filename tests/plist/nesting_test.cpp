#include "plist/nesting.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string repeat(const std::string& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

TEST(NestedTooDeeply, AllowsFiveHundredAndTwelveLevels) {
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<array>", 512) + repeat("</array>", 512)));
  EXPECT_TRUE(plist::nested_too_deeply(repeat("<array>", 513) + repeat("</array>", 513)));
  EXPECT_TRUE(plist::nested_too_deeply(repeat("<dict><key>k</key><array >", 256) + "<dict a='b'>"));
}

TEST(NestedTooDeeply, CountsNeighboursOnce) {
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<array></array><dict/><array /><dict></dict>", 1000)));
}

TEST(NestedTooDeeply, CountsOnlyContainers) {
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<date><data><string>&lt;array><a><", 1000)));
}

TEST(NestedTooDeeply, PassesOverCommentsAndCdata) {
  EXPECT_FALSE(plist::nested_too_deeply("<!--" + repeat("<array>", 1000) + "--><![CDATA[" +
                                        repeat("<dict>", 1000) + "]]>"));
  EXPECT_FALSE(plist::nested_too_deeply("<!--" + repeat("<array>", 1000)));
}

TEST(NestedTooDeeply, PassesOverAttributesAndInstructions) {
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<string a='<array'>x</string>", 1000)));
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<?x <array> ?>", 1000)));
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<array <array></array><string <dict></string>", 1000)));
  EXPECT_FALSE(plist::nested_too_deeply("<!-->" + repeat("<array>", 1000) + "-->"));
  EXPECT_FALSE(plist::nested_too_deeply("<?a>" + repeat("<array>", 1000) + "?>"));
}

// Looking for each tag's end once more would take hours.
TEST(NestedTooDeeply, LooksForAMissingEndOnce) {
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<array</array", 4000000)));
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<array</array", 300000) + ">"));
  EXPECT_FALSE(plist::nested_too_deeply(repeat("<!--", 10000000)));
}

TEST(NestedTooDeeply, EndsAtAnyByte) {
  const std::string list = "<array><!-- c --><dict/><![CDATA[x]]></array>";
  for (size_t size = 0; size <= list.size(); ++size) {
    const std::string exact(list, 0, size);
    EXPECT_FALSE(plist::nested_too_deeply(exact));
  }
}

}  // namespace
