#include "extended/facts.h"

#include <cstring>
#include <string>

#include "extended/tool_texts.h"

namespace {

struct Word {
  const char* upper_case;
  bool yes;
};

constexpr Word kWords[] = {{"YES", true},     {"NO", false}, {"TRUE", true}, {"FALSE", false},
                           {"ENABLED", true}, {"ON", true},  {"OFF", false}, {"DISABLED", false}};

}  // namespace

const Tag* find_named_item(const InventoryTree& profiler, const char* data_type, const char* name) {
  const Tag* items = find_items(profiler, data_type);
  if (!items) return nullptr;
  for (const auto& item : items->children()) {
    if (text_is(*item, "_name", name)) return item.get();
  }
  return nullptr;
}

std::optional<bool> parse_yes_or_no(const char* text) {
  if (!text) return std::nullopt;
  const char* last = std::strrchr(text, '_');
  const Text word = copy_text(last ? last + 1 : text);
  upper_case_ascii(word.get());
  for (const Word& candidate : kWords) {
    if (equal_text(word.get(), candidate.upper_case)) return candidate.yes;
  }
  return std::nullopt;
}

std::optional<int64_t> find_number(const Tag& item, const char* key) {
  const Value* value = find_value(item, key);
  if (value && value->kind() == Value::Kind::int64) return value->int64();
  const char* text = find_text(item, key);
  return text ? parse_digits(text) : std::nullopt;
}

void set_text(Place& element, const char* name, const char* text) {
  if (text) element.set_attribute(name, text_value(text));
}

void set_number(Place& element, const char* name, std::optional<int64_t> number, const char* unit) {
  if (number) element.set_attribute(name, Value(*number), unit ? "units" : nullptr, unit);
}

void set_yes_or_no(Place& element, const char* name, std::optional<bool> yes) {
  if (yes) element.set_attribute(name, yes_no(*yes));
}
