// Tags in a damaged list.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "plist/tags.h"

namespace plist {

struct FoundTag {
  Tag tag;
  size_t length;  // in bytes, angle brackets included
  bool whole;     // nothing had to be repaired
};

// The tag that the text begins with, if it is one of a property list's: as it is written, or with one byte
// repaired that was changed, added or lost, angle brackets and slash included.
std::optional<FoundTag> find_tag_at_start(std::string_view text);

// Takes the element's close tag, one byte of it damaged, from the end of a text, with the white space after
// it. False when it is not there.
bool remove_damaged_close_tag(std::string_view& text, Element element);

}  // namespace plist
