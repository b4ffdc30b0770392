// The parsed profiler output as an inventory tree, so that the collectors read every fact with the tree's
// operations:
//   a dictionary            a tag; its string, date and number values are the tag's attributes
//   an array                a tag; its elements are tags or attributes named "item0", "item1", ...
//   a data type             the tag of its name under the top element
// A tag whose key could not be its name (see sanitize_key) keeps the key as the annotation
// "key". Booleans, data and anything else that a list may contain are left out.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "zxml/zXML.h"

// Copies the list, an array of data-type dictionaries, into the tree; fonts and logs are left out. A
// dictionary without a data type is skipped, and so is anything nested deeper than a property list can be.
void dump_profiler(CFArrayRef list, InventoryTree& tree);

// Whether an object and everything in it is left out, so that the tree does not show it at all. It must not
// be nested deeper than a property list can be.
bool leaves_no_trace(CFTypeRef object);

// A key as a tag's name: apostrophes (typographic ones too), blanks, slashes and commas become underscores,
// since they mean something in paths and in the console's queries.
std::string sanitize_key(const char* key);
