#include "inv/report/report_tables.h"

#include <algorithm>
#include <memory>

#include "inv/facts/readable.h"
#include "inv/facts/table_values.h"
#include "inv/report/html.h"

namespace inv {
namespace {

// Longer values are cut off.
constexpr size_t kLongestCell = 1u << 16;

using RowMaker = std::function<std::vector<std::string>(size_t)>;

std::string_view text_of(Element element, const ReportColumn& column, Counterparts& counterparts) {
  return find_value(element, column.attribute, counterparts).text;
}

// The attribute for a column's cells.
const char* class_of(ColumnForm form) {
  switch (form) {
    case ColumnForm::number:
    case ColumnForm::amount:
      return " class=\"number\"";
    case ColumnForm::date:
      return " class=\"date\"";
    case ColumnForm::text:
    case ColumnForm::word:
    case ColumnForm::yes_no:
      return "";
  }
  return "";
}

std::string date_text(std::string_view value) {
  const bool digits = value.find_first_not_of("0123456789") == value.npos;
  if (value.size() != 8 || !digits) return readable_time(std::string(value));
  return std::string(value.substr(0, 4))
      .append("-")
      .append(value.substr(4, 2))
      .append("-")
      .append(value.substr(6));
}

std::string cell(std::string_view value, ColumnForm form) {
  if (form == ColumnForm::yes_no && value == "1") return "yes";
  if (form == ColumnForm::yes_no && value == "0") return "no";
  if (form == ColumnForm::amount && value == "0") return "";
  if (form == ColumnForm::date) return isolated(date_text(value.substr(0, kLongestCell)));
  if (form == ColumnForm::word) return isolated(readable_word(value).substr(0, kLongestCell));
  return isolated(value.substr(0, kLongestCell));
}

std::string left_out(size_t count) {
  return count == 0 ? ""
                    : "<p>" + std::to_string(count) + (count == 1 ? " more is" : " more are") +
                          " left out: the page would be too large.</p>\n";
}

// The columns that are not empty.
std::vector<ReportColumn> filled_columns(const ReportTable& table, const std::vector<Element>& elements,
                                         Counterparts& counterparts) {
  std::vector<ReportColumn> filled;
  for (const ReportColumn& column : table.columns) {
    const auto has_value = [&](Element element) { return !text_of(element, column, counterparts).empty(); };
    if (std::any_of(elements.begin(), elements.end(), has_value)) filled.push_back(column);
  }
  return filled;
}

std::string table_beginning(std::string_view title, const std::vector<ReportColumn>& columns, size_t rows) {
  std::string html = "<section id=\"" + anchor_of(title) + "\">\n<h2>" + std::string(title) +
                     " <span class=\"count\">" + std::to_string(rows) +
                     "</span></h2>\n<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"" +
                     std::string(title) + " table\"><table>\n<thead><tr>";
  for (const ReportColumn& column : columns) {
    html +=
        std::string("<th scope=\"col\"") + class_of(column.form) + ">" + std::string(column.title) + "</th>";
  }
  return html + "</tr></thead>\n<tbody>\n";
}

std::string row_text(const std::vector<ReportColumn>& columns, const std::vector<std::string>& cells) {
  std::string html = "<tr>";
  for (size_t i = 0; i < cells.size(); ++i) {
    html.append("<td").append(class_of(columns[i].form)).append(">").append(cells[i]).append("</td>");
  }
  return html + "</tr>\n";
}

// A row of empty cells takes room too.
size_t size_of(const std::vector<std::string>& cells) {
  size_t size = 0;
  for (const std::string& cell : cells) size += sizeof cell + cell.size();
  return size;
}

// Writes rows up to and including the one that uses up the room.
void write_rows(const std::vector<ReportColumn>& columns, size_t rows, const RowMaker& row_of, size_t& room,
                const TextSink& sink) {
  size_t written = 0;
  for (; written < rows && room > 0; ++written) {
    const std::vector<std::string> cells = row_of(written);
    room -= std::min(room, size_of(cells));
    sink(row_text(columns, cells));
  }
  sink("</tbody>\n</table></div>\n" + left_out(rows - written) + "</section>\n");
}

// What the tables of a page share.
struct TablesOfPage {
  TablesOfPage(Element snapshot, size_t most_bytes) : counterparts(snapshot), room(most_bytes) {}

  Counterparts counterparts;
  size_t room;
};

PagePart part_of(const ReportTable& table, std::vector<Element> elements,
                 const std::shared_ptr<TablesOfPage>& page) {
  const std::vector<ReportColumn> columns = filled_columns(table, elements, page->counterparts);
  const std::string beginning = table_beginning(table.title, columns, elements.size());
  return {beginning, [columns, elements = std::move(elements), page](const TextSink& sink) {
            const auto row_of = [&](size_t i) {
              std::vector<std::string> cells;
              for (const ReportColumn& column : columns) {
                cells.push_back(cell(text_of(elements[i], column, page->counterparts), column.form));
              }
              return cells;
            };
            write_rows(columns, elements.size(), row_of, page->room, sink);
          }};
}

}  // namespace

std::string anchor_of(std::string_view title) {
  std::string anchor;
  for (const char c : title) {
    if (c >= 'A' && c <= 'Z') anchor += static_cast<char>(c - 'A' + 'a');
    if (c >= 'a' && c <= 'z') anchor += c;
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

PagePart table_part(std::string_view title, const std::vector<ReportColumn>& columns, size_t rows,
                    const RowMaker& row_of, size_t most_bytes) {
  return {table_beginning(title, columns, rows), [columns, rows, row_of, most_bytes](const TextSink& sink) {
            size_t room = most_bytes;
            write_rows(columns, rows, row_of, room, sink);
          }};
}

std::vector<PagePart> report_tables(Element snapshot, size_t most_bytes) {
  const auto page = std::make_shared<TablesOfPage>(snapshot, most_bytes);
  std::vector<PagePart> parts;
  for (const ReportTable& table : report_table_list()) {
    std::vector<Element> elements = rows_of(snapshot, table.rows);
    if (!elements.empty()) parts.push_back(part_of(table, std::move(elements), page));
  }
  return parts;
}

}  // namespace inv
