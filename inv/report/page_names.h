// The names of the pages beside the page of a fleet.
#pragma once

#include <set>
#include <string>

namespace inv {

// "fleet-SIM0IMAC106.html" beside "fleet.html". They are unique even if the file system ignores case.
class PageNames {
 public:
  explicit PageNames(const std::string& fleet_page);

  // The path of a machine's page. Only characters of the identity that are valid in every file system and
  // address are kept.
  std::string next(const std::string& identity);

 private:
  std::string stem_;
  std::set<std::string> taken_;  // in lower case
};

// The name in a path, which is the relative address of a page from those beside it.
std::string name_in(const std::string& path);

}  // namespace inv
