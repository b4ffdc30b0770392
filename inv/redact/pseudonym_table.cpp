#include "inv/redact/pseudonym_table.h"

#include <algorithm>

#include "inv/base/characters.h"
#include "inv/redact/common_words.h"

namespace inv {
namespace {

// If this many pseudonyms of a shape were taken, there may be no free one: a name is used instead.
constexpr unsigned kMostAttempts = 16;

// Versions, sizes and counts are full of shorter numbers.
constexpr size_t kFewestDigits = 6;

bool is_findable(Shape shape, std::string_view text) {
  if (shape == Shape::ipv4 || shape == Shape::ipv6) return true;
  const auto is_in_word = [](char character) {
    return is_letter(character) || static_cast<unsigned char>(character) >= 0x80;
  };
  if (std::any_of(text.begin(), text.end(), is_in_word)) return text.size() > 1;
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), is_digit)) >= kFewestDigits;
}

// Short names are part of many words: "rob" is in "problem".
constexpr size_t kShortestPart = 4;

bool is_part_worth_finding(std::string_view name) {
  constexpr size_t kLongestPart = 64;
  return name.size() >= kShortestPart && name.size() <= kLongestPart && !is_common_word(name);
}

}  // namespace

void Pseudonyms::add(IdentifierKind kind, std::string_view original, Reach reach) {
  if (is_full()) return;
  // Most identifiers occur many times in a file, and what follows is expensive.
  std::string once(1, static_cast<char>(kind));
  once.append(1, static_cast<char>(reach)).append(original);
  if (!seen_.insert(std::move(once)).second) return;
  bytes_ += kBytesOfIdentifier + original.size();
  const Shape shape = shape_of(kind, original);
  std::string canonical = canonical_form(shape, original);
  const auto [place, is_new] = by_canonical_.emplace(canonical, entries_.size());
  if (is_new) entries_.emplace_back(std::move(canonical), shape);
  Entry& entry = entries_[place->second];
  entry.shape = std::max(entry.shape, shape);
  entry.is_name = entry.is_name || kind != IdentifierKind::secret;
  if (reach == Reach::everywhere) entry.reach = reach;
  for (std::string& spelling : spellings(shape, original)) {
    if (by_spelling_.emplace(folded(spelling), place->second).second) {
      entry.spellings.push_back(std::move(spelling));
    }
  }
}

void Pseudonyms::assign() {
  make_findable();
  add_named_programs();
  std::unordered_set<std::string> taken;
  for (Entry& entry : entries_) assign(entry, taken);
}

void Pseudonyms::make_findable() {
  for (size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].reach == Reach::in_place) continue;
    for (const std::string& spelling : entries_[i].spellings) {
      if (is_findable(entries_[i].shape, spelling)) finder_.add(spelling, i);
    }
  }
  finder_.prepare();
}

void Pseudonyms::add_named_programs() {
  TokenFinder parts;
  for (const Entry& entry : entries_) {
    const bool is_name = entry.is_name && entry.shape == Shape::name && entry.reach == Reach::everywhere;
    if (is_name && is_part_worth_finding(entry.canonical)) parts.add(entry.canonical, 0);
  }
  parts.prepare();
  for (const std::string_view name : programs_) {
    if (parts.cuts_word(name)) add(IdentifierKind::text, name, Reach::in_place);
  }
  programs_ = {};
}

void Pseudonyms::assign(Entry& entry, std::unordered_set<std::string>& taken) const {
  while (!is_free(entry) || !taken.insert(folded(pseudonym_of(entry, entry.spellings.front()))).second) {
    if (++entry.attempt == kMostAttempts) entry.shape = Shape::name;
  }
}

bool Pseudonyms::is_free(const Entry& entry) const {
  return std::none_of(entry.spellings.begin(), entry.spellings.end(), [&](const std::string& spelling) {
    const std::string pseudonym = pseudonym_of(entry, spelling);
    return knows(pseudonym) || occurs_in(pseudonym);
  });
}

bool Pseudonyms::knows(std::string_view original) const { return by_spelling_.count(folded(original)) > 0; }

std::string Pseudonyms::replace(std::string_view original) const {
  const auto place = by_spelling_.find(folded(original));
  return place == by_spelling_.end() ? std::string(original)
                                     : pseudonym_of(entries_[place->second], original);
}

std::string Pseudonyms::replace_tokens(std::string_view text) const {
  std::string replaced;
  size_t end = 0;
  while (const auto match = finder_.find(text, end)) {
    replaced.append(text.substr(end, match->offset - end));
    replaced += pseudonym_of(entries_[match->id], text.substr(match->offset, match->length));
    end = match->offset + match->length;
  }
  return replaced.append(text.substr(end));
}

std::string Pseudonyms::pseudonym_of(const Entry& entry, std::string_view occurrence) const {
  return make_pseudonym(key_, entry.canonical, entry.attempt, entry.shape, occurrence);
}

}  // namespace inv
