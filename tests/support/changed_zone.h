// For tests that change the zone or the locale of their own process.
#pragma once

#include <gtest/gtest.h>

// Shown as skipped on a Mac: CoreFoundation asks for the zone once in a process, and its locale is what the
// user has set, whatever the variables say.
class ChangedZone : public testing::Test {
 protected:
#ifdef __APPLE__
  void SetUp() override { GTEST_SKIP() << "a process keeps its zone and its locale on a Mac"; }
#endif
};
