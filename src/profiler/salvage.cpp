#include "profiler/salvage.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "plist/scanner.h"

namespace {

// Keys on which many facts hang: whatever stands below them, or what is read only where they say so.
constexpr std::string_view kKeys[] = {"_items",
                                      "_dataType",
                                      "volumes",
                                      "spdisplays_ndrvs",
                                      "_spdisplays_edid",
                                      "spnetworklocation_services",
                                      "SMB",
                                      "Ethernet",
                                      "MAC Address",
                                      "interface",
                                      "ip_address",
                                      "AC Power",
                                      "default",
                                      "os_version",
                                      "removable_media",
                                      "smart_status",
                                      "dimm_status",
                                      "spfirewall_globalstate",
                                      "spfirewall_services",
                                      "spfirewall_applications"};
// And such values: what tells the settings of the power supply, and that a firewall has rules.
constexpr std::string_view kValues[] = {"sppower_information", "spfirewall_globalstate_limit_connections"};

// A text in which one byte was damaged in a way that a list shows: not UTF-8 any more, a NUL, or markup.
bool is_damaged(std::string_view text, std::string_view name) {
  const size_t start = static_cast<size_t>(
      std::mismatch(text.begin(), text.end(), name.begin(), name.end()).first - text.begin());
  if (start == name.size()) return false;
  const std::string_view rest = name.substr(start + 1);
  if (text.size() < start + rest.size() || text.substr(text.size() - rest.size()) != rest) return false;
  const std::string_view byte = text.substr(start, text.size() - rest.size() - start);
  return byte == "\uFFFD" || byte == "<" || byte == "&" || byte == std::string_view("\0", 1);
}

// The one of the names that the text is a damaged form of; otherwise the text.
template <size_t count>
std::string_view put_right(std::string_view text, const std::string_view (&names)[count]) {
  const auto name = std::find_if(std::begin(names), std::end(names),
                                 [&](std::string_view known) { return is_damaged(text, known); });
  return name == std::end(names) ? text : *name;
}

// Writes the elements of a list as text again. The arrays at the top, one per list of the input, are left
// out: their elements share the frame.
class ListWriter {
 public:
  // The data type that the profiler was asked for; empty when that was none in particular.
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
    key_ = put_right(text.bytes, kKeys);
    element("key", key_);
  }
  void string(plist::Characters text) {
    const bool renamed = key_ == "_dataType" && is_damaged(text.bytes, data_type_);
    element("string", renamed ? data_type_ : put_right(text.bytes, kValues));
  }
  void integer(plist::Integer, std::string_view source) { element("integer", source); }
  void real(double, std::string_view source) { element("real", source); }
  void boolean(bool value) { text_ += value ? "<true/>" : "<false/>"; }
  void date(double, std::string_view source) { element("date", source); }
  void data(std::string_view source) { element("data", source); }

  // Values that stand outside of any array are in the list as well.
  bool found_list() const { return found_list_ || text_.size() > kPrologueLength; }

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
