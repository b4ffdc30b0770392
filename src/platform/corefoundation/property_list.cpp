#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "platform/corefoundation/container.h"
#include "platform/corefoundation/string.h"
#include "platform/corefoundation/value.h"
#include "plist/base64.h"
#include "plist/scanner.h"

namespace cf {
namespace {

// The short strings met last, so that the keys of a thousand dictionaries are the same few objects.
class StringCache {
 public:
  StringCache() { strings_.fill(nullptr); }
  StringCache(const StringCache&) = delete;
  ~StringCache() {
    for (const CFStringRef string : strings_) {
      if (string) CFRelease(string);
    }
  }

  CFStringRef create(plist::Characters text) {
    if (text.bytes.size() > kLongest) return create_string(text.bytes, text.ascii);
    CFStringRef& place = strings_[hash(text.bytes) >> (64 - kIndexBits)];
    if (!place || text_of(place) != text.bytes) {
      if (place) CFRelease(place);
      place = create_string(text.bytes, text.ascii);
    }
    retain(place);
    return place;
  }

 private:
  static constexpr size_t kLongest = 32;
  static constexpr int kIndexBits = 10;

  static uint64_t hash(std::string_view bytes) {
    constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15u;
    uint64_t hash = bytes.size() * kMultiplier;
    while (!bytes.empty()) {
      uint64_t word = 0;
      const size_t taken = std::min(bytes.size(), sizeof word);
      std::memcpy(&word, bytes.data(), taken);
      bytes.remove_prefix(taken);
      hash = (hash ^ word) * kMultiplier;
    }
    return hash;
  }

  std::array<CFStringRef, size_t{1} << kIndexBits> strings_;
};

// Listens to the scanner and makes objects: what is complete waits on a stack until its container ends.
class TreeBuilder {
 public:
  ~TreeBuilder() { std::for_each(objects_.begin(), objects_.end(), CFRelease); }

  void begin_array() { starts_.push_back(objects_.size()); }
  void end_array() {
    const size_t start = end_container();
    replace_from(start, create_array(objects_.data() + start, objects_.size() - start));
  }
  void begin_dictionary() { starts_.push_back(objects_.size()); }
  void end_dictionary() {
    const size_t start = end_container();
    pairs_.clear();
    for (size_t i = start; i < objects_.size(); i += 2) pairs_.push_back({objects_[i], objects_[i + 1]});
    replace_from(start, create_dictionary(pairs_.data(), pairs_.size()));
  }
  void key(plist::Characters text) { objects_.push_back(cache_.create(text)); }
  void string(plist::Characters text) { objects_.push_back(cache_.create(text)); }
  void integer(plist::Integer integer, std::string_view) {
    // Every zero is one shared number, which is narrow.
    const CFNumberType type = integer.value == 0 ? kCFNumberSInt32Type : kCFNumberSInt64Type;
    objects_.push_back(create<CFNumberObject>(type, integer.value, integer.above_int64));
  }
  void real(double value, std::string_view) {
    objects_.push_back(create<CFNumberObject>(kCFNumberFloat64Type, value));
  }
  void boolean(bool value) { objects_.push_back(value ? kCFBooleanTrue : kCFBooleanFalse); }
  void date(double seconds_since_2001, std::string_view) {
    objects_.push_back(create<CFDateObject>(seconds_since_2001));
  }
  void data(std::string_view source) {
    CFDataObject* const data = create_data(plist::decoded_capacity(source));
    data->length = plist::decode_base64(source, tail_of<unsigned char>(data));
    objects_.push_back(data);
  }

  // The list's value, owned by the caller; to be called once, after the last event.
  CFTypeRef take_root() {
    const CFTypeRef root = objects_.front();
    objects_.clear();
    return root;
  }

 private:
  size_t end_container() {
    const size_t start = starts_.back();
    starts_.pop_back();
    return start;
  }
  void replace_from(size_t start, CFTypeRef container) {
    objects_.resize(start);
    objects_.push_back(container);
  }

  StringCache cache_;
  std::vector<CFTypeRef> objects_;
  std::vector<size_t> starts_;  // of the open containers' elements
  std::vector<Pair> pairs_;
};

CFStringRef create_message(const plist::ScanResult& result, std::string_view list) {
  const auto line =
      1 + std::count(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(result.offset), '\n');
  return create_repaired_string(result.error + std::string(" on line ") + std::to_string(line));
}

}  // namespace
}  // namespace cf

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef data, CFOptionFlags,
                                                  CFStringRef* error) {
  const std::string_view list = data ? cf::bytes_of(data) : std::string_view();
  if (error) *error = nullptr;
  // Apple's reads mere blanks as a list in the old style: an empty dictionary.
  if (!list.empty() && list.find_first_not_of(" \t\r\n") == list.npos)
    return cf::create_dictionary(nullptr, 0);
  cf::TreeBuilder builder;
  const plist::ScanResult result = plist::scan(list, plist::events_for(builder));
  if (!result.error) return builder.take_root();
  if (error) *error = cf::create_message(result, list);
  return nullptr;
}
