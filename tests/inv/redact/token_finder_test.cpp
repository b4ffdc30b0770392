#include "inv/redact/token_finder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using inv::TokenFinder;

TokenFinder finder_of(const std::vector<std::string>& texts) {
  TokenFinder finder;
  for (size_t i = 0; i < texts.size(); ++i) finder.add(texts[i], i);
  finder.prepare();
  return finder;
}

// What is found in a text, in order.
std::vector<std::string> found(const TokenFinder& finder, const std::string& text) {
  std::vector<std::string> parts;
  for (size_t from = 0;;) {
    const auto match = finder.find(text, from);
    if (!match) return parts;
    parts.push_back(text.substr(match->offset, match->length));
    from = match->offset + match->length;
  }
}

using Parts = std::vector<std::string>;

TEST(TokenFinder, FindsWholeTokensOnly) {
  const TokenFinder finder = finder_of({"jane"});
  for (const char* text :
       {"jane", "/Users/jane", "/Users/jane/x", "jane's", "jane_old", "-jane-", "a jane.b"}) {
    EXPECT_EQ(found(finder, text), Parts{"jane"}) << text;
  }
  for (const char* text : {"", "jan", "janet", "jane2", "2jane", "mjane", "j-ane"}) {
    EXPECT_EQ(found(finder, text), Parts{}) << text;
  }
}

TEST(TokenFinder, FindsInAnyCase) {
  EXPECT_EQ(found(finder_of({"Office-Mac"}), "OFFICE-MAC office-mac"), (Parts{"OFFICE-MAC", "office-mac"}));
}

TEST(TokenFinder, CharactersBeyondAsciiEndAToken) {
  EXPECT_EQ(found(finder_of({"jane"}), "Jane\xE2\x80\x99s iMac"), Parts{"Jane"});
  EXPECT_EQ(found(finder_of({"\xE5\xBC\xA0\xE4\xBC\x9F"}), "\xE5\xBC\xA0\xE4\xBC\x9F\xE7\x9A\x84iMac"),
            Parts{"\xE5\xBC\xA0\xE4\xBC\x9F"});
}

TEST(TokenFinder, EndsOfPunctuationNeedNoBoundary) {
  EXPECT_EQ(found(finder_of({"-bash"}), "x-bash y-bashful"), Parts{"-bash"});
  EXPECT_EQ(found(finder_of({"(R)"}), "Intel(R)Core"), Parts{"(R)"});
}

TEST(TokenFinder, TakesTheLongestAtAPlaceAndTheFirstPlace) {
  const TokenFinder finder = finder_of({"jane", "jane example", "example mac", "jane example's"});
  EXPECT_EQ(found(finder, "jane example mac"), Parts{"jane example"});
  EXPECT_EQ(found(finder, "jane example's mac"), Parts{"jane example's"});
  EXPECT_EQ(found(finder, "jane examples"), Parts{"jane"});
}

TEST(TokenFinder, ReturnsTheFirstNumberGivenToAText) {
  const TokenFinder finder = finder_of({"a", "b", "A"});
  EXPECT_EQ(finder.find("a")->id, 0u);
  EXPECT_EQ(finder.find("b")->id, 1u);
}

TEST(TokenFinder, FindsNothingWithoutTexts) {
  EXPECT_FALSE(finder_of({}).find("jane"));
  EXPECT_FALSE(finder_of({""}).find("jane"));
}

TEST(TokenFinder, ComparesTheBeginningOfALongText) {
  const std::string longest(TokenFinder::kLongest, 'a');
  EXPECT_EQ(found(finder_of({longest}), longest), Parts{longest});
  const TokenFinder finder = finder_of({longest + "bcd"});
  EXPECT_EQ(found(finder, "x " + longest + "bcd"), Parts{longest});
  EXPECT_EQ(found(finder, longest.substr(1)), Parts{});
}

TEST(TokenFinder, ComparesBytesAboveAsciiAsTheyAreSorted) {
  const TokenFinder finder = finder_of({"\xFF\xFE", "\x80", "z"});
  EXPECT_EQ(found(finder, "\xFF\xFE \x80 z"), (Parts{"\xFF\xFE", "\x80", "z"}));
}

TEST(TokenFinder, FindsPartsOfLongerWords) {
  const TokenFinder finder = finder_of({"jane", "doe"});
  for (const char* text : {"janet", "x_tjane", "JANETOOL", "jane janed", "2doe"}) {
    EXPECT_TRUE(finder.cuts_word(text)) << text;
  }
  for (const char* text : {"jane", "jane_doe", "JANE doe", "jan", ""}) {
    EXPECT_FALSE(finder.cuts_word(text)) << text;
  }
}

TEST(Folded, MakesAsciiLettersSmall) { EXPECT_EQ(inv::folded("A-Z \xC3\x84"), "a-z \xC3\x84"); }

}  // namespace
