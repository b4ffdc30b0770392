#include "inv/show/table.h"

#include <algorithm>

#include "inv/base/utf8.h"

namespace inv {
namespace {

constexpr size_t kGap = 2;

std::string fit(const std::string& text, size_t width, GivesWay gives_way) {
  return gives_way == GivesWay::beginning ? shorten_beginning(text, width) : shorten(text, width);
}

}  // namespace

size_t Table::natural_width(size_t column) const {
  size_t width = columns(columns_[column].title);
  for (const auto& row : rows_) width = std::max(width, columns(row[column]));
  return width;
}

std::vector<size_t> Table::widths(size_t most_columns) const {
  std::vector<size_t> widths;
  size_t total = 0;
  for (size_t i = 0; i < columns_.size(); ++i) {
    widths.push_back(natural_width(i));
    total += widths[i] + (i > 0 ? kGap : 0);
  }
  for (; total > most_columns; --total) {
    size_t* widest = nullptr;
    for (size_t i = 0; i < widths.size(); ++i) {
      const bool can = columns_[i].gives_way != GivesWay::nothing && widths[i] > columns(columns_[i].title);
      if (can && (!widest || widths[i] > *widest)) widest = &widths[i];
    }
    if (!widest) break;
    --*widest;
  }
  return widths;
}

std::string Table::text(size_t most_columns) const {
  const std::vector<size_t> widths = this->widths(most_columns);
  std::vector<std::string> titles;
  for (const Column& column : columns_) titles.push_back(column.title);
  std::string text;
  const auto append_row = [&](const std::vector<std::string>& row) {
    std::string line;
    for (size_t i = 0; i < row.size(); ++i) {
      const std::string cell = fit(row[i], widths[i], columns_[i].gives_way);
      line += columns_[i].numbers ? pad_left(cell, widths[i]) : pad_right(cell, widths[i]);
      line.append(kGap, ' ');
    }
    line.resize(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  };
  append_row(titles);
  for (const auto& row : rows_) append_row(row);
  return text;
}

}  // namespace inv
