// The pseudonyms of one file: every identifier in it, and its replacement.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "inv/redact/pseudonym.h"
#include "inv/redact/token_finder.h"

namespace inv {

class Pseudonyms {
 public:
  explicit Pseudonyms(std::string key) : key_(std::move(key)) {}

  // First all identifiers are made known.
  void add(IdentifierKind kind, std::string_view original);
  // Then each one gets its pseudonym, which is no identifier of the file, holds none as a token, and is no
  // other one's.
  void assign();

  size_t count() const { return entries_.size(); }
  bool knows(std::string_view original) const;

  // Whether an identifier occurs in a text as a token (see TokenFinder). Those that cannot be distinguished
  // from ordinary text are not looked for: a single character, and fewer than six digits without a letter.
  bool occurs_in(std::string_view text) const { return finder_.find(text).has_value(); }

  // The pseudonym of a whole identifier.
  std::string replace(std::string_view original) const;
  // A text with a pseudonym for each identifier in it.
  std::string replace_tokens(std::string_view text) const;

 private:
  struct Entry {
    std::string canonical;
    Shape shape;
    unsigned attempt = 0;
    std::vector<std::string> spellings;
  };

  std::string pseudonym_of(const Entry& entry, std::string_view occurrence) const;
  bool is_free(const Entry& entry) const;
  void make_findable();
  void assign(Entry& entry, std::unordered_set<std::string>& taken) const;

  std::string key_;
  std::vector<Entry> entries_;
  std::unordered_map<std::string, size_t> by_canonical_;
  std::unordered_map<std::string, size_t> by_spelling_;  // folded
  TokenFinder finder_;
};

}  // namespace inv
