#include "inv/report/report_tables.h"

#include "inv/facts/paths.h"
#include "inv/report/html.h"

namespace inv {
namespace {

struct TableForm {
  std::string_view title;
  std::string_view rows;  // below the snapshot's top element: "Software/Soft:*"
  std::vector<ReportColumn> columns;
};

const std::vector<TableForm>& table_forms() {
  static const std::vector<TableForm> kForms = {
      {"Applications",
       "Software/Soft:*",
       {{"Name", ""},
        {"Version", "version"},
        {"Modified", "inst-date", ColumnForm::date},
        {"Kind", "runtime-environment"},
        {"64 bit", "64bit-app", ColumnForm::yes_no},
        {"Info", "info"},
        {"Location", "location"}}},
      {"Disks",
       "Storage/Physical-disks/*",
       {{"Model", "model"},
        {"Interface", "interface"},
        {"Size, GB", "size", ColumnForm::number},
        {"Serial", "serial"},
        {"Firmware", "fw-rev"},
        {"Partitions", "partitions", ColumnForm::number}}},
      {"Volumes",
       "Storage/Logical-disks/*",
       {{"Name", ""},
        {"File system", "file-sys"},
        {"Mount point", "mount-point"},
        {"Device", "bsd-name"},
        {"Size, GB", "size", ColumnForm::number},
        {"Free, GB", "free", ColumnForm::number},
        {"Used, %", "used%", ColumnForm::number}}},
      {"Memory slots",
       "Memory/Memory-slot:*",
       {{"Bank", "bank-label"},
        {"Used", "used", ColumnForm::yes_no},
        {"Capacity, MB", "capacity", ColumnForm::number},
        {"Type", "mem-type"},
        {"Speed, MHz", "speed", ColumnForm::number},
        {"Manufacturer", "manuf"}}},
      {"Processors",
       "Processors/*",
       {{"Model", ""},
        {"Cores", "core-count", ColumnForm::number},
        {"MHz", "current-clock-speed", ColumnForm::number},
        {"L2, KB", "l2-cache-size", ColumnForm::number},
        {"L3, KB", "l3-cache-size", ColumnForm::number}}},
      {"Displays",
       "Video/Monitors/*",
       {{"Model", "model"},
        {"Identifier", "id"},
        {"Main", "main-monitor", ColumnForm::yes_no},
        {"Largest resolution", "max-resolution"},
        {"Inches", "max-visible-image-size/diagonal", ColumnForm::number},
        {"Aspect", "aspect-ratio"},
        {"Made in", "manufacture-date/manufacture-year", ColumnForm::number},
        {"Serial", "serial"}}},
      {"Graphics", "Video/Video-devices/*", {{"Name", ""}, {"Memory, MB", "ram", ColumnForm::number}}},
      {"Network adapters",
       "Network/Adapters/*",
       {{"Name", ""},
        {"Device", "bsd-device-name"},
        {"Type", "type"},
        {"Addresses", "ip-address"},
        {"Subnet", "ip-subnet"},
        {"Gateway", "default-gateway"},
        {"Hardware address", "mac-address"}}},
      {"Printers",
       "Peripherals/Printers/*",
       {{"Name", ""},
        {"Default", "is-default", ColumnForm::yes_no},
        {"Status", "status"},
        {"Driver", "driver-version"},
        {"Address", "uri"}}},
      {"USB devices",
       "Peripherals/USB/*",
       {{"Name", ""},
        {"Manufacturer", "manuf"},
        {"Vendor", "vendor-id"},
        {"Product", "product-id"},
        {"Speed", "device-speed", ColumnForm::number},
        {"Serial", "serial-number"}}},
      {"Accounts",
       "User-accounts/*",
       {{"Name", ""},
        {"Full name", "fullname"},
        {"Id", "id", ColumnForm::number},
        {"Group", "group", ColumnForm::number},
        {"Shell", "shell"},
        {"Home", "hdir"}}},
      {"Firewall services",
       "Security/Firewall/Services/*",
       {{"Name", ""}, {"Allowed", "status", ColumnForm::yes_no}}},
      {"Firewall applications",
       "Security/Firewall/Apps/*",
       {{"Name", ""}, {"Allowed", "status", ColumnForm::yes_no}}},
      {"Power profiles",
       "System/PowerManagement/*",
       {{"Profile", ""},
        {"System sleep, min", "system-sleep-timer", ColumnForm::number},
        {"Disk sleep, min", "disk-sleep-timer", ColumnForm::number},
        {"Display sleep, min", "display-sleep-timer", ColumnForm::number},
        {"Wake on LAN", "wake-on-lan"}}},
      {"Processes",
       "Processes/*",
       {{"Id", "pid", ColumnForm::number},
        {"Parent", "ppid", ColumnForm::number},
        {"Name", ""},
        {"User", "user"},
        {"Command", "cmd-line"}}},
      {"Environment", "Environment/*", {{"Variable", ""}, {"Value", "value"}}},
  };
  return kForms;
}

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
  return isolated(value);
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
  for (const TableForm& form : table_forms()) {
    std::vector<std::vector<std::string>> rows;
    for (const Element element : rows_of(snapshot, form.rows)) {
      std::vector<std::string> cells;
      for (const ReportColumn& column : form.columns) {
        cells.push_back(cell(value_of(element, column.attribute), column.form));
      }
      rows.push_back(std::move(cells));
    }
    if (!rows.empty()) html += table_section(form.title, form.columns, rows);
  }
  return html;
}

}  // namespace inv
