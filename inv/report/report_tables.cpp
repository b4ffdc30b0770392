#include "inv/report/report_tables.h"

#include <algorithm>

#include "inv/base/wildcards.h"
#include "inv/report/html.h"

namespace inv {
namespace {

// A browser does not show more in any useful time: of all cells together, and of a value.
constexpr size_t kMostCellBytes = 64u << 20;
constexpr size_t kLongestCell = 1u << 16;

std::string_view value_of(Element element, std::string_view attribute) {
  if (attribute.empty()) return element.value();
  const size_t slash = attribute.find('/');
  if (slash == attribute.npos) return element.text(attribute);
  return element.child(attribute.substr(0, slash)).text(attribute.substr(slash + 1));
}

// The children that the last segment matches, of the element that those before it name.
std::vector<Element> rows_of(Element element, std::string_view path) {
  for (size_t slash = path.find('/'); slash != path.npos; slash = path.find('/')) {
    element = element.child(path.substr(0, slash));
    path.remove_prefix(slash + 1);
  }
  std::vector<Element> rows;
  for (const Element child : element.children()) {
    if (matches(path, child.name())) rows.push_back(child);
  }
  return rows;
}

// An attribute for the tag of a column's cells.
const char* class_of(ColumnForm form) {
  switch (form) {
    case ColumnForm::number:
      return " class=\"number\"";
    case ColumnForm::date:
      return " class=\"date\"";
    case ColumnForm::text:
    case ColumnForm::yes_no:
      return "";
  }
  return "";
}

std::string cell(std::string_view value, ColumnForm form) {
  if (form == ColumnForm::yes_no && value == "1") return "yes";
  if (form == ColumnForm::yes_no && value == "0") return "no";
  const bool digits = value.find_first_not_of("0123456789") == value.npos;
  if (form == ColumnForm::date && value.size() == 8 && digits) {
    return std::string(value.substr(0, 4))
        .append("-")
        .append(value.substr(4, 2))
        .append("-")
        .append(value.substr(6));
  }
  return isolated(value.substr(0, kLongestCell));
}

std::string left_out(size_t count) {
  return count == 0
             ? ""
             : "<p>" + std::to_string(count) + " more are left out: the page would be too large.</p>\n";
}

// "Network adapters" as "network-adapters".
std::string anchor_of(std::string_view title) {
  std::string anchor;
  for (const char c : title) {
    if (c >= 'A' && c <= 'Z') anchor += static_cast<char>(c - 'A' + 'a');
    if (c >= 'a' && c <= 'z') anchor += c;
    if (c == ' ') anchor += '-';
  }
  return anchor;
}

}  // namespace

std::string table_section(std::string_view title, const std::vector<ReportColumn>& columns,
                          const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<section id=\"" + anchor_of(title) + "\">\n<h2>" + std::string(title) +
                     " <span class=\"count\">" + std::to_string(rows.size()) +
                     "</span></h2>\n<div class=\"scroll\"><table>\n<thead><tr>";
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
  for (const ReportTable& table : report_table_list()) {
    std::vector<std::vector<std::string>> rows;
    const std::vector<Element> elements = rows_of(snapshot, table.rows);
    for (const Element element : elements) {
      if (room == 0) break;
      std::vector<std::string> cells;
      for (const ReportColumn& column : table.columns) {
        cells.push_back(cell(value_of(element, column.attribute), column.form));
      }
      for (const std::string& text : cells) room -= std::min(room, sizeof text + text.size());
      rows.push_back(std::move(cells));
    }
    if (!rows.empty()) html += table_section(table.title, table.columns, rows);
    html += left_out(elements.size() - rows.size());
  }
  return html;
}

}  // namespace inv
