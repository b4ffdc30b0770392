// The command line: the input's lines are the arguments.
#include <cstdint>
#include <string>
#include <vector>

#include "driver/options.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  std::vector<std::string> lines(1);
  for (size_t i = 0; i < size; ++i) {
    if (bytes[i] == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += static_cast<char>(bytes[i]);
    }
  }
  std::vector<const char*> arguments;
  for (const std::string& line : lines) arguments.push_back(line.c_str());
  parse_options(static_cast<int>(arguments.size()), arguments.data());
  return 0;
}
