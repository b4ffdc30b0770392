#include "platform/corefoundation/time_zone.h"

#include <unicode/ucal.h>
#include <unistd.h>

#include <string_view>

#include "platform/corefoundation/utf16.h"

namespace cf {
namespace {

constexpr int32_t kLongestName = 128;

bool is_known(const std::u16string& zone) {
  UErrorCode status = U_ZERO_ERROR;
  char16_t canonical[kLongestName];
  ucal_getCanonicalTimeZoneID(zone.data(), static_cast<int32_t>(zone.size()), canonical, kLongestName,
                              nullptr, &status);
  return U_SUCCESS(status);
}

// What follows "zoneinfo/" in the link's target.
std::u16string zone_of(const char* link) {
  constexpr std::string_view kFolder = "zoneinfo/";
  char target[4096];
  const ssize_t length = readlink(link, target, sizeof target);
  const std::string_view path(target, length < 0 ? 0 : static_cast<size_t>(length));
  const size_t start = path.find(kFolder);
  return start == path.npos ? std::u16string() : to_utf16(path.substr(start + kFolder.size()));
}

// Some Linux machines have a copy of a zone instead of a link, which ICU looks for among all zones.
std::u16string host_zone() {
  UErrorCode status = U_ZERO_ERROR;
  char16_t name[kLongestName];
  const int32_t length = ucal_getHostTimeZone(name, kLongestName, &status);
  return U_SUCCESS(status) ? std::u16string(name, static_cast<size_t>(length)) : u"GMT";
}

}  // namespace

std::u16string time_zone(const char* tz, const char* link) {
  if (tz) {
    std::u16string named = to_utf16(*tz == ':' ? tz + 1 : tz);
    if (is_known(named)) return named;
  }
  std::u16string own = zone_of(link);
  return own.empty() ? host_zone() : own;
}

}  // namespace cf
