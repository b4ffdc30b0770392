// "/Scan": how the extended scan itself went, so that what a Mac does not have can be told from what was not
// looked at.
#pragma once

#include <vector>

#include "driver/base/run_journal.h"
#include "zxml/zXML.h"

// The program's version, the options as they were given, for whom and in which locale, calendar and time zone
// it ran, and what became of every command.
void collect_scan_record(InventoryTree& snapshot, const char* options,
                         const std::vector<CommandRecord>& commands);
