#include "inv/redact/pseudonym_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using inv::IdentifierKind;
using inv::Pseudonyms;
using testing::MatchesRegex;

struct Identifier {
  IdentifierKind kind;
  std::string text;
};

Pseudonyms pseudonyms_of(const std::vector<Identifier>& identifiers) {
  Pseudonyms pseudonyms("key");
  for (const Identifier& identifier : identifiers) pseudonyms.add(identifier.kind, identifier.text);
  pseudonyms.assign();
  return pseudonyms;
}

TEST(Pseudonyms, ReplaceWholeIdentifiers) {
  const Pseudonyms pseudonyms =
      pseudonyms_of({{IdentifierKind::text, "Jane"}, {IdentifierKind::serial, "C02TEST00001"}});
  EXPECT_EQ(pseudonyms.count(), 2u);
  EXPECT_TRUE(pseudonyms.knows("JANE"));
  EXPECT_FALSE(pseudonyms.knows("Janet"));
  EXPECT_THAT(pseudonyms.replace("Jane"), MatchesRegex("anon[0-9a-z]{10}"));
  EXPECT_THAT(pseudonyms.replace("C02TEST00001"), MatchesRegex("[A-Z][0-9]{2}[A-Z]{4}[0-9]{5}"));
  EXPECT_EQ(pseudonyms.replace("Janet"), "Janet");
}

TEST(Pseudonyms, ReplaceTokensInTexts) {
  const Pseudonyms pseudonyms =
      pseudonyms_of({{IdentifierKind::account, "jane"}, {IdentifierKind::text, "Backup Disk"}});
  const std::string jane = pseudonyms.replace("jane");
  EXPECT_EQ(pseudonyms.replace_tokens("/Users/jane/Jane's/janet (BACKUP DISK)"),
            "/Users/" + jane + "/" + jane + "'s/janet (" + pseudonyms.replace("BACKUP DISK") + ")");
  EXPECT_EQ(pseudonyms.replace_tokens(""), "");
  EXPECT_TRUE(pseudonyms.occurs_in("x-jane"));
  EXPECT_FALSE(pseudonyms.occurs_in(jane));
}

TEST(Pseudonyms, LookForAddressesInEverySpelling) {
  const Pseudonyms pseudonyms = pseudonyms_of({{IdentifierKind::text, "00-1B-63-AA-10-FE"}});
  for (const char* text : {"at 00:1b:63:aa:10:fe", "MAC_001B63AA10FE.inv", "00-1b-63-aa-10-fe"}) {
    EXPECT_TRUE(pseudonyms.occurs_in(text)) << text;
    EXPECT_FALSE(pseudonyms.occurs_in(pseudonyms.replace_tokens(text))) << text;
  }
}

TEST(Pseudonyms, DoNotLookForWhatLooksLikeAnyText) {
  const Pseudonyms pseudonyms = pseudonyms_of(
      {{IdentifierKind::text, "x"}, {IdentifierKind::serial, "12345"}, {IdentifierKind::text, ":0.0"}});
  EXPECT_EQ(pseudonyms.replace_tokens("x 12345 :0.0"), "x 12345 :0.0");
  EXPECT_NE(pseudonyms.replace("x"), "x");
  EXPECT_NE(pseudonyms.replace("12345"), "12345");
}

TEST(Pseudonyms, LookForShortNamesLongNumbersAndAddresses) {
  const Pseudonyms pseudonyms = pseudonyms_of({{IdentifierKind::text, "jd"},
                                               {IdentifierKind::serial, "123456"},
                                               {IdentifierKind::addresses, "1.2.3.4"},
                                               {IdentifierKind::addresses, "::2"},
                                               {IdentifierKind::text, "\xC3\xA9"}});
  for (const char* text : {"jd", "123456", "1.2.3.4", "::2", "\xC3\xA9"}) {
    EXPECT_TRUE(pseudonyms.occurs_in(text)) << text;
  }
}

TEST(Pseudonyms, AreTheSameForAnOriginalOfTwoKinds) {
  const Pseudonyms pseudonyms = pseudonyms_of({{IdentifierKind::text, "C02TEST00001"},
                                               {IdentifierKind::serial, "C02TEST00001"},
                                               {IdentifierKind::serial, "001B63AA10FE"},
                                               {IdentifierKind::text, "00-1B-63-AA-10-FE"}});
  EXPECT_EQ(pseudonyms.count(), 2u);
  EXPECT_THAT(pseudonyms.replace("C02TEST00001"), MatchesRegex("[A-Z][0-9]{2}[A-Z]{4}[0-9]{5}"));
  EXPECT_THAT(pseudonyms.replace("001B63AA10FE"), MatchesRegex("001B63[0-9A-F]{6}"));
}

TEST(Pseudonyms, NeitherAreIdentifiersNorContainAny) {
  const std::string usual = pseudonyms_of({{IdentifierKind::text, "jane"}}).replace("jane");
  const Pseudonyms pseudonyms =
      pseudonyms_of({{IdentifierKind::text, "jane"}, {IdentifierKind::text, usual}});
  EXPECT_NE(pseudonyms.replace("jane"), usual);
  // The maker's part of the address is somebody's name here, so no address can replace it.
  const Pseudonyms odd =
      pseudonyms_of({{IdentifierKind::text, "00-1B-63-AA-10-FE"}, {IdentifierKind::account, "1b"}});
  EXPECT_THAT(odd.replace("00-1B-63-AA-10-FE"), MatchesRegex("ANON[0-9A-Z]{10}"));
}

TEST(Pseudonyms, DifferEvenWhereTheShapeIsExhausted) {
  std::vector<Identifier> identifiers;
  for (int i = 0; i < 10000; i += 3) {
    std::string digits = std::to_string(i);
    identifiers.push_back({IdentifierKind::serial, std::string(4 - digits.size(), '0') + digits});
  }
  const Pseudonyms pseudonyms = pseudonyms_of(identifiers);
  std::set<std::string> all;
  for (const Identifier& identifier : identifiers) all.insert(pseudonyms.replace(identifier.text));
  EXPECT_EQ(all.size(), identifiers.size());
  for (const Identifier& identifier : identifiers) EXPECT_EQ(all.count(identifier.text), 0u);
}

TEST(Pseudonyms, AreForAsManyIdentifiersAsMemoryShouldPayFor) {
  Pseudonyms pseudonyms("key");
  pseudonyms.limit_size(2 * (Pseudonyms::kBytesOfIdentifier + 4));
  for (const char* name : {"jane", "jane", "mary"}) pseudonyms.add(IdentifierKind::text, name);
  EXPECT_FALSE(pseudonyms.is_full());
  pseudonyms.add(IdentifierKind::text, "x");
  EXPECT_TRUE(pseudonyms.is_full());
  pseudonyms.add(IdentifierKind::text, "rose");
  EXPECT_FALSE(pseudonyms.knows("rose"));
}

}  // namespace
