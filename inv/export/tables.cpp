#include "inv/export/tables.h"

#include <algorithm>
#include <set>

#include "inv/base/utf8.h"
#include "inv/facts/facts.h"
#include "inv/facts/table_values.h"
#include "inv/file/timestamp.h"

namespace inv {
namespace {

struct UnitSize {
  std::string_view unit;
  int64_t bytes;
};
constexpr UnitSize kUnitSizes[] = {{"KB", 1024}, {"MB", 1024 * 1024}, {"GB", 1'000'000'000}};

const std::vector<RowColumn> kCommonColumns = {
    {"scan_id", CellType::text, true, "", "the SHA-256 of the scan's file"},
    {"scanned_at", CellType::time, false, "", "when the scan was made"},
    {"machine", CellType::text, true, "",
     "what identifies the Mac: its serial number, else its UUID, else its name and hardware address"},
    {"path", CellType::text, true, "", "where the row is in the scan, for inv get"},
};

CellType type_of(CellForm form) {
  switch (form) {
    case CellForm::text:
      return CellType::text;
    case CellForm::integer:
      return CellType::integer;
    case CellForm::number:
      return CellType::number;
    case CellForm::yes_no:
      return CellType::boolean;
    case CellForm::bytes:
    case CellForm::seconds:
      return CellType::size;
    case CellForm::time:
      return CellType::time;
    case CellForm::date:
      return CellType::date;
  }
  return CellType::text;
}

Cell unless_empty(std::string_view text) {
  return text.empty() ? std::nullopt : std::make_optional(to_utf8(text));
}

bool is_integer(std::string_view text) {
  return is_number(text) && text.find('.') == std::string_view::npos && text != "-0";
}

bool is_size(std::string_view text) { return is_integer(text) && text.front() != '-'; }

Cell if_true(bool is_good, std::string_view text) { return is_good ? unless_empty(text) : std::nullopt; }

// 465.76 times a thousand bytes are 465760; fractions of a byte are cut off.
Cell multiplied(std::string_view amount, int64_t factor) {
  if (!is_number(amount) || amount.front() == '-') return std::nullopt;
  std::string digits(amount);
  const size_t point = digits.find('.');
  int64_t divisor = 1;
  if (point != digits.npos) {
    for (size_t i = point + 1; i < digits.size(); ++i) divisor *= 10;
    digits.erase(point, 1);
  }
  int64_t product = 0;
  if (__builtin_mul_overflow(std::stoll(digits), factor, &product)) return std::nullopt;
  const std::string bytes = std::to_string(product / divisor);
  return if_true(is_size(bytes), bytes);
}

Cell bytes_of(const FoundValue& found) {
  if (!found.attribute) return std::nullopt;
  const std::string_view exact = found.attribute->annotation("base-value");
  if (is_size(exact)) return std::string(exact);
  const std::string_view unit = unit_of(find_fact(found.element), *found.attribute);
  for (const UnitSize& size : kUnitSizes) {
    if (size.unit == unit) return multiplied(found.text, size.bytes);
  }
  return std::nullopt;
}

// Eight digits for days, and two each for hours, minutes and seconds.
Cell seconds_of(std::string_view duration) {
  constexpr size_t kDigits = 14;
  const std::string digits(duration.substr(0, kDigits));
  if (digits.size() < kDigits || digits.find_first_not_of("0123456789") != digits.npos) return std::nullopt;
  const auto part = [&](size_t start, size_t length) { return std::stoll(digits.substr(start, length)); };
  return std::to_string(((part(0, 8) * 24 + part(8, 2)) * 60 + part(10, 2)) * 60 + part(12, 2));
}

Cell date_of(std::string_view day, std::string_view calendar) {
  constexpr size_t kDigits = 8;
  constexpr size_t kIsoDate = 10;
  if (day.size() != kDigits) return std::nullopt;
  return unless_empty(utc_of(std::string(day) + "000000.000000+0", calendar).substr(0, kIsoDate));
}

class RowsOfFile {
 public:
  RowsOfFile(const TypedTable& table, const Inventory& inventory, const Scan& scan)
      : table_(table),
        top_(inventory.snapshot_top()),
        calendar_(top_.child("Scan").text("calendar")),
        scan_(scan),
        counterparts_(top_) {}

  std::vector<Element> rows() const {
    std::vector<Element> rows;
    std::set<std::string_view> numbers;
    for (const std::string_view pattern : table_.rows) {
      for (const Element element : rows_of(top_, pattern)) {
        const std::string_view number = element.name().substr(element.name().find(':') + 1);
        if (pattern == table_.rows.front() || !numbers.count(number)) rows.push_back(element);
        numbers.insert(number);
      }
    }
    return rows;
  }

  std::vector<Cell> cells(Element row) {
    std::vector<Cell> cells = {scan_.id, unless_empty(scan_.time), scan_.machine,
                               row ? to_utf8(path_of(row)) : "/"};
    for (const TableColumn& column : table_.columns) cells.push_back(cell(column, row));
    return cells;
  }

 private:
  Cell cell(const TableColumn& column, Element row) {
    // A scan has no name, so it gets that of its Mac.
    if (table_.rows.front().empty() && column.source == "its name") return unless_empty(scan_.name);
    const FoundValue found = find_value(row, column.source, counterparts_);
    switch (column.form) {
      case CellForm::text:
        return unless_empty(found.text);
      case CellForm::integer:
        return if_true(is_integer(found.text), found.text);
      case CellForm::number:
        return if_true(is_number(found.text), found.text);
      case CellForm::yes_no:
        return if_true(found.text == "1" || found.text == "0", found.text);
      case CellForm::bytes:
        return bytes_of(found);
      case CellForm::seconds:
        return seconds_of(found.text);
      case CellForm::time:
        return unless_empty(utc_of(found.text, calendar_));
      case CellForm::date:
        return date_of(found.text, calendar_);
    }
    return std::nullopt;
  }

  const TypedTable& table_;
  const Element top_;
  const std::string_view calendar_;
  const Scan& scan_;
  Counterparts counterparts_;
};

}  // namespace

const TypedTable* find_table(std::string_view name) {
  const auto& tables = typed_tables();
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [name](const TypedTable& table) { return table.name == name; });
  return found == tables.end() ? nullptr : &*found;
}

std::vector<std::string_view> table_names() {
  std::vector<std::string_view> names;
  for (const TypedTable& table : typed_tables()) names.push_back(table.name);
  return names;
}

RowKind row_kind_of(const TypedTable& table) {
  RowKind kind = {table.name, table.description, kCommonColumns};
  for (const TableColumn& column : table.columns) {
    kind.columns.push_back({column.name, type_of(column.form), false, column.path, column.description});
  }
  return kind;
}

void each_row(const TypedTable& table, const Inventory& inventory, const Scan& scan,
              const std::function<void(const std::vector<Cell>&)>& visit) {
  RowsOfFile file(table, inventory, scan);
  for (const Element row : file.rows()) visit(file.cells(row));
}

}  // namespace inv
