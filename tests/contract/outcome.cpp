#include "contract/outcome.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "contract/objects.h"

namespace {

template <typename... Arguments>
std::string print(const char* format, Arguments... arguments) {
  char text[400];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

std::string quoted(CFStringRef string) {
  std::string text = "\"";
  for (const char c : bytes_of_string(string)) {
    if (c == '"' || c == '\\') text += '\\';
    const bool is_control = (c >= 0 && c < 0x20) || c == 0x7F;
    text += is_control ? print("\\x%02x", c) : std::string(1, c);
  }
  return text + '"';
}

std::string describe_number(CFNumberRef number) {
  long long integer = 0;
  double real = 0;
  const char* const integer_loss = CFNumberGetValue(number, kCFNumberSInt64Type, &integer) ? "" : "(lossy)";
  const char* const real_loss = CFNumberGetValue(number, kCFNumberFloat64Type, &real) ? "" : "(lossy)";
  return print("number isFloat=%d sint64=%lld%s double=%.17g%s", CFNumberIsFloatType(number), integer,
               integer_loss, real, real_loss);
}

std::string describe_data(CFDataRef data) {
  std::string text = print("data %ld <", static_cast<long>(CFDataGetLength(data)));
  for (CFIndex i = 0; i < CFDataGetLength(data); ++i) text += print("%02x", CFDataGetBytePtr(data)[i]);
  return text + ">";
}

std::string describe_array(CFArrayRef array) {
  std::string text = print("array %ld", static_cast<long>(CFArrayGetCount(array)));
  for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
    text += " / " + description_of_tree(CFArrayGetValueAtIndex(array, i));
  }
  return text;
}

std::string describe_dictionary(CFDictionaryRef dictionary) {
  std::vector<const void*> keys(static_cast<size_t>(CFDictionaryGetCount(dictionary))), values(keys.size());
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  std::map<std::string, const void*> sorted;
  for (size_t i = 0; i < keys.size(); ++i) sorted[quoted(static_cast<CFStringRef>(keys[i]))] = values[i];
  std::string text = print("dict %ld", static_cast<long>(CFDictionaryGetCount(dictionary)));
  for (const auto& [key, value] : sorted) text += " / key " + key + " / " + description_of_tree(value);
  return text;
}

}  // namespace

std::string description_of_tree(CFTypeRef object) {
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFStringGetTypeID()) return "string " + quoted(static_cast<CFStringRef>(object));
  if (type == CFNumberGetTypeID()) return describe_number(static_cast<CFNumberRef>(object));
  if (type == CFBooleanGetTypeID())
    return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) ? "true" : "false";
  if (type == CFDateGetTypeID())
    return print("date abs=%.6f", CFDateGetAbsoluteTime(static_cast<CFDateRef>(object)));
  if (type == CFDataGetTypeID()) return describe_data(static_cast<CFDataRef>(object));
  if (type == CFArrayGetTypeID()) return describe_array(static_cast<CFArrayRef>(object));
  if (type == CFDictionaryGetTypeID()) return describe_dictionary(static_cast<CFDictionaryRef>(object));
  return "an object of another type";
}

std::string outcome_of(std::string_view list) {
  CFRef<CFStringRef> error;
  const CFRef<CFPropertyListRef> tree = parse_list(list, &error);
  if (tree) return description_of_tree(tree.get());
  return error ? "NULL" : "NULL without an error";
}

std::string document(std::string_view value) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)" +
         std::string(value) + "</plist>\n";
}

void expect_outcomes_of_lists(const std::vector<Expectation>& expectations) {
  for (const auto& [list, outcome] : expectations) EXPECT_EQ(outcome_of(list), outcome) << list;
}

void expect_outcomes(const std::vector<Expectation>& expectations) {
  for (const auto& [value, outcome] : expectations) EXPECT_EQ(outcome_of(document(value)), outcome) << value;
}

void expect_refused(const std::vector<std::string_view>& values) {
  for (const std::string_view value : values) EXPECT_EQ(outcome_of(document(value)), "NULL") << value;
}
