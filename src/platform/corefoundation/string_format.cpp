#include <algorithm>
#include <string>

#include "driver/text.h"
#include "platform/cf_ref.h"
#include "platform/corefoundation/string.h"
#include "platform/corefoundation/utf16.h"
#include "plist/utf8.h"

namespace cf {
namespace {

// A va_list that can be handed on by reference, whatever type it is here.
struct Arguments {
  va_list list;
};

enum class Width { int_size, char_size, short_size, long_size, long_long_size };

// One conversion, from its "%" on.
struct Conversion {
  std::string flags;  // flags, field width and precision, as printf takes them
  Width width = Width::int_size;
  char type = '\0';
};

bool is_one_of(char c, std::string_view set) { return set.find(c) != set.npos; }

// Reads the conversion behind a "%" and moves the rest of the format behind it.
Conversion take_conversion(std::string_view& format, Arguments& arguments) {
  Conversion conversion;
  const auto take = [&format] {
    const char c = format.front();
    format.remove_prefix(1);
    return c;
  };
  while (!format.empty() && is_one_of(format.front(), "-+ #0123456789.*")) {
    const char c = take();
    conversion.flags += c == '*' ? std::to_string(va_arg(arguments.list, int)) : std::string(1, c);
  }
  while (!format.empty() && is_one_of(format.front(), "hlqjzt")) {
    switch (take()) {
      case 'h':
        conversion.width = conversion.width == Width::short_size ? Width::char_size : Width::short_size;
        break;
      case 'l':
        conversion.width = conversion.width == Width::long_size ? Width::long_long_size : Width::long_size;
        break;
      case 'q':
        conversion.width = Width::long_long_size;
        break;
      default:
        conversion.width = Width::long_size;
    }
  }
  if (!format.empty()) conversion.type = take();
  return conversion;
}

long long take_signed(Width width, Arguments& arguments) {
  switch (width) {
    case Width::long_long_size:
      return va_arg(arguments.list, long long);
    case Width::long_size:
      return va_arg(arguments.list, long);
    case Width::short_size:
      return static_cast<short>(va_arg(arguments.list, int));
    case Width::char_size:
      return static_cast<signed char>(va_arg(arguments.list, int));
    default:
      return va_arg(arguments.list, int);
  }
}

unsigned long long take_unsigned(Width width, Arguments& arguments) {
  switch (width) {
    case Width::long_long_size:
      return va_arg(arguments.list, unsigned long long);
    case Width::long_size:
      return va_arg(arguments.list, unsigned long);
    case Width::short_size:
      return static_cast<unsigned short>(va_arg(arguments.list, unsigned));
    case Width::char_size:
      return static_cast<unsigned char>(va_arg(arguments.list, unsigned));
    default:
      return va_arg(arguments.list, unsigned);
  }
}

class Formatter {
 public:
  explicit Formatter(Arguments& arguments) : arguments_(arguments) {}

  std::string format(std::string_view format) {
    while (!format.empty()) {
      const size_t percent = std::min(format.find('%'), format.size());
      text_ += format.substr(0, percent);
      format.remove_prefix(percent);
      if (format.empty()) break;
      format.remove_prefix(1);
      append(take_conversion(format, arguments_));
    }
    return std::move(text_);
  }

 private:
  // With printf's own formatting of one argument.
  template <class T>
  void print(const Conversion& conversion, const char* length_modifier, T argument) {
    const std::string format = "%" + conversion.flags + length_modifier + conversion.type;
    text_ += format_string(format.c_str(), argument).get();
  }

  void append(const Conversion& conversion) {
    switch (conversion.type) {
      case '%':
        text_ += '%';
        break;
      case '@':
        text_ += description_of(va_arg(arguments_.list, CFTypeRef));
        break;
      case 's':
        print(conversion, "", va_arg(arguments_.list, const char*));
        break;
      case 'C':
        text_ += to_utf8(std::u16string(1, static_cast<char16_t>(va_arg(arguments_.list, int))));
        break;
      case 'c':
        plist::append_utf8(text_, static_cast<unsigned char>(va_arg(arguments_.list, int)));
        break;
      case 'd':
      case 'i':
        print(conversion, "ll", take_signed(conversion.width, arguments_));
        break;
      case 'o':
      case 'u':
      case 'x':
      case 'X':
        print(conversion, "ll", take_unsigned(conversion.width, arguments_));
        break;
      case 'e':
      case 'E':
      case 'f':
      case 'F':
      case 'g':
      case 'G':
        print(conversion, "", va_arg(arguments_.list, double));
        break;
      default:
        break;
    }
  }

  Arguments& arguments_;
  std::string text_;
};

}  // namespace
}  // namespace cf

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef, CFStringRef format,
                                                 va_list arguments) {
  cf::Arguments copy;
  va_copy(copy.list, arguments);
  const std::string text = cf::Formatter(copy).format(cf::text_of(format));
  va_end(copy.list);
  return cf::create_repaired_string(text);
}

CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format,
                                     ...) {
  va_list arguments;
  va_start(arguments, format);
  const CFStringRef string = CFStringCreateWithFormatAndArguments(allocator, options, format, arguments);
  va_end(arguments);
  return string;
}

void CFStringAppendFormat(CFMutableStringRef string, CFDictionaryRef options, CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const CFRef<CFStringRef> appended(
      CFStringCreateWithFormatAndArguments(nullptr, options, format, arguments));
  va_end(arguments);
  CFStringAppend(string, appended.get());
}
