// From a section's bytes to its text, whichever layout it has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "inv/file/fault.h"
#include "zxml/container.h"

namespace inv {

const char* layout_name(Layout layout);

struct SectionText {
  std::string text;
  Layout layout = Layout::whole_compressed;
  // For plain layouts the fault of a text has its own place in the file; a compressed text is found by its
  // section.
  bool plain() const { return !is_compressed(layout); }
};

// None when the layout is unknown or its parts are damaged; the fault's offset then counts from the section's
// first byte. A text of more than `max_size` bytes is refused. A split section's index may have its offset in
// either byte order; the container's own is tried first.
std::optional<SectionText> read_section_text(std::string_view data, bool big_endian, uint64_t max_size,
                                             Fault* fault);

}  // namespace inv
