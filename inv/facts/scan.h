// One scan among many machines and days.
#pragma once

#include <string>

#include "inv/file/inventory.h"

namespace inv {

// Every text is valid UTF-8.
struct Scan {
  std::string id;         // the file's SHA-256, in 64 hexadecimal digits
  std::string machine;    // what identifies the machine; see machine.h
  std::string name;       // what people call it
  std::string file;       // where it was read from
  std::string timestamp;  // as the file has it; empty when it does not say
  std::string time;       // in UTC: "2012-01-18T13:30:45Z"; empty when the timestamp cannot be understood
  bool damaged;           // a part of the file cannot be read
};

Scan scan_of(const Inventory& inventory);

}  // namespace inv
