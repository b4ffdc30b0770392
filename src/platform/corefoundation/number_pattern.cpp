#include "platform/corefoundation/number_pattern.h"

#include <unicode/unum.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace cf {
namespace {

struct Field {
  std::string_view name;
  UCalendarDateFields number;
  int32_t first;  // what the pattern counts from where the calendar counts from 0
};

constexpr Field fields[] = {
    {"yyyy", UCAL_YEAR, 0},      {"MM", UCAL_MONTH, 1},  {"dd", UCAL_DATE, 0},
    {"HH", UCAL_HOUR_OF_DAY, 0}, {"mm", UCAL_MINUTE, 0}, {"ss", UCAL_SECOND, 0},
};
constexpr std::string_view zone = "ZZ";

const Field* find_field(std::string_view name) {
  for (const Field& field : fields) {
    if (field.name == name) return &field;
  }
  return nullptr;
}

// Takes the first run of one character off the pattern.
std::string_view take_run(std::string_view& pattern) {
  const size_t length = std::min(pattern.find_first_not_of(pattern.front()), pattern.size());
  const std::string_view run = pattern.substr(0, length);
  pattern.remove_prefix(length);
  return run;
}

bool is_literal(char character) {
  const char lower = static_cast<char>(character | 0x20);
  return character > 0 && character != '\'' && (lower < 'a' || lower > 'z');
}

void append_number(std::string& text, int32_t number, size_t digits) {
  const std::string written = std::to_string(number);
  if (written.size() < digits) text.append(digits - written.size(), '0');
  text += written;
}

// Hours, minutes and, in times long gone, seconds.
void append_zone(std::string& text, int32_t milliseconds) {
  const int32_t seconds = std::abs(milliseconds) / 1000;
  text += milliseconds < 0 ? '-' : '+';
  append_number(text, seconds / 3600, 2);
  append_number(text, seconds / 60 % 60, 2);
  if (seconds % 60 != 0) append_number(text, seconds % 60, 2);
}

bool has_ascii_digits(const UDateFormat* formatter) {
  UErrorCode status = U_ZERO_ERROR;
  UChar zero[8];
  const int32_t length =
      unum_getSymbol(udat_getNumberFormat(formatter), UNUM_ZERO_DIGIT_SYMBOL, zero, 8, &status);
  return U_SUCCESS(status) && length == 1 && zero[0] == u'0';
}

bool is_gregorian(const UDateFormat* formatter) {
  UErrorCode status = U_ZERO_ERROR;
  const char* const type = ucal_getType(udat_getCalendar(formatter), &status);
  return U_SUCCESS(status) && std::strcmp(type, "gregorian") == 0;
}

}  // namespace

bool is_number_pattern(const UDateFormat* formatter, std::string_view pattern) {
  while (!pattern.empty()) {
    const std::string_view run = take_run(pattern);
    if (!find_field(run) && run != zone && !is_literal(run.front())) return false;
  }
  return has_ascii_digits(formatter) && is_gregorian(formatter);
}

std::optional<std::string> format_numbers(UCalendar* calendar, std::string_view pattern, UDate milliseconds) {
  UErrorCode status = U_ZERO_ERROR;
  ucal_setMillis(calendar, milliseconds, &status);
  const auto get = [&](UCalendarDateFields field) { return ucal_get(calendar, field, &status); };
  std::string text;
  while (!pattern.empty()) {
    const std::string_view run = take_run(pattern);
    if (const Field* field = find_field(run)) {
      append_number(text, get(field->number) + field->first, run.size());
    } else if (run == zone) {
      append_zone(text, get(UCAL_ZONE_OFFSET) + get(UCAL_DST_OFFSET));
    } else {
      text += run;
    }
  }
  if (U_FAILURE(status)) return std::nullopt;
  return text;
}

}  // namespace cf
