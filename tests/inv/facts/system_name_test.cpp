#include "inv/facts/system_name.h"

#include <gtest/gtest.h>

namespace {

using inv::system_name;

TEST(SystemName, TheKernelsNumberGivesTheVersion) {
  EXPECT_EQ(inv::version_of_darwin(4), "");
  EXPECT_EQ(inv::version_of_darwin(5), "10.1");
  EXPECT_EQ(inv::version_of_darwin(8), "10.4");
  EXPECT_EQ(inv::version_of_darwin(19), "10.15");
  EXPECT_EQ(inv::version_of_darwin(20), "11");
  EXPECT_EQ(inv::version_of_darwin(24), "15");
  EXPECT_EQ(inv::version_of_darwin(25), "26");
  EXPECT_EQ(inv::version_of_darwin(26), "27");
  EXPECT_EQ(inv::version_of_darwin(99), "100");
  EXPECT_EQ(inv::version_of_darwin(100), "");
}

TEST(SystemName, TheKernelIsRecognisedByItsName) {
  EXPECT_EQ(inv::darwin_of("Darwin 24.3.0"), 24u);
  EXPECT_EQ(inv::darwin_of("Darwin 9"), 9u);
  for (const char* other :
       {"", "Darwin", "Darwin x", "Darwin 100.1", "Darwin 99999999999999999999", "Linux 24.3.0"}) {
    EXPECT_EQ(inv::darwin_of(other), std::nullopt) << other;
  }
}

TEST(SystemName, WhatAgreesWithTheKernelIsKept) {
  EXPECT_EQ(system_name({"Mac OS X v10.6 (Snow Leopard)", "10.6.8 (10K549)", "Darwin 10.8.0", {}}),
            "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)");
  EXPECT_EQ(system_name({"Mac OS X v10.7 (Lion)", "10.7 (11A511)", "Darwin 11.0.0", {"Mac OS X 10.7"}}),
            "Mac OS X v10.7 (Lion), 10.7 (11A511)");
  EXPECT_EQ(system_name({"Mac OS X v10.7 (Lion)", "", "Darwin 11.0.0", {}}), "Mac OS X v10.7 (Lion)");
}

TEST(SystemName, ANameThatContradictsTheKernelIsNotRepeated) {
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "3 (24D5040f)", "Darwin 24.3.0", {}}),
            "macOS 15 (Darwin 24.3.0)");
  EXPECT_EQ(system_name({"Mac OS X v10.1 (Puma)", "0 (14A389)", "Darwin 14.0.0", {}}),
            "OS X 10.10 (Darwin 14.0.0)");
  EXPECT_EQ(system_name({"Mac OS X v10.3 (Panther)", "13.3 (17D102)", "Darwin 17.4.0", {}}),
            "macOS 10.13 (Darwin 17.4.0)");
  EXPECT_EQ(system_name({"Mac OS X v10.10 (Yosemite)", "", "Darwin 5.1", {}}), "Mac OS X 10.1 (Darwin 5.1)");
}

TEST(SystemName, ASystemHasTheNameOfItsDays) {
  EXPECT_EQ(system_name({"", "", "Darwin 11.4.2", {}}), "Mac OS X 10.7 (Darwin 11.4.2)");
  EXPECT_EQ(system_name({"", "", "Darwin 12.0.0", {}}), "OS X 10.8 (Darwin 12.0.0)");
  EXPECT_EQ(system_name({"", "", "Darwin 15.6.0", {}}), "OS X 10.11 (Darwin 15.6.0)");
  EXPECT_EQ(system_name({"", "", "Darwin 16.0.0", {}}), "macOS 10.12 (Darwin 16.0.0)");
}

TEST(SystemName, AVersionThatContradictsTheKernelIsLeftOut) {
  EXPECT_EQ(system_name({"macOS 11.2.3 (20D91)", "2.3 (20D91)", "Darwin 20.3.0", {}}),
            "macOS 11.2.3 (20D91)");
  EXPECT_EQ(system_name({"macOS 15.6.1 (24G90)", "6.1 (24G90)", "Darwin 24.6.0", {}}),
            "macOS 15.6.1 (24G90)");
}

TEST(SystemName, OtherToolsKnowBetterButNotThanTheKernel) {
  EXPECT_EQ(
      system_name(
          {"Mac OS X v10.2 (Jaguar)", "1 (25B78)", "Darwin 25.1.0", {"macOS 26.1 (25B78)", "macOS 26"}}),
      "macOS 26.1 (25B78)");
  // What sw_vers says to a program that was built for older systems.
  EXPECT_EQ(system_name(
                {"Mac OS X v10.2 (Jaguar)", "1 (20C69)", "Darwin 20.2.0", {"Mac OS X 10.16", "macOS 11.1"}}),
            "macOS 11.1");
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "1 (20C69)", "Darwin 20.2.0", {"", "Mac OS X 10.16"}}),
            "macOS 11 (Darwin 20.2.0)");
  EXPECT_EQ(system_name({"", "", "", {"", "macOS 14.4"}}), "macOS 14.4");
}

TEST(SystemName, WithoutAKernelTheBuildDecides) {
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "3 (24D5040f)", "", {}}), "macOS 15 (24D5040f)");
  EXPECT_EQ(system_name({"Mac OS X v10.4 (Tiger)", "10.4.11 (8S2167)", "", {}}),
            "Mac OS X v10.4 (Tiger), 10.4.11 (8S2167)");
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "3 (24D5040f)", "Linux", {}}), "macOS 15 (24D5040f)");
}

TEST(SystemName, WithoutBothNothingIsContradicted) {
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "3", "", {}}), "Mac OS X v10.2 (Jaguar), 3");
  EXPECT_EQ(system_name({"Mac OS X v10.2 (Jaguar)", "(", "Darwin 1.4.1", {}}), "Mac OS X v10.2 (Jaguar), (");
  EXPECT_EQ(system_name({"Mac OS", "", "Darwin 24.3.0", {}}), "Mac OS");
  EXPECT_EQ(system_name({}), "");
}

TEST(SystemName, OnlyWholeNumbersAgree) {
  EXPECT_EQ(system_name({"macOS 110", "", "Darwin 20.2.0", {}}), "macOS 11 (Darwin 20.2.0)");
  EXPECT_EQ(system_name({"macOS 11", "", "Darwin 20.2.0", {}}), "macOS 11");
}

}  // namespace
