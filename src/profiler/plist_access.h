// Reading the parsed profiler output: an array with one dictionary per data type, whose "_dataType" names it
// and whose "_items" holds what was found. Every lookup accepts none for an array or dictionary, and returns
// none for what is missing or of another kind; what it returns belongs to the list.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
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
CFArrayRef find_array(CFDictionaryRef dictionary, CFStringRef key);
Text find_plist_text(CFDictionaryRef dictionary, CFStringRef key);
// False, and *number unchanged, when there is no number.
bool find_plist_integer(CFDictionaryRef dictionary, CFStringRef key, int64_t* number);

// The items of the first data type of this name.
CFArrayRef find_data_type_items(CFArrayRef list, CFStringRef data_type);

// The machine's serial number: "serial_number" of the first item of the hardware data type, or of the last
// data type in a list without it.
Text find_hardware_serial(CFArrayRef list);
