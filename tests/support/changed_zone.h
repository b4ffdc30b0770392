// For tests that change the zone or the locale of their own process.
#pragma once

#include <gtest/gtest.h>

// Skipped on a Mac: CoreFoundation reads the zone once per process, and its locale is the user's setting,
// regardless of the variables.
class ChangedZone : public testing::Test {
 protected:
#ifdef __APPLE__
  void SetUp() override { GTEST_SKIP() << "a process keeps its zone and its locale on a Mac"; }
#endif
};
