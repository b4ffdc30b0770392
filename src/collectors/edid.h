// The 128 bytes with which a monitor identifies itself (EDID), decoded from the text that the profiler
// prints. No tree and no command: text in, record out.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "driver/base/text.h"

// The base block; extension blocks are not read. Header and checksum are not checked: a monitor with a wrong
// checksum still exists.
using EdidRaw = std::array<uint8_t, 128>;

// A mode of the standard timings, in pixels and Hz.
struct VideoMode {
  const char* aspect;  // "4:3"; static
  uint32_t height;
  uint32_t width;
  uint32_t refresh;
};

struct EdidInfo {
  Text manufacturer;    // three letters
  Text product_id;      // hexadecimal, padded with blanks to four characters
  Text version;         // "1.3"
  Text v_range_text;    // "56 - 75"; null without a range descriptor
  Text h_range_text;    // likewise
  Text max_resolution;  // see edid_max_resolution
  // Of the last descriptor of their kind, null without one. They run up to the first zero byte or the end of
  // the block, so the line feed and the padding of the descriptor are part of them.
  Text monitor_name;
  Text serial_text;
  std::vector<VideoMode> modes;  // see edid_video_modes
  // The number's bytes as printed, the first one most significant: the console identifies monitors by it.
  uint32_t serial = 0;
  uint16_t week = 0;
  uint16_t year = 0;
  uint16_t width_cm = 0;
  uint16_t height_cm = 0;
  uint8_t image_width = 0;  // the same two sizes as single bytes
  uint8_t image_height = 0;
  uint8_t video_input = 0;
  uint8_t features = 0;
  uint8_t v_min = 0;  // Hz; the ranges are 0 without a range descriptor
  uint8_t v_max = 0;
  uint8_t h_min = 0;  // kHz
  uint8_t h_max = 0;
  double gamma = 0;
};

// Decodes "0x00ffffffffffff00...": two characters, whatever they are, and two hexadecimal digits for each
// byte. What is missing or not hexadecimal leaves its byte zero; when the second character of a pair is not a
// digit, the first one counts alone. Null reads as the empty text.
EdidInfo decode_edid(const char* text);

// The image alone, bytes 21 and 22, as the summary reads it: two numbers of at most two hexadecimal digits,
// with blanks and signs as scanf takes them. std::nullopt if one of them is missing.
struct ImageSize {
  unsigned width_cm;
  unsigned height_cm;
};
std::optional<ImageSize> edid_image_size(const char* text);
// In inches, rounded up above 0.4: makers sell a screen of 19.5 inches as 20.
uint32_t diagonal_inches(const ImageSize& size);

// The largest of the established and standard timings, "1680 x 1050"; the later one of two equally large. The
// empty text when there is none.
Text edid_max_resolution(const EdidRaw& raw);

// All modes of the standard timings, first those of the block's own list, then those of its descriptors.
std::vector<VideoMode> edid_video_modes(const EdidRaw& raw);
