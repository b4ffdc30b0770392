#include "inv/file/fault.h"

namespace inv {

std::string describe(const Fault& fault) {
  std::string sentence = "at byte " + std::to_string(fault.offset);
  if (fault.line > 0) {
    sentence += " (line " + std::to_string(fault.line) + ", byte " + std::to_string(fault.text_offset) +
                " of the text)";
  }
  return sentence + ": " + fault.message;
}

}  // namespace inv
