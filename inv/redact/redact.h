// A file that can be given away: everything but the machine's identity.
#pragma once

#include <string>

#include "inv/file/inventory.h"
#include "inv/redact/pseudonym_table.h"

namespace inv {

struct RedactOptions {
  std::string key;   // what pseudonyms depend on; see pseudonym_key.h
  std::string salt;  // of a chosen key, for the file to carry; empty for a key that nobody keeps
  // Leaves out sections that are not trees. Without it a file with such sections is refused.
  bool drop_opaque = false;
};

struct Redaction {
  std::string bytes;      // of the file, proven; empty when there is none
  std::string refusal;    // why there is none, as a clause
  std::string remains;    // what in it may still tell whose it is, as a list; see remains.h
  Pseudonyms pseudonyms;  // of all that was replaced
};

// Replaces every identifier of the file's trees by its pseudonym, in its own place and wherever else it
// occurs as a token, reads the result, and proves that none is left. Damaged files are refused.
// The top elements get the attribute kSaltAttribute when there is a salt; that of a file which was redacted
// before is dropped.
Redaction redact(const Inventory& inventory, const RedactOptions& options);

// The proof: where one of these identifiers is left in a file, as a clause; empty when nowhere.
std::string find_survivor(const Pseudonyms& pseudonyms, const Inventory& inventory);

}  // namespace inv
