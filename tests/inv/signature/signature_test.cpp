#include "inv/signature/signature.h"

#include <gtest/gtest.h>

#include "inv/signature/signing.h"
#include "inv/signature/wire.h"

namespace {

using inv::wire_string;
using signing::Form;
using signing::with;

const signing::Key kKey('1');
constexpr char kFile[] = "a snapshot\n";
constexpr char kDamaged[] = "the signature is damaged";
constexpr char kNoSignature[] = "it is not a signature as ssh-keygen -Y sign makes it";

// Made by ssh-keygen: the key, and two signatures of kFile by it.
constexpr char kRealKey[] =
    "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIDlhok93iVF+z4CEiforKs7Dkq/0fZ7E2L9teEhP5+5G";
constexpr char kRealSha512[] =
    "-----BEGIN SSH SIGNATURE-----\n"
    "U1NIU0lHAAAAAQAAADMAAAALc3NoLWVkMjU1MTkAAAAgOWGiT3eJUX7PgISJ+isqzsOSr/\n"
    "R9nsTYv214SE/n7kYAAAARdmVsa2Fyby1pbnZlbnRvcnkAAAAAAAAABnNoYTUxMgAAAFMA\n"
    "AAALc3NoLWVkMjU1MTkAAABAghmwTD43NH9oAXIZSzGriid0ECET2gCz0JgtlYJfXQRZLk\n"
    "k2yiFpcz5Qv3aXf9Lox/T2aLOGGOZ+PMKWtjj8Ag==\n"
    "-----END SSH SIGNATURE-----\n";
constexpr char kRealSha256[] =
    "-----BEGIN SSH SIGNATURE-----\n"
    "U1NIU0lHAAAAAQAAADMAAAALc3NoLWVkMjU1MTkAAAAgOWGiT3eJUX7PgISJ+isqzsOSr/\n"
    "R9nsTYv214SE/n7kYAAAARdmVsa2Fyby1pbnZlbnRvcnkAAAAAAAAABnNoYTI1NgAAAFMA\n"
    "AAALc3NoLWVkMjU1MTkAAABA0j3gIHaYDhCTUGUKlVTLhVdCRQjuHJzqPTByH+zQ3h0Ing\n"
    "zuaYfhAAOiwVUM0NE84Qafs6UcG81yuOMIe9Q0CQ==\n"
    "-----END SSH SIGNATURE-----\n";

// What reading a signature says: that it is the file's, that it is not, or why it cannot be read.
std::string outcome(const std::string& text, std::string_view file = kFile) {
  std::string error;
  const std::optional<inv::Signature> signature = inv::read_signature(text, &error);
  if (!signature) return error;
  return inv::is_signature_of(*signature, file) ? "its" : "not its";
}

std::string outcome(const Form& form) { return outcome(signing::signature_text(kKey, kFile, form)); }

TEST(Signature, ReadsWhatSshKeygenWrites) {
  std::string error;
  for (const char* text : {kRealSha512, kRealSha256}) {
    const std::optional<inv::Signature> signature = inv::read_signature(text, &error);
    ASSERT_TRUE(signature) << error;
    EXPECT_EQ("ssh-ed25519 " + signing::base64(signature->key.blob), kRealKey);
    EXPECT_EQ(signature->signed_for, "velkaro-inventory");
    EXPECT_EQ(signature->hash, text == kRealSha512 ? "sha512" : "sha256");
    EXPECT_TRUE(inv::is_signature_of(*signature, kFile));
    EXPECT_FALSE(inv::is_signature_of(*signature, "a snapshot"));
  }
}

TEST(Signature, OurOwnFormIsSshKeygens) {
  EXPECT_EQ(outcome(Form{}), "its");
  EXPECT_EQ(outcome(with(&Form::hash, "sha256")), "its");
}

TEST(Signature, IsOfExactlyItsFile) {
  const std::string text = signing::signature_text(kKey, kFile);
  EXPECT_EQ(outcome(text, "a snapshot"), "not its");
  EXPECT_EQ(outcome(text, "a snapshot\n\n"), "not its");
  EXPECT_EQ(outcome(text, ""), "not its");
  EXPECT_EQ(outcome(signing::signature_text(kKey, ""), ""), "its");
}

TEST(Signature, IsOfItsKeyPurposeAndHash) {
  EXPECT_EQ(outcome(with(&Form::key_blob, signing::Key('2').blob())), "not its");
  const std::string blob = signing::signature_blob(kKey, kFile);
  for (const auto& [part, other] :
       {std::pair("velkaro-inventory", "velkaro-inventorY"), {"sha512", "sha256"}}) {
    std::string changed = blob;
    changed.replace(changed.find(part), std::string(part).size(), other);
    EXPECT_EQ(outcome(signing::armored(changed)), "not its") << part;
  }
}

TEST(Signature, SaysWhatItWasMadeFor) {
  std::string error;
  const auto signature =
      inv::read_signature(signing::signature_text(kKey, kFile, with(&Form::signed_for, "file")), &error);
  ASSERT_TRUE(signature);
  EXPECT_EQ(signature->signed_for, "file");
  EXPECT_TRUE(inv::is_signature_of(*signature, kFile));
}

TEST(Signature, PassesOverTheReservedField) { EXPECT_EQ(outcome(with(&Form::reserved, "tags")), "its"); }

TEST(Signature, RefusesOtherMagicAndVersions) {
  EXPECT_EQ(outcome(with(&Form::magic, "SSHSIH")), kDamaged);
  EXPECT_EQ(outcome(with(&Form::version, 0)), "it is of another version than 1");
  EXPECT_EQ(outcome(with(&Form::version, 2)), "it is of another version than 1");
}

TEST(Signature, NamesTypesOfKeysThatItDoesNotCheck) {
  for (const std::string type :
       {"ssh-rsa", "ecdsa-sha2-nistp256", "sk-ssh-ed25519@openssh.com", "ssh-ed25519-cert-v01@openssh.com"}) {
    EXPECT_EQ(outcome(with(&Form::key_blob, wire_string(type) + "anything")),
              "it is signed with a key of the type " + type + ", and only ssh-ed25519 is supported");
  }
}

TEST(Signature, NamesHashesThatItDoesNotKnow) {
  for (const std::string hash : {"sha1", "md5", "sha5120", "SHA512", ""}) {
    EXPECT_EQ(outcome(with(&Form::hash, hash)),
              "it is a signature of the hash " + hash + ", and only sha256 and sha512 are supported");
  }
}

TEST(Signature, RefusesFieldsOfTheWrongLength) {
  EXPECT_EQ(outcome(with(&Form::key_blob, "")), kDamaged);
  EXPECT_EQ(outcome(with(&Form::key_blob, kKey.blob() + "x")), kDamaged);
  EXPECT_EQ(outcome(with(&Form::type, "ssh-rsa")), kDamaged);
  EXPECT_EQ(outcome(with(&Form::bytes, std::string(63, 's'))), kDamaged);
  EXPECT_EQ(outcome(with(&Form::bytes, std::string(65, 's'))), kDamaged);
  EXPECT_EQ(outcome(with(&Form::bytes, std::string(64, 's'))), "not its");
  EXPECT_EQ(outcome(with(&Form::behind_bytes, "x")), kDamaged);
  EXPECT_EQ(outcome(with(&Form::behind_all, "x")), kDamaged);
}

TEST(Signature, RefusesEveryTruncation) {
  const std::string blob = signing::signature_blob(kKey, kFile);
  for (size_t length = 1; length < blob.size(); ++length) {
    EXPECT_EQ(outcome(signing::armored(blob.substr(0, length))),
              length >= 6 && length < 10 ? "it is of another version than 1" : kDamaged)
        << length;
  }
}

TEST(Signature, EveryFlippedByteOfItRefuses) {
  const std::string blob = signing::signature_blob(kKey, kFile);
  for (size_t i = 0; i < blob.size(); ++i) {
    for (const int flip : {0x01, 0x10, 0x80, 0xFF}) {
      std::string flipped = blob;
      flipped[i] = static_cast<char>(flipped[i] ^ flip);
      EXPECT_NE(outcome(signing::armored(flipped)), "its") << "byte " << i << " xor " << flip;
    }
  }
}

TEST(Armor, MayHaveTheLineEndsOfOtherSystemsAndAnyColumns) {
  std::string text = kRealSha512;
  for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) text.insert(at, "\r");
  EXPECT_EQ(outcome(text), "its");
  const std::string encoded = signing::base64(signing::signature_blob(kKey, kFile));
  EXPECT_EQ(outcome("-----BEGIN SSH SIGNATURE-----\n" + encoded + "\n-----END SSH SIGNATURE-----"), "its");
  EXPECT_EQ(outcome("-----BEGIN SSH SIGNATURE-----\n\n " + encoded + "\t\n\n-----END SSH SIGNATURE-----"),
            "its");
}

TEST(Armor, EndsTheText) {
  EXPECT_EQ(outcome(std::string(kRealSha512) + "and a note"), "its");
  EXPECT_EQ(outcome(std::string(kRealSha512) + kRealSha256), "its");
}

TEST(Armor, BeginsTheText) {
  const std::string text = kRealSha512;
  const std::string texts[] = {"",
                               " " + text,
                               "\n" + text,
                               text.substr(1),
                               "-----BEGIN SSH SIGNATURE-----",
                               "-----BEGIN SSH SIGNATURE-----\n",
                               "-----BEGIN SSH SIGNATURE-----\r" + text.substr(30),
                               "-----BEGIN SSH SIGNATURE-----" + text.substr(30),
                               "-----BEGIN SSH SIGNATURE----- \n" + text.substr(30),
                               "-----BEGIN SSH SIGNATURE-----\n-----END SSH SIGNATURE-----"};
  for (const std::string& wrong : texts) {
    EXPECT_EQ(outcome(wrong), kNoSignature) << wrong;
  }
  EXPECT_EQ(outcome("-----BEGIN SSH SIGNATURE-----\n\n-----END SSH SIGNATURE-----"), kDamaged);
}

TEST(Armor, HasItsEndOnALineOfItsOwn) {
  const std::string text = kRealSha512;
  EXPECT_EQ(outcome(text.substr(0, text.size() - 28)), kNoSignature);
  EXPECT_EQ(outcome(text.substr(0, text.size() - 2)), kNoSignature);
  EXPECT_EQ(outcome(text.substr(0, text.size() - 29) + "-----END SSH SIGNATURE-----"), kNoSignature);
}

TEST(Armor, HoldsBase64AndNothingElse) {
  const std::string text = kRealSha512;
  for (const char wrong : {'!', '-', '_', '=', '\0', '\x80'}) {
    std::string changed = text;
    changed[50] = wrong;
    EXPECT_EQ(outcome(changed), kNoSignature) << wrong;
    changed = text;
    changed.insert(50, 1, wrong);
    EXPECT_EQ(outcome(changed), kNoSignature) << wrong;
  }
}

}  // namespace
