// What is known of each fact that the scanner writes: catalogue.txt, as the build puts it into the program.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "inv/file/document.h"

namespace inv {

// What the identifiers in a value look like, when the value reveals whose machine it is.
enum class IdentifierKind {
  text,          // a name, a UUID: the whole value is one
  serial,        // a serial number
  number,        // a serial number as an integer; 0 means none
  account,       // names of accounts, blanks between them; the system's own belong to nobody
  account_id,    // of a user or a group; those that every Mac counts from 0 on belong to nobody
  addresses,     // IP addresses, or host names, with commas between them
  uri,           // what follows the scheme
  full_name,     // of a person; its words are identifiers too
  secret,        // a command line, a value of the environment: nothing of it stays
  network_name,  // of a network service; those that the system chooses belong to nobody
};

// A value within a sentence; it goes with the texts around it when there is none.
struct ToldPart {
  std::string_view before;
  std::string_view
      source;  // an attribute; "its number" is that in the element's name, empty is its own value
  std::string_view behind;
};

struct CatalogueFact;

// How a person is told of a fact.
struct Telling {
  std::string_view word;    // what people call it; empty when its name says it
  bool yes_no;              // its value is "1" or "0"
  std::string_view called;  // what kind of thing the element is: "Disk"; empty: a part of the thing above it
  bool replaceable;         // the thing is in a place, where another one may follow it
  // Which thing of its kind: "SIMDISK 1 TB (SIM0000HD01)"; the first part is its name.
  Range<ToldPart> told_as;
  std::string_view there_when;  // the attribute that is "1" when the thing is there; empty: it always is
  // The attribute of the same element with which it changes, so that it says no more; empty when there is
  // none.
  std::string_view follows_one;
  const CatalogueFact* follows;  // the same for a fact elsewhere; null when there is none
};

struct CatalogueFact {
  std::string_view name;                     // its last segment, up to its colon: "Processor", "core-count"
  std::string_view unit;                     // of its value; empty for texts and plain numbers
  std::optional<IdentifierKind> identifier;  // none: the value could be any machine's
  bool passing;                              // no two scans have it in common
  // The attributes that make an element the same thing in every scan; an empty one is its own value,
  // and one that begins with a slash names the element that it tells more of.
  Range<std::string_view> known_by;
  Range<CatalogueFact> below;  // its attributes and children, the shortest names first, then by name
  Telling telling;
};

// The trees are below the first of them.
extern const CatalogueFact kCatalogue[];
// Of the deepest tag in it; a tree's top element has 0.
extern const uint32_t kCatalogueDepth;

// What the catalogue knows about a tag; null when the scanner writes no tag like it.
const CatalogueFact* find_fact(Element element);
// The same of what is named `name` below a fact, an attribute or a tag; null when the fact is. Names count up
// to their colon.
const CatalogueFact* find_fact_below(const CatalogueFact* fact, std::string_view name);

// What identifies a machine wherever the catalogue has this name: for places that it does not know.
std::optional<IdentifierKind> identifier_by_name(std::string_view name);

}  // namespace inv
