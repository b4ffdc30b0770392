#include "inv/signature/moment.h"

#include <strings.h>

#include <ctime>

#include "inv/base/byte_reader.h"

namespace inv {
namespace {

struct Field {
  size_t width;
  int tm::*member;
  uint64_t least;
  uint64_t most;
  int origin;  // the value that the member counts from
};

// A minute may have a leap second.
constexpr Field kFields[] = {{4, &tm::tm_year, 0, 9999, 1900}, {2, &tm::tm_mon, 1, 12, 1},
                             {2, &tm::tm_mday, 1, 31, 0},      {2, &tm::tm_hour, 0, 23, 0},
                             {2, &tm::tm_min, 0, 59, 0},       {2, &tm::tm_sec, 0, 60, 0}};

bool take_suffix(std::string_view& text, std::string_view suffix) {
  if (text.size() < suffix.size()) return false;
  const std::string_view end = text.substr(text.size() - suffix.size());
  if (strncasecmp(end.data(), suffix.data(), suffix.size()) != 0) return false;
  text.remove_suffix(suffix.size());
  return true;
}

}  // namespace

std::optional<int64_t> parse_moment(std::string_view text) {
  const bool utc = take_suffix(text, "Z") || take_suffix(text, "UTC");
  if (text.size() != 8 && text.size() != 12 && text.size() != 14) return std::nullopt;
  tm parts = {};
  for (const Field& field : kFields) {
    if (text.empty()) break;
    const std::optional<uint64_t> number = parse_decimal(text.substr(0, field.width));
    if (!number || *number < field.least || *number > field.most) return std::nullopt;
    parts.*field.member = static_cast<int>(*number) - field.origin;
    text.remove_prefix(field.width);
  }
  // Daylight saving time is left to the machine's time zone.
  parts.tm_isdst = -1;
  const time_t seconds = utc ? timegm(&parts) : mktime(&parts);
  if (seconds <= 0) return std::nullopt;
  return seconds;
}

}  // namespace inv
