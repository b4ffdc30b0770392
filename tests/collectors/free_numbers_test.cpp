#include "collectors/free_numbers.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

TEST(FreeNumbers, BeginWithOneWithoutAList) {
  const InventoryTree snapshot = empty_snapshot();
  FreeNumbers numbers(snapshot, {"Storage", "Logical-disks"}, "partition:");
  EXPECT_EQ(numbers.next_name(), "partition:1");
  EXPECT_EQ(numbers.next_name(), "partition:2");
}

TEST(FreeNumbers, PassOverThoseThatAreTaken) {
  InventoryTree snapshot = empty_snapshot();
  for (const char* name : {"HDD:1", "CD:2", "HDD:3"})
    snapshot.set_tag_value((std::string("/Storage/Physical-disks/") + name).c_str(), Value());
  FreeNumbers numbers(snapshot, {"Storage", "Physical-disks"}, "HDD:");
  EXPECT_EQ(numbers.next_name(), "HDD:2");
  EXPECT_EQ(numbers.next_name(), "HDD:4");
}

TEST(FindElement, FollowsTheNamesDownwards) {
  InventoryTree snapshot = empty_snapshot();
  snapshot.set_attribute("/A/B/C/fact", text_value("here"));
  EXPECT_EQ(find_element(snapshot, {"A", "B", "C"})->name(), "C");
  EXPECT_EQ(find_element(snapshot, {"A", "C"}), nullptr);
  EXPECT_EQ(find_element(snapshot, {"none", "B"}), nullptr);
  EXPECT_EQ(find_element(snapshot, {}), &snapshot.top());
}

}  // namespace
