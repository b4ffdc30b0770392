// The shapes of the extended facts: what collectors/fields.h has not, since the console's first mapping knows
// no facts that may be missing from a tool's output.
#pragma once

#include <cstdint>
#include <optional>

#include "collectors/fields.h"

// ---- Reading.

// The first item of a data type with this "_name"; none when there is none.
const Tag* find_named_item(const InventoryTree& profiler, const char* data_type, const char* name);

// What a text says by its last word, behind the last "_" where there is one: "yes", "true", "on" and
// "enabled" in any case, and their opposites ("spdisplays_no", "integrity_enabled"). None for none and for
// any other.
std::optional<bool> told_yes_or_no(const char* text);

// An integer, or a text of digits; none for anything else.
std::optional<int64_t> find_number(const Tag& item, const char* key);

// ---- Writing. Nothing is written for what is missing.

void set_text(Place& element, const char* name, const char* text);
// A number with its unit, where it has one, in the annotation "units".
void set_number(Place& element, const char* name, std::optional<int64_t> number, const char* unit = nullptr);
void set_yes_or_no(Place& element, const char* name, std::optional<bool> yes);

// Keys that say yes or no, as the attributes of those names.
template <size_t count>
void copy_switches(Place& element, const Tag& item, const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields)
    set_yes_or_no(element, field.name, told_yes_or_no(find_text(item, field.key)));
}

// Lists of texts, each joined in one.
template <size_t count>
void copy_lists(Place& element, const Tag& item, const CopiedField (&fields)[count]) {
  for (const CopiedField& field : fields)
    set_joined(element, field.name, texts_in(find_list(item, field.key)));
}

// As copy_fields, of a dictionary that may be missing.
template <size_t count>
void copy_fields_of(Place& element, const Tag* dictionary, const CopiedField (&fields)[count]) {
  if (dictionary) copy_fields(element, *dictionary, fields);
}
