#include "profiler/plist_access.h"

namespace {

// The object as the wanted type, or null.
template <typename Ref>
Ref as(CFTypeRef object, CFTypeID type) {
  return object && CFGetTypeID(object) == type ? static_cast<Ref>(object) : nullptr;
}

template <typename Ref>
Ref find(CFDictionaryRef dictionary, CFStringRef key, CFTypeID type) {
  return dictionary ? as<Ref>(CFDictionaryGetValue(dictionary, key), type) : nullptr;
}

}  // namespace

Text cfstring_to_text(CFStringRef string, CFIndex* length) {
  const CFIndex characters = CFStringGetLength(string);
  const CFIndex capacity = 4 * characters;
  Text text(new char[static_cast<size_t>(capacity) + 1]);
  CFIndex used = 0;
  CFStringGetBytes(string, CFRangeMake(0, characters), kCFStringEncodingUTF8, 0, false,
                   reinterpret_cast<UInt8*>(text.get()), capacity, &used);
  text[static_cast<size_t>(used)] = '\0';
  if (length) *length = used;
  return text;
}

CFStringText::CFStringText(CFStringRef string) : text_(CFStringGetCStringPtr(string, kCFStringEncodingUTF8)) {
  if (text_) return;
  copy_ = cfstring_to_text(string);
  text_ = copy_.get();
}

CFDictionaryRef dictionary_at(CFArrayRef array, CFIndex index) {
  if (!array || index < 0 || index >= CFArrayGetCount(array)) return nullptr;
  return as<CFDictionaryRef>(CFArrayGetValueAtIndex(array, index), CFDictionaryGetTypeID());
}

std::vector<CFDictionaryRef> dictionaries_in(CFArrayRef array) {
  std::vector<CFDictionaryRef> dictionaries;
  const CFIndex count = array ? CFArrayGetCount(array) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    if (const CFDictionaryRef dictionary = dictionary_at(array, i)) dictionaries.push_back(dictionary);
  }
  return dictionaries;
}

CFStringRef find_string(CFDictionaryRef dictionary, CFStringRef key) {
  return find<CFStringRef>(dictionary, key, CFStringGetTypeID());
}

CFDictionaryRef find_dictionary(CFDictionaryRef dictionary, CFStringRef key) {
  return find<CFDictionaryRef>(dictionary, key, CFDictionaryGetTypeID());
}

CFArrayRef find_list(CFDictionaryRef dictionary, CFStringRef key) {
  return find<CFArrayRef>(dictionary, key, CFArrayGetTypeID());
}

Text find_text(CFDictionaryRef dictionary, CFStringRef key) {
  const CFStringRef string = find_string(dictionary, key);
  return string ? cfstring_to_text(string) : nullptr;
}

bool text_is(CFDictionaryRef dictionary, CFStringRef key, const char* expected) {
  const CFStringRef string = find_string(dictionary, key);
  return string && equal_text(CFStringText(string).get(), expected);
}

std::optional<int64_t> find_number(CFDictionaryRef dictionary, CFStringRef key) {
  const CFNumberRef found = find<CFNumberRef>(dictionary, key, CFNumberGetTypeID());
  if (!found) return std::nullopt;
  int64_t number = 0;
  // For a fraction the conversion reports that it was not exact, which does not matter here.
  CFNumberGetValue(found, kCFNumberSInt64Type, &number);
  return number;
}

namespace {

bool is_data_type(CFDictionaryRef dictionary, CFStringRef data_type) {
  const CFStringRef name = find_string(dictionary, CFSTR("_dataType"));
  return name && CFStringCompare(name, data_type, 0) == kCFCompareEqualTo;
}

// The position of the first data type of this name, or the number of dictionaries in the list.
CFIndex find_data_type(CFArrayRef list, CFIndex count, CFStringRef data_type) {
  CFIndex i = 0;
  while (i < count && !is_data_type(dictionary_at(list, i), data_type)) ++i;
  return i;
}

}  // namespace

CFArrayRef find_items(CFArrayRef list, CFStringRef data_type) {
  const CFIndex count = list ? CFArrayGetCount(list) : 0;
  return find_list(dictionary_at(list, find_data_type(list, count, data_type)), CFSTR("_items"));
}

CFDictionaryRef first_item(CFArrayRef list, CFStringRef data_type) {
  return dictionary_at(find_items(list, data_type), 0);
}

Text find_hardware_serial(CFArrayRef list) {
  const CFIndex count = list ? CFArrayGetCount(list) : 0;
  const CFIndex hardware = find_data_type(list, count, CFSTR("SPHardwareDataType"));
  const CFDictionaryRef dictionary = dictionary_at(list, hardware < count ? hardware : count - 1);
  return find_text(dictionary_at(find_list(dictionary, CFSTR("_items")), 0), CFSTR("serial_number"));
}
