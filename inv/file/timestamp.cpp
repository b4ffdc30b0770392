#include "inv/file/timestamp.h"

#include <optional>

#include "driver/base/text.h"
#include "inv/base/byte_reader.h"
#include "inv/base/calendars.h"

namespace inv {
namespace {

constexpr std::string_view kFraction = ".000000";
constexpr size_t kDigits = 14;
constexpr int kMinutesOfDay = 24 * 60;
constexpr int64_t kSecondsOfDay = kMinutesOfDay * 60;

struct LocalTime {
  CalendarDate date;
  int second_of_day;
  int offset;  // in minutes; to be subtracted to get UTC
};

std::optional<int> number_below(std::string_view digits, int limit) {
  const std::optional<uint64_t> number = parse_decimal(digits);
  if (!number || *number >= static_cast<uint64_t>(limit)) return std::nullopt;
  return static_cast<int>(*number);
}

// "+120"
std::optional<int> parse_offset(std::string_view zone) {
  const char sign = zone.empty() ? '\0' : zone.front();
  if ((sign != '+' && sign != '-') || zone.size() > 5) return std::nullopt;
  const std::optional<int> minutes = number_below(zone.substr(1), kMinutesOfDay);
  if (!minutes) return std::nullopt;
  return sign == '-' ? -*minutes : *minutes;
}

std::optional<LocalTime> parse_timestamp(std::string_view text) {
  if (text.size() < kDigits || text.substr(kDigits, kFraction.size()) != kFraction) return std::nullopt;
  const auto part = [text](size_t start, size_t length, int limit) {
    return number_below(text.substr(start, length), limit);
  };
  const auto year = part(0, 4, 10'000), month = part(4, 2, 100), day = part(6, 2, 100);
  const auto hour = part(8, 2, 24), minute = part(10, 2, 60), second = part(12, 2, 60);
  const auto offset = parse_offset(text.substr(kDigits + kFraction.size()));
  if (!year || !month || !day || !hour || !minute || !second || !offset) return std::nullopt;
  return LocalTime{{*year, *month, *day}, (*hour * 60 + *minute) * 60 + *second, *offset};
}

// "2012-01-18"
Text iso_date(int64_t days) {
  // Years begin in March here, so that a leap day is the last day; every 400 years have the same length.
  constexpr int64_t kDaysOf400Years = 146'097;
  const int64_t since = days + 719'468;
  const int64_t era = since / kDaysOf400Years, day_of_era = since % kDaysOf400Years;
  const int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36'524 - day_of_era / (kDaysOf400Years - 1)) / 365;
  const int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int64_t months = (5 * day_of_year + 2) / 153;
  const int64_t month = months < 10 ? months + 3 : months - 9;
  const int64_t day = day_of_year - (153 * months + 2) / 5 + 1;
  const int64_t year = era * 400 + year_of_era + (month <= 2 ? 1 : 0);
  return format_string("%04d-%02d-%02d", static_cast<int>(year), static_cast<int>(month),
                       static_cast<int>(day));
}

}  // namespace

bool is_timestamp(std::string_view text) { return parse_timestamp(text).has_value(); }

std::string utc_of(std::string_view timestamp, std::string_view calendar) {
  const std::optional<LocalTime> time = parse_timestamp(timestamp);
  const std::optional<int64_t> day = time ? days_since_1970(time->date, calendar) : std::nullopt;
  if (!day) return "";
  const int64_t moment = *day * kSecondsOfDay + time->second_of_day - time->offset * 60;
  // East of Greenwich, the first day began before that.
  if (moment < 0) return "";
  const int second = static_cast<int>(moment % kSecondsOfDay);
  return iso_date(moment / kSecondsOfDay).get() +
         std::string(format_string("T%02d:%02d:%02dZ", second / 3600, second / 60 % 60, second % 60).get());
}

}  // namespace inv
