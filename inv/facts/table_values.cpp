#include "inv/facts/table_values.h"

#include <algorithm>

#include "inv/base/wildcards.h"
#include "inv/facts/facts.h"

namespace inv {
namespace {

constexpr std::string_view kOr = " or ";
constexpr std::string_view kItsName = "its name";
constexpr std::string_view kItsNumber = "its number";

// Takes the first segment off a path.
std::string_view take_segment(std::string_view& path) {
  const std::string_view segment = path.substr(0, path.find('/'));
  path.remove_prefix(std::min(segment.size() + 1, path.size()));
  return segment;
}

// What a path below an element names: an attribute, or an element with its value. A compound field is both,
// and its value is that of the element.
FoundValue value_below(Element element, std::string_view path) {
  for (size_t slash = path.find('/'); slash != path.npos; slash = path.find('/')) {
    element = element.child(take_segment(path));
  }
  const Attribute* attribute = element.attribute(path);
  if (attribute && is_fact(*attribute)) return {attribute->value, element, attribute};
  return {element.child(path).value(), element.child(path)};
}

bool stands_for_many(std::string_view segment) {
  constexpr std::string_view kNumber = ":N";
  return segment == "*" ||
         (segment.size() > kNumber.size() && segment.substr(segment.size() - kNumber.size()) == kNumber);
}

FoundValue value_beside(Element element, std::string_view path, Counterparts& counterparts) {
  for (std::string_view rest = path.substr(1); !rest.empty();) {
    if (!stands_for_many(take_segment(rest))) continue;
    const size_t end = path.size() - rest.size() - (rest.empty() ? 0 : 1);
    const Element other = counterparts.find(path.substr(0, end), element);
    return rest.empty() ? FoundValue{other.value(), other} : value_below(other, rest);
  }
  return value_below(counterparts.top(), path.substr(1));
}

FoundValue value_of(Element element, std::string_view source, Counterparts& counterparts) {
  if (source.empty()) return {element.value(), element};
  if (source == kItsName) return {element.name(), element};
  if (source == kItsNumber) {
    const size_t colon = element.name().find(':');
    return colon == element.name().npos ? FoundValue{}
                                        : FoundValue{element.name().substr(colon + 1), element};
  }
  return source.front() == '/' ? value_beside(element, source, counterparts) : value_below(element, source);
}

}  // namespace

std::vector<Element> rows_of(Element top, std::string_view pattern) {
  if (pattern.empty()) return {top};
  Element element = top;
  for (size_t slash = pattern.find('/'); slash != pattern.npos; slash = pattern.find('/')) {
    element = element.child(take_segment(pattern));
  }
  std::vector<Element> rows;
  for (const Element child : element.children()) {
    if (matches(pattern, child.name())) rows.push_back(child);
  }
  return rows;
}

FoundValue find_value(Element element, std::string_view sources, Counterparts& counterparts) {
  for (size_t end = sources.find(kOr); end != sources.npos; end = sources.find(kOr)) {
    const FoundValue found = value_of(element, sources.substr(0, end), counterparts);
    if (!found.text.empty()) return found;
    sources.remove_prefix(end + kOr.size());
  }
  return value_of(element, sources, counterparts);
}

}  // namespace inv
