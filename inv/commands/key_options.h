// The options of `redact` that choose what its pseudonyms depend on.
#pragma once

#include <optional>
#include <string>

#include "inv/commands/command.h"

namespace inv {

struct KeyOptions {
  std::string key;
  std::string key_file;
  std::string salt_of;  // a redacted file, whose pseudonyms are to be met again
};

struct ChosenKey {
  std::string key;   // as pseudonyms take it
  std::string salt;  // for the file; empty when the key is random and forgotten
};

void add_key_options(CLI::App& command, KeyOptions& options);

// The key of --key-file, of --key or of the environment's VELKARO_KEY, stretched; a random one without these.
// None after a complaint.
std::optional<ChosenKey> choose_key(const KeyOptions& options, uint64_t max_size);

}  // namespace inv
