#include "extended/facts.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

TEST(YesOrNo, IsTheLastWordInAnyCase) {
  for (const char* yes : {"yes", "Yes", "YES", "TRUE", "on", "enabled", "spdisplays_yes", "attrib_On",
                          "integrity_enabled", "_on"})
    EXPECT_EQ(parse_yes_or_no(yes), true) << yes;
  for (const char* no :
       {"no", "No", "FALSE", "off", "disabled", "spdisplays_off", "activation_lock_disabled"})
    EXPECT_EQ(parse_yes_or_no(no), false) << no;
  for (const char* other : {"", "_", "yes_", "maybe", "yes no", "1", "spdisplays_supported", "yes "})
    EXPECT_EQ(parse_yes_or_no(other), std::nullopt) << other;
  EXPECT_EQ(parse_yes_or_no(nullptr), std::nullopt);
}

TEST(Numbers, AreIntegersOrTextsOfDigits) {
  InventoryTree tree =
      profiler_with("Type", {{{"integer", 7}, {"digits", "14"}, {"text", "14 cores"}, {"minus", -3}}});
  const Tag& item = *first_item(tree, "Type");
  EXPECT_EQ(find_number(item, "integer"), 7);
  EXPECT_EQ(find_number(item, "digits"), 14);
  EXPECT_EQ(find_number(item, "minus"), -3);
  EXPECT_EQ(find_number(item, "text"), std::nullopt);
  EXPECT_EQ(find_number(item, "missing"), std::nullopt);
}

TEST(NamedItems, AreTheFirstOfTheirName) {
  InventoryTree tree = profiler_with(
      "Type", {{{"_name", "one"}, {"n", 1}}, {{"_name", "two"}, {"n", 2}}, {{"_name", "two"}, {"n", 3}}});
  EXPECT_EQ(find_integer(*find_named_item(tree, "Type", "two"), "n"), 2);
  EXPECT_EQ(find_named_item(tree, "Type", "three"), nullptr);
  EXPECT_EQ(find_named_item(tree, "Other", "two"), nullptr);
}

TEST(MissingFacts, MakeNoElement) {
  InventoryTree snapshot = empty_snapshot();
  Place element(snapshot.root(), "/Element");
  set_text(element, "text", nullptr);
  set_number(element, "number", std::nullopt, "GB");
  set_yes_or_no(element, "switch", std::nullopt);
  EXPECT_EQ(tree_text(snapshot), kEmptySnapshot);
  set_number(element, "number", 5, "GB");
  set_number(element, "plain", 0);
  set_yes_or_no(element, "switch", false);
  set_text(element, "text", "");
  EXPECT_EQ(tree_text(snapshot), in_snapshot("*Element=\nnumber=5\n~units=GB\nplain=0\nswitch=0\ntext=\n"));
}

}  // namespace
