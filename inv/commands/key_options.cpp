#include "inv/commands/key_options.h"

#include <cstdlib>

#include "inv/base/input_file.h"
#include "inv/redact/pseudonym_key.h"
#include "inv/show/terminal.h"

namespace inv {
namespace {

constexpr char kKeyVariable[] = "VELKARO_KEY";
constexpr uint64_t kLargestKeyFile = 4096;

std::nullopt_t refuse(const std::string& about, const std::string& reason) {
  complain(about, reason);
  return std::nullopt;
}

// The line end that editors append is not part of the key.
std::string without_line_end(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  return text;
}

struct SourcedKey {
  std::string source;  // for messages; empty if no key was chosen
  std::string key;
};

std::optional<SourcedKey> read_key(const KeyOptions& options) {
  if (!options.key_file.empty()) {
    std::string error;
    std::optional<std::string> text = read_file(options.key_file, kLargestKeyFile, &error);
    if (!text) return refuse(options.key_file, error);
    return SourcedKey{options.key_file, without_line_end(std::move(*text))};
  }
  if (!options.key.empty()) {
    complain("--key",
             "every user of this computer can read the key in `ps`; --key-file and VELKARO_KEY hide it");
    return SourcedKey{"--key", options.key};
  }
  const char* variable = std::getenv(kKeyVariable);
  return variable && *variable ? SourcedKey{kKeyVariable, variable} : SourcedKey{};
}

std::optional<std::string> choose_salt(const std::string& salt_of_file, uint64_t max_size) {
  if (salt_of_file.empty()) return random_salt();
  int status = kDone;
  const std::unique_ptr<Inventory> inventory = open_for_command(salt_of_file, max_size, status);
  if (!inventory) return std::nullopt;
  const std::optional<std::string> salt = salt_of(*inventory);
  return salt ? salt : refuse(salt_of_file, "has no salt: it was not redacted with a key");
}

std::optional<ChosenKey> forgotten_key() {
  const std::optional<std::string> key = random_key();
  if (!key) return refuse("redact", "no random numbers are available for a key");
  return ChosenKey{*key, ""};
}

}  // namespace

void add_key_options(CLI::App& command, KeyOptions& options) {
  CLI::Option* key =
      command.add_option("--key", options.key, "What the pseudonyms depend on; `ps` shows it (a random key)")
          ->type_name("TEXT")
          ->check([](const std::string& text) { return text.empty() ? "a key cannot be empty" : ""; });
  command.add_option("--key-file", options.key_file, "A file with the key; - is standard input")
      ->type_name("FILE")
      ->excludes(key);
  command
      .add_option("--salt-of", options.salt_of, "Use the pseudonyms of this file, redacted with the same key")
      ->type_name("REDACTED");
}

std::optional<ChosenKey> choose_key(const KeyOptions& options, uint64_t max_size) {
  const std::optional<SourcedKey> chosen = read_key(options);
  if (!chosen) return std::nullopt;
  if (chosen->source.empty()) {
    if (options.salt_of.empty()) return forgotten_key();
    return refuse("--salt-of", "needs that file's key (--key-file, VELKARO_KEY)");
  }
  if (chosen->key.size() < kShortestKey) {
    return refuse(chosen->source, "a key of fewer than " + std::to_string(kShortestKey) +
                                      " bytes can be guessed, and with it every pseudonym");
  }
  const std::optional<std::string> salt = choose_salt(options.salt_of, max_size);
  if (!salt) return std::nullopt;
  const std::optional<std::string> key = stretched_key(chosen->key, *salt);
  if (!key) return refuse("redact", "stretching the key needs 256 MB of memory");
  return ChosenKey{*key, *salt};
}

}  // namespace inv
