#include "plist/tags.h"

#include <cstddef>

namespace plist {
namespace {

// In the order of Element.
constexpr std::string_view kNames[] = {"key",   "string", "integer", "dict", "array", "true",
                                       "false", "date",   "real",    "data", "plist"};

}  // namespace

Element element_named(std::string_view name) {
  size_t index = 0;
  for (const std::string_view known : kNames) {
    if (name == known) break;
    ++index;
  }
  return static_cast<Element>(index);
}

std::string_view name_of(Element element) {
  return element == Element::unknown ? std::string_view() : kNames[static_cast<size_t>(element)];
}

}  // namespace plist
