#include "inv/report/report_tables.h"

#include <algorithm>

#include "inv/facts/readable.h"
#include "inv/facts/table_values.h"
#include "inv/report/html.h"

namespace inv {
namespace {

// A browser does not show more in any useful time: of all cells together, and of a value.
constexpr size_t kMostCellBytes = 64u << 20;
constexpr size_t kLongestCell = 1u << 16;

std::string_view text_of(Element element, const ReportColumn& column, Counterparts& counterparts) {
  return find_value(element, column.attribute, counterparts).text;
}

// An attribute for the tag of a column's cells.
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
  return count == 0
             ? ""
             : "<p>" + std::to_string(count) + " more are left out: the page would be too large.</p>\n";
}

// The columns in which something is told.
std::vector<ReportColumn> filled_columns(const ReportTable& table, const std::vector<Element>& elements,
                                         Counterparts& counterparts) {
  std::vector<ReportColumn> filled;
  for (const ReportColumn& column : table.columns) {
    const auto has_value = [&](Element element) { return !text_of(element, column, counterparts).empty(); };
    if (std::any_of(elements.begin(), elements.end(), has_value)) filled.push_back(column);
  }
  return filled;
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

std::string table_section(std::string_view title, const std::vector<ReportColumn>& columns,
                          const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<section id=\"" + anchor_of(title) + "\">\n<h2>" + std::string(title) +
                     " <span class=\"count\">" + std::to_string(rows.size()) +
                     "</span></h2>\n<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"" +
                     std::string(title) + " table\"><table>\n<thead><tr>";
  for (const ReportColumn& column : columns) {
    html +=
        std::string("<th scope=\"col\"") + class_of(column.form) + ">" + std::string(column.title) + "</th>";
  }
  html += "</tr></thead>\n<tbody>\n";
  for (const std::vector<std::string>& row : rows) {
    html += "<tr>";
    for (size_t i = 0; i < row.size(); ++i) {
      html += std::string("<td") + class_of(columns[i].form) + ">" + row[i] + "</td>";
    }
    html += "</tr>\n";
  }
  return html + "</tbody>\n</table></div>\n</section>\n";
}

std::string report_tables(Element snapshot) {
  std::string html;
  size_t room = kMostCellBytes;
  Counterparts counterparts(snapshot);
  for (const ReportTable& table : report_table_list()) {
    const std::vector<Element> elements = rows_of(snapshot, table.rows);
    const std::vector<ReportColumn> columns = filled_columns(table, elements, counterparts);
    std::vector<std::vector<std::string>> rows;
    for (const Element element : elements) {
      if (room == 0) break;
      std::vector<std::string> cells;
      for (const ReportColumn& column : columns) {
        cells.push_back(cell(text_of(element, column, counterparts), column.form));
      }
      for (const std::string& text : cells) room -= std::min(room, sizeof text + text.size());
      rows.push_back(std::move(cells));
    }
    if (!rows.empty()) html += table_section(table.title, columns, rows);
    html += left_out(elements.size() - rows.size());
  }
  return html;
}

}  // namespace inv
