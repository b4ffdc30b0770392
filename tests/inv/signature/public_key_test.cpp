#include "inv/signature/public_key.h"

#include <gtest/gtest.h>

#include "inv/signature/signing.h"
#include "inv/signature/wire.h"

namespace {

// Made by ssh-keygen, which printed the fingerprint.
constexpr char kLine[] =
    "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIDlhok93iVF+z4CEiforKs7Dkq/0fZ7E2L9teEhP5+5G "
    "studio-imac@example.com";
constexpr char kFingerprint[] = "SHA256:Zyag9x94Hu4gQjgVJg2hNN4CxuyamBqF9ChLYdb8ciU";

// The key at the front of a text, and what is left of the text after it.
std::string taken(std::string_view text) {
  const std::optional<inv::PublicKey> key = inv::take_key(text);
  return (key ? key->type : "none") + "|" + std::string(text);
}

std::string line(std::string_view type, std::string_view blob) {
  return std::string(type) + " " + signing::base64(blob);
}

TEST(PublicKey, ReadsWhatSshKeygenWrites) {
  std::string_view text = kLine;
  const std::optional<inv::PublicKey> key = inv::take_key(text);
  ASSERT_TRUE(key);
  EXPECT_EQ(text, " studio-imac@example.com");
  EXPECT_TRUE(key->is_ed25519());
  EXPECT_EQ(key->fingerprint(), kFingerprint);
  EXPECT_EQ(key->ed25519_bytes().size(), 32u);
  EXPECT_EQ(signing::base64(key->ed25519_bytes()), "OWGiT3eJUX7PgISJ+isqzsOSr/R9nsTYv214SE/n7kY=");
}

TEST(PublicKey, MayBeBetweenAnyBlanks) {
  const signing::Key key('1');
  const std::string encoded = key.line().substr(12);
  EXPECT_EQ(taken(" \tssh-ed25519 \t " + encoded + "\r\n"), "ssh-ed25519|\r\n");
  EXPECT_EQ(taken("ssh-ed25519\t" + encoded), "ssh-ed25519|");
}

TEST(PublicKey, OtherTypesAreKnownByTheirName) {
  for (const char* type : {"ssh-rsa", "ssh-dss", "ecdsa-sha2-nistp256", "sk-ssh-ed25519@openssh.com",
                           "ssh-ed25519-cert-v01@openssh.com", "a-type-of-the-future"}) {
    EXPECT_EQ(taken(line(type, inv::wire_string(type) + "anything")), std::string(type) + "|");
  }
}

TEST(PublicKey, RefusesWhatDoesNotAgree) {
  const std::string blob = signing::Key('1').blob();
  const std::string rsa = inv::wire_string("ssh-rsa");
  const std::string texts[] = {
      "",
      "ssh-ed25519",
      "ssh-ed25519 ",
      "ssh-ed25519 !",
      line("ssh-rsa", blob),
      line("ssh-ed25519", rsa),
      line("", blob),
      line("SSH-ED25519", blob),
      line("ssh-ed25519", blob.substr(0, blob.size() - 1)),
      line("ssh-ed25519", blob + "x"),
      line("ssh-ed25519", inv::wire_string("ssh-ed25519") + inv::wire_string(std::string(31, 'k'))),
      line("ssh-ed25519", inv::wire_string("ssh-ed25519") + inv::wire_string(std::string(33, 'k'))),
      line("ssh-ed25519", inv::wire_string("ssh-ed25519") + std::string(32, 'k')),
      line("ssh-ed25519", "ssh-ed25519"),
      "x " + signing::base64(inv::wire_string(""))};
  for (const std::string& text : texts) {
    EXPECT_EQ(taken(text), "none|" + text);
  }
}

TEST(PublicKey, KeysAreTheSameWhenTheirBytesAre) {
  EXPECT_EQ(*inv::read_key(signing::Key('1').blob()), *inv::read_key(signing::Key('1').blob()));
  EXPECT_FALSE(*inv::read_key(signing::Key('1').blob()) == *inv::read_key(signing::Key('2').blob()));
}

TEST(PublicKey, RefusesEveryTruncation) {
  const std::string blob = signing::Key('1').blob();
  for (size_t length = 0; length < blob.size(); ++length) {
    EXPECT_FALSE(inv::read_key(blob.substr(0, length))) << length;
  }
}

}  // namespace
