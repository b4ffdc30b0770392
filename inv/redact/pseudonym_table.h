// The pseudonyms of one file: every identifier in it, and its replacement.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "inv/redact/pseudonym.h"
#include "inv/redact/token_finder.h"
#include "inv/redact/traces.h"

namespace inv {

class Pseudonyms {
 public:
  explicit Pseudonyms(std::string key) : key_(std::move(key)) {}

  // How many bytes the identifiers may take, each with kBytesOfIdentifier in addition to its own; unlimited
  // by default. Those beyond are not added.
  void limit_size(uint64_t most_bytes) { most_bytes_ = most_bytes; }
  bool is_full() const { return bytes_ > most_bytes_; }
  static constexpr uint64_t kBytesOfIdentifier = 128;

  // First add all identifiers. One that was ever added with Reach::everywhere is replaced everywhere.
  void add(IdentifierKind kind, std::string_view original, Reach reach = Reach::everywhere);
  // Adds the name of a process or a variable. In its place it is an identifier if somebody's name is part of
  // a word in it: "janetool". The text must be valid until assign().
  void add_program(std::string_view name) { programs_.push_back(name); }
  // Then gives each a unique pseudonym, which neither is an identifier of the file nor contains one as a
  // token.
  void assign();

  size_t count() const { return entries_.size(); }
  bool knows(std::string_view original) const;

  // Whether an identifier that is replaced everywhere occurs in a text as a token (see TokenFinder). Those
  // that look like ordinary text are not looked for: single characters, and fewer than six digits without a
  // letter.
  bool occurs_in(std::string_view text) const { return finder_.find(text).has_value(); }

  // The pseudonym of a whole identifier.
  std::string replace(std::string_view original) const;
  // A text with a pseudonym for each identifier in it.
  std::string replace_tokens(std::string_view text) const;

 private:
  struct Entry {
    Entry(std::string its_canonical, Shape its_shape)
        : canonical(std::move(its_canonical)), shape(its_shape) {}

    std::string canonical;
    Shape shape;
    unsigned attempt = 0;
    bool is_name = false;  // of a person, a machine or a place
    Reach reach = Reach::in_place;
    std::vector<std::string> spellings;
  };

  std::string pseudonym_of(const Entry& entry, std::string_view occurrence) const;
  bool is_free(const Entry& entry) const;
  void make_findable();
  void add_named_programs();
  void assign(Entry& entry, std::unordered_set<std::string>& taken) const;

  std::string key_;
  uint64_t bytes_ = 0;
  uint64_t most_bytes_ = std::numeric_limits<uint64_t>::max();
  std::unordered_set<std::string> seen_;  // with their kinds, as they were added
  std::vector<Entry> entries_;
  std::unordered_map<std::string, size_t> by_canonical_;
  std::unordered_map<std::string, size_t> by_spelling_;  // folded
  std::vector<std::string_view> programs_;
  TokenFinder finder_;
};

}  // namespace inv
