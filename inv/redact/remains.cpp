#include "inv/redact/remains.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

#include "inv/base/characters.h"
#include "inv/file/text_lines.h"
#include "inv/redact/token_finder.h"

namespace inv {
namespace {

// Tags whose own values are names that somebody may have made up.
struct NameRow {
  std::string_view tag;
  const char* one;
  const char* more;
};
constexpr NameRow kNames[] = {
    {"Soft", "application name", "application names"}, {"Package", "package name", "package names"},
    {"process", "process name", "process names"},      {"env-var", "variable name", "variable names"},
    {"Monitor", "monitor name", "monitor names"},      {"Device", "device name", "device names"}};

// The most common top-level domains. Names of files and bundles end, or begin, differently.
constexpr std::string_view kDomains[] = {
    "ar",       "arpa", "at",       "au", "be", "biz",     "br", "ca",  "ch",    "cn",  "com", "corp", "cz",
    "de",       "dk",   "edu",      "es", "eu", "example", "fi", "fr",  "gov",   "hu",  "ie",  "il",   "info",
    "internal", "int",  "intranet", "io", "it", "jp",      "kr", "lan", "local", "mil", "mx",  "net",  "nl",
    "no",       "nz",   "org",      "pl", "pt", "ru",      "se", "tr",  "ua",    "uk",  "us",  "za"};

// At most this many are listed, and at most so many counted.
constexpr size_t kMostWords = 5;
constexpr size_t kMostCounted = 10'000;

bool is_domain(std::string_view label) {
  return std::find(std::begin(kDomains), std::end(kDomains), folded(label)) != std::end(kDomains);
}

bool is_in_host(char character) {
  return is_letter_or_digit(character) || character == '.' || character == '-';
}

// "mail.example.com", and not "com.example.mail", "1.2.3" or "x.app".
bool is_host_like(std::string_view word) {
  const size_t first_dot = word.find('.');
  if (first_dot == 0 || first_dot == std::string_view::npos) return false;
  return is_domain(word.substr(word.rfind('.') + 1)) && !is_domain(word.substr(0, first_dot));
}

void add_host_like_words(std::string_view text, std::set<std::string>& words) {
  for (size_t start = 0; start < text.size() && words.size() <= kMostCounted; ++start) {
    size_t end = start;
    while (end < text.size() && is_in_host(text[end])) ++end;
    const std::string_view word = text.substr(start, end - start);
    const std::string_view name = word.substr(0, word.find_last_not_of(".-") + 1);
    if (is_host_like(name)) words.insert(folded(name));
    start = end;
  }
}

class Remains {
 public:
  void look_at(const TextLine& line) {
    if (line.value.empty()) return;
    add_host_like_words(line.value, words_);
    if (!line.is_tag()) return;
    const std::string_view tag = line.name.substr(0, line.name.find(':'));
    for (size_t i = 0; i < std::size(kNames); ++i) {
      if (kNames[i].tag == tag) ++counts_[i];
    }
  }

  std::string list() const {
    std::string text;
    for (size_t i = 0; i < std::size(kNames); ++i) add(counts_[i], kNames[i].one, kNames[i].more, text);
    const bool is_more = words_.size() > kMostCounted;
    add(std::min(words_.size(), kMostCounted), "host-like word",
        is_more ? "or more host-like words" : "host-like words", text);
    return words_.empty() ? text : text + ": " + first_words();
  }

 private:
  static void add(size_t count, const char* one, const char* more, std::string& text) {
    if (count == 0) return;
    if (!text.empty()) text += ", ";
    text += std::to_string(count) + " " + (count == 1 ? one : more);
  }

  std::string first_words() const {
    std::string text;
    size_t left = kMostWords;
    for (const std::string& word : words_) {
      if (left-- == 0) return text + ", ...";
      text += (text.empty() ? "" : ", ") + word;
    }
    return text;
  }

  size_t counts_[std::size(kNames)] = {};
  std::set<std::string> words_;
};

}  // namespace

std::string what_remains(const Inventory& inventory) {
  Remains remains;
  for (const Content& content : inventory.contents) {
    if (content.document) each_line(*content.document, [&](const TextLine& line) { remains.look_at(line); });
  }
  return remains.list();
}

}  // namespace inv
