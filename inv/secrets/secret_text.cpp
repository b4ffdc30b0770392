#include "inv/secrets/secret_text.h"

#include <algorithm>
#include <iterator>

#include "inv/base/characters.h"
#include "inv/secrets/secret_names.h"

namespace inv {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kQuotes = "\"'\\";
// What ends a value within a word: the next item of a query, a list or a structure.
constexpr std::string_view kAfterValue = "&;,#\"'}";

bool is_any_of(char c, std::string_view set) { return set.find(c) != set.npos; }

bool belongs_to_name(char c) { return is_letter_or_digit(c) || is_any_of(c, "_-."); }
bool belongs_to_random_text(char c) { return is_letter_or_digit(c) || is_any_of(c, "+/_-"); }

template <size_t count>
bool is_one_of(std::string_view text, const std::string_view (&words)[count]) {
  return std::any_of(std::begin(words), std::end(words), [text](std::string_view word) {
    return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                      [](char one, char other) { return lower_case(one) == other; });
  });
}

constexpr std::string_view kAnswers[] = {"true", "false", "yes", "no", "on", "off", "none", "null", "0", "1"};
// What may come between the name of a header and its secret.
constexpr std::string_view kSchemes[] = {"bearer", "basic", "token", "digest"};

// A value in the place of a secret that gives nothing away.
bool reveals_nothing(std::string_view text) {
  const bool is_reference = !text.empty() && text[0] == '$';
  const bool has_content = std::any_of(text.begin(), text.end(), [](char c) {
    return is_letter_or_digit(c) || static_cast<unsigned char>(c) >= 0x80;
  });
  return is_reference || !has_content || is_path(text) || is_one_of(text, kAnswers);
}

// Walks over the words of a line.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : line_(line), found_(secret_shapes_in(line)) {}

  std::vector<TextPart> read() {
    for (size_t at = line_.find_first_not_of(kBlanks); at < line_.size();) {
      const size_t end = std::min(line_.find_first_of(kBlanks, at), line_.size());
      read_word({at, end - at});
      at = line_.find_first_not_of(kBlanks, end);
    }
    return in_order();
  }

 private:
  // What the words before the next one say it is.
  enum class Next { anything, value_of_option, value_of_header };

  std::string_view text(const TextPart& part) const { return line_.substr(part.offset, part.length); }

  void read_word(const TextPart& word) {
    const Next expected = next_;
    next_ = Next::anything;
    if (expected == Next::value_of_header) return read_header_value(word);
    if (expected == Next::value_of_option && text(word)[0] != '-') return add_value(unquoted(word));
    read_names(word);
    read_pieces(word);
    if (is_secret_option(text(word))) next_ = Next::value_of_option;
  }

  // The scheme stays. A cookie continues after its semicolons.
  void read_header_value(const TextPart& word) {
    const TextPart bare = unquoted(word);
    const bool goes_on = line_[word.offset + word.length - 1] == ';' || is_one_of(text(bare), kSchemes);
    if (goes_on) next_ = Next::value_of_header;
    if (!is_one_of(text(bare), kSchemes)) add_value(bare);
  }

  static bool is_secret_option(std::string_view word) {
    const size_t start = word.find_first_not_of('-');
    return start != 0 && start != word.npos && word.find_first_of("=:") == word.npos &&
           names_secret(word.substr(start));
  }

  // Names with their values: "--password=x", "?a=1&token=x", "\"secret\":\"x\"".
  void read_names(const TextPart& word) {
    const size_t end = word.offset + word.length;
    size_t name = word.offset;  // where a name that may end here begins
    for (size_t at = word.offset; at < end; ++at) {
      const char c = line_[at];
      if ((c == '=' || c == ':') && names_secret(line_.substr(name, at - name))) {
        at = read_value(word, name, at + 1);
        name = at + 1;
      } else if (!belongs_to_name(c) && !is_any_of(c, kQuotes)) {
        name = at + 1;
      }
    }
  }

  // Adds the value of a secret name from here on, and returns its end. If the word begins with the name, the
  // value is the whole rest.
  size_t read_value(const TextPart& word, size_t name, size_t from) {
    const size_t end = word.offset + word.length;
    while (from < end && is_any_of(line_[from], kQuotes)) ++from;
    if (from == end) {
      next_ = Next::value_of_header;
      return end;
    }
    size_t value_end = end;
    if (name != word.offset || is_any_of(line_[from - 1], kQuotes))
      value_end = std::min(end, line_.find_first_of(kAfterValue, from));
    add_value(unquoted({from, value_end - from}));
    return value_end;
  }

  // Random texts between the punctuation marks of a word.
  void read_pieces(const TextPart& word) {
    const size_t end = word.offset + word.length;
    for (size_t at = word.offset; at < end;) {
      size_t piece_end = at;
      while (piece_end < end && belongs_to_random_text(line_[piece_end])) ++piece_end;
      const bool alone = (at == word.offset || is_any_of(line_[at - 1], "=:,;\"'")) &&
                         (piece_end == end || is_any_of(line_[piece_end], "=:,;&\"'"));
      if (alone && is_random_text(line_.substr(at, piece_end - at))) {
        while (piece_end < end && line_[piece_end] == '=') ++piece_end;  // Base64 padding
        found_.push_back({at, piece_end - at});
      }
      at = piece_end + 1;
    }
  }

  // The text between quotes if the part begins with one; else the part without quotes at its end.
  TextPart unquoted(const TextPart& part) const {
    const std::string_view all = text(part);
    const size_t start = std::min(all.find_first_not_of(kQuotes), all.size());
    const size_t end = start > 0 ? std::min(all.find_first_of(kQuotes, start), all.size())
                                 : all.find_last_not_of(kQuotes) + 1;
    return {part.offset + start, end - start};
  }

  void add_value(const TextPart& value) {
    if (!reveals_nothing(text(value))) found_.push_back(value);
  }

  // Overlapping finds are one secret.
  std::vector<TextPart> in_order() {
    std::sort(found_.begin(), found_.end(),
              [](const TextPart& one, const TextPart& other) { return one.offset < other.offset; });
    std::vector<TextPart> joined;
    for (const TextPart& part : found_) {
      if (joined.empty() || joined.back().offset + joined.back().length < part.offset) {
        joined.push_back(part);
      } else {
        const size_t end = std::max(joined.back().offset + joined.back().length, part.offset + part.length);
        joined.back().length = end - joined.back().offset;
      }
    }
    return joined;
  }

  std::string_view line_;
  std::vector<TextPart> found_;
  Next next_ = Next::anything;
};

constexpr std::string_view kMask = "••• (";

// In UTF-8: bytes that are no continuation bytes.
size_t character_count(std::string_view text) {
  return static_cast<size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string mask_of(std::string_view secret) {
  const size_t count = character_count(secret);
  return std::string(kMask) + std::to_string(count) + (count == 1 ? " character)" : " characters)");
}

}  // namespace

std::vector<TextPart> secrets_in_line(std::string_view line) { return LineReader(line).read(); }

std::vector<TextPart> secrets_in_variable(std::string_view name, std::string_view value) {
  if (names_secret(name) && !reveals_nothing(value)) return {{0, value.size()}};
  return secrets_in_line(value);
}

std::string masked(std::string_view text, const std::vector<TextPart>& secrets) {
  std::string result;
  size_t shown = 0;
  for (const TextPart& secret : secrets) {
    result.append(text.substr(shown, secret.offset - shown));
    result.append(mask_of(text.substr(secret.offset, secret.length)));
    shown = secret.offset + secret.length;
  }
  return result.append(text.substr(shown));
}

size_t masks_in(std::string_view text) {
  size_t count = 0;
  for (size_t at = text.find(kMask); at != text.npos; at = text.find(kMask, at + kMask.size())) ++count;
  return count;
}

}  // namespace inv
