#include "inv/redact/pseudonym.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using inv::IdentifierKind;
using inv::Shape;
using testing::MatchesRegex;

std::string made(Shape shape, const std::string& original, const std::string& key = "key",
                 unsigned attempt = 0) {
  return inv::make_pseudonym(key, inv::canonical_form(shape, original), attempt, shape, original);
}

TEST(ShapeOf, GoesByTheFormFirst) {
  EXPECT_EQ(inv::shape_of(IdentifierKind::text, "00-1B-63-AA-10-FE"), Shape::mac);
  EXPECT_EQ(inv::shape_of(IdentifierKind::serial, "00:1b:63:aa:10:fe"), Shape::mac);
  EXPECT_EQ(inv::shape_of(IdentifierKind::text, "00-1B-63-FF-FE-AA-10-FE"), Shape::mac);
  EXPECT_EQ(inv::shape_of(IdentifierKind::account, "51A7C0DE-0106-5A8B-9C3D-2F0000001068"), Shape::uuid);
  EXPECT_EQ(inv::shape_of(IdentifierKind::addresses, "192.0.2.17"), Shape::ipv4);
  EXPECT_EQ(inv::shape_of(IdentifierKind::addresses, "fe80::1"), Shape::ipv6);
}

TEST(ShapeOf, GoesByTheKindElse) {
  EXPECT_EQ(inv::shape_of(IdentifierKind::text, "Jane's iMac"), Shape::name);
  EXPECT_EQ(inv::shape_of(IdentifierKind::addresses, "printer.example"), Shape::name);
  EXPECT_EQ(inv::shape_of(IdentifierKind::serial, "C02TEST00001"), Shape::serial);
  EXPECT_EQ(inv::shape_of(IdentifierKind::serial, "W-123"), Shape::serial);
  EXPECT_EQ(inv::shape_of(IdentifierKind::serial, "W-12"), Shape::name);
  EXPECT_EQ(inv::shape_of(IdentifierKind::number, "2701197312"), Shape::number);
  EXPECT_EQ(inv::shape_of(IdentifierKind::account_id, "1849273412"), Shape::number);
}

TEST(ShapeOf, NearlyAFormDoesNotCount) {
  for (const char* text : {"00-1B-63-AA-10-F", "00-1B-63-AA-10-FG", "00-1B:63-AA-10-FE", "192.0.2",
                           "192.0.2.256", "51A7C0DE01065A8B9C3D2F0000001068", ""}) {
    EXPECT_EQ(inv::shape_of(IdentifierKind::text, text), Shape::name) << text;
  }
}

TEST(MakePseudonym, KeepsTheShape) {
  EXPECT_THAT(made(Shape::name, "Jane's iMac"), MatchesRegex("anon[0-9a-z]{10}"));
  EXPECT_THAT(made(Shape::name, "OFFICE-MAC"), MatchesRegex("ANON[0-9A-Z]{10}"));
  EXPECT_THAT(made(Shape::number, "7"), MatchesRegex("1[0-9]{9}"));
  EXPECT_THAT(made(Shape::serial, "C02-test 9"), MatchesRegex("[A-Z][0-9][0-9]-[a-z]{4} [0-9]"));
  EXPECT_THAT(made(Shape::ipv4, "192.0.2.17"), MatchesRegex("10\\.[0-9]+\\.[0-9]+\\.[0-9]+"));
  EXPECT_THAT(made(Shape::ipv6, "2001:db8::1"), MatchesRegex("fd[0-9a-f]{2}(:[0-9a-f]{4}){7}"));
  EXPECT_THAT(made(Shape::uuid, "51A7C0DE-0106-5A8B-9C3D-2F0000001068"),
              MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
  EXPECT_THAT(made(Shape::uuid, "51a7c0de-0106-5a8b-9c3d-2f0000001068"),
              MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}"));
}

TEST(MakePseudonym, KeepsTheMakerOfAMacAddress) {
  EXPECT_THAT(made(Shape::mac, "00-1B-63-AA-10-FE"), MatchesRegex("00-1B-63(-[0-9A-F]{2}){3}"));
  EXPECT_THAT(made(Shape::mac, "00-1B-63-FF-FE-AA-10-FE"), MatchesRegex("00-1B-63(-[0-9A-F]{2}){5}"));
}

TEST(MakePseudonym, IsMadeOfKeyedHashes) {
  // The seed is the HMAC of "0:jane" under the key. That of "0" under the seed begins
  // 58 1c 3d e3 1d d1 fe 7e; four bytes make a character: 3, then 30 of the alphabet. The last
  // two come from the HMAC of "1".
  EXPECT_EQ(made(Shape::name, "jane"), "anon3yg0xfzeh3");
}

TEST(MakePseudonym, DependsOnKeyOriginalAndAttempt) {
  const std::string pseudonym = made(Shape::name, "jane");
  EXPECT_EQ(made(Shape::name, "jane"), pseudonym);
  EXPECT_EQ(made(Shape::name, "Jane"), pseudonym);
  EXPECT_NE(made(Shape::name, "jane", "other key"), pseudonym);
  EXPECT_NE(made(Shape::name, "janet"), pseudonym);
  EXPECT_NE(made(Shape::name, "jane", "key", 1), pseudonym);
}

TEST(MakePseudonym, GivesAllSpellingsTheSameDigits) {
  const std::string canonical = "001b63aa10fe";
  const auto make = [&](const char* spelling) {
    return inv::make_pseudonym("key", canonical, 0, Shape::mac, spelling);
  };
  std::string digits = make("001b63aa10fe");
  EXPECT_EQ(inv::canonical_form(Shape::mac, make("00-1B-63-AA-10-FE")), digits);
  EXPECT_EQ(inv::canonical_form(Shape::mac, make("00:1b:63:aa:10:fe")), digits);
}

TEST(MakePseudonym, HasRandomCharactersForSerialNumbersOfAnyLength) {
  const std::string serial = made(Shape::serial, std::string(100, 'A'));
  EXPECT_NE(serial.substr(0, 50), serial.substr(50));
  const std::string longest(1 << 20, 'A');
  EXPECT_EQ(made(Shape::serial, longest).size(), longest.size());
}

TEST(Spellings, AreTheWaysToWriteAnAddress) {
  using testing::UnorderedElementsAre;
  EXPECT_THAT(inv::spellings(Shape::mac, "00-1B-63-AA-10-FE"),
              UnorderedElementsAre("00-1b-63-aa-10-fe", "00:1b:63:aa:10:fe", "001b63aa10fe"));
  EXPECT_THAT(inv::spellings(Shape::mac, "00-1B-63-FF-FE-AA-10-FE"),
              UnorderedElementsAre("00-1b-63-ff-fe-aa-10-fe", "00:1b:63:ff:fe:aa:10:fe", "001b63fffeaa10fe"));
  EXPECT_THAT(
      inv::spellings(Shape::uuid, "51A7C0DE-0106-5A8B-9C3D-2F0000001068"),
      UnorderedElementsAre("51a7c0de-0106-5a8b-9c3d-2f0000001068", "51a7c0de01065a8b9c3d2f0000001068"));
  EXPECT_THAT(inv::spellings(Shape::name, "Jane"), UnorderedElementsAre("Jane"));
}

}  // namespace
