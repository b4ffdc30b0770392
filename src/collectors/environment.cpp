#include "collectors/environment.h"

#include <cstring>

#include "driver/command.h"
#include "profiler/units.h"

std::vector<EnvironmentVariable> parse_environment(const char* output) {
  std::vector<EnvironmentVariable> variables;
  while (const Text line = copy_line(output)) {
    const size_t length = std::strlen(line.get());
    if (const char* equals = std::strchr(line.get(), '='))
      variables.push_back({copy_range(line.get(), equals), copy_text(equals + 1)});
    output += length;
    if (*output == '\n') ++output;
  }
  return variables;
}

namespace {

// A slash in a name makes a path of it, whose end names an attribute. An attribute's line begins with its
// name, and must not look like the line of a tag or an annotation.
bool is_writable(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return !slash || slash[1] == '\0' || !std::strchr("+*~", slash[1]);
}

void write_variable(InventoryTree& snapshot, const EnvironmentVariable& variable) {
  const char* name = variable.name.get();
  const Text path = format_string("/Environment/env-var:%s", name);
  const Text value_path = format_string("%s/value", path.get());
  const char* annotation = std::strcmp(name, "PATH") == 0 ? "split" : nullptr;
  snapshot.set_attribute(path.get(), text_value(""), "complex", "");
  snapshot.set_tag_value(path.get(), text_value(name));
  snapshot.set_attribute(value_path.get(), text_value(variable.value.get()), annotation, ":");
}

}  // namespace

void write_environment(InventoryTree& snapshot, const std::vector<EnvironmentVariable>& variables) {
  for (const EnvironmentVariable& variable : variables) {
    if (is_writable(variable.name.get())) write_variable(snapshot, variable);
  }
}

void collect_environment(InventoryTree& snapshot) {
  // More than any kernel hands to a program.
  constexpr uint32_t kLongest = 8u << 20;
  uint32_t length = 0;
  const Text output = run_command("env", &length, 300, kLongest);
  if (output) write_environment(snapshot, parse_environment(output.get()));
}
