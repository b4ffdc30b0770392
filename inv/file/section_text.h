// Extracts the text from a section's bytes, whatever its layout.
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
  // In plain layouts a fault in the text has a place in the file; in compressed ones only the section has.
  bool plain() const { return !is_compressed(layout); }
};

// std::nullopt if the layout is unknown or its parts are damaged; the fault's offset then counts from the
// section's first byte. A text of more than `max_size` bytes is refused. The index offset of a split section
// may have either byte order; the container's is tried first.
std::optional<SectionText> read_section_text(std::string_view data, bool big_endian, uint64_t max_size,
                                             Fault* fault);

}  // namespace inv
