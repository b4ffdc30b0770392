#include <CoreFoundation/CFString.h>
#include <unicode/ucal.h>
#include <unicode/udat.h>

#include <cstdlib>
#include <string>

#include "platform/cf_ref.h"
#include "platform/corefoundation/locale.h"
#include "platform/corefoundation/string.h"
#include "platform/corefoundation/time_zone.h"
#include "platform/corefoundation/utf16.h"

namespace {

using Utf16 = std::u16string;
using cf::to_utf16;

// Calls one of ICU's functions that fill a buffer, again with a larger one when the text did not fit. Empty
// when it failed.
template <typename Fill>
Utf16 fill_text(Fill fill) {
  Utf16 text(128, u'\0');
  for (int attempt = 0; attempt < 2; ++attempt) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = fill(text.data(), static_cast<int32_t>(text.size()), &status);
    if (U_FAILURE(status) && status != U_BUFFER_OVERFLOW_ERROR) break;
    const bool fits = static_cast<size_t>(length) <= text.size();
    text.resize(static_cast<size_t>(length));
    if (fits) return text;
  }
  return Utf16();
}

int32_t length_of(const Utf16& text) { return static_cast<int32_t>(text.size()); }

}  // namespace

CFDateFormatterObject::~CFDateFormatterObject() { udat_close(formatter); }

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale, CFDateFormatterStyle,
                                         CFDateFormatterStyle) {
  const CFRef<CFLocaleRef> current(locale ? nullptr : CFLocaleCopyCurrent());
  const std::string identifier(cf::text_of(CFLocaleGetIdentifier(locale ? locale : current.get())));
  const Utf16 zone = cf::time_zone(std::getenv("TZ"));
  UErrorCode status = U_ZERO_ERROR;
  UDateFormat* const formatter = udat_open(UDAT_PATTERN, UDAT_PATTERN, identifier.c_str(), zone.data(),
                                           length_of(zone), u"", 0, &status);
  if (U_FAILURE(status)) return nullptr;
  return cf::create<CFDateFormatterObject>(formatter);
}

void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef pattern) {
  const Utf16 units = to_utf16(cf::text_of(pattern));
  udat_applyPattern(formatter->formatter, false, units.data(), length_of(units));
}

const CFStringRef kCFDateFormatterAMSymbol = CFSTR("kCFDateFormatterAMSymbol");
const CFStringRef kCFDateFormatterPMSymbol = CFSTR("kCFDateFormatterPMSymbol");

CFTypeRef CFDateFormatterCopyProperty(CFDateFormatterRef formatter, CFStringRef key) {
  if (!CFEqual(key, kCFDateFormatterAMSymbol) && !CFEqual(key, kCFDateFormatterPMSymbol)) return nullptr;
  const int32_t half = CFEqual(key, kCFDateFormatterPMSymbol);
  const Utf16 word = fill_text([&](char16_t* buffer, int32_t capacity, UErrorCode* status) {
    return udat_getSymbols(formatter->formatter, UDAT_AM_PMS, half, buffer, capacity, status);
  });
  return cf::create_repaired_string(cf::to_utf8(word));
}

CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef, CFDateFormatterRef formatter,
                                                CFDateRef date) {
  const UDate milliseconds = (CFDateGetAbsoluteTime(date) + kCFAbsoluteTimeIntervalSince1970) * 1000;
  const Utf16 text = fill_text([&](char16_t* buffer, int32_t capacity, UErrorCode* status) {
    return udat_format(formatter->formatter, milliseconds, buffer, capacity, nullptr, status);
  });
  return cf::create_repaired_string(cf::to_utf8(text));
}
