#include "driver/base/text.h"

#include <cstdio>
#include <cstring>

int measure_format_list(const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  return length;
}

int measure_format(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = measure_format_list(format, arguments);
  va_end(arguments);
  return length;
}

Text format_string(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int measured = measure_format_list(format, arguments);
  const size_t length = measured < 0 ? 0 : static_cast<size_t>(measured);
  Text text(new char[length + 1]);
  if (measured >= 0) std::vsnprintf(text.get(), length + 1, format, arguments);
  text[length] = '\0';
  va_end(arguments);
  return text;
}

Text copy_range(const char* start, const char* end) {
  const size_t length = static_cast<size_t>(end - start);
  Text copy(new char[length + 1]);
  if (length > 0) std::memcpy(copy.get(), start, length);
  copy[length] = '\0';
  return copy;
}

Text copy_text(const char* text) { return text ? copy_range(text, text + std::strlen(text)) : nullptr; }

char upper_case_ascii(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

void upper_case_ascii(char* text) {
  for (; *text; ++text) *text = upper_case_ascii(*text);
}

Text strip_dashes(const char* text) {
  Text stripped(new char[std::strlen(text) + 1]);
  char* end = stripped.get();
  for (; *text; ++text) {
    if (*text != '-') *end++ = *text;
  }
  *end = '\0';
  return stripped;
}

bool equal_text(const char* left, const char* right) {
  return left && right && std::strcmp(left, right) == 0;
}
