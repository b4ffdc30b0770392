#include "inv/file/debug_output.h"

#include <algorithm>

namespace inv {
namespace {

// 172 bytes before the dictionary and 18 after it: the scanner removes them by their lengths.
constexpr std::string_view kPrologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<array>\n";
constexpr std::string_view kEpilogue = "</array>\n</plist>\n";
static_assert(kPrologue.size() == 172 && kEpilogue.size() == 18);

constexpr std::string_view kTypeKey = "_dataType";

bool is_type_name(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

// Moves from tag to tag; skips text between them, comments and CDATA sections.
class TagWalker {
 public:
  explicit TagWalker(std::string_view text) : text_(text) {}

  // Moves to the next tag; false after the last one.
  bool next() {
    for (;;) {
      start_ = text_.find('<', end_);
      if (start_ == text_.npos) return false;
      const std::string_view close = closing_of(text_.substr(start_));
      end_ = text_.find(close, start_);
      if (end_ == text_.npos) return false;
      end_ += close.size();
      if (close == ">") return true;
    }
  }

  // What is between the angle brackets: "dict", "/dict" or "array/".
  std::string_view tag() const { return text_.substr(start_ + 1, end_ - start_ - 2); }
  // The text after the tag, up to the next one.
  std::string_view content() const { return text_.substr(end_, text_.find('<', end_) - end_); }
  size_t start() const { return start_; }
  size_t end() const { return end_; }

 private:
  static std::string_view closing_of(std::string_view markup) {
    if (markup.substr(0, 4) == "<!--") return "-->";
    if (markup.substr(0, 9) == "<![CDATA[") return "]]>";
    return ">";
  }

  std::string_view text_;
  size_t start_ = 0;
  size_t end_ = 0;
};

// From the start of the line, if only blanks precede the tag, to the end of the line after it.
std::string_view with_line(std::string_view text, size_t start, size_t end) {
  size_t first = start;
  while (first > 0 && (text[first - 1] == ' ' || text[first - 1] == '\t')) --first;
  if (end < text.size() && text[end] == '\n') ++end;
  return text.substr(first, end - first);
}

}  // namespace

std::vector<DataType> split_profiler_output(std::string_view output) {
  std::vector<DataType> types;
  TagWalker walker(output);
  size_t depth = 0;  // of open arrays and dictionaries
  size_t start = 0;
  bool key_seen = false;
  std::string_view name;
  while (walker.next()) {
    const std::string_view tag = walker.tag();
    if (tag == "dict" || tag == "array") {
      if (++depth == 2) {
        start = walker.start();
        name = {};
      }
    } else if ((tag == "/dict" || tag == "/array") && depth > 0) {
      if (depth-- == 2 && is_type_name(name)) {
        types.push_back({std::string(name), with_line(output, start, walker.end())});
      }
    } else if (depth == 2 && tag == "string" && key_seen) {
      name = walker.content();
    }
    // The key's own closing tag comes between the key and its value.
    if (tag != "/key") key_seen = depth == 2 && tag == "key" && walker.content() == kTypeKey;
  }
  return types;
}

std::string_view text_of_key(std::string_view dict, std::string_view key) {
  TagWalker walker(dict);
  bool key_seen = false;
  while (walker.next()) {
    if (key_seen && walker.tag() == "string") return walker.content();
    if (walker.tag() != "/key") key_seen = walker.tag() == "key" && walker.content() == key;
  }
  return {};
}

std::string output_of(const DataType& type) {
  std::string output(kPrologue);
  return output.append(type.dict).append(kEpilogue);
}

}  // namespace inv
