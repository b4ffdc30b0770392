#include "inv/compare/alignment.h"

#include <gtest/gtest.h>

namespace {

using Items = std::vector<uint64_t>;
using Partners = std::vector<size_t>;
constexpr size_t kNone = inv::kNoPartner;

TEST(Alignment, EqualItemsBelongTogetherWhereverTheyAre) {
  EXPECT_EQ(inv::align({1, 2, 3}, {1, 2, 3}), Partners({0, 1, 2}));
  EXPECT_EQ(inv::align({1, 2, 3}, {3, 1, 2}), Partners({1, 2, 0}));
}

TEST(Alignment, AnItemLessLeavesTheOthersTogether) {
  EXPECT_EQ(inv::align({1, 2, 3}, {2, 3}), Partners({kNone, 0, 1}));
  EXPECT_EQ(inv::align({1, 2, 3}, {1, 3}), Partners({0, kNone, 1}));
  EXPECT_EQ(inv::align({1, 2, 3}, {1, 2}), Partners({0, 1, kNone}));
}

TEST(Alignment, AnItemMoreLeavesTheOthersTogether) {
  EXPECT_EQ(inv::align({2, 3}, {1, 2, 3}), Partners({1, 2}));
  EXPECT_EQ(inv::align({1, 3}, {1, 2, 3}), Partners({0, 2}));
}

TEST(Alignment, UnpairedElementsAtTheSamePlaceChanged) {
  EXPECT_EQ(inv::align({1, 2, 3}, {1, 9, 3}), Partners({0, 1, 2}));
  EXPECT_EQ(inv::align({2, 3}, {9, 3}), Partners({0, 1}));
  EXPECT_EQ(inv::align({1, 4, 5, 3}, {1, 8, 9, 3}), Partners({0, 1, 2, 3}));
}

TEST(Alignment, UnpairedElementsAtDifferentPlacesAreDifferent) {
  EXPECT_EQ(inv::align({1, 2, 3}, {2, 3, 4}), Partners({kNone, 0, 1}));
  EXPECT_EQ(inv::align({1, 5, 2}, {1, 2, 6}), Partners({0, kNone, 1}));
}

TEST(Alignment, OfEqualItemsTheFirstGoesWithTheFirst) {
  EXPECT_EQ(inv::align({7, 7, 7}, {7, 7}), Partners({0, 1, kNone}));
  EXPECT_EQ(inv::align({7, 7}, {7, 7, 7}), Partners({0, 1}));
}

TEST(Alignment, EmptyListsHaveNoPartners) {
  EXPECT_EQ(inv::align({}, {1}), Partners());
  EXPECT_EQ(inv::align({1, 2}, {}), Partners({kNone, kNone}));
}

TEST(Alignment, StaysLinearWhenNothingIsEqualOrAllIs) {
  constexpr size_t kMany = 300'000;
  Items ascending, others;
  for (size_t i = 0; i < kMany; ++i) {
    ascending.push_back(i);
    others.push_back(kMany + i);
  }
  EXPECT_EQ(inv::align(ascending, others).back(), kMany - 1);
  EXPECT_EQ(inv::align(Items(kMany, 7), Items(kMany, 7)).back(), kMany - 1);
}

}  // namespace
