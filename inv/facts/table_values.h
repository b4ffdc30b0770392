// What the columns of a table show of the element that is a row: the catalogue's tables are written in these
// terms.
#pragma once

#include <string_view>
#include <vector>

#include "inv/facts/counterparts.h"
#include "inv/file/document.h"

namespace inv {

// The elements below `top` that are rows of a pattern, in the order of the text: "Software/Soft:*". The
// asterisk is in the last segment. The empty pattern is `top` itself.
std::vector<Element> rows_of(Element top, std::string_view pattern);

// Where a value was found; null and empty when there is none.
struct FoundValue {
  std::string_view text;
  Element element;
  const Attribute* attribute =
      nullptr;  // null when the text is the element's own value, or a part of its name
};

// The first of these sources that has a value; " or " is between them:
//   ""           the element's own value
//   a            its attribute, or the own value of its child; "a/b": b of its child a
//   /a/b:N/c     c of what tells more of it (see Counterparts); "/a/b:N": the own value of that
//   /a/b         b of an element of which there is only one
//   its name, its number
FoundValue find_value(Element element, std::string_view sources, Counterparts& counterparts);

}  // namespace inv
