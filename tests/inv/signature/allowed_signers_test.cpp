#include "inv/signature/allowed_signers.h"

#include <gtest/gtest.h>

#include "inv/signature/signing.h"
#include "inv/signature/wire.h"

namespace {

const std::string kKey = signing::Key('1').line();
const std::string kOther = signing::Key('2').line();
constexpr char kNoKey[] = "there is no key such as \"ssh-ed25519 AAAA...\"";

std::string key_of_type(const std::string& type) {
  return type + " " + signing::base64(inv::wire_string(type) + "anything");
}

// What one line says: its names and options, or its fault.
std::string read(const std::string& line) {
  const inv::AllowedSigners list = inv::read_allowed_signers(line);
  if (!list.faults.empty()) return list.faults[0].message;
  if (list.signers.empty()) return "nothing";
  const inv::AllowedSigner& signer = list.signers[0];
  EXPECT_EQ("ssh-ed25519 " + signing::base64(signer.key.blob), kKey);
  std::string text = signer.principals;
  if (signer.namespaces) text += " for " + *signer.namespaces;
  if (signer.valid_after) text += " from " + std::to_string(*signer.valid_after);
  if (signer.valid_before) text += " to " + std::to_string(*signer.valid_before);
  return text;
}

TEST(AllowedSigners, ALineIsNamesAndAKey) {
  EXPECT_EQ(read("imac " + kKey), "imac");
  EXPECT_EQ(read("imac " + kKey + " a comment, with \"anything\"\n"), "imac");
  EXPECT_EQ(read(" \t imac,!mini,*@x \t" + kKey + "\r\n"), "imac,!mini,*@x");
}

TEST(AllowedSigners, NamesMayStandInQuotes) {
  EXPECT_EQ(read("\"studio imac\" " + kKey), "studio imac");
  EXPECT_EQ(read("the\" studio\" " + kKey), "the studio");
  EXPECT_EQ(read("\"\" " + kKey), "there is no name");
  EXPECT_EQ(read("\"imac " + kKey), "a quote does not end");
}

TEST(AllowedSigners, OptionsStandBeforeTheKey) {
  EXPECT_EQ(read("imac namespaces=\"velkaro-*,file\" " + kKey), "imac for velkaro-*,file");
  EXPECT_EQ(read("imac namespaces=\"\" " + kKey), "imac for ");
  EXPECT_EQ(read("imac valid-after=\"19700101000005Z\" " + kKey), "imac from 5");
  EXPECT_EQ(read("imac valid-before=\"19700101000007Z\" \t" + kKey + " x"), "imac to 7");
  EXPECT_EQ(read("imac VALID-before=\"19700101000007Z\",Namespaces=\"a b\",valid-AFTER=\"19700101000005Z\" " +
                 kKey),
            "imac for a b from 5 to 7");
}

TEST(AllowedSigners, AQuoteInAValueIsEscaped) {
  EXPECT_EQ(read("imac namespaces=\"a\\\"b\\c\" " + kKey), "imac for a\"b\\c");
  EXPECT_EQ(read("imac namespaces=\"a\\\" " + kKey), kNoKey);
  EXPECT_EQ(read("imac namespaces=\"a " + kKey), kNoKey);
}

TEST(AllowedSigners, RefusesOptionsThatItCannotFollow) {
  const std::string no_time = " is no time such as 20260131, 202601311200Z or 20260131120000Z";
  const std::pair<std::string, std::string> cases[] = {
      {"cert-authority", "cert-authority is not supported"},
      {"Cert-Authority,namespaces=\"a\"", "cert-authority is not supported"},
      {"namespaces=\"a\",cert-authority", "cert-authority is not supported"},
      {"cert-authority=\"a\"", "there is an unknown option"},
      {"no-touch-required", "there is an unknown option"},
      {"valid-since=\"20260131\"", "there is an unknown option"},
      {"namespace=\"a\"", "there is an unknown option"},
      {"namespaces", "there is an unknown option"},
      {"namespaces=\"a\",", "there is an unknown option"},
      {",namespaces=\"a\"", "there is an unknown option"},
      {"namespaces=\"a\"namespaces", "there is an unknown option"},
      {"namespaces=a", "namespaces has no value in quotes"},
      {"namespaces=", "namespaces has no value in quotes"},
      {"valid-after=20260131", "valid-after has no value in quotes"},
      {"namespaces=\"a\",namespaces=\"b\"", "namespaces is given twice"},
      {"valid-after=\"20260131\",valid-after=\"20260131\"", "valid-after is given twice"},
      {"valid-before=\"20260131\",valid-before=\"20260131\"", "valid-before is given twice"},
      {"valid-after=\"tomorrow\"", "valid-after" + no_time},
      {"valid-before=\"\"", "valid-before" + no_time},
      {"valid-after=\"20260131\",valid-before=\"20260130\"", "valid-before is not later than valid-after"},
      {"valid-before=\"20260131\",valid-after=\"20260131\"", "valid-before is not later than valid-after"},
  };
  for (const auto& [options, message] : cases) {
    EXPECT_EQ(read("imac " + options + " " + kKey), message) << options;
  }
}

TEST(AllowedSigners, NamesTypesOfKeysThatAreNotSupported) {
  for (const std::string type :
       {"ssh-rsa", "sk-ssh-ed25519@openssh.com", "ssh-ed25519-cert-v01@openssh.com"}) {
    EXPECT_EQ(read("imac " + key_of_type(type)), "keys of the type " + type + " are not supported");
    EXPECT_EQ(read("imac namespaces=\"a\" " + key_of_type(type)),
              "keys of the type " + type + " are not supported");
  }
}

TEST(AllowedSigners, WantsAKeyOnEveryLine) {
  const std::string lines[] = {"imac",
                               "imac ",
                               "imac ssh-ed25519",
                               "imac ssh-ed25519 AAAA",
                               kKey,
                               "imac namespaces=\"a\"",
                               "imac namespaces=\"a\" ",
                               "imac namespaces=\"a\" x " + kKey,
                               "imac ssh-rsa" + kKey.substr(11),
                               "imac " + kKey.substr(0, kKey.size() - 4)};
  for (const std::string& line : lines) {
    EXPECT_EQ(read(line), kNoKey) << line;
  }
}

TEST(AllowedSigners, EmptyLinesAndCommentsSayNothing) {
  const std::string lines[] = {"", "\n", " \t\r\n", "# imac " + kKey, " \t#" + kKey, "#"};
  for (const std::string& line : lines) {
    EXPECT_EQ(read(line), "nothing") << line;
  }
  EXPECT_EQ(read("imac# " + kKey), "imac#");
}

TEST(AllowedSigners, AFaultyLineIsCountedAndSpoilsNoOther) {
  const inv::AllowedSigners list =
      inv::read_allowed_signers("# both\n\nimac " + kKey + "\nbroken\r\n\n x y\nmini " + kOther);
  ASSERT_EQ(list.signers.size(), 2u);
  EXPECT_EQ(list.signers[0].principals, "imac");
  EXPECT_EQ(list.signers[1].principals, "mini");
  EXPECT_FALSE(list.signers[0].key == list.signers[1].key);
  ASSERT_EQ(list.faults.size(), 2u);
  EXPECT_EQ(list.faults[0].line, 4u);
  EXPECT_EQ(list.faults[1].line, 6u);
}

TEST(AllowedSigners, LinesMayBeOfAnyLength) {
  std::string names = "imac";
  for (int i = 0; i < 100'000; ++i) names += ",mac" + std::to_string(i);
  EXPECT_EQ(read(names + " " + kKey + " " + std::string(1'000'000, 'c') + "\n"), names);
}

TEST(AllowedSigners, NoCutOfALineIsMoreThanTheLine) {
  const std::string line = "imac namespaces=\"a\\\"b\",valid-after=\"19700101000005Z\" " + kKey;
  for (size_t length = 1; length < line.size(); ++length) {
    const inv::AllowedSigners list = inv::read_allowed_signers(line.substr(0, length));
    EXPECT_TRUE(list.signers.empty()) << length;
    EXPECT_EQ(list.faults.size(), 1u) << length;
  }
}

// The number of keys that a revocation list names, or its fault.
std::string revoked(const std::string& text) {
  inv::LineFault fault;
  const auto keys = inv::read_revoked_keys(text, &fault);
  return keys ? std::to_string(keys->size()) : std::to_string(fault.line) + ": " + fault.message;
}

TEST(RevokedKeys, AreKeysOneALine) {
  EXPECT_EQ(revoked(""), "0");
  EXPECT_EQ(revoked("# lost\n\n" + kKey + " studio\r\n \t" + kOther), "2");
  EXPECT_EQ(revoked(key_of_type("ssh-rsa") + "\n" + kKey), "2");
}

TEST(RevokedKeys, ALineThatCannotBeReadSpoilsTheList) {
  EXPECT_EQ(revoked(kKey + "\n\nnonsense\n" + kOther), std::string("3: ") + kNoKey);
  EXPECT_EQ(revoked("imac " + kKey), std::string("1: ") + kNoKey);
}

TEST(RevokedKeys, BinaryListsAreNamed) {
  EXPECT_EQ(revoked(std::string("SSHKRL\n\0\0\0\0\1", 12)),
            "1: binary revocation lists are not supported; list public keys, one per line");
}

}  // namespace
