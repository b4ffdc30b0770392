// What a system is called. The scanner looks at one character of the name and knows the systems up to Mac OS
// X 10.7, so it takes macOS 15 for 10.2. The kernel, whose number rises with every system, tells the truth.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace inv {

// What a file says about its system; what it does not say is empty.
struct SystemFacts {
  std::string name;     // "Mac OS X v10.6 (Snow Leopard)"
  std::string version;  // with the build: "10.6.8 (10K549)"
  std::string kernel;   // "Darwin 10.8.0"
  // The name and version as other tools tell it, the best first: "macOS 15.3 (24D60)".
  std::vector<std::string> told;
};

// 24 of "Darwin 24.3.0"; none of anything else.
std::optional<unsigned> darwin_of(std::string_view kernel);

// The version of the system that has this kernel, "10.6" or "15"; empty for kernels before Mac OS X 10.1 and
// those that nobody counts up to.
std::string version_of_darwin(unsigned major);

// The name and the version, "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)". What contradicts the kernel, or
// without one the build, gives way to what other tools told, and that to what follows from the kernel: "macOS
// 15 (Darwin 24.3.0)". Without both nothing is contradicted. Empty when nothing is known.
std::string system_name(const SystemFacts& facts);

}  // namespace inv
