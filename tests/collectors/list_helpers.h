// Builds the profiler's parsed list in a few words, for the tests of what reads it directly.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "tests/profiler/plist_helpers.h"

using Xml = std::string;

inline Xml text(const std::string& value) { return "<string>" + value + "</string>"; }
inline Xml integer(long long value) { return "<integer>" + std::to_string(value) + "</integer>"; }

inline Xml joined(std::initializer_list<Xml> elements) {
  Xml xml;
  for (const Xml& element : elements) xml += element;
  return xml;
}

inline Xml array(std::initializer_list<Xml> elements) { return "<array>" + joined(elements) + "</array>"; }

inline Xml dict(std::initializer_list<std::pair<const char*, Xml>> entries) {
  Xml xml = "<dict>";
  for (const auto& [key, value] : entries) xml += "<key>" + std::string(key) + "</key>" + value;
  return xml + "</dict>";
}

inline Xml data_type(const std::string& name, std::initializer_list<Xml> items) {
  return dict({{"_dataType", text(name)}, {"_items", array(items)}});
}

inline CFRef<CFArrayRef> list_of(std::initializer_list<Xml> data_types) {
  return parse_elements(joined(data_types));
}
