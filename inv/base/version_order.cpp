#include "inv/base/version_order.h"

#include <algorithm>
#include <string>
#include <utility>

namespace inv {
namespace {

// Words for pre-releases.
constexpr std::string_view kAnnouncements[] = {"a",   "alpha", "b",   "beta", "d",
                                               "dev", "fc",    "pre", "rc",   "preview"};

bool is_digit(char character) { return character >= '0' && character <= '9'; }

// Bytes of other alphabets count as letters.
bool is_letter(char character) {
  const char lower = static_cast<char>(character | 0x20);
  return (lower >= 'a' && lower <= 'z') || (static_cast<unsigned char>(character) & 0x80) != 0;
}

// A number without leading zeros, or a word in small letters.
struct Part {
  enum class Kind { announcement, number, word };  // in the order in which they are sorted
  Kind kind = Kind::number;
  std::string text;
};

Part::Kind kind_of_word(const std::string& word) {
  const bool announces =
      std::find(std::begin(kAnnouncements), std::end(kAnnouncements), word) != std::end(kAnnouncements);
  return announces ? Part::Kind::announcement : Part::Kind::word;
}

// Takes the leading characters of the same sort off a text.
template <typename Belongs>
std::string_view take(std::string_view& text, Belongs belongs) {
  const auto end = std::find_if_not(text.begin(), text.end(), belongs);
  const std::string_view taken = text.substr(0, static_cast<size_t>(end - text.begin()));
  text.remove_prefix(taken.size());
  return taken;
}

// Takes the next part off the version; a zero at its end.
Part take_part(std::string_view& version) {
  take(version, [](char character) { return !is_digit(character) && !is_letter(character); });
  if (version.empty() || is_digit(version.front())) {
    take(version, [](char character) { return character == '0'; });
    return {Part::Kind::number, std::string(take(version, is_digit))};
  }
  std::string word(take(version, is_letter));
  for (char& letter : word) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter | 0x20);
  }
  return {kind_of_word(word), word};
}

// A longer number comes after all shorter ones and before any word: in ASCII a colon follows the digits and
// precedes the letters.
constexpr size_t kUsualDigits = 10;

std::string sortable_number(const std::string& digits) {
  const size_t size = digits.size();
  if (size <= kUsualDigits) return std::string(kUsualDigits - size, '0') + digits;
  return std::string(size - kUsualDigits, ':') + digits;
}

// A part after this many zeros. A missing part counts as zero, so a pre-release must sort before the end of a
// key, and the later the more zeros precede it; anything else must sort after the end, which is a point.
void append_part(std::string& key, const Part& part, size_t zeros) {
  if (part.kind == Part::Kind::announcement) {
    key.append("-").append(zeros, '~').append(part.text);
    return;
  }
  key += '.';
  for (; zeros > 0; --zeros) key.append(kUsualDigits, '0').append(".");
  key += part.kind == Part::Kind::number ? sortable_number(part.text) : part.text;
}

int compare_parts(const Part& one, const Part& other) {
  if (one.kind != other.kind) return one.kind < other.kind ? -1 : 1;
  const bool by_length = one.kind == Part::Kind::number && one.text.size() != other.text.size();
  if (by_length) return one.text.size() < other.text.size() ? -1 : 1;
  return one.text.compare(other.text);
}

}  // namespace

std::string version_key(std::string_view version) {
  if (version.size() > kLongestVersion) return "";
  std::string key;
  size_t zeros = 0;
  while (!version.empty()) {
    const Part part = take_part(version);
    if (part.kind == Part::Kind::number && part.text.empty()) {
      ++zeros;
    } else {
      append_part(key, part, std::exchange(zeros, 0));
    }
  }
  return key + ".";
}

int compare_versions(std::string_view one, std::string_view other) {
  while (!one.empty() || !other.empty()) {
    const int order = compare_parts(take_part(one), take_part(other));
    if (order != 0) return order;
  }
  return 0;
}

}  // namespace inv
