#include "collectors/edid.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "plist/cursor.h"

namespace {

// Where the fields are in the block.
constexpr size_t kManufacturerCode = 8;
constexpr size_t kProductCode = 10;
constexpr size_t kSerial = 12;
constexpr size_t kWeek = 16;
constexpr size_t kYear = 17;
constexpr size_t kVersion = 18;
constexpr size_t kRevision = 19;
constexpr size_t kVideoInput = 20;
constexpr size_t kWidthCm = 21;
constexpr size_t kHeightCm = 22;
constexpr size_t kGamma = 23;
constexpr size_t kFeatures = 24;
constexpr size_t kEstablishedTimings = 35;
constexpr size_t kStandardTimings = 38;
constexpr size_t kDescriptors[] = {54, 72, 90, 108};

// What a display descriptor describes, and where its payload begins.
constexpr uint8_t kSerialTag = 0xFF;
constexpr uint8_t kRangeTag = 0xFD;
constexpr uint8_t kNameTag = 0xFC;
constexpr uint8_t kTimingsTag = 0xFA;
constexpr size_t kPayload = 5;

// Where a byte's pair of digits is in the text, after "0x".
constexpr size_t text_position(size_t byte) { return 2 + 2 * byte; }

bool is_hexadecimal(char character) { return plist::digit_value(character) < 16; }

// The digits of a pair up to the first that is not one: "7" and "7x" are 7, "x7" is 0.
uint8_t read_pair(const char* pair, const char* end) {
  unsigned byte = 0;
  for (const char* digit = pair; digit != end && is_hexadecimal(*digit); ++digit)
    byte = 16 * byte + plist::digit_value(*digit);
  return static_cast<uint8_t>(byte);
}

EdidRaw read_block(const char* text) {
  EdidRaw raw = {};
  const size_t length = text ? std::strlen(text) : 0;
  for (size_t i = 0; i < raw.size() && text_position(i) < length; ++i) {
    const char* pair = text + text_position(i);
    raw[i] = read_pair(pair, std::min(pair + 2, text + length));
  }
  return raw;
}

uint32_t read_number(const EdidRaw& raw, size_t at, size_t size) {
  uint32_t number = 0;
  for (size_t i = at; i < at + size; ++i) number = number << 8 | raw[i];
  return number;
}

// 0 for a descriptor that holds a detailed timing: no display descriptor of interest has that tag.
uint8_t descriptor_tag(const EdidRaw& raw, size_t descriptor) {
  return raw[descriptor] == 0 && raw[descriptor + 1] == 0 ? raw[descriptor + 3] : 0;
}

Text descriptor_text(const EdidRaw& raw, size_t descriptor) {
  const uint8_t* start = raw.data() + descriptor + kPayload;
  const uint8_t* end = std::find(start, raw.data() + raw.size(), 0);
  return copy_range(reinterpret_cast<const char*>(start), reinterpret_cast<const char*>(end));
}

void read_ranges(const EdidRaw& raw, size_t descriptor, EdidInfo& info) {
  const uint8_t* range = raw.data() + descriptor + kPayload;
  info.v_min = range[0];
  info.v_max = range[1];
  info.h_min = range[2];
  info.h_max = range[3];
  info.v_range_text = format_string("%u - %u", info.v_min, info.v_max);
  info.h_range_text = format_string("%u - %u", info.h_min, info.h_max);
}

void read_descriptors(const EdidRaw& raw, EdidInfo& info) {
  for (const size_t descriptor : kDescriptors) {
    switch (descriptor_tag(raw, descriptor)) {
      case kSerialTag:
        info.serial_text = descriptor_text(raw, descriptor);
        break;
      case kNameTag:
        info.monitor_name = descriptor_text(raw, descriptor);
        break;
      case kRangeTag:
        read_ranges(raw, descriptor, info);
        break;
      default:
        break;
    }
  }
}

// Three letters of five bits each, "A" being 1.
Text manufacturer_letters(uint32_t code) {
  const auto letter = [code](int shift) { return static_cast<int>((code >> shift & 31) + 64); };
  return format_string("%c%c%c", letter(10), letter(5), letter(0));
}

// The established timings: one bit per refresh rate of a resolution, the block's three bytes read as one
// number. 1280 x 1024 depends on the lowest bit of the third byte, officially a maker's own bit, because the
// console's older figures did.
struct EstablishedTiming {
  uint32_t bits;
  uint32_t width;
  uint32_t height;
};

constexpr EstablishedTiming kEstablished[] = {
    {0xC00000, 720, 400},  {0x3C0000, 640, 480},  {0x03C000, 800, 600},   {0x002000, 832, 624},
    {0x001E00, 1024, 768}, {0x000080, 1152, 870}, {0x000001, 1280, 1024},
};

// How the two highest bits of a standard timing turn the width into the height. The division comes first and
// drops its remainder.
struct Aspect {
  const char* name;
  uint32_t divisor;
  uint32_t factor;
};

constexpr Aspect kAspects[] = {{"16:10", 16, 10}, {"4:3", 4, 3}, {"5:4", 5, 4}, {"16:9", 16, 9}};

void append_modes(const EdidRaw& raw, size_t at, size_t count, std::vector<VideoMode>& modes) {
  for (const uint8_t* pair = raw.data() + at; count > 0; pair += 2, --count) {
    // 1 marks a pair as unused; either byte suffices.
    if (pair[0] == 1 || pair[1] == 1) continue;
    const Aspect& aspect = kAspects[pair[1] >> 6];
    const uint32_t width = pair[0] * 8u + 248;
    const uint32_t height = width / aspect.divisor * aspect.factor;
    modes.push_back({aspect.name, height, width, (pair[1] & 63u) + 60});
  }
}

// The largest resolution offered, the later one of two equally large.
class Largest {
 public:
  void offer(uint32_t width, uint32_t height) {
    if (width * height < width_ * height_) return;
    width_ = width;
    height_ = height;
  }

  Text text() const { return width_ == 0 ? copy_text("") : format_string("%u x %u", width_, height_); }

 private:
  uint32_t width_ = 0;
  uint32_t height_ = 0;
};

}  // namespace

EdidInfo decode_edid(const char* text) {
  const EdidRaw raw = read_block(text);
  EdidInfo info;
  read_descriptors(raw, info);
  info.image_width = raw[kWidthCm];
  info.image_height = raw[kHeightCm];
  info.width_cm = raw[kWidthCm];
  info.height_cm = raw[kHeightCm];
  info.serial = read_number(raw, kSerial, 4);
  info.week = raw[kWeek];
  info.year = static_cast<uint16_t>(raw[kYear] + 1990);
  info.video_input = raw[kVideoInput];
  info.features = raw[kFeatures];
  info.manufacturer = manufacturer_letters(read_number(raw, kManufacturerCode, 2));
  // The product code has its low byte first.
  info.product_id =
      format_string("%4X", raw[kProductCode] | static_cast<unsigned>(raw[kProductCode + 1]) << 8);
  // No exception for 255, "not given": the console shows 3.55.
  info.gamma = (raw[kGamma] + 100) / 100.0;
  info.version = format_string("%d.%d", raw[kVersion], raw[kRevision]);
  info.max_resolution = edid_max_resolution(raw);
  info.modes = edid_video_modes(raw);
  return info;
}

std::optional<ImageSize> edid_image_size(const char* text) {
  if (std::strlen(text) <= text_position(kWidthCm)) return std::nullopt;
  ImageSize size = {};
  if (std::sscanf(text + text_position(kWidthCm), "%2x%2x", &size.width_cm, &size.height_cm) != 2)
    return std::nullopt;
  return size;
}

uint32_t diagonal_inches(const ImageSize& size) {
  const double width = size.width_cm, height = size.height_cm;
  double whole = 0;
  const double fraction = std::modf(std::sqrt(width * width + height * height) / 2.54, &whole);
  return static_cast<uint32_t>(fraction > 0.4 ? whole + 1 : whole);
}

Text edid_max_resolution(const EdidRaw& raw) {
  Largest largest;
  const uint32_t established = read_number(raw, kEstablishedTimings, 3);
  for (const EstablishedTiming& timing : kEstablished) {
    if (established & timing.bits) largest.offer(timing.width, timing.height);
  }
  for (const VideoMode& mode : edid_video_modes(raw)) largest.offer(mode.width, mode.height);
  return largest.text();
}

std::vector<VideoMode> edid_video_modes(const EdidRaw& raw) {
  std::vector<VideoMode> modes;
  append_modes(raw, kStandardTimings, 8, modes);
  for (const size_t descriptor : kDescriptors) {
    if (descriptor_tag(raw, descriptor) == kTimingsTag) append_modes(raw, descriptor + kPayload, 6, modes);
  }
  return modes;
}
