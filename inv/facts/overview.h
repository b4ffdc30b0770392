// The facts that a person asks for first, found in the trees and put into words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

struct MemorySlot {
  std::string label;
  uint64_t megabytes = 0;  // 0: empty
  std::string type;
};

struct Disk {
  std::string kind;  // "HDD", "CD", "Removable"
  std::string model;
  std::string serial;
  std::string interface;
  uint64_t bytes = 0;  // 0: not known
};

struct Volume {
  std::string name;
  std::string file_system;
  std::string mount_point;
  uint64_t bytes = 0;  // 0: not known
  uint64_t free_bytes = 0;
  bool knows_free = false;

  bool knows_used() const { return knows_free && bytes > 0; }
  // 0 to 100, cut off as the scanner does it.
  unsigned used_percent() const;
};

struct Display {
  std::string model;
  std::string resolution;
  std::string diagonal;  // in inches
  bool main = false;
};

struct Adapter {
  std::string name;
  std::string device;
  std::string ip_address;
  std::string mac_address;
};

// Texts are as the file has them; what it does not know is empty or 0.
struct Overview {
  std::string name;
  std::string identity;
  std::string model;
  std::string serial;
  std::string os;
  std::string kernel;
  std::string architecture;
  std::string uptime;  // "2 days 3:04:05"
  std::string timestamp;
  std::string signed_by;  // known only to callers that have checked a signature
  std::string user;
  std::string processor;
  uint64_t packages = 0;
  std::string cores;
  std::string megahertz;
  uint64_t memory_megabytes = 0;
  std::vector<MemorySlot> slots;
  std::vector<Disk> disks;
  std::vector<Volume> volumes;
  std::vector<Display> displays;
  std::vector<std::string> graphics;
  std::vector<Adapter> adapters;
  bool has_snapshot = false;  // without it nothing has been counted
  size_t applications = 0;
  size_t accounts = 0;
  size_t processes = 0;
  size_t printers = 0;
  size_t usb_devices = 0;
};

Overview overview_of(const Inventory& inventory);

// "20120118153045.000000+120" as "2012-01-18 15:30:45 +02:00"; anything else unchanged.
std::string readable_time(const std::string& timestamp);
// "00000002030405.000000:000" as "2 days 3:04:05"; anything else unchanged.
std::string readable_uptime(std::string_view uptime);
// Megabytes of memory, where a gigabyte has 1024 of them: "8 GB".
std::string readable_memory(uint64_t megabytes);
// Bytes of a disk, where a gigabyte is 10^9: "500 GB", "1.5 TB".
std::string readable_size(uint64_t bytes);
// How many of what an English noun names: "1 process", "2 processes".
std::string readable_count(size_t count, const std::string& noun);

}  // namespace inv
