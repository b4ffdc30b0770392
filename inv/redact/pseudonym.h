// Stand-ins for what identifies a machine or a person. Without the key nobody can find the original; with the
// same key the same original has the same pseudonym in every file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/redact/identifiers.h"

namespace inv {

// What a pseudonym looks like. A console reads addresses and UUIDs by their form, so they keep it. Where one
// original turns up in two kinds of places, the later shape of this list holds.
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

// The same for all spellings of one original: small letters, and no separators in MAC addresses and UUIDs.
std::string canonical_form(Shape shape, std::string_view original);

// The ways in which other texts may write an original.
std::vector<std::string> spellings(Shape shape, std::string_view original);

// The pseudonym in place of `occurrence`, which is one of the spellings: in capitals where that is in
// capitals, and with its separators. Another attempt gives another pseudonym.
std::string make_pseudonym(std::string_view key, std::string_view canonical, unsigned attempt, Shape shape,
                           std::string_view occurrence);

}  // namespace inv
