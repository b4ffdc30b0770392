// The file that a scan leaves in the working directory: whole, under the first name that is free for its
// machine, or not at all. Nothing is ever replaced and no link is followed, even when several scans save at
// the same time.
#pragma once

#include <functional>
#include <string>
#include <vector>

// Creates a new file with all its content. False, with the reason in errno and no file left, when that fails;
// EEXIST when the path exists.
using FileWriter = std::function<bool(const char* path)>;

// A way to give a finished file its name, if nothing has that name yet. 0, and then the temporary name is
// gone; otherwise -1 with the reason in errno: EEXIST when the name is taken.
using NameClaim = int (*)(const char* temporary_name, const char* name);

// In the order in which they are tried. A hard link is one step; so is renaming, on some of the file systems
// that have no links (FAT, some shares). On the others an empty file is created under the name and replaced
// at once.
const std::vector<NameClaim>& name_claims();

class OutputFile {
 public:
  // Chooses the first name that is free at the moment: "OFFICE-MAC_001B63AA10FE.inv", then with "(1)", "(2)"
  // and so on. The machine's name is put in capitals; without a hardware address its place stays empty. A
  // slash in either becomes "_", and the machine's name is cut off where the file's would be longer than file
  // systems allow.
  OutputFile(const char* machine_name, const char* hardware_address);

  std::string name() const;
  // The name with the working directory; the name alone when that directory is unknown.
  std::string path() const;

  // Has the file written under a temporary name, ".velkaro-scanner-PID.part", then gives it its name, or the
  // next free one if that has been taken meanwhile. False, and no file left, if it could not be written or
  // named. A program that is killed leaves at most the temporary file, or the empty one of the last claim.
  bool save(const FileWriter& write, const std::vector<NameClaim>& claims = name_claims());

 private:
  bool claim_name(const std::string& temporary_name, const std::vector<NameClaim>& claims);

  std::string stem_;
  std::string address_;
  unsigned number_ = 0;
};
