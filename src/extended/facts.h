// The shapes of the extended facts that collectors/fields.h lacks: facts that may be missing from a tool's
// output, which the default scan does not have.
#pragma once

#include <cstdint>
#include <optional>

#include "collectors/fields.h"

// ---- Reading.

// The first item of a data type with this "_name"; null when there is none.
const Tag* find_named_item(const InventoryTree& profiler, const char* data_type, const char* name);

// Whether the last word of a text, after its last "_" where it has one, is "yes", "true", "on" or "enabled"
// in any case, or one of their opposites ("spdisplays_no", "integrity_enabled"). Empty for null and any other
// text.
std::optional<bool> parse_yes_or_no(const char* text);

// An integer, or a text of digits; empty for anything else.
std::optional<int64_t> find_number(const Tag& item, const char* key);

// ---- Writing. Nothing is written for what is missing.

void set_text(Place& element, const char* name, const char* text);
// A number, with its unit, where it has one, in the annotation "units".
void set_number(Place& element, const char* name, std::optional<int64_t> number, const char* unit = nullptr);
void set_yes_or_no(Place& element, const char* name, std::optional<bool> yes);

// Copies keys that say yes or no.
template <size_t count>
void copy_switches(Place& element, const Tag& item, const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields)
    set_yes_or_no(element, field.name, parse_yes_or_no(find_text(item, field.key)));
}

// Copies lists of texts, each joined to one text.
template <size_t count>
void copy_lists(Place& element, const Tag& item, const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields)
    set_joined(element, field.name, texts_in(find_list(item, field.key)));
}

// As copy_fields, from a dictionary that may be missing.
template <size_t count>
void copy_fields_of(Place& element, const Tag* dictionary, const CopiedField (&fields)[count]) {
  if (dictionary) copy_fields(element, *dictionary, fields);
}
