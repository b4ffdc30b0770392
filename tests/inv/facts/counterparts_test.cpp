#include "inv/facts/counterparts.h"

#include <gtest/gtest.h>

#include "inv/facts/paths.h"
#include "inv/maker.h"

namespace {

// The value of what the path names beside the element.
std::string found(std::string_view path, std::string_view element, const std::string& lines) {
  const auto inventory = maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + lines + "-\n"));
  inv::Counterparts counterparts(inventory->snapshot_top());
  const inv::Element other =
      counterparts.find(path, inv::find_matches(*inventory->snapshot(), element).at(0).element);
  return std::string(other.value());
}

const std::string kLists =
    "+A=\n*Soft:1=one\n*Soft:2=two\n-\n+B=\n*Soft:2=more of two\n+C=\n*adapter:1=more of one\n-\n-\n";

TEST(Counterparts, AreFoundByNumber) {
  EXPECT_EQ(found("/B/Soft:N", "/A/Soft:2", kLists), "more of two");
  EXPECT_EQ(found("/B/C/adapter:N", "/A/Soft:1", kLists), "more of one");
}

TEST(Counterparts, AreFoundByName) { EXPECT_EQ(found("/B/*", "/A/Soft:2", kLists), "more of two"); }

TEST(Counterparts, NeedNotBeThere) {
  EXPECT_EQ(found("/B/Soft:N", "/A/Soft:1", kLists), "");
  EXPECT_EQ(found("/B/C/*", "/A/Soft:1", kLists), "");
  EXPECT_EQ(found("/D/E/Soft:N", "/A/Soft:1", kLists), "");
}

}  // namespace
