// Searches texts for many patterns at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace inv {

// A to Z in lower case; other bytes unchanged.
std::string folded(std::string_view text);

// Finds known texts that are whole tokens. A text is a whole token if neither of its ends cuts through a run
// of ASCII letters and digits: "jane" is one in "/Users/jane", "Jane's", "jane_old" and "JANE", but not in
// "janet" or "jane2". Other characters end a run, because many languages put no blanks between words.
class TokenFinder {
 public:
  struct Match {
    size_t offset;
    size_t length;
    size_t id;
  };

  // Adds a text to look for, ignoring case, with the id of its matches; a text keeps its first id. The empty
  // text is never found. Only the first kLongest bytes of a text are compared.
  void add(std::string_view text, size_t id);
  // Call once, after all texts have been added.
  void prepare();

  // The first match at or after `from`; the longest if several begin there.
  std::optional<Match> find(std::string_view text, size_t from = 0) const;

  // Whether one of them occurs as part of a longer word: "jane" in "janetool" and "x_janes".
  bool cuts_word(std::string_view text) const;

  // Bounds the time that each byte of text can cost.
  static constexpr size_t kLongest = 256;

 private:
  struct Pattern {
    std::string text;  // folded
    size_t id;
  };

  // Calls visit(const Pattern&) for each one at this place, the shortest first.
  template <typename Visit>
  void each_at(std::string_view text, size_t offset, Visit visit) const;
  std::optional<Match> match_at(std::string_view text, size_t offset) const;

  std::vector<Pattern> patterns_;  // sorted by text
};

}  // namespace inv
