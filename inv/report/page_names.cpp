#include "inv/report/page_names.h"

#include "inv/base/characters.h"

namespace inv {
namespace {

constexpr size_t kLongestIdentity = 60;

bool is_plain(char c) { return is_letter_or_digit(c) || c == '-'; }

std::string in_small_letters(std::string text) {
  for (char& c : text) c = lower_case(c);
  return text;
}

std::string plain(const std::string& identity) {
  std::string name = identity.substr(0, kLongestIdentity);
  for (char& c : name) {
    if (!is_plain(c)) c = '_';
  }
  return name;
}

// A path without the extension.
std::string without_extension(const std::string& path) {
  const size_t start = path.size() - name_in(path).size();
  const size_t dot = path.rfind('.');
  return dot != path.npos && dot > start ? path.substr(0, dot) : path;
}

}  // namespace

PageNames::PageNames(const std::string& fleet_page) : stem_(without_extension(fleet_page)) {}

std::string PageNames::next(const std::string& identity) {
  const std::string name = stem_ + "-" + plain(identity);
  std::string path = name + ".html";
  for (int more = 2; !taken_.insert(in_small_letters(path)).second; ++more)
    path = name + "-" + std::to_string(more) + ".html";
  return path;
}

std::string name_in(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace inv
