#include "inv/export.h"

#include "inv/facts.h"
#include "inv/json_text.h"

namespace inv {
namespace {

constexpr std::string_view kSchema = "velkaro-inventory/1";
constexpr const char* kCsvColumns = "machine,path,name,value,unit,base_value\r\n";

Json json_annotations(const Range<Annotation>& annotations) {
  Json list = Json::array();
  for (const Annotation& annotation : annotations) {
    list.push_back({{"key", json_text(annotation.key)}, {"text", json_text(annotation.text)}});
  }
  return list;
}

Json json_attribute(Element element, const Attribute& attribute) {
  Json object = {{"name", json_text(attribute.name)}, {"value", json_text(attribute.value)}};
  const std::string_view unit = unit_of(element, attribute);
  if (!unit.empty()) object["unit"] = json_text(unit);
  if (!attribute.annotations.empty()) object["annotations"] = json_annotations(attribute.annotations);
  return object;
}

// What a tag says of itself; its children are added by the caller.
Json json_element(Element element) {
  Json object = {{"name", json_text(element.name())}, {"value", json_text(element.value())}};
  if (!element.annotations().empty()) object["annotations"] = json_annotations(element.annotations());
  Json attributes = Json::array();
  for (const Attribute& attribute : element.attributes())
    attributes.push_back(json_attribute(element, attribute));
  object["attributes"] = std::move(attributes);
  object["children"] = Json::array();
  return object;
}

// Depth is limited by the parser of the text, so the library's own recursion is too.
Json json_tree(Element element) {
  Json object = json_element(element);
  for (const Element child : element.children()) object["children"].push_back(json_tree(child));
  return object;
}

std::string csv_field(std::string_view text) {
  const std::string valid = to_utf8(text);
  if (valid.find_first_of(",\"\r\n") == std::string::npos) return valid;
  std::string quoted = "\"";
  for (const char character : valid) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

}  // namespace

void Exporter::write(std::string_view text) {
  good_ = good_ && std::fwrite(text.data(), 1, text.size(), stream_) == text.size();
}

void Exporter::begin() {
  if (format_ == ExportFormat::json) write("[");
  if (format_ == ExportFormat::csv) write(kCsvColumns);
}

void Exporter::add(const Inventory& inventory) {
  switch (format_) {
    case ExportFormat::json:
      add_json(inventory);
      break;
    case ExportFormat::ndjson:
      add_ndjson(inventory);
      break;
    case ExportFormat::csv:
      add_csv(inventory);
      break;
    case ExportFormat::zxml:
      add_zxml(inventory);
      break;
  }
  ++added_;
}

void Exporter::end() {
  if (format_ == ExportFormat::json) write("\n]\n");
  good_ = good_ && std::fflush(stream_) == 0;
}

void Exporter::add_json(const Inventory& inventory) {
  Json machine = {{"schema", kSchema},
                  {"file", json_text(inventory.file_name)},
                  {"machine", json_text(machine_identity(inventory))},
                  {"name", json_text(machine_name(inventory))},
                  {"timestamp", json_text(scan_timestamp(inventory))}};
  Json trees = Json::array();
  for (const Content& content : inventory.contents) {
    if (content.document) trees.push_back(json_tree(content.document->top()));
  }
  machine["trees"] = std::move(trees);
  write(added_ == 0 ? "\n" : ",\n");
  write(machine.dump(1));
}

void Exporter::add_ndjson(const Inventory& inventory) {
  const Json machine = json_text(machine_identity(inventory));
  each_fact(inventory, [&](const Fact& fact) {
    const Json line = {{"machine", machine},           {"path", json_text(fact.path)},
                       {"name", json_text(fact.name)}, {"value", json_text(fact.value)},
                       {"unit", json_text(fact.unit)}, {"base_value", json_text(fact.base_value)}};
    write(line.dump() + "\n");
  });
}

void Exporter::add_csv(const Inventory& inventory) {
  const std::string machine = csv_field(machine_identity(inventory));
  each_fact(inventory, [&](const Fact& fact) {
    std::string line = machine;
    for (const std::string_view field : {fact.path, fact.name, fact.value, fact.unit, fact.base_value}) {
      line.append(",").append(csv_field(field));
    }
    write(line + "\r\n");
  });
}

void Exporter::add_zxml(const Inventory& inventory) {
  for (const Content& content : inventory.contents) {
    if (content.document) write(write_text(*content.document));
  }
}

}  // namespace inv
