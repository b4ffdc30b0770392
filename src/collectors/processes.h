// The programs that are running.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "driver/base/omissions.h"
#include "platform/process_table.h"
#include "zxml/zXML.h"

struct ProcessLine {
  Text user;
  Text command_line;  // null if it was not asked for
};

// The line that ps prints for one process: the user's name, blanks, and the command line up to the line's
// end. std::nullopt if there is no blank, or nothing after the blanks.
std::optional<ProcessLine> parse_process_line(std::string_view output);
// The same for a line that has only the user's name. std::nullopt if there is no name.
std::optional<ProcessLine> parse_user_line(std::string_view output);

// Writes into the profiler tree, from where the snapshot copies them: the time as
// "/SystemProcess/_timeStamp", and "/Processes/process:N" for every process of the table that ps still knows,
// N being its position in the table from 1 on, with its ids as integers. The kernel itself (pid 0) is left
// out. A table that grew while it was read is read again, 4 times at most; without a table no process is
// written. If processes are left out, ps is not run; if only their arguments are, ps prints only the users.
using ProcessTableReader = std::function<ProcessTable()>;
void collect_processes(InventoryTree& profiler, const Omissions& omitted = {},
                       const ProcessTableReader& read_table = read_process_table);

// Appends a deep copy of the profiler tree's "Processes" element to the snapshot's top element; nothing when
// there is none.
void copy_processes(InventoryTree& snapshot, InventoryTree& profiler);
