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
    EXPECT_EQ(format(DateForm::kCim), row.expected) << row.zone;
  }
}

TEST_F(Dates, ShortFormHasNoTimeAndNoZone) {
  set("UTC", "de_DE.UTF-8");
  EXPECT_EQ(format(DateForm::kShort), "2012-01-18");
}

TEST_F(Dates, ProcessFormNamesTheZone) {
  set("America/New_York", "en_US.UTF-8");
  EXPECT_EQ(format(DateForm::kProcess).substr(0, 20), "2012-01-18 08:30:45 ");
  EXPECT_GT(format(DateForm::kProcess).size(), 20u);
}

TEST_F(Dates, CimFormIsReadableWhereTheLocaleHasOtherDigits) {
  for (const char* locale : {"ar_EG.UTF-8", "fa_IR.UTF-8"}) {
    set("UTC", locale);
    EXPECT_EQ(format(DateForm::kCim), "20120118133045.000000+0") << locale;
  }
}

TEST_F(Dates, CimFormKeepsAnotherCalendarWithAsciiDigits) {
  set("UTC", "th_TH.UTF-8");
  EXPECT_EQ(format(DateForm::kCim), "25550118133045.000000+0");
}

TEST_F(Dates, CimFormOfAFarYearKeepsItsShape) {
  set("UTC", "C");
  EXPECT_TRUE(std::regex_match(format(DateForm::kCim, 4e11), std::regex(R"(\d{15}\.000000\+0)")));
}

TEST_F(Dates, OneFormatterServesManyDates) {
  set("UTC", "C");
  const DateFormatter formatter(DateForm::kCim);
  for (int day = 0; day < 3; ++day) {
    const CFRef<CFDateRef> date(CFDateCreate(nullptr, kWinterDay + day * 86400));
    EXPECT_EQ(formatter.format(date.get()).get(), "201201" + std::to_string(18 + day) + "133045.000000+0");
  }
}

TEST_F(Dates, NowIsNow) {
  set("UTC", "C");
  const std::time_t before = std::time(nullptr);
  const std::string now = format_now(DateForm::kCim).get();
  const std::time_t after = std::time(nullptr);
  const auto text_of = [](std::time_t time) {
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S.000000+0", std::gmtime(&time));
    return std::string(text);
  };
  EXPECT_LE(text_of(before), now);
  EXPECT_LE(now, text_of(after));
}

}  // namespace
