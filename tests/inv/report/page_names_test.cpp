#include "inv/report/page_names.h"

#include <gtest/gtest.h>

namespace {

TEST(PageNames, StandBesideThePageOfTheFleet) {
  EXPECT_EQ(inv::PageNames("out/fleet.html").next("SIM0IMAC106"), "out/fleet-SIM0IMAC106.html");
  EXPECT_EQ(inv::PageNames("a.b/fleet").next("A"), "a.b/fleet-A.html");
  EXPECT_EQ(inv::PageNames("out/.html").next("A"), "out/.html-A.html");
  EXPECT_EQ(inv::name_in("out/fleet-A.html"), "fleet-A.html");
  EXPECT_EQ(inv::name_in("fleet-A.html"), "fleet-A.html");
}

TEST(PageNames, HaveNothingThatANameCannotHave) {
  EXPECT_EQ(inv::PageNames("f.html").next("../Az09-\"<\n"), "f-___Az09-___.html");
  EXPECT_EQ(inv::PageNames("f.html").next(std::string(61, 'a')), "f-" + std::string(60, 'a') + ".html");
}

TEST(PageNames, AreNeverTheSame) {
  inv::PageNames names("f.html");
  EXPECT_EQ(names.next("A"), "f-A.html");
  EXPECT_EQ(names.next("A"), "f-A-2.html");
  EXPECT_EQ(names.next("a"), "f-a-3.html");
  EXPECT_EQ(names.next("A-2"), "f-A-2-2.html");
}

}  // namespace
