#include "collectors/fields.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "driver/base/dates.h"

namespace {

bool is_element(const std::string& name) {
  constexpr std::string_view kPrefix = "item";
  return name.size() > kPrefix.size() && name.compare(0, kPrefix.size(), kPrefix) == 0 &&
         name.find_first_not_of("0123456789", kPrefix.size()) == name.npos;
}

template <typename Entries>
bool are_elements(const Entries& entries) {
  return std::all_of(entries.begin(), entries.end(),
                     [](const auto& entry) { return is_element(entry->name()); });
}

}  // namespace

const Tag* find_list(const Tag& item, const char* key) {
  const Tag* tag = item.find_child(key);
  return tag && are_elements(tag->attributes()) && are_elements(tag->children()) ? tag : nullptr;
}

const Tag* find_items(const InventoryTree& profiler, const char* data_type) {
  const Tag* type = profiler.top().find_child(data_type);
  return type ? find_items(*type) : nullptr;
}

const Tag* find_items(const Tag& item) { return find_list(item, "_items"); }

const Tag* first_item(const InventoryTree& profiler, const char* data_type) {
  const Tag* items = find_items(profiler, data_type);
  return items ? items->child_at(0) : nullptr;
}

const Value* find_value(const Tag& item, const char* key) {
  const Attribute* attribute = item.find_attribute(key);
  return attribute ? &attribute->value() : nullptr;
}

char* text_of(Value& value) {
  char* text = value.text();
  return text && !is_cim_date(text) ? text : nullptr;
}

char* find_text(const Tag& item, const char* key) {
  Attribute* attribute = item.find_attribute(key);
  return attribute ? text_of(attribute->value()) : nullptr;
}

bool text_is(const Tag& item, const char* key, const char* expected) {
  return equal_text(find_text(item, key), expected);
}

char* find_date(const Tag& item, const char* key) {
  Attribute* attribute = item.find_attribute(key);
  return attribute ? attribute->value().text() : nullptr;
}

int64_t find_integer(const Tag& item, const char* key) {
  const Value* value = find_value(item, key);
  return value ? value->int64() : 0;
}

std::vector<const char*> texts_in(const Tag* list) {
  std::vector<const char*> texts;
  if (!list) return texts;
  for (const auto& element : list->attributes()) {
    if (const char* text = text_of(element->value())) texts.push_back(text);
  }
  return texts;
}

Value copied_value(const Tag& item, const char* key) {
  const Value* value = find_value(item, key);
  return value ? *value : Value();
}

void copy_field(Place& element, const char* name, const Tag& item, const char* key) {
  if (const Value* value = find_value(item, key)) element.set_attribute(name, *value);
}

void copy_element_value(Place& element, const Tag& item, const char* key) {
  element.set_value(copied_value(item, key));
}

Value yes_no(bool yes) { return text_value(yes ? "1" : "0"); }

void set_switch(Place& element, const char* name, const Tag& item, const char* key, const char* no) {
  if (const char* text = find_text(item, key)) element.set_attribute(name, yes_no(!equal_text(text, no)));
}

void set_joined(Place& element, const char* name, const std::vector<const char*>& texts) {
  if (texts.empty()) return;
  std::string joined = texts.front();
  for (size_t i = 1; i < texts.size(); ++i) joined += std::string(", ") + texts[i];
  element.set_attribute(name, text_value(joined.c_str()));
}

Text byte_count_text(int64_t bytes) { return format_string("%lld", static_cast<long long>(bytes)); }

CompoundField::CompoundField(Place& element, const std::string& name, Place::Names names)
    : members_(element, name, names) {
  if (names == Place::Names::distinct) {
    element.set_distinct_attribute(name, text_value(""), "complex", "");
  } else {
    element.set_attribute(name, text_value(""), "complex", "");
  }
}

void CompoundField::set_value(Value value) { members_.set_value(std::move(value)); }

void CompoundField::set_member(const char* name, Value value, const char* annotation_key,
                               const char* annotation_text) {
  members_.set_attribute(name, std::move(value), annotation_key, annotation_text);
}

void CompoundField::finish() { members_.annotate("field-source", ""); }
