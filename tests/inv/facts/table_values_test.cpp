#include "inv/facts/table_values.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

class TableValues : public testing::Test {
 protected:
  TableValues()
      : inventory_(maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\nhostname=A\n+List=\n+"
                                                   "Thing:1=One\nsize=5\nweight=7\nboth=\n~complex=\n*both="
                                                   "B\n*weight=W\n*part=P\nwidth=3\n-\n*Thing:2=\n"
                                                   "size=\n*Other:1=Third\nsize=9\n-\n+Details=\n*Thing:1="
                                                   "First\nkind=old\n+Thing:2=\n*part=\nwidth=8\n-\n-\n"
                                                   "*Alone=Only\ncolour=red\n-\n"))),
        counterparts_(inventory_->snapshot_top()) {}

  inv::Element thing(const char* name) { return inventory_->snapshot_top().child("List").child(name); }

  std::string value(const char* name, std::string_view sources) {
    return std::string(inv::find_value(thing(name), sources, counterparts_).text);
  }

  std::unique_ptr<inv::Inventory> inventory_;
  inv::Counterparts counterparts_;
};

TEST_F(TableValues, AreOfTheElementItself) {
  EXPECT_EQ(value("Thing:1", ""), "One");
  EXPECT_EQ(value("Thing:1", "size"), "5");
  EXPECT_EQ(value("Thing:1", "part/width"), "3");
  EXPECT_EQ(value("Thing:1", "part"), "P");
  EXPECT_EQ(value("Thing:1", "weight"), "7");
  EXPECT_EQ(value("Thing:1", "both"), "B");
  EXPECT_EQ(value("Thing:1", "mass"), "");
  EXPECT_EQ(value("Thing:2", "part/width"), "");
}

TEST_F(TableValues, AreOfItsName) {
  EXPECT_EQ(value("Thing:2", "its name"), "Thing:2");
  EXPECT_EQ(value("Thing:2", "its number"), "2");
  EXPECT_EQ(inv::find_value(inventory_->snapshot_top(), "its number", counterparts_).text, "");
}

TEST_F(TableValues, ComeFromDetailsOfTheElement) {
  EXPECT_EQ(value("Thing:1", "/Details/Thing:N/kind"), "old");
  EXPECT_EQ(value("Thing:1", "/Details/*/kind"), "old");
  EXPECT_EQ(value("Other:1", "/Details/*/kind"), "");
  EXPECT_EQ(value("Other:1", "/Details/Thing:N/kind"), "old");
  EXPECT_EQ(value("Other:1", "/Details/Thing:N"), "First");
  EXPECT_EQ(value("Thing:2", "/Details/Thing:N/part/width"), "8");
}

TEST_F(TableValues, ComeFromAPlaceThatOccursOnce) {
  EXPECT_EQ(value("Thing:1", "/Alone/colour"), "red");
  EXPECT_EQ(value("Thing:1", "/Alone"), "Only");
  EXPECT_EQ(value("Thing:1", "/hostname"), "A");
  EXPECT_EQ(value("Thing:1", "/Nowhere/colour"), "");
}

TEST_F(TableValues, AreTheFirstThatIsNotEmpty) {
  EXPECT_EQ(value("Thing:1", "size or /Details/Thing:N/part/width"), "5");
  EXPECT_EQ(value("Thing:2", "size or /Details/Thing:N/part/width or its name"), "8");
  EXPECT_EQ(value("Thing:2", "size or mass or "), "");
}

TEST_F(TableValues, SayWhichAttributeTheyAre) {
  const inv::FoundValue found =
      inv::find_value(thing("Thing:2"), "size or /Details/*/part/width", counterparts_);
  ASSERT_NE(found.attribute, nullptr);
  EXPECT_EQ(found.attribute->name, "width");
  EXPECT_EQ(found.element.name(), "part");
  EXPECT_EQ(inv::find_value(thing("Thing:1"), "", counterparts_).attribute, nullptr);
}

TEST_F(TableValues, RowsAreTheElementsOfAPattern) {
  const inv::Element top = inventory_->snapshot_top();
  EXPECT_EQ(inv::rows_of(top, "List/Thing:*").size(), 2u);
  EXPECT_EQ(inv::rows_of(top, "List/*").size(), 3u);
  EXPECT_EQ(inv::rows_of(top, "Nowhere/*").size(), 0u);
  ASSERT_EQ(inv::rows_of(top, "").size(), 1u);
  EXPECT_EQ(inv::rows_of(top, "").front(), top);
}

}  // namespace
