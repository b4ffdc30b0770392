#include "driver/base/dates.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <regex>
#include <string>

#include "support/changed_zone.h"

namespace {

// Seconds from the start of 2001, CoreFoundation's epoch, to 18 January 2012 13:30:45 UTC.
constexpr double kWinterDay = 348586245;

class Dates : public ChangedZone {
 protected:
  ~Dates() override { set("UTC", "C"); }

  void set(const char* zone, const char* locale) {
    setenv("TZ", zone, 1);
    setenv("LC_ALL", locale, 1);
    tzset();
  }
  // A formatter as a user's settings may have left it.
  static CFRef<CFDateFormatterRef> formatter(const char* locale, const char* pattern) {
    const auto string = [](const char* text) {
      return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
    };
    const CFRef<CFLocaleRef> its_locale(CFLocaleCreate(nullptr, string(locale).get()));
    CFRef<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(nullptr, its_locale.get(), kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
    CFDateFormatterSetFormat(formatter.get(), string(pattern).get());
    return formatter;
  }
  std::string format(DateForm form, double time = kWinterDay) {
    const CFRef<CFDateRef> date(CFDateCreate(nullptr, time));
    return format_date(form, date.get()).get();
  }
};

TEST_F(Dates, CimFormHasTheOffsetInMinutes) {
  const struct {
    const char* zone;
    const char* expected;
  } rows[] = {
      {"Europe/Helsinki", "20120118153045.000000+120"},
      {"America/New_York", "20120118083045.000000-300"},
      {"UTC", "20120118133045.000000+0"},
      {"Asia/Kolkata", "20120118190045.000000+330"},
      {"America/St_Johns", "20120118100045.000000-210"},
      {"Pacific/Kiritimati", "20120119033045.000000+840"},
  };
  for (const auto& row : rows) {
    set(row.zone, "en_US.UTF-8");
    EXPECT_EQ(format(DateForm::cim), row.expected) << row.zone;
  }
}

TEST_F(Dates, ShortFormHasNoTimeAndNoZone) {
  set("UTC", "de_DE.UTF-8");
  EXPECT_EQ(format(DateForm::short_date), "2012-01-18");
}

TEST_F(Dates, ProcessFormNamesTheZone) {
  set("America/New_York", "en_US.UTF-8");
  EXPECT_EQ(format(DateForm::process).substr(0, 20), "2012-01-18 08:30:45 ");
  EXPECT_GT(format(DateForm::process).size(), 20u);
}

// A zone's name may hold blanks, as this one does.
TEST_F(Dates, ProcessFormIsThatOfTheLocale) {
  set("Asia/Tehran", "fa_IR.UTF-8");
  EXPECT_EQ(format(DateForm::process).substr(0, 8), "۱۳۹۰");
}

// What a form's pattern becomes for a user who prefers twelve hours.
TEST_F(Dates, KeepTheirFormForAUserWhoPrefersTwelveHours) {
  struct Row {
    const char* locale;
    double time;
    const char *process, *cim;
  };
  const double kMorning = kWinterDay - 3 * 3600;
  const Row rows[] = {
      {"en_US", kWinterDay, "2012-01-18 13:30:45 ", "20120118133045.000000+0"},
      {"en_US", kMorning, "2012-01-18 10:30:45 ", "20120118103045.000000+0"},
      {"ja_JP", kWinterDay, "2012-01-18 13:30:45 ", "20120118133045.000000+0"},
      {"ja_JP", kMorning, "2012-01-18 10:30:45 ", "20120118103045.000000+0"},
  };
  set("UTC", "C");
  for (const Row& row : rows) {
    const CFRef<CFDateRef> date(CFDateCreate(nullptr, row.time));
    const DateFormatter process(DateForm::process, formatter(row.locale, "yyyy-MM-dd h:mm:ss a z"));
    EXPECT_EQ(std::string(process.format(date.get()).get()).substr(0, 20), row.process) << row.locale;
    const DateFormatter cim(DateForm::cim, formatter(row.locale, "yyyyMMddhmmss a.000000 ZZ"));
    EXPECT_STREQ(cim.format(date.get()).get(), row.cim) << row.locale;
  }
}

TEST_F(Dates, AreMadeInThePosixLocaleWithoutAFormatter) {
  set("UTC", "C");
  const CFRef<CFDateRef> date(CFDateCreate(nullptr, kWinterDay));
  EXPECT_STREQ(DateFormatter(DateForm::cim, {}).format(date.get()).get(), "20120118133045.000000+0");
}

TEST_F(Dates, CimFormIsKnownByItsShape) {
  for (const char* zone : {"Europe/Helsinki", "America/New_York", "UTC"}) {
    set(zone, "C");
    EXPECT_TRUE(is_cim_date(format(DateForm::cim).c_str())) << zone;
    EXPECT_TRUE(is_cim_date(format(DateForm::cim, 4e11).c_str())) << zone;
  }
  for (const char* text : {"", "2012-01-18", "20120118133045", "20120118133045.5", "2012011813304.000000+0",
                           "10.0.0.5", " 20120118133045.000000+0"})
    EXPECT_FALSE(is_cim_date(text)) << text;
}

TEST_F(Dates, CimFormIsReadableWhereTheLocaleHasOtherDigits) {
  for (const char* locale : {"ar_EG.UTF-8", "fa_IR.UTF-8"}) {
    set("UTC", locale);
    EXPECT_EQ(format(DateForm::cim), "20120118133045.000000+0") << locale;
  }
}

TEST_F(Dates, CimFormKeepsAnotherCalendarWithAsciiDigits) {
  set("UTC", "th_TH.UTF-8");
  EXPECT_EQ(format(DateForm::cim), "25550118133045.000000+0");
}

TEST_F(Dates, CimFormOfAFarYearKeepsItsShape) {
  set("UTC", "C");
  EXPECT_TRUE(std::regex_match(format(DateForm::cim, 4e11), std::regex(R"(\d{15}\.000000\+0)")));
}

TEST_F(Dates, OneFormatterServesManyDates) {
  set("UTC", "C");
  const DateFormatter formatter(DateForm::cim);
  for (int day = 0; day < 3; ++day) {
    const CFRef<CFDateRef> date(CFDateCreate(nullptr, kWinterDay + day * 86400));
    EXPECT_EQ(formatter.format(date.get()).get(), "201201" + std::to_string(18 + day) + "133045.000000+0");
  }
}

TEST_F(Dates, NowIsNow) {
  set("UTC", "C");
  // std::time may be a few milliseconds behind the clock that dates are taken from.
  const auto clock = [] {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time.tv_sec;
  };
  const std::time_t before = clock();
  const std::string now = format_now(DateForm::cim).get();
  const std::time_t after = clock();
  const auto text_of = [](std::time_t time) {
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S.000000+0", std::gmtime(&time));
    return std::string(text);
  };
  EXPECT_LE(text_of(before), now);
  EXPECT_LE(now, text_of(after));
}

}  // namespace
