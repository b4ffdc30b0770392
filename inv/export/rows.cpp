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

// What a spreadsheet runs when it opens the file.
bool is_formula(std::string_view text) {
  if (text.empty() || std::string_view("=+-@\t\r").find(text.front()) == std::string_view::npos) return false;
  const bool has_sign = text.front() == '+' || text.front() == '-';
  return !has_sign || !is_signed_number(text);
}

}  // namespace

std::string csv_columns() {
  return "machine,path,name,value,unit,base_value,scan_id,scanned_at,section,kind,element,number\r\n";
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

}  // namespace inv
