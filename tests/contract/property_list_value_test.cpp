#include <gtest/gtest.h>

#include "contract/outcome.h"

namespace {

std::string date_outcome(const std::string& text) {
  return outcome_of(document("<date>" + text + "</date>"));
}
std::string data_outcome(const std::string& text) {
  return outcome_of(document("<data>" + text + "</data>"));
}

TEST(PropertyListDates, CountSecondsFromTheYear2001) {
  const std::pair<const char*, const char*> dates[] = {
      {"2001-01-01T00:00:00Z", "date abs=0.000000"},
      {"2010-01-02T03:04:05Z", "date abs=284094245.000000"},
      {"1970-01-01T00:00:00Z", "date abs=-978307200.000000"},
      {"1969-12-31T23:59:59Z", "date abs=-978307201.000000"},
      {"2038-01-19T03:14:08Z", "date abs=1169176448.000000"},
      {"1600-01-01T00:00:00Z", "date abs=-12654403200.000000"},
      {"4001-01-01T00:00:00Z", "date abs=63113904000.000000"},
      {"2000-02-29T12:00:00Z", "date abs=-26481600.000000"},
  };
  for (const auto& [text, outcome] : dates) EXPECT_EQ(date_outcome(text), outcome) << text;
}

TEST(PropertyListDates, HaveYearsOfAnyLength) {
  const std::pair<const char*, const char*> dates[] = {
      {"0001-01-01T00:00:00Z", "date abs=-63113904000.000000"},
      {"0000-01-01T00:00:00Z", "date abs=-63145526400.000000"},
      {"-0001-01-01T00:00:00Z", "date abs=-63177062400.000000"},
      {"9999-12-31T23:59:59Z", "date abs=252423993599.000000"},
      {"10000-01-01T00:00:00Z", "date abs=252423993600.000000"},
      {"1-01-01T00:00:00Z", "date abs=-63113904000.000000"},
  };
  for (const auto& [text, outcome] : dates) EXPECT_EQ(date_outcome(text), outcome) << text;
}

TEST(PropertyListDates, RollOver) {
  const std::pair<const char*, const char*> dates[] = {
      {"2010-13-02T03:04:05Z", "date abs=315630245.000000"},
      {"2010-00-00T00:00:00Z", "date abs=283910400.000000"},
      {"2010-02-30T00:00:00Z", "date abs=289180800.000000"},
      {"2010-02-29T00:00:00Z", "date abs=289094400.000000"},
      {"2010-01-02T24:00:00Z", "date abs=284169600.000000"},
      {"2010-01-02T25:61:61Z", "date abs=284176921.000000"},
      {"2010-01-02T23:59:60Z", "date abs=284169600.000000"},
  };
  for (const auto& [text, outcome] : dates) EXPECT_EQ(date_outcome(text), outcome) << text;
}

TEST(PropertyListDates, AreRefusedInOtherForms) {
  for (const char* text :
       {"", "abc", "2010-01-02", "2010-01-02T03:04:05", "2010-01-02T03:04:05z", "2010-01-02 03:04:05 Z",
        "2010-1-2T3:4:5Z", "2010-01-02T03:04:05.5Z", "2010-01-02T03:04:05+0100", " 2010-01-02T03:04:05Z",
        "2010-01-02T03:04:05Z ", "\n2010-01-02T03:04:05Z\n", "2010-01-02T03:04:05Zjunk",
        "+2010-01-02T03:04:05Z", "-01-02T03:04:05Z", "2010-01-02T03:04:005Z"}) {
    EXPECT_EQ(date_outcome(text), "NULL") << text;
  }
  expect_refused({"<date/>"});
}

TEST(PropertyListData, SkipsWhatIsNotBase64) {
  const std::pair<const char*, const char*> texts[] = {
      {"AAEC", "data 3 <000102>"},
      {"A A\n E\tC", "data 3 <000102>"},
      {"!!!!", "data 0 <>"},
      {"AA*C", "data 0 <>"},
      {"-_-_", "data 0 <>"},
      {"+/+/", "data 3 <fbffbf>"},
      {"", "data 0 <>"},
      {"  ", "data 0 <>"},
      {"AAEC&#65;", "data 3 <000102>"},
      {"AA\xE4"
       "EC",
       "data 3 <000102>"},
  };
  for (const auto& [text, outcome] : texts) EXPECT_EQ(data_outcome(text), outcome) << text;
}

TEST(PropertyListData, DropsAnIncompleteGroup) {
  for (const char* text : {"A", "AA", "AAE"}) EXPECT_EQ(data_outcome(text), "data 0 <>") << text;
}

TEST(PropertyListData, IsShortenedButNotEndedByPadding) {
  const std::pair<const char*, const char*> texts[] = {
      {"AAE=", "data 2 <0001>"}, {"AA==", "data 1 <00>"},           {"AAEC=", "data 3 <000102>"},
      {"====", "data 1 <00>"},   {"AA==AAEC", "data 4 <00000102>"}, {"AA=EC", "data 3 <000004>"},
      {"AA= =", "data 1 <00>"},
  };
  for (const auto& [text, outcome] : texts) EXPECT_EQ(data_outcome(text), outcome) << text;
}

TEST(PropertyListData, IsRefusedAsAnEmptyElement) { expect_refused({"<data/>"}); }

}  // namespace
