#include "inv/redact/token_finder.h"

#include <algorithm>
#include <iterator>

namespace inv {
namespace {

char folded(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool in_run(char character) {
  const char small = folded(character);
  return (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9');
}

bool cuts_run(std::string_view text, size_t offset) {
  return offset > 0 && offset < text.size() && in_run(text[offset - 1]) && in_run(text[offset]);
}

}  // namespace

std::string folded(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(), [](char character) { return folded(character); });
  return small;
}

void TokenFinder::add(std::string_view text, size_t id) {
  if (!text.empty()) patterns_.push_back({folded(text.substr(0, kLongest)), id});
}

void TokenFinder::prepare() {
  std::stable_sort(patterns_.begin(), patterns_.end(),
                   [](const Pattern& left, const Pattern& right) { return left.text < right.text; });
  const auto same_text = [](const Pattern& left, const Pattern& right) { return left.text == right.text; };
  patterns_.erase(std::unique(patterns_.begin(), patterns_.end(), same_text), patterns_.end());
}

// Byte by byte, the patterns that still match form a shrinking range; its first one may end here.
template <typename Visit>
void TokenFinder::each_at(std::string_view text, size_t offset, Visit visit) const {
  auto first = patterns_.begin();
  auto last = patterns_.end();
  for (size_t depth = 0;; ++depth) {
    if (first != last && first->text.size() == depth) visit(*first++);
    if (first == last || offset + depth == text.size()) return;
    const unsigned char wanted = static_cast<unsigned char>(folded(text[offset + depth]));
    const auto byte_at_depth = [depth](const Pattern& pattern) {
      return static_cast<unsigned char>(pattern.text[depth]);
    };
    // Mostly all of them match, and there is nothing to search.
    if (byte_at_depth(*first) == wanted && byte_at_depth(*std::prev(last)) == wanted) continue;
    first = std::partition_point(first, last,
                                 [&](const Pattern& pattern) { return byte_at_depth(pattern) < wanted; });
    last = std::partition_point(first, last,
                                [&](const Pattern& pattern) { return byte_at_depth(pattern) == wanted; });
  }
}

std::optional<TokenFinder::Match> TokenFinder::find(std::string_view text, size_t from) const {
  for (size_t offset = from; offset < text.size(); ++offset) {
    if (cuts_run(text, offset)) continue;
    if (const std::optional<Match> match = match_at(text, offset)) return match;
  }
  return std::nullopt;
}

std::optional<TokenFinder::Match> TokenFinder::match_at(std::string_view text, size_t offset) const {
  std::optional<Match> longest;
  each_at(text, offset, [&](const Pattern& pattern) {
    const size_t length = pattern.text.size();
    const bool cut = length < kLongest && cuts_run(text, offset + length);
    if (!cut) longest = Match{offset, length, pattern.id};
  });
  return longest;
}

bool TokenFinder::cuts_word(std::string_view text) const {
  bool cuts = false;
  for (size_t offset = 0; offset < text.size() && !cuts; ++offset) {
    each_at(text, offset, [&](const Pattern& pattern) {
      cuts = cuts || cuts_run(text, offset) || cuts_run(text, offset + pattern.text.size());
    });
  }
  return cuts;
}

}  // namespace inv
