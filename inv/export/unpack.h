// Unpacks a file: its texts, and from a debug run a machine for the simulator.
#pragma once

#include <string>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

// No scan has this many data types and tools; a file that would become more files is refused.
constexpr size_t kMostUnpackedFiles = 1000;

// A file to write: its path below a folder, and its content.
struct UnpackedFile {
  std::string path;
  std::string content;
};

// The files that a file is unpacked into:
//   header.txt                the header's text
//   section-0-snapshot.zxml   the text of each tree
//   section-3.stored          the bytes of a section that is damaged or of an unknown kind
// and from a debug file what the simulator needs to be that Mac:
//   profiler/full.plist       the profiler's output, profiler/TYPE.plist for each data type in it
//   computer-name.txt
//   tools/NAME.txt            and from an extended one the additional data types, and the output of each tool
// If several data types have the same name, the first one counts. If there are too many files, only a few
// more than kMostUnpackedFiles are returned.
std::vector<UnpackedFile> unpack(const Inventory& inventory);

// Writes them. The folder is created if it is missing, and must be empty; if there are too many files,
// nothing is written. False, with the reason as a clause, on failure.
bool write_folder(const std::string& folder, const std::vector<UnpackedFile>& files, std::string* error);

}  // namespace inv
