// The values that columns show for the element of a row: the syntax of the tables in the catalogue.
#pragma once

#include <string_view>
#include <vector>

#include "inv/facts/counterparts.h"
#include "inv/file/document.h"

namespace inv {

// The elements below `top` that match a pattern such as "Software/Soft:*", in the order of the text. The
// asterisk is in the last segment. The empty pattern means `top` itself.
std::vector<Element> rows_of(Element top, std::string_view pattern);

// A value and where it was found; null and empty if there is none.
struct FoundValue {
  std::string_view text;
  Element element;
  const Attribute* attribute = nullptr;  // null if the text is the element's value, or part of its name
};

// The value of the first source that has one; sources are separated by " or ":
//   ""           the element's own value
//   a            its attribute, or the own value of its child; "a/b": b of its child a
//   /a/b:N/c     c of the element with details of it (see Counterparts); "/a/b:N": that element's value
//   /a/b         b of an element that occurs only once
//   its name, its number
FoundValue find_value(Element element, std::string_view sources, Counterparts& counterparts);

}  // namespace inv
