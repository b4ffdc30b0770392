#include "profiler/plist_dump.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "driver/base/dates.h"
#include "profiler/plist_access.h"
#include "zxml/place.h"

namespace {

constexpr int kMaximumDepth = 512;

// Keys that describe the profiler's run, and data types that nobody reads.
constexpr const char* kSkippedKeys[] = {"_dataType", "_detailLevel", "_properties"};
constexpr const char* kSkippedDataTypes[] = {"SPLogsDataType", "SPFontsDataType"};
// Dictionaries that list names with a state each, and are written as items.
constexpr const char* kKeyValueLists[] = {"spfirewall_applications", "spfirewall_services"};

template <size_t count>
bool contains(const char* const (&names)[count], const char* name) {
  for (const char* candidate : names) {
    if (std::strcmp(candidate, name) == 0) return true;
  }
  return false;
}

struct KeysAndValues {
  explicit KeysAndValues(CFDictionaryRef dictionary)
      : keys(static_cast<size_t>(CFDictionaryGetCount(dictionary))), values(keys.size()) {
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    // A few names are searched sooner than sorted.
    constexpr size_t kMany = 32;
    if (keys.size() > kMany && tag_names_differ()) names = Place::Names::distinct;
  }
  CFStringText key_text(size_t index) const { return CFStringText(static_cast<CFStringRef>(keys[index])); }
  std::string tag_name(size_t index) const { return sanitize_key(key_text(index).get()); }

  std::vector<const void*> keys;
  std::vector<const void*> values;
  Place::Names names = Place::Names::may_repeat;  // for the tags that the keys become

 private:
  // The keys are distinct, but two may yield the same name.
  bool tag_names_differ() const {
    std::vector<std::string> tag_names;
    for (size_t i = 0; i < keys.size(); ++i) tag_names.push_back(tag_name(i));
    std::sort(tag_names.begin(), tag_names.end());
    return std::adjacent_find(tag_names.begin(), tag_names.end()) == tag_names.end();
  }
};

bool is_dictionary(CFTypeRef object) { return CFGetTypeID(object) == CFDictionaryGetTypeID(); }

bool is_container(CFTypeRef object) {
  return is_dictionary(object) || CFGetTypeID(object) == CFArrayGetTypeID();
}

bool is_scalar(CFTypeRef object) {
  const CFTypeID type = CFGetTypeID(object);
  return type == CFStringGetTypeID() || type == CFDateGetTypeID() || type == CFNumberGetTypeID();
}

std::vector<CFTypeRef> elements_of(CFTypeRef container) {
  if (is_dictionary(container)) return KeysAndValues(static_cast<CFDictionaryRef>(container)).values;
  const auto array = static_cast<CFArrayRef>(container);
  std::vector<CFTypeRef> elements;
  for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) elements.push_back(CFArrayGetValueAtIndex(array, i));
  return elements;
}

void set_attribute(Place& place, const std::string& name, Place::Names names, Value value) {
  if (names == Place::Names::distinct) {
    place.set_distinct_attribute(name, std::move(value));
  } else {
    place.set_attribute(name, std::move(value));
  }
}

template <typename Number>
Number number_as(CFNumberRef number, CFNumberType type) {
  Number value = 0;
  CFNumberGetValue(number, type, &value);
  return value;
}

class Dump {
 public:
  explicit Dump(InventoryTree& tree) : tree_(tree) {}

  void data_type(CFDictionaryRef dictionary);

 private:
  void dictionary(CFDictionaryRef dictionary, Place& place, int depth);
  void array(CFArrayRef array, Place& place, int depth);
  void key_value_list(CFDictionaryRef dictionary, Place& place);
  void container(CFTypeRef object, Place& place, int depth);
  // The container under a key, which is kept where it could not be the name: some keys are the names of
  // devices.
  void named_container(const KeysAndValues& pairs, size_t index, Place& parent, int depth);
  // The value of a string, date or number; a value of kind none for anything else.
  Value scalar(CFTypeRef object);
  Value date_value(CFDateRef date);

  InventoryTree& tree_;
  DateFormatter date_formatter_{DateForm::cim};
  // What is installed together has the same date, and formatting is expensive.
  CFAbsoluteTime last_time_ = std::numeric_limits<CFAbsoluteTime>::quiet_NaN();
  Value last_date_;
};

// Numbers as the console's schema has always had them: by the type that CoreFoundation reports. Integers of a
// property list are 64 bits wide, but a zero is 32 bits wide on every Mac, and so are -1 to 12 where numbers
// are not kept in their pointers (up to Mac OS X 10.6, and in 32-bit programs): a -1 is 4294967295 there. All
// other types occur only in values made in memory.
Value number_value(CFNumberRef number) {
  switch (CFNumberGetType(number)) {
    case kCFNumberSInt8Type:
      return Value(static_cast<int64_t>(static_cast<uint8_t>(number_as<int8_t>(number, kCFNumberSInt8Type))));
    case kCFNumberSInt16Type:
      return Value(
          static_cast<int64_t>(static_cast<uint16_t>(number_as<int16_t>(number, kCFNumberSInt16Type))));
    case kCFNumberSInt32Type:
      return Value(
          static_cast<int64_t>(static_cast<uint32_t>(number_as<int32_t>(number, kCFNumberSInt32Type))));
    case kCFNumberCharType:
    case kCFNumberShortType:
    case kCFNumberIntType:
    case kCFNumberLongType:
    case kCFNumberCFIndexType:
    case kCFNumberNSIntegerType:
      return Value(static_cast<int64_t>(number_as<int32_t>(number, kCFNumberSInt32Type)));
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return Value(number_as<int64_t>(number, kCFNumberSInt64Type));
    case kCFNumberFloat32Type:
      return Value(static_cast<double>(number_as<float>(number, kCFNumberFloat32Type)));
    case kCFNumberFloat64Type:
    case kCFNumberFloatType:
    case kCFNumberDoubleType:
      return Value(number_as<double>(number, kCFNumberFloat64Type));
    default:
      return Value();
  }
}

bool is_wide_integer(CFTypeRef object) {
  if (CFGetTypeID(object) != CFNumberGetTypeID()) return false;
  const CFNumberType type = CFNumberGetType(static_cast<CFNumberRef>(object));
  return type == kCFNumberSInt64Type || type == kCFNumberLongLongType;
}

Value Dump::date_value(CFDateRef date) {
  const CFAbsoluteTime time = CFDateGetAbsoluteTime(date);
  if (time != last_time_) {
    last_date_.set_text(date_formatter_.format(date).get());
    last_time_ = time;
  }
  return last_date_;
}

Value Dump::scalar(CFTypeRef object) {
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFStringGetTypeID()) return text_value(CFStringText(static_cast<CFStringRef>(object)).get());
  if (type == CFDateGetTypeID()) return date_value(static_cast<CFDateRef>(object));
  if (type == CFNumberGetTypeID()) return number_value(static_cast<CFNumberRef>(object));
  return Value();
}

void Dump::container(CFTypeRef object, Place& place, int depth) {
  if (depth > kMaximumDepth) return;
  if (is_dictionary(object)) {
    dictionary(static_cast<CFDictionaryRef>(object), place, depth);
  } else {
    array(static_cast<CFArrayRef>(object), place, depth);
  }
}

void Dump::named_container(const KeysAndValues& pairs, size_t index, Place& parent, int depth) {
  const CFStringText key = pairs.key_text(index);
  const std::string name = pairs.tag_name(index);
  Place place(parent, name, pairs.names);
  container(pairs.values[index], place, depth);
  if (name != key.get()) place.annotate("key", key.get());
}

void Dump::data_type(CFDictionaryRef dictionary) {
  const Text name = find_text(dictionary, CFSTR("_dataType"));
  if (!name || contains(kSkippedDataTypes, name.get())) return;
  Place place(tree_.root(), std::string("/") + name.get());
  const KeysAndValues pairs(dictionary);
  for (size_t i = 0; i < pairs.keys.size(); ++i) {
    const CFStringText key = pairs.key_text(i);
    if (contains(kSkippedKeys, key.get())) continue;
    const CFTypeRef object = pairs.values[i];
    if (is_container(object)) {
      named_container(pairs, i, place, 1);
      continue;
    }
    Value value = scalar(object);
    if (value.kind() == Value::Kind::none) continue;
    // At this level the console expects wide integers as texts.
    if (is_wide_integer(object))
      value.set_text(format_string("%lld", static_cast<long long>(value.int64())).get());
    set_attribute(place, pairs.tag_name(i), pairs.names, std::move(value));
  }
}

void Dump::dictionary(CFDictionaryRef dictionary, Place& place, int depth) {
  const KeysAndValues pairs(dictionary);
  for (size_t i = 0; i < pairs.keys.size(); ++i) {
    const CFTypeRef object = pairs.values[i];
    if (is_dictionary(object) && contains(kKeyValueLists, pairs.key_text(i).get())) {
      Place list(place, pairs.tag_name(i));
      key_value_list(static_cast<CFDictionaryRef>(object), list);
    } else if (is_container(object)) {
      named_container(pairs, i, place, depth + 1);
    } else if (Value value = scalar(object); value.kind() != Value::Kind::none) {
      set_attribute(place, pairs.tag_name(i), pairs.names, std::move(value));
    }
  }
}

void Dump::array(CFArrayRef array, Place& place, int depth) {
  const CFIndex count = CFArrayGetCount(array);
  for (CFIndex i = 0; i < count; ++i) {
    const CFTypeRef object = CFArrayGetValueAtIndex(array, i);
    std::string name = "item" + std::to_string(i);
    if (is_container(object)) {
      Place element(place, std::move(name), Place::Names::distinct);
      container(object, element, depth + 1);
    } else if (Value value = scalar(object); value.kind() != Value::Kind::none) {
      place.set_distinct_attribute(name, std::move(value));
    }
  }
}

void Dump::key_value_list(CFDictionaryRef dictionary, Place& place) {
  const KeysAndValues pairs(dictionary);
  for (size_t i = 0; i < pairs.keys.size(); ++i) {
    if (CFGetTypeID(pairs.values[i]) != CFStringGetTypeID()) continue;
    Place item(place, "item" + std::to_string(i), Place::Names::distinct);
    item.set_attribute("_name", text_value(pairs.key_text(i).get()));
    item.set_attribute("value", scalar(pairs.values[i]));
  }
}

}  // namespace

void dump_profiler(CFArrayRef list, InventoryTree& tree) {
  Dump dump(tree);
  const CFIndex count = list ? CFArrayGetCount(list) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    if (const CFDictionaryRef dictionary = dictionary_at(list, i)) dump.data_type(dictionary);
  }
}

bool leaves_no_trace(CFTypeRef object) {
  if (!is_container(object)) return !is_scalar(object);
  const std::vector<CFTypeRef> elements = elements_of(object);
  return std::all_of(elements.begin(), elements.end(), leaves_no_trace);
}

std::string sanitize_key(const char* key) {
  // The last one is the first byte of the quotes.
  constexpr char kSought[] = "' /,\xE2";
  constexpr std::string_view kQuotes[] = {"\u2018", "\u2019", "\u201B"};
  std::string name(key);
  for (size_t at = 0; (at += std::strcspn(&name[at], kSought)) < name.size(); ++at) {
    size_t replaced = name[at] == '\xE2' ? 0 : 1;
    for (const std::string_view quote : kQuotes) {
      if (name.compare(at, quote.size(), quote) == 0) replaced = quote.size();
    }
    if (replaced > 0) name.replace(at, replaced, 1, '_');
  }
  return name;
}
