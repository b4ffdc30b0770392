// The things that a scan describes, as people see them: a disk, an application, a volume.
#pragma once

#include <string>
#include <string_view>

#include "inv/facts/catalogue.h"
#include "inv/file/document.h"

namespace inv {

// The thing that an element is or belongs to: the nearest element at or above it with a noun in the
// catalogue. The top of a tree counts only for itself. Empty if there is no such element.
Element thing_of(Element element);

// Whether the thing is there: an empty memory slot has no memory.
bool is_there(Element thing);

// Which one of its kind it is: "SIMDISK S1TB-7200 1 TB (SIM0000HD01)"; its value if the catalogue has no
// description. May be empty.
std::string description_of(Element thing);
// The same without the number of its place: "2 GB DDR3" for "slot 3, 2 GB DDR3".
std::string contents_of(Element thing);
// The first part of the description that has a value: "SIMDISK S1TB-7200", "slot 3".
std::string name_of(Element thing);
// The part in brackets, brackets included: "(SIM0000HD01)"; empty if there is none.
std::string bracket_of(Element thing);

// What people call the fact of this name: "firmware" for "fw-rev"; without a word in the catalogue, the name
// with blanks: "manufacture date".
std::string word_for(const CatalogueFact* fact, std::string_view name);

// A value with its unit, as people write it: "1 TB", "2 GB", "2800 MHz", "yes". The fact may be null;
// `base_value`, the exact value behind a rounded one, may be empty.
std::string readable_value(const CatalogueFact* fact, std::string_view value,
                           std::string_view base_value = {});

}  // namespace inv
