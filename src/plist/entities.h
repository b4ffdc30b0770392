// Entities in the texts of keys, strings and reals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plist {

struct Entity {
  uint32_t code_point;
  size_t length;  // of its text, from the ampersand to the semicolon
};

// The entity that starts at the ampersand the text begins with: one of XML's five names, or a decimal or
// (with a small x) hexadecimal reference, where no digits at all mean U+0000. std::nullopt for anything else.
std::optional<Entity> parse_entity(std::string_view text);

// Appends a text with every entity replaced by its character in UTF-8. A bare ampersand is kept,
// and makes the result false.
bool append_resolved(std::string& resolved, std::string_view text);

}  // namespace plist
