#include "inv/show/table.h"

#include <algorithm>

#include "inv/base/utf8.h"

namespace inv {

std::string Table::text() const {
  std::vector<std::string> titles;
  std::vector<size_t> widths;
  for (size_t i = 0; i < columns_.size(); ++i) {
    titles.push_back(columns_[i].title);
    size_t width = columns(columns_[i].title);
    for (const auto& row : rows_) width = std::max(width, columns(row[i]));
    widths.push_back(width);
  }
  std::string text;
  const auto append_row = [&](const std::vector<std::string>& row) {
    std::string line;
    for (size_t i = 0; i < row.size(); ++i) {
      line += columns_[i].numbers ? pad_left(row[i], widths[i]) : pad_right(row[i], widths[i]);
      line += "  ";
    }
    line.resize(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  };
  append_row(titles);
  for (const auto& row : rows_) append_row(row);
  return text;
}

}  // namespace inv
