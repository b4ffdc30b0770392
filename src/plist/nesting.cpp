#include "plist/nesting.h"

#include "plist/scanner.h"

namespace plist {

namespace {

// Most tags differ in the first letter already.
inline bool starts_with(std::string_view text, std::string_view start) {
  return !text.empty() && text.front() == start.front() && text.substr(0, start.size()) == start;
}

// Where to go on behind a "<": past a comment or CDATA section, whose text is not markup.
size_t skip_opaque(std::string_view list, size_t at) {
  const std::string_view rest = list.substr(at);
  if (starts_with(rest, "!--")) return list.find("-->", at);
  if (starts_with(rest, "![CDATA[")) return list.find("]]>", at);
  return at;
}

// What a tag adds to the depth: 1 for the open tag of a container, -1 for a close tag.
int step(std::string_view tag) {
  const bool closes = starts_with(tag, "/");
  if (closes) tag.remove_prefix(1);
  if (!starts_with(tag, "array") && !starts_with(tag, "dict")) return 0;
  if (closes) return -1;
  const size_t end = tag.find('>');
  const bool empty = end != tag.npos && tag[end - 1] == '/';
  return empty ? 0 : 1;
}

}  // namespace

bool nested_too_deeply(std::string_view list) {
  size_t depth = 0;
  for (size_t at = list.find('<'); at != list.npos; at = list.find('<', at)) {
    at = skip_opaque(list, at + 1);
    if (at == list.npos) return false;
    const int change = step(list.substr(at));
    if (change > 0 && ++depth > maximum_depth) return true;
    if (change < 0 && depth > 0) --depth;
  }
  return false;
}

}  // namespace plist
