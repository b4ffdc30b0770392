// The tables of a report: which elements are rows and which of their values are columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/file/document.h"
#include "inv/report/page_frame.h"

namespace inv {

// How a column's values are shown.
enum class ColumnForm {
  text,
  word,    // one of the profiler's words, "arch_arm_i64", in plain English
  number,  // aligned at the right
  amount,  // the same, with 0 meaning unknown
  yes_no,  // "1" and "0"
  date,    // "20120118" as "2012-01-18", a timestamp to the second
};

struct ReportColumn {
  std::string_view title;
  // Where its values come from; see table_values.h.
  std::string_view attribute;
  ColumnForm form = ColumnForm::text;
};

struct ReportTable {
  std::string_view title;
  std::string_view rows;  // below the snapshot's top element: "Software/Soft:*"
  std::vector<ReportColumn> columns;
};

// The tables of a report, in the order of the catalogue of facts.
const std::vector<ReportTable>& report_table_list();

// How many bytes of cells a page shows: a browser takes too long to show more.
constexpr size_t kMostCellBytes = 64u << 20;

// A section of the page for each table for which the snapshot has elements. They are valid as long as the
// snapshot, and must be written in order, since they share `most_bytes` of cells: each table shows its first
// rows, and how many more there are.
std::vector<PagePart> report_tables(Element snapshot, size_t most_bytes = kMostCellBytes);
// The id of a section with this title: "network-adapters" for "Network adapters".
std::string anchor_of(std::string_view title);
// A table of this many rows, each of which `row_of` makes in turn: cells as HTML, one for each column. Rows
// beyond this many bytes are not shown.
PagePart table_part(std::string_view title, const std::vector<ReportColumn>& columns, size_t rows,
                    const std::function<std::vector<std::string>(size_t)>& row_of,
                    size_t most_bytes = kMostCellBytes);

}  // namespace inv
