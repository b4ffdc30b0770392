#include "inv/secrets/secret_shapes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "inv/base/characters.h"

namespace inv {
namespace {

bool is_token_character(char c) { return is_letter_or_digit(c) || c == '_' || c == '-'; }
bool is_dotted_token_character(char c) { return is_token_character(c) || c == '.'; }

// A token with a prefix by which its issuer makes it recognisable.
struct TokenShape {
  std::string_view start;
  size_t shortest_rest;  // with fewer characters after the start it is no such token
  bool (*belongs)(char c) = is_token_character;
};

// Those with the same first character are adjacent.
constexpr TokenShape kTokenShapes[] = {
    {"AGE-SECRET-KEY-1", 50},
    {"AIza", 30},
    {"AKIA", 16, is_letter_or_digit},
    {"ASIA", 16, is_letter_or_digit},
    {"ATATT3", 20},
    {"GOCSPX-", 20},
    {"NRAK-", 20},
    {"PMAK-", 20},
    {"SG.", 40, is_dotted_token_character},
    {"dckr_pat_", 16},
    {"dop_v1_", 40},
    {"figd_", 20},
    {"ghp_", 20},
    {"gho_", 20},
    {"ghu_", 20},
    {"ghs_", 20},
    {"ghr_", 20},
    {"github_pat_", 20},
    {"glpat-", 16},
    {"gldt-", 16},
    {"glrt-", 16},
    {"glsa_", 20},
    {"hf_", 30, is_letter_or_digit},
    {"hvs.", 20, is_dotted_token_character},
    {"lin_api_", 20},
    {"npm_", 30, is_letter_or_digit},
    {"pypi-", 40},
    {"rk_live_", 16},
    {"rk_test_", 16},
    {"rubygems_", 32},
    {"shpat_", 32},
    {"shpss_", 32},
    {"sk_live_", 16},
    {"sk_test_", 16},
    {"sk-ant-", 20},
    {"sk-proj-", 20},
    {"sk-", 40, is_letter_or_digit},
    {"sntrys_", 20},
    {"tskey-", 16},
    {"whsec_", 20},
    {"xapp-", 20},
    {"xoxa-", 16},
    {"xoxb-", 16},
    {"xoxp-", 16},
    {"xoxr-", 16},
    {"xoxs-", 16},
    {"ya29.", 20, is_dotted_token_character},
};

// For each character the number, counted from 1, of the first shape that begins with it; 0 if none does.
using FirstCharacters = std::array<uint8_t, 128>;

FirstCharacters first_characters() {
  FirstCharacters first = {};
  for (size_t i = std::size(kTokenShapes); i-- > 0;)
    first[static_cast<size_t>(kTokenShapes[i].start[0])] = static_cast<uint8_t>(i + 1);
  return first;
}

constexpr std::string_view kJsonWebToken = "eyJ";  // {" in Base64
constexpr size_t kShortestTokenPart = 10;

constexpr std::string_view kDashes = "-----";
constexpr std::string_view kKeyStart = "-----BEGIN ";
constexpr std::string_view kKeyEnd = "-----END ";
constexpr size_t kLongestKeyLabel = 64;

constexpr std::string_view kBehindScheme = "://";

// The end of the run of characters from `from` on that belong.
size_t end_of_run(std::string_view text, size_t from, bool (*belongs)(char c)) {
  while (from < text.size() && belongs(text[from])) ++from;
  return from;
}

// One walk over a text. Each find_... returns the end of what it added, or its starting point if it found
// nothing.
class ShapeFinder {
 public:
  explicit ShapeFinder(std::string_view text) : text_(text) {}

  std::vector<TextPart> find() {
    for (size_t at = 0; at < text_.size();) at = std::max(at + 1, find_at(at));
    return std::move(found_);
  }

 private:
  size_t find_at(size_t at) {
    if (text_[at] == '-') return find_private_key(at);
    if (text_[at] == ':') return find_password(at);
    if (!is_letter_or_digit(text_[at]) || (at > 0 && is_letter_or_digit(text_[at - 1]))) return at;
    return text_[at] == kJsonWebToken[0] ? find_json_web_token(at) : find_token(at);
  }

  size_t add(size_t from, size_t end) {
    found_.push_back({from, end - from});
    return end;
  }

  size_t find_token(size_t at) {
    static const FirstCharacters kFirst = first_characters();
    const std::string_view rest = text_.substr(at);
    for (size_t i = kFirst[static_cast<unsigned char>(rest[0])]; i > 0 && i <= std::size(kTokenShapes); ++i) {
      const TokenShape& shape = kTokenShapes[i - 1];
      if (shape.start[0] != rest[0]) break;
      if (!starts_with(rest, shape.start)) continue;
      const size_t end = end_of_run(text_, at + shape.start.size(), shape.belongs);
      if (end - at >= shape.start.size() + shape.shortest_rest) return add(at, end);
    }
    return at;
  }

  // Header, payload, and a signature, which may be empty. Many tokens may seem to begin in a run of
  // characters, but what follows it is examined only once.
  size_t find_json_web_token(size_t at) {
    if (!starts_with(text_.substr(at), kJsonWebToken)) return at;
    if (at >= header_end_) {
      header_end_ = end_of_run(text_, at, is_token_character);
      payload_end_ = end_of_part(header_end_);
    }
    if (header_end_ - at < kShortestTokenPart || payload_end_ - header_end_ <= kShortestTokenPart) return at;
    if (payload_end_ >= text_.size() || text_[payload_end_] != '.') return at;
    return add(at, end_of_part(payload_end_));
  }

  // The end of the part that begins with a dot here; here if there is no dot.
  size_t end_of_part(size_t dot) const {
    const bool begins = dot < text_.size() && text_[dot] == '.';
    return begins ? end_of_run(text_, dot + 1, is_token_character) : dot;
  }

  // A truncated key extends to the end of the text.
  size_t find_private_key(size_t at) {
    if (!starts_with(text_.substr(at), kKeyStart)) return at;
    const std::string_view label = text_.substr(at + kKeyStart.size(), kLongestKeyLabel);
    if (label.substr(0, label.find(kDashes)).find("PRIVATE KEY") == label.npos) return at;
    const size_t end = text_.find(kKeyEnd, at + kKeyStart.size());
    if (end == text_.npos) return add(at, text_.size());
    const size_t dashes = text_.find(kDashes, end + kKeyEnd.size());
    return add(at, dashes == text_.npos ? text_.size() : dashes + kDashes.size());
  }

  // "user:password@" after a scheme.
  size_t find_password(size_t at) {
    if (!starts_with(text_.substr(at), kBehindScheme)) return at;
    const size_t from = at + kBehindScheme.size();
    const std::string_view authority = text_.substr(from, text_.find_first_of("/?# \t\"'<>", from) - from);
    const size_t host = authority.rfind('@');
    const size_t password = authority.find(':') + 1;
    if (host == authority.npos || password == 0 || password >= host) return at;
    return add(from + password, from + host);
  }

  std::string_view text_;
  std::vector<TextPart> found_;
  size_t header_end_ = 0;
  size_t payload_end_ = 0;
};

// How the characters of a text are mixed.
struct Mixture {
  size_t upper = 0;
  size_t lower = 0;
  size_t digits = 0;
  size_t others = 0;
  size_t changes = 0;  // between the first three kinds, except from a capital to small letters
  bool hexadecimal = true;

  size_t characters() const { return upper + lower + digits; }
};

int kind_of(char c) { return is_upper(c) ? 1 : is_lower(c) ? 2 : is_digit(c) ? 3 : 0; }

bool is_change(int before, int kind) {
  const bool is_capital = before == 1 && kind == 2;
  return before != 0 && kind != 0 && before != kind && !is_capital;
}

Mixture mixture_of(std::string_view text) {
  Mixture mixture;
  int before = 0;
  for (const char c : text) {
    const int kind = kind_of(c);
    size_t* const counts[] = {&mixture.others, &mixture.upper, &mixture.lower, &mixture.digits};
    ++*counts[kind];
    if (is_change(before, kind)) ++mixture.changes;
    before = kind;
    mixture.hexadecimal = mixture.hexadecimal && is_hex_digit(c);
  }
  return mixture;
}

bool is_hexadecimal(std::string_view text) { return mixture_of(text).hexadecimal; }

// "8-4-4-4-12" digits.
bool starts_with_uuid(std::string_view text) {
  if (text.size() < 36) return false;
  size_t at = 0;
  for (const size_t length : {size_t{8}, size_t{4}, size_t{4}, size_t{4}, size_t{12}}) {
    if (at > 0 && text[at++] != '-') return false;
    if (!is_hexadecimal(text.substr(at, length))) return false;
    at += length;
  }
  return true;
}

// 32 digits with the marks of a version from 1 to 8 and of the usual variant.
bool is_bare_uuid(std::string_view text) {
  return text.size() == 32 && text[12] >= '1' && text[12] <= '8' &&
         std::string_view("89abAB").find(text[16]) != std::string_view::npos;
}

// The least that random texts have: characters, and changes per hundred pairs of them. A name of several
// words has about twenty changes. Longer texts need fewer.
struct Randomness {
  size_t characters;
  size_t changes;
};
constexpr Randomness kRandomOfThreeKinds = {20, 30};
constexpr Randomness kRandomOfTwoKinds = {32, 25};
// 30 bytes in Base64, as cloud services make their keys: so common that those with few changes count too.
constexpr size_t kAccessKey = 40;
// One in this many characters may be a punctuation mark: words joined by dashes have more of them.
constexpr size_t kCharactersPerSign = 8;

bool is_random(const Mixture& mixture, const Randomness& least) {
  const size_t count = mixture.characters();
  return count >= least.characters && mixture.changes * 100 >= (count - 1) * least.changes;
}

// Top-level folders of a Mac, and of systems whose variables are passed on to it.
constexpr std::string_view kTopFolders[] = {
    "Applications", "Library", "Network", "System", "Users", "Volumes", "bin",     "cores",
    "dev",          "etc",     "home",    "mnt",    "nix",   "opt",     "private", "proc",
    "root",         "run",     "sbin",    "srv",    "tmp",   "usr",     "var",
};

}  // namespace

std::vector<TextPart> secret_shapes_in(std::string_view text) { return ShapeFinder(text).find(); }

bool is_random_text(std::string_view text) {
  if (text.size() < kRandomOfThreeKinds.characters || is_path(text) || starts_with_uuid(text)) return false;
  const Mixture mixture = mixture_of(text);
  if (mixture.digits == 0 || mixture.others * kCharactersPerSign > text.size()) return false;
  if (mixture.hexadecimal && is_bare_uuid(text)) return false;
  const bool three_kinds = mixture.upper > 0 && mixture.lower > 0;
  if (three_kinds && (text.size() == kAccessKey || is_random(mixture, kRandomOfThreeKinds))) return true;
  return is_random(mixture, kRandomOfTwoKinds);
}

bool is_path(std::string_view text) {
  if (starts_with(text, "~/")) return true;
  if (!starts_with(text, "/")) return false;
  const std::string_view top = text.substr(1, text.find('/', 1) - 1);
  return std::find(std::begin(kTopFolders), std::end(kTopFolders), top) != std::end(kTopFolders);
}

}  // namespace inv
