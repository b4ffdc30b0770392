// The facts that people want first, collected from the trees.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inv/facts/readable.h"
#include "inv/file/inventory.h"

namespace inv {

struct Processor {
  std::string name;  // as the profiler calls it: "Quad-Core Intel Xeon"
  std::string chip;  // the chip's own name, "Apple M4 Pro"; empty if `name` is the same
  uint64_t packages = 0;
  std::string cores;
  std::string performance_cores;
  std::string efficiency_cores;
  std::string megahertz;
};

struct MemorySlot {
  std::string label;
  uint64_t megabytes = 0;  // 0: empty
  std::string type;
};

struct Memory {
  uint64_t megabytes = 0;         // 0: not known
  std::string type;               // of memory without slots: "LPDDR5"
  bool soldered = false;          // it has no slots
  bool upgradeable = true;        // false when the profiler says so
  std::vector<MemorySlot> slots;  // empty if no slot's state is known
};

struct Disk {
  std::string kind;  // "HDD", "CD", "Removable"
  std::string model;
  std::string serial;
  std::string interface;
  uint64_t bytes = 0;   // 0: not known
  std::string medium;   // "SSD" or "hard disk"
  std::string problem;  // what SMART reports about a failing disk
};

struct Volume {
  std::string name;
  std::string file_system;
  std::string mount_point;
  uint64_t bytes = 0;  // 0: not known
  uint64_t free_bytes = 0;
  bool knows_free = false;
  std::string container;  // of APFS, whose volumes share its space: "disk3"

  bool knows_used() const { return knows_free && bytes > 0; }
  // 0 to 100, rounded down as the scanner does.
  unsigned used_percent() const;
  bool shares_space_with(const Volume& other) const {
    return !container.empty() && container == other.container;
  }
};

struct Display {
  std::string model;
  std::string resolution;
  std::string diagonal;  // in inches
  bool main = false;
  std::string pixels;  // if they differ from the resolution: "3024 x 1964"
  bool built_in = false;
};

struct Adapter {
  std::string name;
  std::string device;
  std::string ip_address;
  std::string mac_address;
};

// Texts are as in the file; what is unknown is empty or 0.
struct Overview {
  std::string file;  // as it was named
  std::string name;
  std::string identity;
  std::string model;       // "Mac16,8"
  std::string model_name;  // "MacBook Pro"
  bool virtual_machine = false;
  std::string serial;
  std::string os;  // see system_name()
  std::string kernel;
  std::string architecture;
  std::string uptime;  // "2 days 3:04:05"
  std::string timestamp;
  std::string time;       // in UTC; empty when the timestamp cannot be understood
  std::string signed_by;  // set only by callers that have checked a signature
  std::string user;
  Processor processor;
  Memory memory;
  std::vector<Disk> disks;
  std::vector<Volume> volumes;  // those of the same container are adjacent
  std::vector<Display> displays;
  std::vector<std::string> graphics;  // "Apple M4 Pro, 16 cores, Metal 4"
  std::vector<std::string> battery;   // "condition Good", "61 cycles", ...
  std::vector<std::string> security;  // "FileVault on", "SIP off", ...
  std::string firewall;               // "on, blocks all connections"
  std::string management;             // "enrolled in MDM, approved by the user"
  std::vector<Adapter> adapters;
  bool has_snapshot = false;  // without it nothing has been counted
  size_t applications = 0;
  size_t accounts = 0;
  size_t processes = 0;
  size_t printers = 0;
  size_t usb_devices = 0;
  size_t thunderbolt_devices = 0;
  size_t bluetooth_devices = 0;
  size_t installed_packages = 0;
  std::vector<std::string> gaps;  // see gaps_in()
};

Overview overview_of(const Inventory& inventory);

struct Space {
  uint64_t bytes = 0;
  uint64_t free_bytes = 0;
};

// The volumes of an overview, grouped by shared space. None of the lists is empty.
std::vector<std::vector<Volume>> by_space(const std::vector<Volume>& volumes);
// The total space of the volumes whose space is known; shared space counts once.
Space space_of(const std::vector<Volume>& volumes);

}  // namespace inv
