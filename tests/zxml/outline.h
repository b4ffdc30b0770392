// A tree as one line of text for comparisons: unlike the "?zxml" text it shows what a leaf hides, and which
// kind a value is.
#pragma once

#include <string>

#include "zxml/tag.h"

inline std::string outline(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::none:
      return "none";
    case Value::Kind::boolean:
      return value.boolean() ? "true" : "false";
    case Value::Kind::int64:
      return std::to_string(value.int64());
    case Value::Kind::real:
      return std::to_string(value.real());
    case Value::Kind::text:
      return "'" + std::string(value.text()) + "'";
  }
  return "?";
}

inline std::string outline(const std::vector<Annotation>& annotations) {
  std::string text;
  for (const Annotation& annotation : annotations) text += "~" + annotation.key + ":" + annotation.text;
  return text;
}

// Name, kind ("." document, "*" leaf, "+" branch), then what there is of: "=" value, annotations, attributes
// in parentheses, children in braces.
inline std::string outline(const Tag& tag) {
  constexpr char kKinds[] = {'.', '*', '+'};
  std::string text = tag.name() + kKinds[static_cast<int>(tag.kind())];
  if (tag.value()) text += "=" + outline(*tag.value());
  text += outline(tag.annotations());
  const char* before = "(";
  for (const auto& attribute : tag.attributes()) {
    text +=
        before + attribute->name() + "=" + outline(attribute->value()) + outline(attribute->annotations());
    before = ", ";
  }
  if (!tag.attributes().empty()) text += ")";
  before = "{";
  for (const auto& child : tag.children()) {
    text += before + outline(*child);
    before = " ";
  }
  if (!tag.children().empty()) text += "}";
  return text;
}
