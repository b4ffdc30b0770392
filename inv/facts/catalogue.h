// What is known about each fact that the scanner writes: catalogue.txt, compiled into the program.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "inv/file/document.h"

namespace inv {

// What kind of identifier a value holds, if it reveals whose machine it is.
enum class IdentifierKind {
  text,          // a name, a UUID: the whole value is an identifier
  serial,        // a serial number
  number,        // a serial number as an integer; 0 means none
  account,       // account names, separated by blanks; the system's own identify nobody
  account_id,    // of a user or a group; the low ones that every Mac has identify nobody
  addresses,     // IP addresses or host names, separated by commas
  uri,           // what follows the scheme
  full_name,     // a person's; its words are identifiers too
  secret,        // a command line, a value of the environment: nothing of it is kept
  network_name,  // of a network service; the system's own names identify nobody
};

// A value within a sentence; if it is missing, the texts around it are dropped too.
struct DescriptionPart {
  std::string_view before;
  std::string_view
      source;  // an attribute; "its number" is the one in the element's name; empty for the element's value
  std::string_view after;
};

struct CatalogueFact;

// How a fact is described to people.
struct Wording {
  std::string_view word;  // what people call it; empty if that is its name
  bool yes_no;            // its value is "1" or "0"
  std::string_view
      called;        // what kind of thing the element is: "Disk"; empty for a part of the thing above it
  bool replaceable;  // another such thing may take this thing's place
  // How the thing is described: "SIMDISK 1 TB (SIM0000HD01)"; the first part is its name.
  Range<DescriptionPart> described_as;
  std::string_view there_when;  // the attribute that is "1" if the thing is there; empty if it always is
  // The attribute of the same element whose change implies this one's; empty if there is none.
  std::string_view follows_one;
  const CatalogueFact* follows;  // the same for a fact elsewhere; null if there is none
};

struct CatalogueFact {
  std::string_view name;  // the last segment of its path, up to the colon: "Processor", "core-count"
  std::string_view unit;  // of its value; empty for texts and plain numbers
  std::optional<IdentifierKind> identifier;  // std::nullopt: any machine could have the value
  bool passing;                              // it differs in every scan
  // The attributes that make an element the same thing in every scan; an empty one is the element's value,
  // and one that begins with a slash is the element to which this one adds details.
  Range<std::string_view> known_by;
  Range<CatalogueFact> below;  // its attributes and children, sorted by length, then by name
  Wording wording;
};

// The first one has the trees below it.
extern const CatalogueFact kCatalogue[];
// The depth of the deepest tag in it; a tree's top element has depth 0.
extern const uint32_t kCatalogueDepth;

// What the catalogue knows about a tag; null if the scanner writes no such tag.
const CatalogueFact* find_fact(Element element);
// The same for the attribute or tag `name` below a fact; null if the fact is null. Names are compared up to
// their colon.
const CatalogueFact* find_fact_below(const CatalogueFact* fact, std::string_view name);

// The kind of identifier that this name has anywhere in the catalogue: for places that it does not know.
std::optional<IdentifierKind> identifier_by_name(std::string_view name);

}  // namespace inv
