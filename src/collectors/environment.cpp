#include "collectors/environment.h"

#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "collectors/fields.h"
#include "driver/base/command.h"
#include "driver/base/progress.h"
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

// A slash turns a name into a path, whose end names an attribute. An attribute's line begins with its name,
// and must not look like the line of a tag or an annotation.
bool is_writable(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return !slash || slash[1] == '\0' || !std::strchr("+*~", slash[1]);
}

// Only PATH is a list.
const char* annotation_key(const char* name) { return std::strcmp(name, "PATH") == 0 ? "split" : nullptr; }

void write_variable(InventoryTree& snapshot, const EnvironmentVariable& variable) {
  const char* name = variable.name.get();
  const Text path = format_string("/Environment/env-var:%s", name);
  const Text value_path = format_string("%s/value", path.get());
  snapshot.set_attribute(path.get(), text_value(""), "complex", "");
  snapshot.set_tag_value(path.get(), text_value(name));
  snapshot.set_attribute(value_path.get(), text_value(variable.value.get()), annotation_key(name), ":");
}

// As names are, so that none has to be searched for: each occurs once, and none is a path.
bool have_plain_names(const std::vector<EnvironmentVariable>& variables) {
  std::set<std::string_view> names;
  for (const EnvironmentVariable& variable : variables) {
    const std::string_view name = variable.name.get();
    if (name.find('/') != name.npos || !names.insert(name).second) return false;
  }
  return true;
}

void write_plain_variables(InventoryTree& snapshot, const std::vector<EnvironmentVariable>& variables) {
  Place environment(snapshot.root(), "/Environment");
  for (const EnvironmentVariable& variable : variables) {
    const char* name = variable.name.get();
    CompoundField field(environment, std::string("env-var:") + name, Place::Names::distinct);
    field.set_value(text_value(name));
    field.set_member("value", text_value(variable.value.get()), annotation_key(name), ":");
  }
}

}  // namespace

void write_environment(InventoryTree& snapshot, const std::vector<EnvironmentVariable>& variables) {
  if (have_plain_names(variables)) return write_plain_variables(snapshot, variables);
  for (const EnvironmentVariable& variable : variables) {
    if (is_writable(variable.name.get())) write_variable(snapshot, variable);
  }
}

void collect_environment(InventoryTree& snapshot) {
  // More than any kernel passes to a program.
  constexpr uint32_t kLongest = 2u << 20;
  announce("Environment");
  uint32_t length = 0;
  const Text output = run_in_own_environment("env", &length, 300, kLongest);
  if (output) write_environment(snapshot, parse_environment(output.get()));
}
