// A file that can be given away: everything but the machine's identity.
#pragma once

#include <memory>
#include <string>

#include "inv/file/inventory.h"
#include "inv/redact/pseudonym_table.h"

namespace inv {

struct RedactOptions {
  std::string key;   // what pseudonyms depend on; see pseudonym_key.h
  std::string salt;  // of a chosen key, to be stored in the file; empty for a random key
  // Leaves out sections that are not trees. Otherwise a file with such sections is refused.
  bool drop_opaque = false;
  // What the result may inflate to, in bytes, so that whoever gets it can read it as well; of the identifiers
  // in the file, an eighth.
  uint64_t max_size = kUsualMaxSize;
};

struct Redaction {
  std::string bytes;      // the proven file; empty if there is none
  std::string refusal;    // why there is no file, as a clause
  std::string remains;    // what may still identify the machine, as a list; see remains.h
  Pseudonyms pseudonyms;  // of all that was replaced
};

// Replaces every identifier in the file's trees by its pseudonym, in its own place and wherever else it
// occurs as a token, reads the result, and proves that no identifier is left. Damaged files are refused. If
// there is a salt, the top elements get the attribute kSaltAttribute; that of an earlier redaction is
// dropped. The inventory is given up, since the result takes its place in memory.
Redaction redact(std::unique_ptr<Inventory> inventory, const RedactOptions& options);

// The proof: where one of these identifiers is left in a file, as a clause; empty if nowhere.
std::string find_survivor(const Pseudonyms& pseudonyms, const Inventory& inventory);

}  // namespace inv
