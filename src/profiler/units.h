// Sizes as the profiler prints them ("1,5 GB", "512 MB") turned into numbers, and the helpers that cut words,
// lines and surrounding characters out of a tool's output.
#pragma once

#include <cstdint>

#include "driver/base/text.h"

// A size text is a number, one separator character and one of the units "KB", "MB", "GB", "TB" at its very
// end; the decimal mark may be a comma, which is replaced by a full stop in the caller's text. The number and
// its product with the unit are single precision, like the console's other figures. No text, an unknown unit
// or an unreadable number gives 0.

constexpr double kBytesPerGb = 1073741824.0;

// In GB of 1024^3 bytes, but a TB counts as 1000 of them.
double size_to_gb(char* size);
// In GB of 1024^3 bytes, a TB as 1024 of them: for the system summary.
double size_to_gb_binary(char* size);
// In MB of 1024^2 bytes, and in KB of 1024 bytes.
double size_to_mb(char* size);
double size_to_kb(char* size);
// In bytes: size_to_gb times 1024^3, truncated.
int64_t size_to_bytes(char* size);
// In GB of 10^9 bytes, as disk makers count. Rounded, a fraction above 0.4 goes up and any other is cut off.
double size_to_decimal_gb(char* size, bool round);
double bytes_to_decimal_gb(uint64_t bytes);

// A clock speed in GHz ("2.66 GHz") converted to MHz, in single precision. Only the number is read, so a
// speed given in MHz comes out a thousand times too high; an unreadable number gives 0.
double speed_to_mhz(const char* speed);

// A number truncated to an integer: the fraction is dropped, a number outside the target's range becomes the
// nearer end of the range, NaN 0.
int64_t truncate_to_int64(double number);
int32_t truncate_to_int32(double number);
uint32_t truncate_to_uint32(double number);
uint64_t truncate_to_uint64(double number);

// The text up to the first line feed or its end; null when that is empty.
Text copy_line(const char* text);
// The text up to the first blank or its end.
Text copy_word(const char* text);

// Removes characters of the set from the ends of a text, in place.
enum TrimFlags : unsigned { kTrimStart = 1, kTrimEnd = 2, kTrimBoth = 3 };
void trim(char* text, const char* set, unsigned flags);
