// EDID blocks set up in a few words, for the tests of the decoder and of the display collector.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>

#include "collectors/edid.h"

class EdidBlock {
 public:
  // All zero except for the standard timings, which are all unused.
  EdidBlock() {
    for (size_t at = 38; at < 54; ++at) raw_[at] = 1;
  }

  EdidBlock& set(size_t at, std::initializer_list<uint8_t> bytes) {
    std::copy(bytes.begin(), bytes.end(), raw_.begin() + static_cast<std::ptrdiff_t>(at));
    return *this;
  }

  // Makes descriptor 0 to 3 a display descriptor. The payload may run over the descriptor's end, not the
  // block's.
  EdidBlock& describe(size_t descriptor, uint8_t tag, const std::string& payload) {
    const size_t at = 54 + 18 * descriptor;
    set(at, {0, 0, 0, tag, 0});
    for (size_t i = 0; i < payload.size(); ++i) raw_.at(at + 5 + i) = static_cast<uint8_t>(payload[i]);
    return *this;
  }

  const EdidRaw& raw() const { return raw_; }

  // As the profiler prints it.
  std::string text() const {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "0x";
    for (const uint8_t byte : raw_) {
      text += kDigits[byte >> 4];
      text += kDigits[byte & 15];
    }
    return text;
  }

 private:
  EdidRaw raw_ = {};
};
