#include "inv/base/nearest.h"

#include <algorithm>

#include "inv/base/characters.h"

namespace inv {
namespace {

// Nobody mistypes longer words, but files can hold them, and comparing takes time in proportion to the
// product of both lengths.
constexpr size_t kLongest = 200;

size_t most_differences(std::string_view text) { return std::max<size_t>(1, text.size() / 3); }

size_t length_difference(std::string_view one, std::string_view other) {
  return one.size() > other.size() ? one.size() - other.size() : other.size() - one.size();
}

// How many letters must be added, omitted, replaced or swapped with their neighbour to turn one into the
// other.
size_t differences(std::string_view from, std::string_view to) {
  using Row = std::vector<size_t>;
  Row before_last(to.size() + 1);
  Row last(to.size() + 1);
  Row row(to.size() + 1);
  for (size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= from.size(); ++i) {
    before_last.swap(last);
    last.swap(row);
    row[0] = i;
    for (size_t j = 1; j <= to.size(); ++j) {
      const size_t exchanged = last[j - 1] + (lower_case(from[i - 1]) == lower_case(to[j - 1]) ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, exchanged});
      const bool swapped = i > 1 && j > 1 && lower_case(from[i - 1]) == lower_case(to[j - 2]) &&
                           lower_case(from[i - 2]) == lower_case(to[j - 1]);
      if (swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
  }
  return row[to.size()];
}

}  // namespace

std::string nearest(std::string_view text, const std::vector<std::string_view>& words) {
  if (text.size() > kLongest) return "";
  size_t fewest = most_differences(text) + 1;
  std::string_view found;
  for (const std::string_view word : words) {
    if (length_difference(text, word) >= fewest) continue;
    const size_t count = differences(text, word);
    if (count >= fewest) continue;
    fewest = count;
    found = word;
  }
  return std::string(found);
}

std::string did_you_mean(std::string_view word) {
  return word.empty() ? "" : "; did you mean " + std::string(word) + "?";
}

}  // namespace inv
