// A listener that writes the events down.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "plist/base64.h"
#include "plist/scanner.h"

// One line of text: [ELEMENT ELEMENT] for arrays, {key:VALUE key:VALUE} for dictionaries, "text", numbers as
// they are read, true, false,
// @SECONDS for dates, <BYTES> for data.
class Recorder {
 public:
  void begin_array() { open('['); }
  void end_array() { close(']'); }
  void begin_dictionary() { open('{'); }
  void end_dictionary() { close('}'); }
  void key(plist::Characters text) {
    separate();
    text_ += text.bytes;
    text_ += ':';
    after_key_ = true;
  }
  void string(plist::Characters text) { add('"' + std::string(text.bytes) + '"'); }
  void integer(plist::Integer integer, std::string_view source) {
    add(integer.above_int64 ? std::to_string(static_cast<uint64_t>(integer.value))
                            : std::to_string(integer.value));
    sources_.emplace_back(source);
  }
  void real(double value, std::string_view source) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    add(text);
    sources_.emplace_back(source);
  }
  void boolean(bool value) { add(value ? "true" : "false"); }
  void date(double seconds, std::string_view source) {
    char text[40];
    std::snprintf(text, sizeof text, "@%.0f", seconds);
    add(text);
    sources_.emplace_back(source);
  }
  void data(std::string_view source) {
    std::vector<unsigned char> bytes(plist::decoded_capacity(source));
    bytes.resize(plist::decode_base64(source, bytes.data()));
    std::string text = "<";
    for (const unsigned char byte : bytes) text += std::to_string(byte) + ' ';
    add(text + '>');
  }

  const std::string& text() const { return text_; }
  // Of integers, reals and dates.
  const std::vector<std::string>& sources() const { return sources_; }
  // Whether every begin was followed by its end, and every key by a value.
  bool balanced() const { return open_.empty() && !broken_ && !after_key_; }
  size_t deepest() const { return deepest_; }

 private:
  void separate() {
    if (!text_.empty() && !after_key_ && text_.back() != '[' && text_.back() != '{') text_ += ' ';
    after_key_ = false;
  }
  void add(const std::string& value) {
    broken_ = broken_ || (!open_.empty() && open_.back() == '{' && !after_key_);
    separate();
    text_ += value;
  }
  void open(char bracket) {
    add(std::string(1, bracket));
    open_.push_back(bracket);
    deepest_ = std::max(deepest_, open_.size());
  }
  void close(char bracket) {
    broken_ = broken_ || open_.empty() || after_key_ || open_.back() != (bracket == ']' ? '[' : '{');
    if (!open_.empty()) open_.pop_back();
    text_ += bracket;
  }

  std::string text_, open_;
  std::vector<std::string> sources_;
  bool after_key_ = false, broken_ = false;
  size_t deepest_ = 0;
};

// Runs a scanner on a copy of just the text's size, so that the address sanitizer sees a byte too much being
// read.
template <typename Scan>
Recorder record(std::string_view list, Scan scan) {
  const std::vector<char> bytes(list.begin(), list.end());
  Recorder recorder;
  scan(std::string_view(bytes.data(), bytes.size()), plist::events_for(recorder));
  return recorder;
}
