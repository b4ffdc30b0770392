// The tools of a Mac, replayed from the recordings of a machine of the simulator.
#pragma once

#include <cstdlib>
#include <string>

// An environment variable's other value for as long as this lives.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() {
    if (old_.empty()) {
      unsetenv(name_);
    } else {
      setenv(name_, old_.c_str(), 1);
    }
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::string old_;
};

// While this lives, commands run as if on that machine ("imac-10.6").
class ReplayedTools {
 public:
  explicit ReplayedTools(const std::string& machine)
      : path_("PATH", std::string(PROJECT_ROOT) + "/simulator/bin:" + std::getenv("PATH")),
        machine_("VELKARO_MACHINE", std::string(PROJECT_ROOT) + "/simulator/machines/" + machine) {}

 private:
  ScopedVariable path_;
  ScopedVariable machine_;
};
