// Fake tools that the collectors' tests share.
#pragma once

#include "tests/fake_tools.h"

// A file in the tools' folder, for what their scripts print.
inline void write_file(const FakeTools& tools, const std::string& name, const std::string& bytes) {
  std::ofstream(tools.file(name), std::ios::binary) << bytes;
}

// A tool that prints a text, whatever its arguments.
inline void write_printing_tool(const FakeTools& tools, const std::string& name, const std::string& text) {
  write_file(tools, name + ".txt", text);
  tools.write(name, "cat '" + tools.file(name + ".txt") + "'");
}

// The beginning of a script that records the arguments of every run, each in brackets, in the file
// "arguments".
inline std::string keeping_arguments(const FakeTools& tools) {
  return "printf '<%s>' \"$@\" >> '" + tools.file("arguments") + "'\n";
}
