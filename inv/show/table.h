// Rows of text in columns that line up.
#pragma once

#include <string>
#include <vector>

namespace inv {

struct Column {
  std::string title;
  bool numbers = false;  // aligned at the right
};

class Table {
 public:
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  // As many cells as there are columns, in valid UTF-8.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  // The title line first, columns two blanks apart, no blanks at the end of lines.
  std::string text() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace inv
