// The tables of a report: which elements are rows and which of their values are columns.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/file/document.h"
#include "inv/report/page_frame.h"

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

// How many bytes of cells a page shows: a browser does not show more in any useful time.
constexpr size_t kMostCellBytes = 64u << 20;

// A section of the page for each table that the snapshot has elements for. All of them valid as long as the
// snapshot, and to be written in their order, since they share `most_bytes` of cells: of each table its first
// rows, and how many more there would be.
std::vector<PagePart> report_tables(Element snapshot, size_t most_bytes = kMostCellBytes);
// What a section of this title is found by on the page: "network-adapters" for "Network adapters".
std::string anchor_of(std::string_view title);
// A table of so many rows, each of which `row_of` makes when its turn comes: cells as HTML, one for each
// column. No more rows than have this many bytes are shown.
PagePart table_part(std::string_view title, const std::vector<ReportColumn>& columns, size_t rows,
                    const std::function<std::vector<std::string>(size_t)>& row_of,
                    size_t most_bytes = kMostCellBytes);

}  // namespace inv
