// "/Scan": how the extended scan itself went, so that what a Mac does not have can be distinguished from what
// the scan could not see.
#pragma once

#include <vector>

#include "driver/base/omissions.h"
#include "driver/base/run_journal.h"
#include "zxml/zXML.h"

// Writes the program's version, the options as given, what was left out, the user (unless people are left
// out), locale, calendar and time zone of the scan, and the outcome of every command.
void collect_scan_record(InventoryTree& snapshot, const char* options,
                         const std::vector<CommandRecord>& commands, const Omissions& omitted = {});
