// Looking for many texts in many texts at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace inv {

// The letters A to Z as small ones; other bytes stay.
std::string folded(std::string_view text);

// Finds known texts that are whole tokens. A text is a whole token where neither of its ends cuts through a
// run of ASCII letters and digits: "jane" does in "/Users/jane", "Jane's", "jane_old" and "JANE", not in
// "janet" or "jane2". Bytes of other characters end a run, because many languages put no blanks between
// words.
class TokenFinder {
 public:
  struct Match {
    size_t offset;
    size_t length;
    size_t id;
  };

  // A text to look for, in any case, and the number that matches carry; the first number given holds. The
  // empty text is never found. Of a longer text only the first kLongest bytes are compared.
  void add(std::string_view text, size_t id);
  // To be called once, when all have been added.
  void prepare();

  // The first match at or after `from`; the longest of those that begin at one place.
  std::optional<Match> find(std::string_view text, size_t from = 0) const;

  // Whether one of them occurs as a part of a longer word: "jane" in "janetool" and "x_janes".
  bool cuts_word(std::string_view text) const;

  // What bounds the time a byte of text can cost.
  static constexpr size_t kLongest = 256;

 private:
  struct Pattern {
    std::string text;  // folded
    size_t id;
  };

  // Calls visit(const Pattern&) for each that stands at this place, the shortest first.
  template <typename Visit>
  void each_at(std::string_view text, size_t offset, Visit visit) const;
  std::optional<Match> match_at(std::string_view text, size_t offset) const;

  std::vector<Pattern> patterns_;  // sorted by text
};

}  // namespace inv
