// Makes the .inv container, as the scanner writes it, from finished texts. docs/inv-format.md describes it
// byte by byte.
#pragma once

#include <string>
#include <vector>

#include "inv/file/container_reader.h"

namespace inv {

struct TreeText {
  Section::Kind kind;     // snapshot or asset_info
  std::string text;       // "?zxml" text
  std::string timestamp;  // this and the next one are for a snapshot's header entry
  std::string snaptype;
};

// A file with these sections in this order, trees whole and compressed, header compressed.
std::string write_container(std::vector<TreeText> trees);

}  // namespace inv
