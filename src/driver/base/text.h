// Text as the whole program passes it: NUL-terminated UTF-8 bytes, handed out in fresh buffers.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <memory>

// A text that its holder owns; it is released with the array delete. A null Text stands for a missing text,
// which is not the empty one.
using Text = std::unique_ptr<char[]>;

#if defined(__GNUC__)
#define PRINTF_FORMAT(format_index, first_argument) \
  __attribute__((format(printf, format_index, first_argument)))
#else
#define PRINTF_FORMAT(format_index, first_argument)
#endif

// The number of bytes that the formatted text has, without its terminator; negative when it cannot be
// formatted.
int measure_format(const char* format, ...) PRINTF_FORMAT(1, 2);
int measure_format_list(const char* format, va_list arguments) PRINTF_FORMAT(1, 0);

// A new text of exactly the formatted length; the empty text when it cannot be formatted. A null argument for
// "%s" prints "(null)".
Text format_string(const char* format, ...) PRINTF_FORMAT(1, 2);

// A new text holding the bytes from start up to, not including, end. Bytes may be anything, NUL included.
Text copy_range(const char* start, const char* end);

// A new text with the same bytes; null for null.
Text copy_text(const char* text);

// Turns the letters a to z into capitals, whatever the locale; all other bytes of file names and workgroups
// stay.
void upper_case_ascii(char* text);
char upper_case_ascii(char character);

// A new text equal to the given one with every "-" removed. The given text is not null.
Text strip_dashes(const char* text);

// True when both are present and equal byte for byte.
bool equal_text(const char* left, const char* right);
