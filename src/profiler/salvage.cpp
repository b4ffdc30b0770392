#include "profiler/salvage.h"

#include <string>
#include <string_view>

#include "plist/scanner.h"

namespace {

// Writes the elements of a list as text again. The arrays at the top, one per list of the input, are left
// out: their elements share the frame.
class ListWriter {
 public:
  void begin_array() {
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
  void key(plist::Characters text) { element("key", text.bytes); }
  void string(plist::Characters text) { element("string", text.bytes); }
  void integer(plist::Integer, std::string_view source) { element("integer", source); }
  void real(double, std::string_view source) { element("real", source); }
  void boolean(bool value) { text_ += value ? "<true/>" : "<false/>"; }
  void date(double, std::string_view source) { element("date", source); }
  void data(std::string_view source) { element("data", source); }

  // The list in the profiler's frame; nothing is written after it.
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

  std::string text_ = kPrologue;
  size_t depth_ = 0;
};

}  // namespace

ProfilerOutput salvage_output(const ProfilerOutput& output) {
  ListWriter writer;
  plist::scan_leniently({output.text.get(), output.length}, plist::events_for(writer));
  const std::string& list = writer.finish();
  return {output.data_type, copy_range(list.data(), list.data() + list.size()),
          static_cast<uint32_t>(list.size())};
}
