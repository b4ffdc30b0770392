#include "inv/secrets/secret_names.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kWholeWords[] = {"key",  "auth",     "cookie", "authorization",
                                       "pass", "passcode", "sshpass"};
constexpr const char* kEndings[] = {"token",  "secret",  "password",  "passwd",    "passphrase", "credential",
                                    "apikey", "authkey", "accesskey", "secretkey", "privatekey"};

TEST(SecretNames, HoldAWordThatSaysSo) {
  for (const std::string word : kWholeWords) {
    EXPECT_TRUE(inv::names_secret(word)) << word;
    EXPECT_TRUE(inv::names_secret("my_" + word + "_1")) << word;
    EXPECT_FALSE(inv::names_secret("x" + word)) << word;
    EXPECT_FALSE(inv::names_secret(word + "x")) << word;
  }
}

TEST(SecretNames, MayHaveLettersBeforeSomeOfTheWords) {
  for (const std::string word : kEndings) {
    EXPECT_TRUE(inv::names_secret(word)) << word;
    EXPECT_TRUE(inv::names_secret("x" + word)) << word;
    EXPECT_FALSE(inv::names_secret(word + "x")) << word;
  }
}

TEST(SecretNames, CountInThePlural) {
  for (const char* name : {"keys", "TOKENS", "credentials", "cookies"})
    EXPECT_TRUE(inv::names_secret(name)) << name;
  EXPECT_FALSE(inv::names_secret("keyss"));
}

TEST(SecretNames, AreSeparatedByTheirCase) {
  for (const char* name :
       {"apiKey", "APIKey", "ApiKEY", "accessToken", "X-Auth-Token", "client.secret", "key2"})
    EXPECT_TRUE(inv::names_secret(name)) << name;
  for (const char* name : {"KEYBOARD", "monkey", "Keyboard", "tokenizer", "author", "bypass", "compass"})
    EXPECT_FALSE(inv::names_secret(name)) << name;
}

TEST(SecretNames, DoNotEndInAWordAboutTheSecret) {
  for (const std::string about :
       {"file", "path",   "dir",  "directory", "folder",  "sock",   "socket",    "type",
        "size", "length", "bits", "mode",      "alg",     "method", "algorithm", "version",
        "url",  "uri",    "host", "port",      "timeout", "format"}) {
    EXPECT_FALSE(inv::names_secret("key_" + about)) << about;
    EXPECT_TRUE(inv::names_secret(about + "_key")) << about;
    EXPECT_TRUE(inv::names_secret("key_" + about + "_x")) << about;
  }
}

TEST(SecretNames, HoldAPasswordThatIsAbbreviated) {
  EXPECT_TRUE(inv::names_secret("MYSQL_PWD"));
  for (const char* name : {"PWD", "OLDPWD", "PWD_X", ""}) EXPECT_FALSE(inv::names_secret(name)) << name;
}

TEST(SecretNames, AreReadFromTheirLast256Characters) {
  EXPECT_TRUE(inv::names_secret(std::string(1000, '_') + "key" + std::string(253, '_')));
  EXPECT_FALSE(inv::names_secret("key" + std::string(256, '_')));
}

}  // namespace
