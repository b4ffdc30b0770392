#include "profiler/salvage.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "plist/scanner.h"
#include "profiler/data_types.h"

namespace {

// In the lists of all data types many facts depend on these.
constexpr std::string_view kCommonKeys[] = {"_items", "_dataType"};

// A text with one byte damaged so that it shows: no longer UTF-8, a NUL, or markup.
bool is_damaged(std::string_view text, std::string_view name) {
  const size_t start = static_cast<size_t>(
      std::mismatch(text.begin(), text.end(), name.begin(), name.end()).first - text.begin());
  if (start == name.size()) return false;
  const std::string_view rest = name.substr(start + 1);
  if (text.size() < start + rest.size() || text.substr(text.size() - rest.size()) != rest) return false;
  const std::string_view byte = text.substr(start, text.size() - rest.size() - start);
  return byte == "\uFFFD" || byte == "<" || byte == "&" || byte == std::string_view("\0", 1);
}

// The key that the text is a damaged form of; otherwise the text. It may be one of any data type, since a
// list that was requested without one has them all.
std::string_view put_key_right(std::string_view text) {
  for (const std::string_view key : kCommonKeys) {
    if (is_damaged(text, key)) return key;
  }
  for (const DataType& data_type : kDataTypes) {
    for (const std::string_view key : data_type.keys) {
      if (is_damaged(text, key)) return key;
    }
  }
  return text;
}

// The same of a value.
std::string_view put_value_right(std::string_view text) {
  for (const DataType& data_type : kDataTypes) {
    if (is_damaged(text, data_type.value)) return data_type.value;
  }
  return text;
}

// Writes the elements of a list as text again. The arrays at the top, one per list of the input, are left
// out: their elements share the frame.
class ListWriter {
 public:
  // The data type that the profiler was asked for; empty when it was asked for all.
  explicit ListWriter(std::string_view data_type) : data_type_(data_type) {}

  void begin_array() {
    found_list_ = true;
    if (depth_++ > 0) text_ += "<array>";
  }
  void end_array() {
    if (--depth_ > 0) text_ += "</array>";
  }
  void begin_dictionary() {
    ++depth_;
    text_ += "<dict>";
  }
  void end_dictionary() {
    --depth_;
    text_ += "</dict>";
  }
  void key(plist::Characters text) {
    key_ = put_key_right(text.bytes);
    element("key", key_);
  }
  void string(plist::Characters text) {
    const bool renamed = key_ == "_dataType" && is_damaged(text.bytes, data_type_);
    element("string", renamed ? data_type_ : put_value_right(text.bytes));
  }
  void integer(plist::Integer, std::string_view source) { element("integer", source); }
  void real(double, std::string_view source) { element("real", source); }
  void boolean(bool value) { text_ += value ? "<true/>" : "<false/>"; }
  void date(double, std::string_view source) { element("date", source); }
  void data(std::string_view source) { element("data", source); }

  // Values outside any array are in the list as well.
  bool found_list() const { return found_list_ || text_.size() > kPrologueLength; }

  // The list in the profiler's frame; nothing can be written after that.
  const std::string& finish() { return text_ += kEpilogue; }

 private:
  void element(const char* name, std::string_view content) {
    text_.append("<").append(name).append(">");
    append_escaped(content);
    text_.append("</").append(name).append(">");
  }

  void append_escaped(std::string_view content) {
    for (const char character : content) {
      if (character == '&') {
        text_ += "&amp;";
      } else if (character == '<') {
        text_ += "&lt;";
      } else if (character == '\0') {
        // The document is a NUL-terminated text.
        text_ += "\uFFFD";
      } else {
        text_ += character;
      }
    }
  }

  std::string_view data_type_;
  std::string key_;  // the last one
  std::string text_ = kPrologue;
  size_t depth_ = 0;
  bool found_list_ = false;
};

}  // namespace

ProfilerOutput salvage_output(const ProfilerOutput& output) {
  ListWriter writer(output.data_type ? output.data_type : "");
  plist::scan_leniently({output.text.get(), output.length}, plist::events_for(writer));
  if (!writer.found_list()) return {output.data_type, nullptr, 0};
  const std::string& list = writer.finish();
  return {output.data_type, copy_range(list.data(), list.data() + list.size()),
          static_cast<uint32_t>(list.size())};
}
