#include "inv/export/rows.h"

#include "inv/base/json_text.h"

namespace inv {
namespace {

void append_member(std::string& json, std::string_view name, std::string_view text) {
  json.append(",\"").append(name).append("\":");
  append_json(json, text);
}

// "-2", "+1.5"
bool is_signed_number(std::string_view text) {
  const std::string_view digits = text.substr(1);
  const size_t point = digits.find('.');
  return !digits.empty() && digits.find_first_not_of("0123456789.") == std::string_view::npos && point != 0 &&
         digits.find('.', point + 1) == std::string_view::npos;
}

// Whether a spreadsheet would run this on opening the file.
bool is_formula(std::string_view text) {
  if (text.empty() || std::string_view("=+-@\t\r").find(text.front()) == std::string_view::npos) return false;
  const bool has_sign = text.front() == '+' || text.front() == '-';
  return !has_sign || !is_signed_number(text);
}

}  // namespace

const RowKind& fact_rows() {
  static const RowKind kRows = {
      "facts",
      "a value of a scan",
      {{"machine", CellType::text, true, "",
        "what identifies the Mac: its serial number, else its UUID, else its name and hardware address"},
       {"path", CellType::text, true, "", "where the value is in the scan, for inv get"},
       {"name", CellType::text, true, "", "the last segment of the path"},
       {"value", CellType::text, true, "", "the value, as the scan has it"},
       {"unit", CellType::text, true, "", "the value's unit; empty for texts and plain numbers"},
       {"base_value", CellType::text, true, "",
        "the exact value of a rounded one: bytes, for sizes; else empty"},
       {"scan_id", CellType::text, true, "", "the SHA-256 of the scan's file"},
       {"scanned_at", CellType::time, false, "", "when the scan was made"},
       {"section", CellType::text, true, "", "what holds the value: snapshot or asset"},
       {"kind", CellType::text, true, "", "the path without its numbers and names"},
       {"element", CellType::text, true, "", "these numbers and names, slashes between"},
       {"number", CellType::number, false, "",
        "the value, where it is a decimal number of at most 15 digits"}}};
  return kRows;
}

std::string csv_columns(const RowKind& rows) {
  std::string line;
  for (const RowColumn& column : rows.columns) line.append(line.empty() ? "" : ",").append(column.name);
  return line + "\r\n";
}

void append_csv(std::string& csv, std::string_view text, Formulas formulas) {
  std::string repaired;
  if (!is_utf8(text)) text = repaired = to_utf8(text);
  const bool disarm = formulas == Formulas::disarmed && is_formula(text);
  if (text.find_first_of(",\"\r\n") == text.npos) {
    csv.append(disarm ? "'" : "").append(text);
    return;
  }
  csv.append(disarm ? "\"'" : "\"");
  for (const char character : text) {
    if (character == '"') csv += '"';
    csv += character;
  }
  csv += '"';
}

NdjsonRows::NdjsonRows(const Scan& scan) {
  front_ = "{\"machine\":";
  append_json(front_, scan.machine);
  append_member(middle_, "scan_id", scan.id);
  middle_ += ",\"scanned_at\":";
  if (scan.time.empty()) {
    middle_ += "null";
  } else {
    append_json(middle_, scan.time);
  }
}

void NdjsonRows::append(const Fact& fact, std::string& lines) const {
  lines += front_;
  append_member(lines, "path", fact.path);
  append_member(lines, "name", fact.name);
  append_member(lines, "value", fact.value);
  append_member(lines, "unit", fact.unit);
  append_member(lines, "base_value", fact.base_value);
  lines += middle_;
  append_member(lines, "section", fact.section);
  append_member(lines, "kind", fact.kind);
  append_member(lines, "element", fact.index);
  lines.append(",\"number\":").append(is_number(fact.value) ? fact.value : "null").append("}\n");
}

CsvRows::CsvRows(const Scan& scan, Formulas formulas) : formulas_(formulas) {
  append_csv(front_, scan.machine, formulas);
  append_next(middle_, scan.id);
  append_next(middle_, scan.time);
}

void CsvRows::append_next(std::string& csv, std::string_view text) const {
  csv += ',';
  append_csv(csv, text, formulas_);
}

void CsvRows::append(const Fact& fact, std::string& lines) const {
  lines += front_;
  append_next(lines, fact.path);
  append_next(lines, fact.name);
  append_next(lines, fact.value);
  append_next(lines, fact.unit);
  append_next(lines, fact.base_value);
  lines += middle_;
  append_next(lines, fact.section);
  append_next(lines, fact.kind);
  append_next(lines, fact.index);
  append_next(lines, is_number(fact.value) ? fact.value : "");
  lines += "\r\n";
}

namespace {

void append_json_cell(std::string& json, CellType type, const std::string& text) {
  switch (type) {
    case CellType::text:
    case CellType::time:
    case CellType::date:
      append_json(json, text);
      break;
    case CellType::integer:
    case CellType::size:
    case CellType::number:
      json += text;
      break;
    case CellType::boolean:
      json += text == "1" ? "true" : "false";
      break;
  }
}

}  // namespace

void append_ndjson_row(std::string& lines, const RowKind& rows, const std::vector<Cell>& cells) {
  const char* separator = "{\"";
  for (size_t i = 0; i < cells.size(); ++i) {
    lines.append(separator).append(rows.columns[i].name).append("\":");
    separator = ",\"";
    if (cells[i]) {
      append_json_cell(lines, rows.columns[i].type, *cells[i]);
    } else {
      lines += "null";
    }
  }
  lines += "}\n";
}

void append_csv_row(std::string& lines, const std::vector<Cell>& cells, Formulas formulas) {
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) lines += ',';
    append_csv(lines, cells[i].value_or(""), formulas);
  }
  lines += "\r\n";
}

}  // namespace inv
