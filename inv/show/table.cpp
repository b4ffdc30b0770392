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

size_t Table::least_width(size_t column) const {
  const size_t natural = natural_width(column);
  if (columns_[column].gives_way == GivesWay::nothing) return natural;
  return std::min(natural, std::max(columns_[column].least, columns(columns_[column].title)));
}

size_t Table::least_line() const {
  size_t width = 0;
  for (size_t i = 0; i < columns_.size(); ++i) width += least_width(i) + (i > 0 ? kGap : 0);
  return width;
}

std::vector<std::string> Table::leave_out(size_t most_columns) {
  std::vector<std::string> titles;
  while (!columns_.empty() && least_line() > most_columns) {
    const auto most_spare =
        std::max_element(columns_.begin(), columns_.end(),
                         [](const Column& one, const Column& other) { return one.spare < other.spare; });
    if (most_spare->spare == 0) break;
    titles.push_back(most_spare->title);
    for (auto& row : rows_) row.erase(row.begin() + (most_spare - columns_.begin()));
    columns_.erase(most_spare);
  }
  return titles;
}

std::vector<size_t> Table::widths(size_t most_columns) const {
  std::vector<size_t> widths;
  std::vector<size_t> least;
  size_t total = 0;
  for (size_t i = 0; i < columns_.size(); ++i) {
    widths.push_back(natural_width(i));
    least.push_back(least_width(i));
    total += widths[i] + (i > 0 ? kGap : 0);
  }
  for (; total > most_columns; --total) {
    size_t* widest = nullptr;
    for (size_t i = 0; i < widths.size(); ++i) {
      if (widths[i] > least[i] && (!widest || widths[i] > *widest)) widest = &widths[i];
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
