#include "inv/file/container_reader.h"

#include <algorithm>
#include <utility>

#include "inv/base/byte_reader.h"
#include "inv/base/utf8.h"
#include "inv/file/inflate.h"
#include "zxml/container.h"

namespace inv {
namespace {

// Room for ten thousand entries or so; files have two or three.
constexpr uint64_t kLargestHeader = 1 << 20;
// Of a quote in a message, in columns.
constexpr size_t kLongestQuote = 40;

struct KindRow {
  std::string_view type;
  std::string_view id;  // empty if entries of this kind have none
  Section::Kind kind;
};
constexpr KindRow kKinds[] = {
    {kSnapshotType, "", Section::Kind::snapshot},
    {kAssetInfoType, "", Section::Kind::asset_info},
    {kRawDataType, kRawDataId, Section::Kind::raw_data},
};

Section::Kind kind_of(const std::string& type) {
  for (const KindRow& row : kKinds) {
    std::string words(row.type);
    if (!row.id.empty()) words.append(" ").append(row.id);
    if (type == words) return row.kind;
  }
  return Section::Kind::other;
}

bool read_trailer(std::string_view file, Container& container, Faults& faults) {
  const auto fail = [&](const char* message, uint64_t offset) {
    faults.push_back({message, offset});
    return false;
  };
  if (file.size() < kTrailerSize) return fail("the file is shorter than a trailer", file.size());
  const uint64_t start = file.size() - kTrailerSize;
  const std::string_view trailer = file.substr(static_cast<size_t>(start));
  if (trailer.substr(kMagicPlace) != kMagic)
    return fail("the magic \"INV!\" is missing", start + kMagicPlace);
  if (static_cast<unsigned char>(trailer[kVersionPlace]) != kTrailerVersion)
    return fail("the trailer's version is not 3", start + kVersionPlace);
  const unsigned char compressed = static_cast<unsigned char>(trailer[kHeaderFormPlace]);
  if (compressed > 1) {
    return fail("the trailer marks the header neither plain nor compressed", start + kHeaderFormPlace);
  }
  container.header_compressed = compressed == 1;

  // A file would have to be larger than 2^32 bytes for its header's offset to make sense in both orders.
  const std::string_view offset = trailer.substr(0, kHeaderOffsetSize);
  container.big_endian = read_number(offset, true) <= start;
  container.header_offset = read_number(offset, container.big_endian);
  if (container.header_offset > start) return fail("the header's offset is past the end of the file", start);
  container.header_size = start - container.header_offset;
  return true;
}

bool read_header_text(std::string_view file, Container& container, Faults& faults) {
  const std::string_view stored =
      file.substr(static_cast<size_t>(container.header_offset), static_cast<size_t>(container.header_size));
  if (!container.header_compressed) {
    if (stored.size() > kLargestHeader) {
      faults.push_back({"the header is too large", container.header_offset});
      return false;
    }
    container.header_text = stored;
    return true;
  }
  Inflated inflated = inflate_stream(stored, kLargestHeader);
  if (inflated.error.empty() && inflated.consumed < stored.size())
    inflated.error = "there are bytes after its zlib stream";
  if (!inflated.error.empty()) {
    faults.push_back(
        {"the header cannot be read: " + inflated.error, container.header_offset + inflated.consumed});
    return false;
  }
  container.header_text = std::move(inflated.bytes);
  return true;
}

// Parses the header's lines, entry by entry. A fault is located at its byte in the file if the header is
// plain text, else at the header's first byte.
class HeaderParser {
 public:
  HeaderParser(Container& container, Faults& faults) : container_(container), faults_(faults) {}

  bool parse() {
    std::string_view rest = container_.header_text;
    if (take_line(rest) != "[H]") return fail("the header does not begin with [H]");
    while (!rest.empty()) {
      position_ = container_.header_text.size() - rest.size();
      const std::optional<std::string_view> line = take_line(rest);
      if (!line) return fail("the header's last line has no line end");
      if (!read_line(*line)) return false;
    }
    if (!has_count_) return fail("the header has no count");
    return check_entry();
  }

 private:
  bool read_line(std::string_view line) {
    if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
      return begin_entry(line.substr(1, line.size() - 2));
    }
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) return fail("a header line has no \"=\"");
    const std::string_view key = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    return container_.sections.empty() ? read_head_value(key, value) : read_entry_value(key, value);
  }

  bool read_head_value(std::string_view key, std::string_view value) {
    if (key == "count") {
      has_count_ = true;
      return read_decimal(value, container_.count);
    }
    if (key == "snapshotcount") return read_decimal(value, container_.snapshot_count);
    return true;
  }

  bool read_entry_value(std::string_view key, std::string_view value) {
    Section& section = container_.sections.back();
    if (key == "offset") {
      has_offset_ = true;
      return read_decimal(value, section.offset);
    }
    if (key == "length") {
      has_length_ = true;
      return read_decimal(value, section.length);
    }
    if (key == "type") section.type = value;
    if (key == "ID") section.type.append(" ").append(value);
    if (key == "timestamp") section.timestamp = value;
    if (key == "snaptype") section.snaptype = value;
    return true;
  }

  bool begin_entry(std::string_view number) {
    if (!check_entry()) return false;
    Section section;
    if (!read_decimal(number, section.number)) return false;
    if (!container_.sections.empty() && section.number <= container_.sections.back().number) {
      return fail("the header's entries are out of order");
    }
    section.kind = Section::Kind::other;
    container_.sections.push_back(std::move(section));
    has_offset_ = has_length_ = false;
    return true;
  }

  // Called at the end of each entry.
  bool check_entry() {
    if (container_.sections.empty()) return true;
    if (!has_offset_ || !has_length_) return fail("a header entry has no offset or no length");
    Section& section = container_.sections.back();
    section.kind = kind_of(section.type);
    if (section.number >= container_.count) return fail("the header has more entries than its count says");
    return true;
  }

  bool read_decimal(std::string_view digits, uint64_t& number) {
    const std::optional<uint64_t> parsed = parse_decimal(digits);
    if (!parsed) return fail("header: \"" + shorten(digits, kLongestQuote) + "\" is not a number");
    number = *parsed;
    return true;
  }

  bool fail(std::string message) {
    faults_.push_back(
        {std::move(message), container_.header_offset + (container_.header_compressed ? 0 : position_)});
    return false;
  }

  Container& container_;
  Faults& faults_;
  size_t position_ = 0;
  bool has_count_ = false;
  bool has_offset_ = false;
  bool has_length_ = false;
};

std::string section_label(const Section& section) { return "section " + std::to_string(section.number); }

void locate_data(std::string_view file, const Container& container, Section& section, uint64_t max_size,
                 Faults& faults) {
  if (!fits(section.offset, section.length, container.header_offset)) {
    faults.push_back({section_label(section) + " does not fit before the header", container.header_offset});
  } else if (section.length > max_size) {
    faults.push_back(
        {section_label(section) + " is larger than " + std::to_string(max_size) + " bytes", section.offset});
  } else {
    section.data = file.substr(static_cast<size_t>(section.offset), static_cast<size_t>(section.length));
  }
}

// Sections follow each other in the order of their numbers without gaps, so bytes between two of them belong
// to a number that the header skips.
void add_unlisted_sections(std::string_view file, Container& container, Faults& faults) {
  std::vector<Section> all;
  uint64_t end = 0;
  uint64_t next_number = 0;
  const auto advance_to = [&](uint64_t offset, uint64_t number) {
    if (offset > end && number > next_number) {
      Section gap;
      gap.number = next_number;
      gap.offset = end;
      gap.length = offset - end;
      gap.data = file.substr(static_cast<size_t>(end), static_cast<size_t>(gap.length));
      all.push_back(std::move(gap));
    } else if (offset != end) {
      faults.push_back(
          {offset > end ? "bytes are outside every section" : "sections overlap", std::min(end, offset)});
    }
    end = offset;
    next_number = number;
  };
  for (Section& section : container.sections) {
    if (fits(section.offset, section.length, container.header_offset)) {
      advance_to(section.offset, section.number);
      end = section.offset + section.length;
      next_number = section.number + 1;
    }
    all.push_back(std::move(section));
  }
  advance_to(container.header_offset, container.count);
  container.sections = std::move(all);
}

}  // namespace

const char* kind_name(Section::Kind kind) {
  switch (kind) {
    case Section::Kind::snapshot:
      return "snapshot";
    case Section::Kind::asset_info:
      return "asset";
    case Section::Kind::raw_data:
      return "raw data";
    case Section::Kind::other:
      return "other";
    case Section::Kind::unlisted:
      return "unlisted";
  }
  return "";
}

std::optional<Container> read_container(std::string_view file, uint64_t max_size, Faults& faults) {
  Container container;
  if (!read_trailer(file, container, faults)) return std::nullopt;
  if (!read_header_text(file, container, faults)) return std::nullopt;
  if (!HeaderParser(container, faults).parse()) return std::nullopt;
  for (Section& section : container.sections) locate_data(file, container, section, max_size, faults);
  add_unlisted_sections(file, container, faults);
  return container;
}

}  // namespace inv
