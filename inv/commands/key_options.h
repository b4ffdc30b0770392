// The options of `redact` that choose what its pseudonyms depend on.
#pragma once

#include <optional>
#include <string>

#include "inv/commands/command.h"

namespace inv {

struct KeyOptions {
  std::string key;
  std::string key_file;
  std::string salt_of;  // a redacted file whose pseudonyms are to be used again
};

struct ChosenKey {
  std::string key;   // ready for making pseudonyms
  std::string salt;  // for the file; empty if the key is random and forgotten
};

void add_key_options(CLI::App& command, KeyOptions& options);

// The key from --key-file, --key or the environment variable VELKARO_KEY, stretched; a random one without
// these. std::nullopt after a complaint.
std::optional<ChosenKey> choose_key(const KeyOptions& options, uint64_t max_size);

}  // namespace inv
