#include "collectors/printers.h"

#include <gtest/gtest.h>

#include "tests/collectors/tree_helpers.h"

namespace {

InventoryTree printers(std::initializer_list<Item> items) {
  return profiler_with("SPPrintersDataType", items);
}

std::string collected_printers(std::initializer_list<Item> items) {
  InventoryTree profiler = printers(items);
  return collected(collect_printers, profiler);
}

// The snapshot with one printer of these lines.
std::string one_printer(const std::string& lines) {
  return "+Snapshot=\n+Peripherals=\n+Printers=\n" + lines + "-\n-\n-\n";
}

TEST(Printers, WritesEveryFactOfAMultifunctionPrinter) {
  const std::string text = collected_printers({{
      {"_name", "Office MFP"},
      {"default", "yes"},
      {"status", "idle"},
      {"scanner", "yes"},
      {"scannerUUID", "1234-ABCD"},
      {"scannerapppath", "/Library/Scan.app"},
      {"fax", "yes"},
      {"driverversion", "4.1"},
      {"printserver", "local"},
      {"uri", "dnssd://Office"},
      {"ppd", "Generic PPD"},
      {"ppdfileversion", "1.3"},
  }});
  EXPECT_EQ(text, one_printer("*Printer:1=Office MFP\n"
                              "~kind=MFP\n"
                              "is-default=1\n"
                              "status=idle\n"
                              "scanner-uuid=1234-ABCD\n"
                              "scanner-app-path=/Library/Scan.app\n"
                              "is-fax=1\n"
                              "driver-version=4.1\n"
                              "print-server=local\n"
                              "uri=dnssd://Office\n"
                              "ppd=Generic PPD\n"
                              "ppd-file-version=1.3\n"));
}

TEST(Printers, LeavesAGapForAnItemWithoutDefault) {
  const std::string text = collected_printers({
      {{"_name", "A"}, {"default", "no"}, {"status", "idle"}},
      {{"_name", "B"}, {"status", "idle"}},
      {{"_name", "C"}, {"default", "yes"}, {"status", "idle"}},
  });
  EXPECT_EQ(text, one_printer("*Printer:1=A\nis-default=0\nstatus=idle\n"
                              "*Printer:3=C\nis-default=1\nstatus=idle\n"));
}

TEST(Printers, ReportsNoScannerWhenTheSwitchIsNo) {
  EXPECT_EQ(collected_printers({{{"_name", "A"},
                                 {"default", "no"},
                                 {"status", "idle"},
                                 {"scanner", "no"},
                                 {"scannerUUID", "1234"},
                                 {"scannerapppath", "/x"}}}),
            one_printer("*Printer:1=A\nis-default=0\nstatus=idle\n"));
}

TEST(Printers, CountsEveryTextButLowerCaseNoAsYes) {
  EXPECT_EQ(collected_printers({{{"_name", "A"}, {"default", "No"}, {"fax", "maybe"}, {"scanner", ""}}}),
            one_printer("*Printer:1=A\n~kind=MFP\nis-default=1\nis-fax=1\n"));
}

TEST(Printers, ReportsAFaxWhoseSwitchIsNo) {
  EXPECT_EQ(collected_printers({{{"_name", "A"}, {"default", "no"}, {"fax", "no"}}}),
            one_printer("*Printer:1=A\nis-default=0\nis-fax=0\n"));
}

TEST(Printers, ReportsThePrintServerOnlyWithAUri) {
  EXPECT_EQ(collected_printers({{{"_name", "A"}, {"default", "no"}, {"printserver", "srv"}}}),
            one_printer("*Printer:1=A\nis-default=0\n"));
  EXPECT_EQ(collected_printers({{{"_name", "A"}, {"default", "no"}, {"uri", "usb://x"}}}),
            one_printer("*Printer:1=A\nis-default=0\nuri=usb://x\n"));
}

TEST(Printers, CopiesValuesOfEveryKindUnchanged) {
  EXPECT_EQ(collected_printers({{{"_name", 7}, {"default", "no"}, {"status", " idle "}, {"ppd", 12}}}),
            one_printer("*Printer:1=7\nis-default=0\nstatus= idle \nppd=12\n"));
}

TEST(Printers, KeepsAPrinterWithoutAName) {
  EXPECT_EQ(collected_printers({{{"default", "yes"}}}), one_printer("*Printer:1=\nis-default=1\n"));
}

TEST(Printers, WritesNothingWithoutItems) {
  InventoryTree profiler = empty_profiler();
  EXPECT_EQ(collected(collect_printers, profiler), "*Snapshot=\n");
  profiler.set_attribute("/SPPrintersDataType/_items", text_value("not a list"));
  EXPECT_EQ(collected(collect_printers, profiler), "*Snapshot=\n");
}

}  // namespace
