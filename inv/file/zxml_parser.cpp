#include "inv/file/zxml_parser.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace inv {
namespace {

// Upper bounds for the text, so that the arrays are allocated once and pointers into them stay valid.
struct Counts {
  size_t lines = 0;
  size_t records = 0;
  size_t attributes = 0;
  size_t annotations = 0;
};

Counts count_lines(std::string_view text) {
  Counts counts;
  for (size_t at = 0; at < text.size(); ++counts.lines) {
    switch (text[at]) {
      case kBranchMarker:
      case kLeafMarker:
        ++counts.records;
        break;
      case kAnnotationMarker:
        ++counts.annotations;
        break;
      default:
        ++counts.attributes;
    }
    const size_t end = text.find('\n', at);
    at = end == std::string_view::npos ? text.size() : end + 1;
  }
  return counts;
}

}  // namespace

// Reads line by line. `open_` holds the branches that await their closing line; a leaf ends at the next tag
// or closing line.
class TextParser {
 public:
  TextParser(std::string text, size_t most_lines) : most_lines_(most_lines) {
    document_.text_ = std::make_unique<const std::string>(std::move(text));
  }

  bool parse(Fault* fault) {
    if (read_all()) return true;
    fault->message = error_;
    fault->line = line_number_;
    fault->text_offset = line_start_;
    return false;
  }

  Document take() { return std::move(document_); }

 private:
  bool read_all() {
    const std::string_view text = *document_.text_;
    line_number_ = 1;
    if (text.substr(0, kTextMark.size()) != kTextMark) return fail("the text does not begin with its mark");
    const Counts counts = count_lines(text.substr(kTextMark.size()));
    if (counts.lines > most_lines_) {
      return fail("the text has more than " + std::to_string(most_lines_) +
                  " lines; a larger --max-size allows more");
    }
    document_.line_count_ = counts.lines;
    document_.records_.reserve(counts.records);
    document_.attributes_.reserve(counts.attributes);
    document_.annotations_.reserve(counts.annotations);
    for (size_t at = kTextMark.size(); at < text.size();) {
      ++line_number_;
      line_start_ = at;
      const size_t end = text.find('\n', at);
      if (end == std::string_view::npos) return fail("the last line has no line end");
      if (!read_line(text.substr(at, end - at))) return false;
      at = end + 1;
    }
    line_start_ = text.size();
    ++line_number_;
    if (document_.records_.empty()) return fail("the text has no element");
    if (!open_.empty()) return fail("the text ends before its elements are closed");
    return true;
  }

  bool read_line(std::string_view line) {
    if (line == "-") return close_branch();
    if (line.size() > kLongestLine) {
      return fail("a line is longer than " + std::to_string(kLongestLine) + " bytes");
    }
    if (std::memchr(line.data(), '\0', line.size())) return fail("a line contains a NUL byte");
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) return fail("a line has no \"=\"");
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    switch (line[0]) {
      case kBranchMarker:
      case kLeafMarker:
        return add_record(line[0] == kBranchMarker, name.substr(1), value);
      case kAnnotationMarker:
        return add_annotation(name.substr(1), value);
      default:
        return add_attribute(name, value);
    }
  }

  bool add_record(bool branch, std::string_view name, std::string_view value) {
    std::vector<Record>& records = document_.records_;
    if (open_.empty() && !records.empty()) return fail("there is a second top element");
    if (open_.size() > kDeepestElement) {
      return fail("elements are nested more than " + std::to_string(kDeepestElement) + " levels deep");
    }
    const size_t index = records.size();
    path_size_ = (open_.empty() ? 0 : open_.back().path_size) + 1 + name.size();
    if (!add_path(path_size_)) return false;
    Record record;
    record.name = name;
    record.value = value;
    record.branch = branch;
    record.depth = static_cast<uint32_t>(open_.size());
    if (!open_.empty()) record.parent_distance = static_cast<uint32_t>(index - open_.back().index);
    record.attributes = next_items(document_.attributes_);
    record.annotations = next_items(document_.annotations_);
    records.push_back(record);
    if (branch) open_.push_back({index, path_size_});
    annotated_ = &records.back().annotations;
    inside_tag_ = true;
    return true;
  }

  bool add_attribute(std::string_view name, std::string_view value) {
    if (!inside_tag_) return fail("an attribute is outside every tag");
    if (!add_path(path_size_ + 1 + name.size())) return false;
    document_.attributes_.push_back({name, value, next_items(document_.annotations_)});
    ++document_.records_.back().attributes.last;
    annotated_ = &document_.attributes_.back().annotations;
    return true;
  }

  bool add_annotation(std::string_view key, std::string_view text) {
    if (!inside_tag_) return fail("an annotation is outside every tag");
    document_.annotations_.push_back({key, text});
    ++annotated_->last;
    return true;
  }

  bool close_branch() {
    if (open_.empty()) return fail("a closing line has no element to close");
    const size_t index = open_.back().index;
    document_.records_[index].subtree_size = static_cast<uint32_t>(document_.records_.size() - index);
    open_.pop_back();
    inside_tag_ = false;
    return true;
  }

  bool add_path(uint64_t size) {
    path_bytes_ += size;
    return path_bytes_ <= kMostPathBytes ||
           fail("its paths take more than " + std::to_string(kMostPathBytes) + " bytes");
  }

  template <typename Item>
  static Range<Item> next_items(const std::vector<Item>& items) {
    return {items.data() + items.size(), items.data() + items.size()};
  }

  bool fail(std::string error) {
    error_ = std::move(error);
    return false;
  }

  struct OpenBranch {
    size_t index;
    uint64_t path_size;
  };

  size_t most_lines_;
  Document document_;
  std::vector<OpenBranch> open_;
  uint64_t path_size_ = 0;                  // of the last tag
  uint64_t path_bytes_ = 0;                 // of all tags and attributes
  Range<Annotation>* annotated_ = nullptr;  // those of the last tag or attribute
  bool inside_tag_ = false;                 // no closing line since the last tag
  std::string error_;
  size_t line_number_ = 0;
  size_t line_start_ = 0;
};

size_t most_lines(uint64_t max_size) {
  // A tree counts its elements in 32 bits.
  constexpr uint64_t kMost = std::numeric_limits<uint32_t>::max() / 2;
  return std::max(kFewestLines, static_cast<size_t>(std::min(max_size / kBytesOfLine, kMost)));
}

std::optional<Document> parse_text(std::string text, Fault* fault, size_t lines) {
  TextParser parser(std::move(text), lines);
  if (!parser.parse(fault)) return std::nullopt;
  return parser.take();
}

}  // namespace inv
