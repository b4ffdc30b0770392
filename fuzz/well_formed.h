// Every tree, whatever it was made of, must be one that the console can parse line by line.
#pragma once

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "zxml/zXML.h"

inline void expect(bool holds) {
  if (!holds) std::abort();
}

inline void expect_on_one_line(std::string_view text) { expect(text.find('\n') == text.npos); }

inline void expect_well_formed(const Value* value) {
  if (value && value->text()) expect_on_one_line(value->text());
}

inline void expect_well_formed(const std::vector<Annotation>& annotations) {
  for (const Annotation& annotation : annotations) {
    expect_on_one_line(annotation.key);
    expect_on_one_line(annotation.text);
  }
}

inline void expect_well_formed(const Attribute& attribute) {
  expect_on_one_line(attribute.name());
  // An attribute's line has no marker, and must not begin with that of a tag or an annotation.
  expect(attribute.name().find_first_of("*+~") != 0);
  expect_well_formed(&attribute.value());
  expect_well_formed(attribute.annotations());
}

inline void expect_well_formed(const InventoryTree& tree) {
  std::vector<const Tag*> pending = {&tree.top()};
  while (!pending.empty()) {
    const Tag& tag = *pending.back();
    pending.pop_back();
    expect_on_one_line(tag.name());
    expect_well_formed(tag.value());
    expect_well_formed(tag.annotations());
    for (const auto& attribute : tag.attributes()) expect_well_formed(*attribute);
    for (const auto& child : tag.children()) pending.push_back(child.get());
  }
}
