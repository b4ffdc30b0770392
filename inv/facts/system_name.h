// The name of a system. The scanner looks at one character of the name and knows the systems up to Mac OS X
// 10.7, so it takes macOS 15 for 10.2. The kernel, whose number rises with every system, is reliable.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace inv {

// What a file says about its system; empty for what it does not say.
struct SystemFacts {
  std::string name;     // "Mac OS X v10.6 (Snow Leopard)"
  std::string version;  // with the build: "10.6.8 (10K549)"
  std::string kernel;   // "Darwin 10.8.0"
  // The name and version from other tools, the best first: "macOS 15.3 (24D60)".
  std::vector<std::string> reported;
};

// 24 from "Darwin 24.3.0"; std::nullopt for anything else.
std::optional<unsigned> darwin_of(std::string_view kernel);

// The version of the system with this kernel, "10.6" or "15"; empty for kernels before Mac OS X 10.1 and
// absurdly high numbers.
std::string version_of_darwin(unsigned major);

// The name and the version, "Mac OS X v10.6 (Snow Leopard), 10.6.8 (10K549)". If it contradicts the kernel,
// or without one the build, the names from other tools are used instead, and if they do too, the one derived
// from the kernel: "macOS 15 (Darwin 24.3.0)". Without kernel and build nothing is contradicted. Empty if
// nothing is known.
std::string system_name(const SystemFacts& facts);

}  // namespace inv
