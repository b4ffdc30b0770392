// The names of the pages that stand beside the page of a fleet.
#pragma once

#include <set>
#include <string>

namespace inv {

// "fleet-SIM0IMAC106.html" beside "fleet.html". No two are the same, not even where the file system takes
// small letters for capitals.
class PageNames {
 public:
  explicit PageNames(const std::string& fleet_page);

  // The path of the page of a machine. Of the identity remains what every file system and every address can
  // have in a name.
  std::string next(const std::string& identity);

 private:
  std::string stem_;
  std::set<std::string> taken_;  // in small letters
};

// The name in a path, which is the address of a page for those beside it.
std::string name_in(const std::string& path);

}  // namespace inv
