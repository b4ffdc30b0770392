// The things that a scan is about, as a person calls them: a disk, an application, a volume.
#pragma once

#include <string>
#include <string_view>

#include "inv/facts/catalogue.h"
#include "inv/file/document.h"

namespace inv {

// The thing that an element is, or that it is a part of: the nearest at or above it that the catalogue calls
// something; the top of a tree is one by itself only. None when there is no such element.
Element thing_of(Element element);

// Whether it is there: an empty memory slot holds no memory.
bool is_there(Element thing);

// Which one of its kind: "SIMDISK S1TB-7200 1 TB (SIM0000HD01)"; of anything that the catalogue has no words
// for its value. Empty when nothing tells.
std::string description_of(Element thing);
// The same without the number of its place: "2 GB DDR3" for "slot 3, 2 GB DDR3".
std::string contents_of(Element thing);
// The first words of that which have a value: "SIMDISK S1TB-7200", "slot 3".
std::string name_of(Element thing);
// What stands in brackets in it, with them: "(SIM0000HD01)"; empty when nothing does.
std::string bracket_of(Element thing);

// What people call the fact of this name: "firmware" for "fw-rev", "manufacture date" for what the catalogue
// has no word for.
std::string word_for(const CatalogueFact* fact, std::string_view name);

// A value with its unit, as people write it: "1 TB", "2 GB", "2800 MHz", "yes". The fact may be null; the
// exact value behind a rounded one may be empty.
std::string readable_value(const CatalogueFact* fact, std::string_view value,
                           std::string_view base_value = {});

}  // namespace inv
