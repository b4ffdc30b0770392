// Rows of text in columns that line up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace inv {

// Which part of a long cell is cut if a table has too little room.
enum class GivesWay { nothing, end, beginning };

struct Column {
  std::string title;
  bool numbers = false;  // aligned at the right
  GivesWay gives_way = GivesWay::nothing;
  size_t least = 0;    // how many columns a cell keeps that gives way; never fewer than its title
  unsigned spare = 0;  // the greater, the sooner it is left out where there is no room; never at 0
};

constexpr size_t kAnyWidth = SIZE_MAX;

class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  // As many cells as there are columns, in valid UTF-8.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // Removes columns until lines can be this short, and returns their titles in that order.
  std::vector<std::string> leave_out(size_t most_columns);
  // The title line first, columns two blanks apart, no trailing blanks. To fit this width the widest columns
  // are cut, but never below their minimum; if that is not enough, lines stay wider.
  std::string text(size_t most_columns = kAnyWidth) const;

 private:
  std::vector<size_t> widths(size_t most_columns) const;
  size_t natural_width(size_t column) const;
  size_t least_width(size_t column) const;
  size_t least_line() const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace inv
