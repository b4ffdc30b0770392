// Scanner of XML property lists: bytes in, events out. It reads the dialect that Apple's own parser reads,
// which is not quite XML, and needs no memory that grows with the document but one byte per level of nesting.
#pragma once

#include <cstddef>
#include <string_view>

#include "plist/events.h"

namespace plist {

// How deep arrays and dictionaries may nest.
constexpr size_t kMaximumDepth = 512;

struct ScanResult {
  const char* error;  // a static message; null when the list was read to its end
  size_t offset;      // the byte where reading ended
};

// Refuses what Apple's parser refuses (one invalid byte of UTF-8 in a text is enough) and keeps what it
// keeps: carriage returns, control bytes, NULs in texts, whatever follows the list. Only UTF-8 is read. After
// an error the events so far are an unfinished list.
ScanResult scan(std::string_view list, const Events& events);

// Makes the best of a damaged list, and reads a whole one like `scan`. It never fails, and its events are
// always balanced:
// - everything before the XML declaration or <plist is skipped;
// - text between elements is skipped, and so are the tags of unknown elements;
// - a tag with one damaged byte is repaired;
// - invalid UTF-8 becomes U+FFFD; an entity that is not known stays as its text;
// - a value that cannot be read or is not closed is dropped, and its key with it;
// - so are a container nested deeper than `depth_limit`, a key without a value, a value without a key;
// - a container that is not closed ends with the one around it, or with the input;
// - </plist> ends nothing, so that there may be several values at the top.
//
// `scan` turns a key in the place of a value into a string; here it replaces the key before it.
void scan_leniently(std::string_view list, const Events& events, size_t depth_limit = kMaximumDepth);

}  // namespace plist
