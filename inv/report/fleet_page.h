// Many machines on one page: how many there are of each kind, what stands out, and a line for each that links
// to its own page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inv/base/text_sink.h"
#include "inv/facts/overview.h"
#include "inv/file/inventory.h"

namespace inv {

// What the page says about one scan.
struct FleetMachine {
  std::string identity;
  std::string name;
  std::string model;
  std::string serial;
  std::string system;
  std::string timestamp;       // as in the file
  std::string time;            // in UTC, so that texts sort like times; empty if unknown
  std::optional<int64_t> day;  // of the scan, counted from 1970-01-01
  uint64_t memory_megabytes = 0;
  std::vector<Volume> volumes;
  bool damaged = false;  // a part of the file cannot be read
  std::string file;      // where it was read from
  std::string page;      // the address of its own page, relative to this one; empty if there is none
};

FleetMachine fleet_machine(const Inventory& inventory);

// The last undamaged scan of each machine, else the last one, sorted by name. Of scans with the same time, or
// without one, the last in the list counts.
std::vector<FleetMachine> last_scans(std::vector<FleetMachine> scans);

// The page for these machines. Ages are relative to `today`, in days since 1970-01-01.
void fleet_page(const std::string& title, const std::vector<FleetMachine>& machines, int64_t today,
                const TextSink& sink);

}  // namespace inv
