#include "driver/base/omissions.h"

#include <gtest/gtest.h>

namespace {

// The words that a list is understood as; "unknown" when it is refused.
std::string understood(std::string_view list) {
  Omissions omitted;
  return add_omissions(list, omitted) ? omitted_words(omitted) : "unknown";
}

TEST(Omissions, HaveAWordForEachMember) {
  for (const char* word : {"processes", "arguments", "environment", "values", "accounts", "people"})
    EXPECT_EQ(understood(word), word);
  EXPECT_EQ(omitted_words({}), "");
}

TEST(Omissions, TakeAListInAnyOrderAndRepeated) {
  EXPECT_EQ(understood("people,accounts,values,environment,arguments,processes,people"),
            "processes, arguments, environment, values, accounts, people");
}

TEST(Omissions, AddUp) {
  Omissions omitted;
  EXPECT_TRUE(add_omissions("values", omitted));
  EXPECT_TRUE(add_omissions("accounts", omitted));
  EXPECT_EQ(omitted_words(omitted), "values, accounts");
}

TEST(Omissions, KnowNoOtherWord) {
  for (const char* list : {"", ",", "value", "valuesx", "values,", ",values", "values,,people",
                           "values people", "values, people", "VALUES", "all"})
    EXPECT_EQ(understood(list), "unknown") << list;
}

}  // namespace
