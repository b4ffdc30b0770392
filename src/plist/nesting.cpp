#include "plist/nesting.h"

#include "plist/scanner.h"

namespace plist {
namespace {

// Most tags differ in the first letter already.
inline bool starts_with(std::string_view text, std::string_view start) {
  return !text.empty() && text.front() == start.front() && text.substr(0, start.size()) == start;
}

// How markup other than tags begins after its "<", and how it ends. Tags in it mean nothing.
struct Markup {
  std::string_view start;
  std::string_view end;
};
constexpr Markup kOpaque[] = {{"!--", "-->"}, {"![CDATA[", "]]>"}, {"?", "?>"}};

size_t end_of_markup(std::string_view list, size_t at) {
  for (const Markup& markup : kOpaque) {
    if (starts_with(list.substr(at), markup.start)) return list.find(markup.end, at + markup.start.size());
  }
  return list.find('>', at);
}

// What a tag, without its angle brackets, adds to the depth: 1 for the open tag of a container, -1 for a
// close tag.
int step(std::string_view tag) {
  const bool closes = starts_with(tag, "/");
  if (closes) tag.remove_prefix(1);
  if (!starts_with(tag, "array") && !starts_with(tag, "dict")) return 0;
  if (closes) return -1;
  return tag.back() == '/' ? 0 : 1;
}

}  // namespace

bool nested_too_deeply(std::string_view list) {
  size_t depth = 0;
  for (size_t at = list.find('<'); at != list.npos; at = list.find('<', at)) {
    ++at;
    const size_t end = end_of_markup(list, at);
    if (end == list.npos) return false;
    const int change = step(list.substr(at, end - at));
    if (change > 0 && ++depth > kMaximumDepth) return true;
    if (change < 0 && depth > 0) --depth;
    at = end;
  }
  return false;
}

}  // namespace plist
