// Reading the .inv container: from the end of the file to its header, and from there to the sections.
// docs/inv-format.md describes it byte by byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inv/file/fault.h"

namespace inv {

// The default limit for a section as stored, and for all inflated sections of a file together: 256 MiB. The
// largest real inventories have less than a tenth of it. bench/memory.py measures how many times this much
// memory each command takes.
constexpr uint64_t kUsualMaxSize = 256ull << 20;

struct Section {
  enum class Kind {
    snapshot,
    asset_info,
    raw_data,
    other,     // listed with a type that this reader does not know
    unlisted,  // bytes between the others, of a kind without a header entry
  };

  Kind kind = Kind::unlisted;
  // The number in the header's entry; for unlisted bytes, the first number that the header skips there.
  uint64_t number = 0;
  std::string type;  // as in the entry, including its ID: "snapshot", "customdata rawdata"
  std::string timestamp;
  std::string snaptype;
  uint64_t offset = 0;  // from the start of the file
  uint64_t length = 0;
  // The section's bytes within the file; empty if offset or length do not fit, which is a fault of the
  // container.
  std::string_view data;
};

// The kind's name in a column or a message.
const char* kind_name(Section::Kind kind);

struct Container {
  bool big_endian = false;
  bool header_compressed = false;
  uint64_t header_offset = 0;  // also the total size of the sections
  uint64_t header_size = 0;    // as stored
  std::string header_text;
  uint64_t count = 0;
  uint64_t snapshot_count = 0;
  std::vector<Section> sections;  // by offset
};

// Reads trailer and header. std::nullopt if there is no header or its text is malformed; otherwise what it
// lists, with a fault for each entry that does not fit the file. `file` must outlive the container.
std::optional<Container> read_container(std::string_view file, uint64_t max_size, Faults& faults);

}  // namespace inv
