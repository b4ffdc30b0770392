// The tables of a report: which elements are rows and which of their values are columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/file/document.h"

namespace inv {

// How a column's values are put before a reader.
enum class ColumnForm {
  text,
  word,    // a word of the profiler's own, "arch_arm_i64", in those of people
  number,  // aligned at the right
  amount,  // the same, and 0 means that it is not known
  yes_no,  // "1" and "0"
  date,    // "20120118" as "2012-01-18", a timestamp to the second
};

struct ReportColumn {
  std::string_view title;
  // Where its values are: sources as table_values.h explains them.
  std::string_view attribute;
  ColumnForm form = ColumnForm::text;
};

struct ReportTable {
  std::string_view title;
  std::string_view rows;  // below the snapshot's top element: "Software/Soft:*"
  std::vector<ReportColumn> columns;
};

// The tables of a report in their order, as the catalogue of facts has them.
const std::vector<ReportTable>& report_table_list();

// A section of the page with a table in it; nothing when the snapshot has no such elements.
std::string report_tables(Element snapshot);
// What a section of this title is found by on the page: "network-adapters" for "Network adapters".
std::string anchor_of(std::string_view title);
// A table of any rows: cells as HTML, a row for each vector.
std::string table_section(std::string_view title, const std::vector<ReportColumn>& columns,
                          const std::vector<std::vector<std::string>>& rows);

}  // namespace inv
