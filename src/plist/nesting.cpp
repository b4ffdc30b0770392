#include "plist/nesting.h"

#include "plist/scanner.h"

namespace plist {

namespace {

// How a piece of markup begins behind its "<", and how it ends. What stands between is not looked into,
// attributes of a tag included.
struct Markup {
  std::string_view start;
  std::string_view end;
};
constexpr Markup kOpaque[] = {{"!--", "-->"}, {"![CDATA[", "]]>"}, {"?", "?>"}};
constexpr Markup kTag = {"", ">"};

// Most tags differ in the first letter already.
inline bool starts_with(std::string_view text, std::string_view start) {
  return !text.empty() && text.front() == start.front() && text.substr(0, start.size()) == start;
}

Markup markup_at(std::string_view text) {
  for (const Markup& markup : kOpaque) {
    if (starts_with(text, markup.start)) return markup;
  }
  return kTag;
}

// What a tag, given without its angle brackets, adds to the depth: 1 for the open tag of a container, -1 for
// a close tag.
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
    const Markup markup = markup_at(list.substr(at));
    const size_t end = list.find(markup.end, at + markup.start.size());
    if (end == list.npos) return false;
    const int change = markup.start.empty() ? step(list.substr(at, end - at)) : 0;
    if (change > 0 && ++depth > maximum_depth) return true;
    if (change < 0 && depth > 0) --depth;
    at = end;
  }
  return false;
}

}  // namespace plist
