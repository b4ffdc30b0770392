// An environment variable for the length of a test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

class EnvironmentVariable {
 public:
  // A null value takes the variable away.
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { before_ ? setenv(name_, before_->c_str(), 1) : unsetenv(name_); }

 private:
  const char* const name_;
  std::optional<std::string> before_;
};
