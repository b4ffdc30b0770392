#include "driver/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "driver/base/new_file.h"
#include "driver/base/text.h"
#include "platform/rename.h"

namespace {

// In bytes: what all usual file systems allow, and enough for the 12 digits of an address.
constexpr size_t kLongestName = 255;
constexpr size_t kLongestAddress = 64;

// Cuts at a character's start.
std::string shortened(std::string text, size_t length) {
  if (text.size() <= length) return text;
  while (length > 0 && (text[length] & 0xC0) == 0x80) --length;
  text.resize(length);
  return text;
}

// A slash would lead to another folder.
std::string without_slashes(std::string text) {
  std::replace(text.begin(), text.end(), '/', '_');
  return text;
}

// An unreadable file and a dangling link also take up their names.
bool is_taken(const std::string& name) {
  struct stat status;
  return lstat(name.c_str(), &status) == 0;
}

int claim_by_link(const char* temporary_name, const char* name) {
  if (link(temporary_name, name) != 0) return -1;
  unlink(temporary_name);
  return 0;
}

// Only a scan that is killed between the two steps leaves its empty file.
int claim_by_placeholder(const char* temporary_name, const char* name) {
  const int descriptor = create_new_file(name);
  if (descriptor < 0) return -1;
  close(descriptor);
  if (std::rename(temporary_name, name) == 0) return 0;
  unlink(name);
  return -1;
}

// The name's beginning keeps it out of "*", its end out of "*.inv". A name that is taken belongs to a scan
// that was killed, or to one of another machine in the same shared folder.
std::string temporary_name(unsigned number) {
  const std::string repetition = number > 0 ? "-" + std::to_string(number) : "";
  return ".velkaro-scanner-" + std::to_string(getpid()) + repetition + ".part";
}

// The name it was written under; empty when it could not be written.
std::string write_temporary(const FileWriter& write) {
  for (unsigned number = 0;; ++number) {
    const std::string name = temporary_name(number);
    if (write(name.c_str())) return name;
    if (errno != EEXIST) return "";
  }
}

}  // namespace

const std::vector<NameClaim>& name_claims() {
  static const std::vector<NameClaim> kClaims = {claim_by_link, rename_exclusively, claim_by_placeholder};
  return kClaims;
}

OutputFile::OutputFile(const char* machine_name, const char* hardware_address) {
  const Text stem = copy_text(machine_name);
  upper_case_ascii(stem.get());
  stem_ = without_slashes(stem.get());
  address_ = shortened(without_slashes(strip_dashes(hardware_address ? hardware_address : "").get()),
                       kLongestAddress);
  while (is_taken(name())) ++number_;
}

std::string OutputFile::name() const {
  const std::string number = number_ > 0 ? "(" + std::to_string(number_) + ")" : "";
  const std::string end = "_" + address_ + number + ".inv";
  return shortened(stem_, kLongestName - end.size()) + end;
}

std::string OutputFile::path() const {
  const std::unique_ptr<char, decltype(&std::free)> directory(getcwd(nullptr, 0), &std::free);
  return directory ? std::string(directory.get()) + "/" + name() : name();
}

bool OutputFile::claim_name(const std::string& temporary_name, const std::vector<NameClaim>& claims) {
  for (size_t way = 0; way < claims.size();) {
    if (claims[way](temporary_name.c_str(), name().c_str()) == 0) return true;
    // A server that calls every name taken must not keep this going forever.
    if (errno == EEXIST && is_taken(name())) {
      ++number_;
    } else {
      ++way;
    }
  }
  return false;
}

bool OutputFile::save(const FileWriter& write, const std::vector<NameClaim>& claims) {
  const std::string temporary_name = write_temporary(write);
  if (temporary_name.empty()) return false;
  if (claim_name(temporary_name, claims)) return true;
  unlink(temporary_name.c_str());
  return false;
}
