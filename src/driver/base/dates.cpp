#include "driver/base/dates.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

namespace {

// A CIM date as the system formats it: 21 characters of date, time and fraction, a blank, and a zone of sign
// and four digits.
constexpr size_t kCimLength = 27;
constexpr size_t kMomentLength = 14;
constexpr char kFraction[] = ".000000";
constexpr size_t kZoneLength = 6;

CFStringRef pattern(DateForm form) {
  switch (form) {
    case DateForm::short_date:
      return CFSTR("yyyy-MM-dd");
    case DateForm::cim:
      return CFSTR("yyyyMMddHHmmss.000000 ZZ");
    case DateForm::process:
      return CFSTR("yyyy-MM-dd HH:mm:ss z");
  }
  return CFSTR("");
}

CFRef<CFDateFormatterRef> make_formatter(CFLocaleRef locale, DateForm form) {
  CFRef<CFDateFormatterRef> formatter(
      CFDateFormatterCreate(nullptr, locale, kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
  if (formatter) CFDateFormatterSetFormat(formatter.get(), pattern(form));
  return formatter;
}

// The empty text for null.
Text text_of(CFStringRef string) {
  if (!string) return copy_text("");
  const CFIndex length = CFStringGetLength(string);
  const CFIndex capacity = 4 * (length + 1);
  Text text(new char[static_cast<size_t>(capacity) + 1]);
  CFIndex used = 0;
  CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, 0, false,
                   reinterpret_cast<UInt8*>(text.get()), capacity, &used);
  text[static_cast<size_t>(used)] = '\0';
  return text;
}

Text format_with(CFDateFormatterRef formatter, CFDateRef date) {
  const CFRef<CFStringRef> string(formatter ? CFDateFormatterCreateStringWithDate(nullptr, formatter, date)
                                            : nullptr);
  return text_of(string.get());
}

// Whether "AM" or "PM" in the formatter's language is a word of the text.
bool names_half_of_day(CFDateFormatterRef formatter, const char* text) {
  const std::string words = std::string(" ") + text + " ";
  for (const CFStringRef half : {kCFDateFormatterAMSymbol, kCFDateFormatterPMSymbol}) {
    const CFRef<CFTypeRef> name(formatter ? CFDateFormatterCopyProperty(formatter, half) : nullptr);
    const Text word = text_of(static_cast<CFStringRef>(name.get()));
    if (words.find(std::string(" ") + word.get() + " ") != words.npos) return true;
  }
  return false;
}

// Whether the text follows the form's pattern, unchanged by the user's settings.
bool has_form(DateForm form, CFDateFormatterRef formatter, const char* text) {
  switch (form) {
    case DateForm::short_date:
      return true;
    case DateForm::cim:
      // Another calendar's era, or another language's digits, make it longer or shorter.
      return std::strlen(text) == kCimLength;
    case DateForm::process:
      return !names_half_of_day(formatter, text);
  }
  return false;
}

bool is_digit(char character) { return character >= '0' && character <= '9'; }

unsigned two_digits(const char* text) {
  return static_cast<unsigned>((text[0] - '0') * 10 + (text[1] - '0'));
}

// Rewrites a zone at the end of the text from " +0200" to minutes, "+120"; a text without such a zone is left
// alone.
void rewrite_zone(char* text) {
  const size_t length = std::strlen(text);
  if (length < kZoneLength) return;
  char* zone = text + length - kZoneLength;
  const char* digits = zone + 2;
  if (zone[0] != ' ' || (zone[1] != '+' && zone[1] != '-')) return;
  for (int i = 0; i < 4; ++i) {
    if (!is_digit(digits[i])) return;
  }
  const unsigned minutes = two_digits(digits) * 60 + two_digits(digits + 2);
  zone[0] = zone[1];
  // At most four digits replace a sign and four digits.
  std::snprintf(zone + 1, kZoneLength, "%u", minutes);
}

}  // namespace

DateFormatter::DateFormatter(DateForm form)
    : DateFormatter(form, make_formatter(CFRef<CFLocaleRef>(CFLocaleCopyCurrent()).get(), form)) {}

DateFormatter::DateFormatter(DateForm form, CFRef<CFDateFormatterRef> formatter)
    : form_(form), formatter_(std::move(formatter)) {}

Text DateFormatter::format(CFDateRef date) const {
  Text text = format_with(formatter_.get(), date);
  if (!has_form(form_, formatter_.get(), text.get())) {
    const CFRef<CFLocaleRef> posix(CFLocaleCreate(nullptr, CFSTR("en_US_POSIX")));
    text = format_with(make_formatter(posix.get(), form_).get(), date);
  }
  if (form_ == DateForm::cim) rewrite_zone(text.get());
  return text;
}

bool is_cim_date(const char* text) {
  const size_t digits = std::strspn(text, "0123456789");
  return digits >= kMomentLength && std::strncmp(text + digits, kFraction, std::strlen(kFraction)) == 0;
}

Text format_date(DateForm form, CFDateRef date) { return DateFormatter(form).format(date); }

Text format_now(DateForm form) {
  const CFRef<CFDateRef> now(CFDateCreate(nullptr, CFAbsoluteTimeGetCurrent()));
  return format_date(form, now.get());
}
