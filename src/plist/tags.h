// The elements of a property list and their names.
#pragma once

#include <string_view>

namespace plist {

// The most frequent first, since names are looked up in this order.
enum class Element {
  key,
  string,
  integer,
  dictionary,
  array,
  true_value,
  false_value,
  date,
  real,
  data,
  plist,
  unknown
};

struct Tag {
  Element element;
  bool closes;  // </name>
  bool empty;   // <name/>
};

// Names are case-sensitive.
Element element_named(std::string_view name);

// Empty for an unknown element.
std::string_view name_of(Element element);

inline bool is_container(Element element) {
  return element == Element::dictionary || element == Element::array;
}

}  // namespace plist
