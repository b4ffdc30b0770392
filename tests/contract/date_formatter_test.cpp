#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "contract/environment.h"
#include "contract/objects.h"
#include "support/changed_zone.h"

namespace {

class FormattedDates : public ChangedZone {};

constexpr CFAbsoluteTime kJuly = 300925845;     // 2010-07-15 22:30:45 UTC
constexpr CFAbsoluteTime kJanuary = 285287445;  // 2010-01-15 22:30:45 UTC

const char* const kCim = "yyyyMMddHHmmss.000000 ZZ";

std::string format(const char* locale, const char* zone, const char* pattern, CFAbsoluteTime time) {
  const EnvironmentVariable time_zone("TZ", zone);
  const CFRef<CFLocaleRef> formatter_locale(CFLocaleCreate(nullptr, string_of(locale).get()));
  const CFRef<CFDateFormatterRef> formatter(CFDateFormatterCreate(
      nullptr, formatter_locale.get(), kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
  CFDateFormatterSetFormat(formatter.get(), string_of(pattern).get());
  const CFRef<CFDateRef> date(CFDateCreate(nullptr, time));
  const CFRef<CFStringRef> text(CFDateFormatterCreateStringWithDate(nullptr, formatter.get(), date.get()));
  return bytes_of_string(text.get());
}

TEST_F(FormattedDates, WritesCimDatesInTheZoneAndCalendarOfTheLocale) {
  struct Row {
    const char *locale, *zone, *in_july, *in_january;
  };
  const Row rows[] = {
      {"en_US", "Europe/Berlin", "20100716003045.000000 +0200", "20100115233045.000000 +0100"},
      {"en_US", "America/New_York", "20100715183045.000000 -0400", "20100115173045.000000 -0500"},
      {"en_US", "Asia/Kolkata", "20100716040045.000000 +0530", "20100116040045.000000 +0530"},
      {"en_US", "UTC", "20100715223045.000000 +0000", "20100115223045.000000 +0000"},
      {"en_US_POSIX", "Europe/Berlin", "20100716003045.000000 +0200", "20100115233045.000000 +0100"},
      {"de_DE", "America/New_York", "20100715183045.000000 -0400", "20100115173045.000000 -0500"},
      {"th_TH", "Asia/Kolkata", "25530716040045.000000 +0530", "25530116040045.000000 +0530"},
      {"ar_EG", "UTC", "٢٠١٠٠٧١٥٢٢٣٠٤٥.000000 +0000", "٢٠١٠٠١١٥٢٢٣٠٤٥.000000 +0000"},
      {"fa_IR", "Europe/Berlin", "۱۳۸۹۰۴۲۵۰۰۳۰۴۵.000000 +0200", "۱۳۸۸۱۰۲۵۲۳۳۰۴۵.000000 +0100"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(format(row.locale, row.zone, kCim, kJuly), row.in_july) << row.locale << ' ' << row.zone;
    EXPECT_EQ(format(row.locale, row.zone, kCim, kJanuary), row.in_january) << row.locale << ' ' << row.zone;
  }
}

TEST_F(FormattedDates, WritesShortDates) {
  EXPECT_EQ(format("en_US", "Europe/Berlin", "yyyy-MM-dd", kJuly), "2010-07-16");
  EXPECT_EQ(format("th_TH", "UTC", "yyyy-MM-dd", kJuly), "2553-07-15");
}

TEST_F(FormattedDates, WritesNumbersAsAnyOtherPatternDoes) {
  // A quoted part makes a pattern that is more than numbers, with the same text.
  const char* const quoted = "yyyyMMddHHmmss'.'000000 ZZ";
  const char* const zones[] = {
      "UTC", "Europe/Amsterdam", "America/St_Johns", "Asia/Kathmandu", "Africa/Monrovia", "Pacific/Apia"};
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> recent(-3.2e9, 3.2e9), any(-1e11, 1e12);
  for (const char* locale : {"en_US", "en_US_POSIX", "de_DE", "ja_JP", "th_TH", "fa_IR", "ar_EG", "hi_IN"}) {
    for (const char* zone : zones) {
      for (int i = 0; i < 20; ++i) {
        const double time = i % 4 ? recent(random) : any(random);
        EXPECT_EQ(format(locale, zone, kCim, time), format(locale, zone, quoted, time))
            << locale << ' ' << zone << ' ' << time;
      }
    }
  }
}

TEST_F(FormattedDates, WritesTimesThatNoCalendarReachesAsAnyOtherPatternDoes) {
  for (const double time : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), 1e18, -1e18})
    EXPECT_EQ(format("en_US", "UTC", "yyyyMMdd.", time), format("en_US", "UTC", "yyyyMMdd'.'", time)) << time;
}

TEST_F(FormattedDates, WritesFieldsOfOtherWidths) {
  EXPECT_EQ(format("en_US", "UTC", "y M d H m s", kJuly), "2010 7 15 22 30 45");
  EXPECT_EQ(format("en_US", "UTC", "yy MMM", kJuly), "10 Jul");
}

TEST_F(FormattedDates, NamesTheZoneAsTheLocaleDoes) {
  EXPECT_EQ(format("en_US", "UTC", "yyyy-MM-dd HH:mm:ss z", kJuly), "2010-07-15 22:30:45 UTC");
  EXPECT_EQ(format("en_US", "America/New_York", "yyyy-MM-dd HH:mm:ss z", kJuly), "2010-07-15 18:30:45 EDT");
  EXPECT_EQ(format("de_DE", "Europe/Berlin", "yyyy-MM-dd HH:mm:ss z", kJanuary), "2010-01-15 23:30:45 MEZ");
}

TEST_F(FormattedDates, TreatsUnknownZonesAsTheMachinesOwn) {
  for (const char* unknown : {"Nowhere/Land", "CET-1CEST", ""}) {
    EXPECT_EQ(format("en_US", unknown, kCim, kJuly), format("en_US", nullptr, kCim, kJuly)) << unknown;
    EXPECT_EQ(format("en_US", unknown, kCim, kJanuary), format("en_US", nullptr, kCim, kJanuary)) << unknown;
  }
}

TEST_F(FormattedDates, NamesTheHalvesOfTheDayAsTheLocaleDoes) {
  const auto half = [](const char* locale, CFStringRef key) {
    const CFRef<CFLocaleRef> its_locale(CFLocaleCreate(nullptr, string_of(locale).get()));
    const CFRef<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(nullptr, its_locale.get(), kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
    const CFRef<CFTypeRef> word(CFDateFormatterCopyProperty(formatter.get(), key));
    return bytes_of_string(static_cast<CFStringRef>(word.get()));
  };
  EXPECT_EQ(half("en_US", kCFDateFormatterAMSymbol), "AM");
  EXPECT_EQ(half("en_US", kCFDateFormatterPMSymbol), "PM");
  EXPECT_EQ(half("ja_JP", kCFDateFormatterAMSymbol), "午前");
  EXPECT_EQ(half("ja_JP", kCFDateFormatterPMSymbol), "午後");
}

TEST_F(FormattedDates, CutsFractionsOfASecond) {
  EXPECT_EQ(format("en_US", "UTC", "ss", kJuly + 0.999), "45");
  EXPECT_EQ(format("en_US", "UTC", "yyyy", -0.5), "2000");
}

TEST_F(FormattedDates, WritesNothingForAnEmptyPattern) { EXPECT_EQ(format("en_US", "UTC", "", kJuly), ""); }

TEST_F(FormattedDates, WritesTextsOfAnyLength) {
  const std::string literal = "'" + std::string(500, 'x') + "'";
  EXPECT_EQ(format("en_US", "UTC", literal.c_str(), kJuly), std::string(500, 'x'));
}

TEST_F(FormattedDates, UsesTheCurrentLocaleWithoutOne) {
  const CFRef<CFDateFormatterRef> formatter(
      CFDateFormatterCreate(nullptr, nullptr, kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
  EXPECT_TRUE(formatter);
}

TEST(Dates, CountFromTheYear2001) {
  const CFRef<CFDateRef> date(CFDateCreate(nullptr, kJuly));
  EXPECT_EQ(CFDateGetAbsoluteTime(date.get()), kJuly);
  EXPECT_GT(CFAbsoluteTimeGetCurrent(), kJuly);
  EXPECT_LT(CFAbsoluteTimeGetCurrent(), 1e10);
}

}  // namespace
