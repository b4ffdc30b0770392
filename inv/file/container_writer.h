// The .inv container as the scanner writes it, made of finished texts. docs/inv-format.md describes it byte
// by byte.
#pragma once

#include <string>
#include <vector>

#include "inv/file/container_reader.h"

namespace inv {

struct TreeText {
  Section::Kind kind;     // snapshot or asset_info
  std::string text;       // "?zxml" text
  std::string timestamp;  // for the header's entry of a snapshot, as is the next one
  std::string snaptype;
};

// A file of these sections in this order, trees whole and compressed, the header compressed.
std::string write_container(const std::vector<TreeText>& trees);

}  // namespace inv
