#include "inv/secrets/mask.h"

#include <gtest/gtest.h>

#include "inv/compare/diff.h"
#include "inv/maker.h"

namespace {

std::string variable(const std::string& name, const std::string& value) {
  return "\xEF\xBB\xBF?zxml\n+Snapshot=\n+Environment=\nenv-var:" + name + "=\n~complex=\n*env-var:" + name +
         "=" + name + "\nvalue=" + value + "\n-\n-\n";
}

TEST(MaskSecrets, HidesValuesAndNamesOfVariables) {
  const auto inventory = maker::open(maker::file_of_text(variable("API_KEY", "abc")));
  EXPECT_EQ(inv::mask_secrets(*inventory), 1u);
  EXPECT_EQ(inv::write_text(*inventory->snapshot()), variable("API_KEY", "••• (3 characters)"));
  const auto piece = maker::open(maker::file_of_text(variable("aB3dE6gH9jK2mN5pQ8sT", "=")));
  EXPECT_EQ(inv::mask_secrets(*piece), 1u);
  EXPECT_EQ(inv::write_text(*piece->snapshot()), variable("••• (20 characters)", "="));
}

TEST(MaskSecrets, LetsADifferenceBeSeen) {
  const auto old_inventory = maker::open(maker::file_of_text(variable("API_KEY", "abc")));
  const auto new_inventory = maker::open(maker::file_of_text(variable("API_KEY", "xyz")));
  inv::mask_secrets(*old_inventory);
  inv::mask_secrets(*new_inventory);
  const std::vector<inv::Change> changes = inv::diff(*old_inventory, *new_inventory, inv::Facts::all);
  ASSERT_EQ(changes.size(), 1u);
  EXPECT_EQ(changes[0].old_value(), "••• (3 characters)");
  EXPECT_EQ(changes[0].new_value(), "••• (3 characters)");
}

}  // namespace
