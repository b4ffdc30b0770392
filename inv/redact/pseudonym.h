// Stand-ins for what identifies a machine or a person. Without the key nobody can find the original; with the
// same key the same original has the same pseudonym in every file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/redact/identifiers.h"

namespace inv {

// What a pseudonym looks like. A console parses addresses and UUIDs, so they keep their form. If an original
// occurs in two kinds of places, the later shape in this list wins.
enum class Shape {
  name,    // "anon" and ten letters and digits: one token, whatever the original
  number,  // 1000000000 to 1999999999
  serial,  // a digit for a digit, a letter for a letter, everything else unchanged
  ipv4,    // 10.x.x.x
  ipv6,    // fdxx:...
  uuid,    // of version 4
  mac,     // the first three octets, which name the maker, stay
};

Shape shape_of(IdentifierKind kind, std::string_view original);

// One form for all spellings of an original: lower case, and no separators in MAC addresses and UUIDs.
std::string canonical_form(Shape shape, std::string_view original);

// The ways in which an original may be written in other texts.
std::vector<std::string> spellings(Shape shape, std::string_view original);

// The pseudonym for `occurrence`, which is one of the spellings: with the same separators, and in capitals if
// that is. Another attempt gives another pseudonym.
std::string make_pseudonym(std::string_view key, std::string_view canonical, unsigned attempt, Shape shape,
                           std::string_view occurrence);

}  // namespace inv
