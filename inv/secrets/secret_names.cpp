#include "inv/secrets/secret_names.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "inv/base/characters.h"

namespace inv {
namespace {

struct SecretWord {
  enum class Place { whole, ending };

  std::string_view word;
  Place place;  // whether other letters may come before it: "PGPASSWORD"
};

// Plurals count as well.
constexpr SecretWord kSecretWords[] = {
    {"key", SecretWord::Place::whole},         {"token", SecretWord::Place::ending},
    {"secret", SecretWord::Place::ending},     {"password", SecretWord::Place::ending},
    {"passwd", SecretWord::Place::ending},     {"passphrase", SecretWord::Place::ending},
    {"credential", SecretWord::Place::ending}, {"auth", SecretWord::Place::whole},
    {"cookie", SecretWord::Place::whole},      {"authorization", SecretWord::Place::whole},
    {"pass", SecretWord::Place::whole},        {"passcode", SecretWord::Place::whole},
    {"sshpass", SecretWord::Place::whole},     {"apikey", SecretWord::Place::ending},
    {"authkey", SecretWord::Place::ending},    {"accesskey", SecretWord::Place::ending},
    {"secretkey", SecretWord::Place::ending},  {"privatekey", SecretWord::Place::ending},
};

// As the last word these name something about a secret, not the secret itself.
constexpr std::string_view kAboutSecrets[] = {
    "file", "path", "dir",    "directory", "folder",  "sock", "socket", "type", "size", "length",  "bits",
    "mode", "alg",  "method", "algorithm", "version", "url",  "uri",    "host", "port", "timeout", "format",
};

// Whether a word begins at this letter: "access_key", "accessKey", "APIKey".
bool begins_word(std::string_view name, size_t at) {
  if (at == 0 || !is_letter(name[at - 1])) return true;
  if (!is_upper(name[at])) return false;
  return is_lower(name[at - 1]) || (at + 1 < name.size() && is_lower(name[at + 1]));
}

std::vector<std::string> words_of(std::string_view name) {
  std::vector<std::string> words;
  for (size_t at = 0; at < name.size(); ++at) {
    if (!is_letter(name[at])) continue;
    if (begins_word(name, at)) words.emplace_back();
    words.back() += lower_case(name[at]);
  }
  return words;
}

bool is_secret_word(std::string_view word) {
  if (ends_with(word, "s") && !ends_with(word, "ss")) word.remove_suffix(1);
  return std::any_of(std::begin(kSecretWords), std::end(kSecretWords), [word](const SecretWord& secret) {
    return secret.place == SecretWord::Place::whole ? word == secret.word : ends_with(word, secret.word);
  });
}

bool tells_about_secrets(std::string_view word) {
  return std::find(std::begin(kAboutSecrets), std::end(kAboutSecrets), word) != std::end(kAboutSecrets);
}

// "PWD" alone is the working directory.
bool is_abbreviated_password(const std::vector<std::string>& words) {
  return words.size() > 1 && words.back() == "pwd";
}

// The end of a longer name says what it is.
constexpr size_t kLongestName = 256;

}  // namespace

bool names_secret(std::string_view name) {
  if (name.size() > kLongestName) name.remove_prefix(name.size() - kLongestName);
  const std::vector<std::string> words = words_of(name);
  if (words.empty() || tells_about_secrets(words.back())) return false;
  return is_abbreviated_password(words) || std::any_of(words.begin(), words.end(), is_secret_word);
}

}  // namespace inv
