// What is wrong with a file, and where.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace inv {

struct Fault {
  std::string message;       // a clause that follows the place: "the magic INV! is missing"
  uint64_t offset = 0;       // of the byte in the file; for compressed text, of its section
  uint64_t line = 0;         // in the section's text, from 1; 0 if the fault is not in a text
  uint64_t text_offset = 0;  // of the byte in that text
};

using Faults = std::vector<Fault>;

// A sentence for people: "at byte 1234 (line 7, byte 210 of the text): ...".
std::string describe(const Fault& fault);

}  // namespace inv
