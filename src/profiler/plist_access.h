// Reading the parsed profiler output: an array with one dictionary per data type, whose "_dataType" names it
// and whose "_items" holds what was found. The functions are named like those of collectors/fields.h, which
// read the raw tree. Each accepts null for an array or dictionary, and returns null, or an empty optional,
// for what is missing or of another kind; references that it returns belong to the list.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "driver/base/text.h"

// The string's UTF-8 bytes in a new text, and their number.
Text cfstring_to_text(CFStringRef string, CFIndex* length = nullptr);

// The same bytes for reading only: in place when CoreFoundation stores them so, else a copy. The string must
// outlive this.
class CFStringText {
 public:
  explicit CFStringText(CFStringRef string);
  const char* get() const { return text_; }

 private:
  Text copy_;
  const char* text_;
};

CFDictionaryRef dictionary_at(CFArrayRef array, CFIndex index);
// The dictionaries among the elements, in their order.
std::vector<CFDictionaryRef> dictionaries_in(CFArrayRef array);
CFStringRef find_string(CFDictionaryRef dictionary, CFStringRef key);
CFDictionaryRef find_dictionary(CFDictionaryRef dictionary, CFStringRef key);
CFArrayRef find_list(CFDictionaryRef dictionary, CFStringRef key);
Text find_text(CFDictionaryRef dictionary, CFStringRef key);
bool text_is(CFDictionaryRef dictionary, CFStringRef key, const char* expected);
// A number without its fraction.
std::optional<int64_t> find_number(CFDictionaryRef dictionary, CFStringRef key);

// The items of the first data type of this name, and the first of them.
CFArrayRef find_items(CFArrayRef list, CFStringRef data_type);
CFDictionaryRef first_item(CFArrayRef list, CFStringRef data_type);

// The machine's serial number: "serial_number" of the first item of the hardware data type, or of the last
// data type in a list without it.
Text find_hardware_serial(CFArrayRef list);
