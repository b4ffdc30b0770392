#include "collectors/environment.h"

#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "collectors/fields.h"
#include "driver/base/command.h"
#include "driver/base/progress.h"
#include "profiler/units.h"

extern char** environ;

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

// A slash makes a name a path, whose last part names an attribute. An attribute's line begins with its name,
// and must not look like the line of a tag or an annotation.
bool is_writable(const char* name) {
  const char* slash = std::strrchr(name, '/');
  return !slash || slash[1] == '\0' || !std::strchr("+*~", slash[1]);
}

struct Mark {
  const char* key = nullptr;
  const char* text = "";
};

// Only PATH is a list. A value that is left out must not look like an empty one.
Mark mark_of(const EnvironmentVariable& variable) {
  if (!variable.value) return {"left-out", ""};
  return std::strcmp(variable.name.get(), "PATH") == 0 ? Mark{"split", ":"} : Mark();
}

Value value_of(const EnvironmentVariable& variable) {
  return text_value(variable.value ? variable.value.get() : "");
}

void write_variable(InventoryTree& snapshot, const EnvironmentVariable& variable) {
  const char* name = variable.name.get();
  const Text path = format_string("/Environment/env-var:%s", name);
  const Text value_path = format_string("%s/value", path.get());
  snapshot.set_attribute(path.get(), text_value(""), "complex", "");
  snapshot.set_tag_value(path.get(), text_value(name));
  const Mark mark = mark_of(variable);
  snapshot.set_attribute(value_path.get(), value_of(variable), mark.key, mark.text);
}

// Whether names can be added without a search: each occurs once, and none is a path.
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
    const Mark mark = mark_of(variable);
    field.set_member("value", value_of(variable), mark.key, mark.text);
  }
}

// A name that env would spread over several lines cannot be written.
std::vector<EnvironmentVariable> own_variable_names() {
  std::vector<EnvironmentVariable> names;
  for (char** variable = environ; variable && *variable; ++variable) {
    const std::string_view name = std::string_view(*variable).substr(0, std::strcspn(*variable, "="));
    if (name.find('\n') == name.npos)
      names.push_back({copy_range(name.data(), name.data() + name.size()), nullptr});
  }
  return names;
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

void collect_environment_names(InventoryTree& snapshot) { write_environment(snapshot, own_variable_names()); }
