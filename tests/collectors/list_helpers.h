// The profiler's parsed list for the tests of those who read it directly: a property list put together in a
// few words.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "driver/text.h"
#include "profiler/property_list.h"

using Xml = std::string;

inline Xml text(const std::string& value) { return "<string>" + value + "</string>"; }
inline Xml integer(long long value) { return "<integer>" + std::to_string(value) + "</integer>"; }

inline Xml array(std::initializer_list<Xml> elements) {
  Xml xml = "<array>";
  for (const Xml& element : elements) xml += element;
  return xml + "</array>";
}

inline Xml dict(std::initializer_list<std::pair<const char*, Xml>> entries) {
  Xml xml = "<dict>";
  for (const auto& [key, value] : entries) xml += "<key>" + std::string(key) + "</key>" + value;
  return xml + "</dict>";
}

inline Xml data_type(const std::string& name, std::initializer_list<Xml> items) {
  return dict({{"_dataType", text(name)}, {"_items", array(items)}});
}

inline CFRef<CFArrayRef> list_of(std::initializer_list<Xml> data_types) {
  const Xml xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + array(data_types) + "</plist>";
  ProfilerOutput output;
  output.text = copy_text(xml.c_str());
  output.length = static_cast<uint32_t>(xml.size());
  return parse_profiler_output(output);
}
