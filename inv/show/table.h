// Rows of text in columns that line up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace inv {

// What of a long cell gives way where a table has little room.
enum class GivesWay { nothing, end, beginning };

struct Column {
  std::string title;
  bool numbers = false;  // aligned at the right
  GivesWay gives_way = GivesWay::nothing;
};

constexpr size_t kAnyWidth = SIZE_MAX;

class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  // As many cells as there are columns, in valid UTF-8.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // The title line first, columns two blanks apart, no blanks at the end of lines. For lines of at most this
  // width the widest columns give way, none of them below its title; where that is not enough, lines stay
  // wider.
  std::string text(size_t most_columns = kAnyWidth) const;

 private:
  std::vector<size_t> widths(size_t most_columns) const;
  size_t natural_width(size_t column) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace inv
