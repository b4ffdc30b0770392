#include "inv/commands/in_order.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

using Numbers = std::vector<size_t>;

Numbers numbers_up_to(size_t count) {
  Numbers numbers;
  for (size_t i = 0; i < count; ++i) numbers.push_back(i);
  return numbers;
}

TEST(InOrder, UsesTheResultsInTheirOrderWhateverTheNumberOfThreads) {
  for (const size_t jobs : {size_t{1}, size_t{2}, size_t{7}}) {
    Numbers used;
    const bool finished = inv::in_order(
        500, jobs, [](size_t i) { return i; },
        [&](size_t i) {
          used.push_back(i);
          return true;
        });
    EXPECT_TRUE(finished);
    EXPECT_EQ(used, numbers_up_to(500)) << jobs;
  }
}

TEST(InOrder, StopsWhenUseReturnsFalse) {
  for (const size_t jobs : {size_t{1}, size_t{3}}) {
    Numbers used;
    const bool finished = inv::in_order(
        1000, jobs, [](size_t i) { return i; },
        [&](size_t i) {
          used.push_back(i);
          return i < 4;
        });
    EXPECT_FALSE(finished);
    EXPECT_EQ(used, numbers_up_to(5)) << jobs;
  }
}

TEST(InOrder, MakesOnlyAFewResultsAhead) {
  std::atomic<size_t> made{0};
  inv::in_order(
      1000, 2,
      [&](size_t i) {
        ++made;
        return i;
      },
      [&](size_t i) {
        EXPECT_LE(made, i + 8);
        return true;
      });
  EXPECT_EQ(made, 1000u);
}

TEST(InOrder, RethrowsInOrder) {
  for (const size_t jobs : {size_t{1}, size_t{2}}) {
    Numbers used;
    const auto make = [](size_t i) {
      if (i == 3) throw std::runtime_error("three");
      return i;
    };
    const auto use = [&](size_t i) {
      used.push_back(i);
      return true;
    };
    EXPECT_THROW(inv::in_order(50, jobs, make, use), std::runtime_error);
    EXPECT_EQ(used, numbers_up_to(3)) << jobs;
  }
}

// Two threads make the first three results; the third one waits for room.
TEST(InOrder, BeginsNothingWhileTooMuchWaits) {
  std::atomic<size_t> made{0};
  inv::in_order(
      100, 2,
      [&](size_t i) {
        ++made;
        return i;
      },
      [&](size_t i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_LE(made, i + 4);
        return true;
      },
      [](size_t) { return uint64_t{10}; }, 15);
  EXPECT_EQ(made, 100u);
}

TEST(InOrder, MakesAResultThatIsHeavierThanAllThatMayWait) {
  size_t used = 0;
  inv::in_order(
      10, 2, [](size_t i) { return i; },
      [&](size_t) {
        ++used;
        return true;
      },
      [](size_t) { return uint64_t{10}; }, 1);
  EXPECT_EQ(used, 10u);
}

}  // namespace
