#include "inv/file/section_text.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "inv/base/byte_reader.h"
#include "inv/base/characters.h"
#include "inv/file/inflate.h"
#include "zxml/text_form.h"

namespace inv {
namespace {

const std::string kFirstIndexLine = "[" + std::string(kRootPart) + "]\n";

// A leaf with children is measured with them but written without, and the difference is filled with NULs.
void drop_padding(std::string& text) {
  const size_t last = text.find_last_not_of('\0');
  text.resize(last == std::string::npos ? 0 : last + 1);
}

class SectionReader {
 public:
  SectionReader(std::string_view data, bool big_endian, uint64_t max_size)
      : data_(data), big_endian_(big_endian), max_size_(max_size) {}

  bool read() {
    if (ends_with(data_, kWholeCompressedEnd)) {
      result.layout = Layout::whole_compressed;
      return read_stream(0, data_.size() - kWholeCompressedEnd.size());
    }
    if (ends_with(data_, kWholePlainEnd)) {
      result.layout = Layout::whole_plain;
      if (!take_plain(data_.size() - kWholePlainEnd.size())) return false;
      drop_padding(result.text);
      return true;
    }
    const bool compressed = ends_with(data_, kSplitCompressedEnd);
    if (!compressed && !ends_with(data_, kSplitPlainEnd)) {
      return fail("the section has none of the four known endings", data_.size());
    }
    result.layout = compressed ? Layout::split_compressed : Layout::split_plain;
    if (!read_split(compressed)) return false;
    // A split tree leaves out the top element's closing line.
    if (result.text.substr(0, kTextMark.size()) == kTextMark &&
        result.text[kTextMark.size()] == kBranchMarker) {
      result.text += kClosingLine;
    }
    return true;
  }

  SectionText result;
  Fault fault;

 private:
  struct Part {
    size_t offset;
    size_t length;
  };

  bool read_split(bool compressed) {
    if (!find_index(compressed)) return false;
    if (!compressed) return take_plain(index_offset_);
    std::vector<Part> parts;
    if (!read_parts(parts)) return false;
    for (const Part& part : parts) {
      if (!read_stream(part.offset, part.length)) return false;
      drop_padding(result.text);
    }
    return true;
  }

  bool take_plain(size_t length) {
    if (length > max_size_) {
      return fail("the text is larger than " + std::to_string(max_size_) + " bytes", 0);
    }
    result.text = data_.substr(0, length);
    return true;
  }

  bool find_index(bool compressed) {
    const size_t trailer = kIndexOffsetSize + kSplitPlainEnd.size();
    if (data_.size() < trailer) return fail("the section is too short for its index", data_.size());
    const size_t index_end = data_.size() - trailer;
    for (const bool big_endian : {big_endian_, !big_endian_}) {
      const uint64_t offset = read_number(data_.substr(index_end, kIndexOffsetSize), big_endian);
      if (offset > index_end) continue;
      index_offset_ = static_cast<size_t>(offset);
      const std::string_view stored = data_.substr(index_offset_, index_end - index_offset_);
      index_ = stored;
      if (compressed) {
        Inflated inflated = inflate_stream(stored, max_size_);
        if (!inflated.error.empty() || inflated.consumed != stored.size()) continue;
        index_ = std::move(inflated.bytes);
      }
      if (index_.compare(0, kFirstIndexLine.size(), kFirstIndexLine) == 0) return true;
    }
    return fail("the section's index cannot be found or read", index_end);
  }

  // The parts fill the space from the first byte to the index.
  bool read_parts(std::vector<Part>& parts) {
    std::string_view rest = index_;
    size_t end = 0;
    while (!rest.empty()) {
      const std::optional<std::string_view> name = take_line(rest);
      const std::optional<uint64_t> offset = take_number(rest, "offset=");
      const std::optional<uint64_t> length = take_number(rest, "length=");
      if (!name || !offset || !length) return fail("the section's index is malformed", index_offset_);
      if (*offset != end || !fits(*offset, *length, index_offset_)) {
        return fail("a part of the section is not where its index says", end);
      }
      parts.push_back({end, static_cast<size_t>(*length)});
      end += static_cast<size_t>(*length);
    }
    return end == index_offset_ || fail("bytes of the section are outside every part", end);
  }

  static std::optional<uint64_t> take_number(std::string_view& rest, std::string_view key) {
    const std::optional<std::string_view> line = take_line(rest);
    if (!line || line->substr(0, key.size()) != key) return std::nullopt;
    return parse_decimal(line->substr(key.size()));
  }

  bool read_stream(size_t offset, size_t length) {
    Inflated inflated = inflate_stream(data_.substr(offset, length), max_size_ - result.text.size());
    if (inflated.error.empty() && inflated.consumed < length) {
      inflated.error = "there are bytes after the zlib stream";
    }
    if (!inflated.error.empty()) return fail(inflated.error, offset + inflated.consumed);
    if (result.text.empty()) {
      result.text = std::move(inflated.bytes);
    } else {
      result.text += inflated.bytes;
    }
    return true;
  }

  bool fail(std::string message, size_t offset) {
    fault = {std::move(message), offset};
    return false;
  }

  std::string_view data_;
  bool big_endian_;
  uint64_t max_size_;
  size_t index_offset_ = 0;
  std::string index_;
};

}  // namespace

const char* layout_name(Layout layout) {
  switch (layout) {
    case Layout::whole_compressed:
      return "whole, compressed";
    case Layout::whole_plain:
      return "whole, plain";
    case Layout::split_compressed:
      return "split, compressed";
    case Layout::split_plain:
      return "split, plain";
  }
  return "";
}

std::optional<SectionText> read_section_text(std::string_view data, bool big_endian, uint64_t max_size,
                                             Fault* fault) {
  SectionReader reader(data, big_endian, max_size);
  if (reader.read()) return std::move(reader.result);
  *fault = std::move(reader.fault);
  return std::nullopt;
}

}  // namespace inv
