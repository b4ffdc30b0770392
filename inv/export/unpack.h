// A file taken apart: its texts, and from a debug run a machine for the simulator.
#pragma once

#include <string>
#include <vector>

#include "inv/file/inventory.h"

namespace inv {

// No scan has as many data types and tools; a file that is taken apart into more is refused.
constexpr size_t kMostUnpackedFiles = 1000;

// A file to be: its path below a folder and what it holds.
struct UnpackedFile {
  std::string path;
  std::string content;
};

// What a file is taken apart into:
//   header.txt                the header's text
//   section-0-snapshot.zxml   the text of each tree
//   section-3.stored          the bytes of a section that is damaged or of an unknown kind
// and from a debug file what the simulator needs to be that Mac:
//   profiler/full.plist       the profiler's output, profiler/TYPE.plist for each data type in it
//   computer-name.txt
//   tools/NAME.txt            and from an extended one the further data types, and the output of each tool
// Of several data types of one name the first is taken. Of too many files only some more than
// kMostUnpackedFiles are there.
std::vector<UnpackedFile> unpack(const Inventory& inventory);

// Writes them. The folder is created if it is missing, and must be empty; nothing is written of too many
// files. False, with a clause about the reason.
bool write_folder(const std::string& folder, const std::vector<UnpackedFile>& files, std::string* error);

}  // namespace inv
