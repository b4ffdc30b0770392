// A test's own tools, first on PATH while it runs; what a test writes is removed at its end.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class FakeTools {
 public:
  FakeTools() {
    char pattern[] = "/tmp/velkaro-tools-XXXXXX";
    folder_ = mkdtemp(pattern);
    const char* path = std::getenv("PATH");
    saved_path_ = path ? path : "";
    setenv("PATH", (folder_ + ":" + saved_path_).c_str(), 1);
  }
  FakeTools(const FakeTools&) = delete;
  FakeTools& operator=(const FakeTools&) = delete;
  ~FakeTools() {
    setenv("PATH", saved_path_.c_str(), 1);
    std::filesystem::remove_all(folder_);
  }

  // A tool of this name that runs a shell script.
  void write(const std::string& name, const std::string& script) const {
    std::ofstream(file(name)) << "#!/bin/sh\n" << script << "\n";
    chmod(file(name).c_str(), 0755);
  }
  // The path of a file in the tools' folder, for what a script reads or writes.
  std::string file(const std::string& name) const { return folder_ + "/" + name; }
  std::string read(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::string folder_;
  std::string saved_path_;
};
