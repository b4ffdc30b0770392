// A scan as rows for the database. Many threads prepare scans, so that the writing thread only passes on the
// texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "inv/facts/facts.h"
#include "inv/facts/scan.h"
#include "inv/file/inventory.h"

namespace inv {

// Independent of the inventory that it was made from.
class PreparedScan {
 public:
  // A fact in valid UTF-8.
  struct Row {
    std::string_view path_key;  // unique to this path and element
    std::string_view path;
    std::string_view element;
    std::string_view section;
    std::string_view name;
    std::string_view kind;
    std::string_view index;
    std::string_view value;
    std::string_view unit;
    std::string_view base_value;
    bool is_number;  // the value
  };

  explicit PreparedScan(const Inventory& inventory);

  const Scan& scan() const { return scan_; }
  size_t facts() const { return facts_.size(); }

  // Calls visit(const Row&) for every fact, in the order of the file, until it returns false; returns whether
  // it never did.
  template <typename Visit>
  bool each_row(Visit visit) const {
    size_t start = 0;
    for (const Lengths& fact : facts_) {
      if (!visit(row_at(start, fact))) return false;
      start += fact.size();
    }
    return true;
  }

 private:
  // Lengths of a fact's texts, which are adjacent. The key begins with the path, and the path with the
  // element.
  struct Lengths {
    std::string_view section;
    uint32_t path, element;
    uint32_t path_key, name, kind, index, value, unit, base_value;
    bool is_number;

    size_t size() const { return size_t{path_key} + name + kind + index + value + unit + base_value; }
  };

  void add(const Fact& fact);
  uint32_t append(std::string_view text);
  Row row_at(size_t start, const Lengths& fact) const;

  Scan scan_;
  std::string texts_;
  std::vector<Lengths> facts_;
};

}  // namespace inv
