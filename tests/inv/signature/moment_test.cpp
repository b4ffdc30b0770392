#include "inv/signature/moment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace {

using inv::parse_moment;

// The machine's time zone, while a test wants another.
class MomentTest : public testing::Test {
 protected:
  MomentTest() {
    if (const char* zone = std::getenv("TZ")) zone_ = zone;
    // An hour ahead of UTC in winter and two in summer.
    setenv("TZ", "MEZ-1MESZ,M3.5.0,M10.5.0/3", 1);
    tzset();
  }
  ~MomentTest() override {
    unsetenv("TZ");
    if (zone_) setenv("TZ", zone_->c_str(), 1);
    tzset();
  }

 private:
  std::optional<std::string> zone_;
};

TEST_F(MomentTest, ReadsDaysMinutesAndSecondsInUtc) {
  EXPECT_EQ(parse_moment("20260131Z"), 1769817600);
  EXPECT_EQ(parse_moment("202601311234Z"), 1769862840);
  EXPECT_EQ(parse_moment("20260131123456Z"), 1769862896);
  EXPECT_EQ(parse_moment("20260131235960Z"), 1769904000);  // a leap second
  EXPECT_EQ(parse_moment("20380119031408Z"), int64_t{1} << 31);
  EXPECT_EQ(parse_moment("99991231235959Z"), 253402300799);
}

TEST_F(MomentTest, KnowsTheWordsForUtcInAnyCase) {
  for (const char* word : {"Z", "z", "UTC", "utc", "Utc"}) {
    EXPECT_EQ(parse_moment(std::string("20260131") + word), 1769817600) << word;
  }
}

TEST_F(MomentTest, IsLocalTimeWithoutThem) {
  EXPECT_EQ(parse_moment("20260131"), 1769817600 - 3600);
  EXPECT_EQ(parse_moment("202601311234"), 1769862840 - 3600);
  EXPECT_EQ(parse_moment("202607011234"), *parse_moment("202607011034Z"));
}

TEST_F(MomentTest, ADayThatTheMonthLacksIsOneOfTheNext) {
  EXPECT_EQ(parse_moment("20260230Z"), parse_moment("20260302Z"));
}

TEST_F(MomentTest, RefusesWhatNoClockShows) {
  for (const char* text : {"20260031Z",
                           "20261301Z",
                           "20260100Z",
                           "20260132Z",
                           "202601312400Z",
                           "202601311260Z",
                           "20260131125961Z",
                           "2026013Z",
                           "202601311Z",
                           "20260131123Z",
                           "2026013112345Z",
                           "202601311234567Z",
                           "2026-01-31",
                           "2026 131Z",
                           "-2026131Z",
                           "2026013 Z",
                           "",
                           "Z",
                           "UTC",
                           "ZZ",
                           "20260131ZZ",
                           "20260131X",
                           "20260131+1",
                           "now"}) {
    EXPECT_FALSE(parse_moment(text)) << text;
  }
}

TEST_F(MomentTest, BeginsAfterTheStartOf1970) {
  EXPECT_EQ(parse_moment("19700101000001Z"), 1);
  EXPECT_FALSE(parse_moment("19700101Z"));
  EXPECT_FALSE(parse_moment("19691231235959Z"));
  EXPECT_FALSE(parse_moment("00000101Z"));
}

}  // namespace
