#include "inv/base/wildcards.h"

namespace inv {

// Each star first matches nothing, and one more byte whenever the rest does not fit. Only the last star ever
// needs to grow.
bool matches(std::string_view pattern, std::string_view text, Wildcards wildcards) {
  const bool has_marks = wildcards == Wildcards::star_and_mark;
  size_t at = 0;
  size_t star = std::string_view::npos;
  size_t star_end = 0;  // end of the text that the last star matches
  size_t i = 0;
  while (i < text.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      star = at++;
      star_end = i;
    } else if (at < pattern.size() && (pattern[at] == text[i] || (has_marks && pattern[at] == '?'))) {
      ++at;
      ++i;
    } else if (star != std::string_view::npos) {
      at = star + 1;
      i = ++star_end;
    } else {
      return false;
    }
  }
  while (at < pattern.size() && pattern[at] == '*') ++at;
  return at == pattern.size();
}

}  // namespace inv
